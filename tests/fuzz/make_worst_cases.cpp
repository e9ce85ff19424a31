// Writes inputs of 64 KiB that are as bad as could be thought of, each into the folder of its fuzz
// target:
//
//   make_worst_cases FOLDER

#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t LENGTH = 65536;

using Cases = std::vector<std::pair<std::string, std::string>>;  ///< names and bytes

std::string repeat(const std::string& piece, std::size_t length = LENGTH - 1) {
  std::string text;
  while (text.size() + piece.size() <= length)
    text += piece;
  return text;
}

/// Each piece stands between a prefix and a number that is no other's.
std::string count(const std::string& prefix, const std::string& suffix) {
  std::string text;
  for (unsigned number = 0; text.size() + 20 < LENGTH; ++number)
    text += prefix + std::to_string(number) + suffix;
  return text;
}

// --- Texts ---------------------------------------------------------------------------------------

Cases makeTexts() {
  Cases cases;
  for (const char byte : std::string("{}(),=\"\\ \n#09-/<a."))
    cases.emplace_back("byte_" + std::to_string(byte), repeat(std::string(1, byte)));
  const std::vector<std::string> pieces = {
      "a{",     "a{}", "a 1 ", "a(",    "a(1)", "a b ", "a 1,", "\"\" ",      "\"\\\" ",    "\"\n",
      "a\"\" ", "1\"", "? ",   "#a 1 ", "{ ",   "a 1}", "= ",   "a <empty> ", "a 1 b{c 2} "};
  for (std::size_t i = 0; i < pieces.size(); ++i)
    cases.emplace_back("piece_" + std::to_string(i), repeat(pieces[i]));
  cases.emplace_back("many_values", "a " + repeat("1 ", LENGTH - 3));
  cases.emplace_back("many_strings", "a " + repeat("\"\" ", LENGTH - 3));
  cases.emplace_back("many_groups", repeat("a{} "));
  cases.emplace_back("long_digits", "a " + repeat("9", LENGTH - 3));
  cases.emplace_back("long_fraction", "a 0." + repeat("9", LENGTH - 5));
  cases.emplace_back("long_small_number", "a ." + repeat("0", LENGTH - 8) + "1e-9");
  cases.emplace_back("long_exponent", "a 1e" + repeat("9", LENGTH - 5));
  cases.emplace_back("long_block", "a 0x" + repeat("41", LENGTH - 5));
  cases.emplace_back("long_string", "a \"" + repeat("\\n", LENGTH - 5) + "\"");
  cases.emplace_back("long_name", repeat("a", LENGTH - 3) + " 1");
  cases.emplace_back("distinct_names", count("n", " 1\n"));
  cases.emplace_back("distinct_keywords", count("#n", " 1\n"));
  cases.emplace_back("distinct_groups", count("g", "{a 1}"));
  return cases;
}

// --- Binary data ---------------------------------------------------------------------------------

std::string makeSize(std::uint64_t size) {
  std::string bytes;
  for (int shift = 0; shift < 64; shift += 8)
    bytes += static_cast<char>(size >> shift & 0xFF);
  return bytes;
}

std::string makeItem(const std::string& values) {
  return 'a' + std::string(1, '\0') + makeSize(values.size() + 1) + '\0' + values;
}

std::string makeGroup(const std::string& items) { return makeSize(items.size()) + items; }

std::string makeNestedGroups() {
  std::string group = makeGroup("");
  while (group.size() + 40 < LENGTH)
    group = makeGroup(makeItem('\0' + group));
  return group;
}

/// Each item claims all that there is, and to be a long list.
std::string makeLyingFrames() {
  const std::string item = 'a' + std::string(1, '\0') + makeSize(LENGTH - 2) + '\0' + "\1\1" + '\0';
  std::string bytes;
  for (std::size_t left = LENGTH - 1; left > 100; left = LENGTH - 1 - bytes.size())
    bytes += makeSize(left - 8) + item;
  return bytes;
}

Cases makeBinaries() {
  const std::string tag(1, '\5');
  const auto makeList = [](const std::string& value) {
    return makeGroup(makeItem(repeat(value, LENGTH - 40)));
  };
  using std::string_literals::operator""s;
  return {{"nested", makeNestedGroups()},
          {"lying_frames", makeLyingFrames()},
          {"items", makeGroup(repeat(makeItem(""), LENGTH - 20))},
          {"items_with_a_bool", makeGroup(repeat(makeItem("\1\1"), LENGTH - 20))},
          {"bools", makeList("\1\1")},
          {"integers", makeList("\3\1\1\1\1")},
          {"strings", makeList("\5\0"s)},
          {"short_strings", makeList("\5a\0"s)},
          {"blocks", makeList("\6"s + makeSize(1) + 'x')},
          {"empty_blocks", makeList("\6"s + makeSize(0))},
          {"groups", makeList("\0"s + makeSize(0))},
          {"huge_groups", makeList("\0"s + makeSize(~0UL))},
          {"huge_blocks", makeList("\6"s + makeSize(~0UL))},
          {"zeros", std::string(LENGTH - 1, '\0')},
          {"ones", repeat("\1")},
          {"high_bytes", repeat("\xFF")}};
}

// --- Others --------------------------------------------------------------------------------------

