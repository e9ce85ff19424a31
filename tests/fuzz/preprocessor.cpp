// Files that include each other become the text that the rules say. The input is cut into up to
// eight files, "0" to "7"; "0" is read. Inputs with a cycle, or that would become too long, and
// those that name files elsewhere are passed over.

#include <Quarry/ParserFile.h>

#include <cmath>
#include <set>
#include <vector>

#include "Folder.h"
#include "Fuzz.h"
#include "support/PlainPreprocessor.h"

using Fuzz::require;

namespace {

constexpr char FILE_SEPARATOR = 0x1E;
constexpr unsigned long MOST_FILES = 8;
constexpr std::size_t LONGEST = 1 << 20;

/// A file ends at its first zero byte.
std::vector<std::string> takeFiles(Fuzz::Input& input) {
  std::vector<std::string> texts;
  while (texts.size() < MOST_FILES && (texts.empty() || !input.getBytes().empty())) {
    const std::string text = input.takePart(FILE_SEPARATOR);
    texts.push_back(text.substr(0, text.find('\0')));
  }
  return texts;
}

/// Returns at least how long file `number` becomes with all that it includes, when the files behind
/// it become as long as `lengths` tells; more than LONGEST where that is not to be tried.
std::size_t findLength(const std::vector<std::string>& texts, unsigned long number,
                       const std::vector<std::size_t>& lengths) {
  const std::string marker = "#include \"";
  const std::string& text = texts[number];
  std::size_t length = text.size();
  for (auto at = text.find(marker); at != std::string::npos; at = text.find(marker, at + 1)) {
    const std::size_t begin = at + marker.size();
    const std::string name = text.substr(begin, text.find('"', begin) - begin);
    if (name.find('/') != std::string::npos) return LONGEST + 1;
    for (unsigned long other = 0; other < texts.size(); ++other) {
      if (name != std::to_string(other)) continue;
      if (other <= number) return LONGEST + 1;
      length += lengths[other];
    }
  }
  return length;
}

bool areFit(const std::vector<std::string>& texts) {
  std::vector<std::size_t> lengths(texts.size());
  for (unsigned long number = texts.size(); number-- > 0;) {
    lengths[number] = findLength(texts, number, lengths);
    if (lengths[number] > LONGEST) return false;
  }
  return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  const std::vector<std::string> texts = takeFiles(input);
  if (!areFit(texts)) return 0;
  TestSupport::Files files;
  for (unsigned long number = 0; number < texts.size(); ++number) {
    files[std::to_string(number)] = texts[number];
    folder.write(std::to_string(number), texts[number]);
  }
  for (unsigned long number = texts.size(); number < MOST_FILES; ++number)
    std::filesystem::remove(folder.getPath(std::to_string(number)));
  Quarry::ParserFile file;
  file.setSearchPaths({folder.getPath()});
  std::string text;
  std::string expected;
  std::set<std::string> included;
  const double version = file.preprocessFile(text, "0", included);
  const double expectedVersion = TestSupport::PlainPreprocessor(files).process("0", expected);
  require(version == expectedVersion || (std::isnan(version) && std::isnan(expectedVersion)));
  require(text == expected);
  return 0;
}
