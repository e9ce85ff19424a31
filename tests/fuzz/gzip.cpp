// Any bytes are read as a compressed document, and any lines come back from one as the rules say.

#include <Quarry/ParserFile.h>
#include <zlib.h>

#include <set>
#include <stdexcept>

#include "Folder.h"
#include "Fuzz.h"
#include "support/PlainPreprocessor.h"

using Fuzz::require;

namespace {

/// No text includes a file of this name; all others are out of reach for the library and the rules.
const std::string TOP("\0", 1);

/// Few bytes can be compressed from very many, of which a tree would take all memory.
constexpr std::size_t LONGEST_PARSED = 1 << 20;

/// Of each line, or piece of a long one, the last two bytes are taken off; "$" before the line feed
/// keeps it. A zero byte ends the piece. Throws for a piece that has no two bytes.
std::string takeMarkersOff(const std::string& bytes) {
  constexpr std::size_t LONGEST_PIECE = 8190;
  std::string text;
  std::size_t begin = 0;
  while (begin < bytes.size()) {
    const std::size_t lineEnd = std::min(bytes.find('\n', begin), bytes.size() - 1) + 1;
    const std::size_t length = std::min(lineEnd - begin, LONGEST_PIECE);
    const std::string piece = bytes.substr(begin, length).c_str();
    begin += length;
    if (piece.size() < 2) throw std::out_of_range("basic_string::erase");
    text.append(piece, 0, piece.size() - 2);
    if (piece[piece.size() - 2] == '$') text += '\n';
  }
  return text;
}

/// Stored, not deflated: that is quick.
void compress(const std::string& path, const std::string& bytes) {
  gzFile file = gzopen(path.c_str(), "w0");
  require(file != nullptr);
  const auto length = static_cast<unsigned>(bytes.size());
  require(length == 0 || gzwrite(file, bytes.data(), length) == static_cast<int>(length));
  require(gzclose(file) == Z_OK);
}

/// Returns the text, or "throws".
template <class Read>
std::string textOf(Read read) {
  try {
    return "text: " + read();
  } catch (const std::out_of_range&) {
    return "throws";
  }
}

std::string readFile(const std::string& path) {
  Quarry::ParserLimits limits;
  limits.includeDepth = 0;
  Quarry::ParserFile file;
  file.setSearchPaths({""});
  file.setLimits(limits);
  std::set<std::string> included;
  std::string text;
  file.preprocessFile(text, path, included);
  limits.preprocessedBytes = LONGEST_PARSED;
  file.setLimits(limits);
  require(!file.read(path) || text.size() <= LONGEST_PARSED);
  return text;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  const bool isCompressed = input.takeChoice() % 2 == 0;
  const std::string& bytes = input.getBytes();
  if (isCompressed) {
    folder.write("document", bytes);
    textOf([] { return readFile(folder.getPath("document")); });
    return 0;
  }
  compress(folder.getPath("document"), bytes);
  const std::string text = textOf([] { return readFile(folder.getPath("document")); });
  const std::string expected = textOf([&bytes] {
    const TestSupport::Files files = {{TOP, takeMarkersOff(bytes)}};
    std::string processed;
    TestSupport::PlainPreprocessor(files).process(TOP, processed);
    return processed;
  });
  require(text == expected);
  return 0;
}