/// The pattern and the text share the bytes.
Cases makePatterns() {
  const std::vector<std::pair<std::string, std::string>> pieces = {{"a?", "a"},
                                                                   {"a*", "a"},
                                                                   {".*", "x"},
                                                                   {"(a*)*", "a"},
                                                                   {"(a|a)", "a"},
                                                                   {"(.*)", "x"},
                                                                   {"(?:a*b*)*", "ab"},
                                                                   {"[ab]*a[ab]", "aab"},
                                                                   {"a|", "b"},
                                                                   {"[a-z]", "m"},
                                                                   {"(", "("},
                                                                   {"[", "["},
                                                                   {"\\pL", "x"},
                                                                   {"(?i)k", "K"},
                                                                   {"x{2}", "x"},
                                                                   {"(x{30}){30}|", "x"},
                                                                   {"\\b", "a "},
                                                                   {".{999}", "x"},
                                                                   {"(?:.*a.{9})?", "ab"},
                                                                   {"^", "\n"},
                                                                   {"\\xFF", "\xFF"}};
  Cases cases;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const auto& [pattern, text] = pieces[i];
    for (std::size_t length = 250; length < LENGTH; length *= 2)
      cases.emplace_back("piece_" + std::to_string(i) + "_length_" + std::to_string(length),
                         repeat(pattern, length) + '\n' + repeat(text, LENGTH - length - 1));
  }
  return cases;
}

Cases makeFiles() {
  const std::vector<std::string> pieces = {"//",
                                           "//\n",
                                           "/",
                                           "\"//",
                                           "\"//\"",
                                           "\\",
                                           "\\\"",
                                           "\\\\\"",
                                           "\"\\\"//\"#",
                                           "#include ",
                                           "#SerialVersion ",
                                           "#SerialVersion 1\n",
                                           "#",
                                           "\"#",
                                           "\\\\\"//\n",
                                           "\\#SerialVersion 1\n"};
  Cases cases;
  for (std::size_t i = 0; i < pieces.size(); ++i)
    cases.emplace_back("piece_" + std::to_string(i), repeat(pieces[i]));
  cases.emplace_back("includes", repeat("#include \"1\"\n", LENGTH - 100) + '\x1E' + "a 1\n");
  return cases;
}

/// Adds what chooses the highest limits but one.
Cases withHighLimits(Cases cases) {
  for (auto& [name, bytes] : cases)
    bytes += "\xFF\xFF";
  return cases;
}

/// Files that include each other.
Cases makeLimitedFiles() {
  const std::string separator = "\x1E";
  const auto include = [](int number) { return "#include \"" + std::to_string(number) + "\"\n"; };
  std::string circle;
  std::string fan;
  for (int number = 0; number < 8; ++number) {
    circle += include((number + 1) % 8) + separator;
    fan += repeat(include(number + 1), number < 7 ? 8000 : 0) + separator;
  }
  return withHighLimits({{"circle", circle},
                         {"fan", fan},
                         {"an_empty_file", repeat(include(1), LENGTH - 1000)},
                         {"a_missing_file", repeat("#include \"x\"\n", LENGTH - 1000)},
                         {"deep_groups", repeat("a{", LENGTH - 1000)}});
}

/// Compresses `bytes`, of which there are as many as give about 64 KiB.
std::string compress(const std::string& bytes) {
  constexpr int GZIP_WINDOW = 15 + 16;
  z_stream stream = {};
  if (deflateInit2(&stream, 9, Z_DEFLATED, GZIP_WINDOW, 9, Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::runtime_error("cannot compress");
  std::string out(LENGTH - 1, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

Cases makeCompressedFiles() {
  constexpr std::size_t INFLATED = 62 << 20;
  Cases cases;
  for (const std::string piece : {"x", "x$\n", "a 1$\n", "a 1 x\n", "// $\n", "\"\\\"$\n"})
    cases.emplace_back("piece_" + std::to_string(cases.size()), compress(repeat(piece, INFLATED)));
  return cases;
}

/// Steps are taken from the end: what is written first comes last.
Cases makeScripts() {
  Cases cases;
  for (int step = 0; step < 16; ++step)
    cases.emplace_back("step_" + std::to_string(step),
                       repeat({'\7', '\3', char(step), '\5', '\7'}, LENGTH - 400) +
                           repeat({'\1', '\77', '\0'}, 300));
  return cases;
}

void write(const std::string& folder, const Cases& cases, const std::string& choices) {
  std::filesystem::create_directories(folder);
  for (const auto& [name, bytes] : cases) {
    for (const char choice : choices) {
      std::ofstream file(folder + '/' + name + '_' + std::to_string(choice), std::ios::binary);
      file << bytes << choice;
      file.close();
      if (!file) throw std::runtime_error("cannot write into " + folder);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_worst_cases FOLDER\n", stderr);
    return 2;
  }
  const std::string folder = std::string(argv[1]) + '/';
  using std::string_literals::operator""s;
  try {
    write(folder + "words", makeTexts(), "\0\1"s);
    write(folder + "text", makeTexts(), "\0\1"s);
    write(folder + "text_round_trip", makeTexts(), "\0\3"s);
    write(folder + "binary", makeBinaries(), "\0"s);
    write(folder + "binary_round_trip", makeBinaries(), "\0"s);
    write(folder + "binary_round_trip", makeTexts(), "\1"s);
    write(folder + "pattern", makePatterns(), "x");
    write(folder + "preprocessor", makeFiles(), "\n");
    write(folder + "limits", makeLimitedFiles(), "\xFF");
    write(folder + "source", makeLimitedFiles(), "\xFF");
    write(folder + "source", withHighLimits(makeTexts()), "\xFF");
    write(folder + "gzip", makeCompressedFiles(), "\0"s);
    write(folder + "gzip", makeTexts(), "\1"s);
    write(folder + "api", makeScripts(), "\7");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
