#include <QuarrySource/RewriteGuard.h>

#include <Quarry/ParserFile.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>

#include "internal/RewritePaths.h"
#include "internal/RewriteRules.h"
#include "internal/RewriteText.h"
#include "internal/RewrittenText.h"
#include "internal/TreeComparison.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Quarry {

namespace {

constexpr char VERSION_KEYWORD[] = "#SerialVersion";

struct HazardText {
  RewriteHazard::Kind kind;
  const char* name;
  const char* reason;
};

constexpr std::array HAZARDS = {
    HazardText{RewriteHazard::ODD_NAME, "odd-name",
               "The name is neither an identifier nor a keyword, and is not read as a name."},
    HazardText{RewriteHazard::WRONG_KIND, "wrong-kind",
               "A name with '#' is read as a keyword without arguments, any other as a plain item "
               "or a call; the item is of another kind."},
    HazardText{RewriteHazard::TEMPLATE, "template",
               "Templates are written, but not read; the name in front of it is lost as well."},
    HazardText{RewriteHazard::ARRAY, "array",
               "The count of an array is written in brackets, as one raw byte, which are read as a "
               "part of the name."},
    HazardText{RewriteHazard::FOLDED_GROUP, "folded-group",
               "The group is folded; what closes the fold is read as three closing braces, and "
               "other items follow."},
    HazardText{RewriteHazard::VERSION_KEYWORD, "version-keyword",
               "The keyword is taken for the version line of the file and dropped; a value that it "
               "has is written as one raw byte, which reads as version 0."},
    HazardText{RewriteHazard::GROUP_NAME, "group-name",
               "The group has a name besides that of its item, which is written before its brace "
               "and not read."},
    HazardText{RewriteHazard::VALUE_BEHIND_GROUP, "value-behind-group",
               "The item has a value behind the group, where none is read."},
    HazardText{RewriteHazard::VERSION_MARKER, "version-marker",
               "'#SerialVersion ' makes the rest of its line a version line wherever it stands, "
               "also within a string."},
    HazardText{RewriteHazard::INCLUDE_MARKER, "include-marker",
               "'#include \"' is an include wherever it stands, also where the quote is the one "
               "that ends a string."},
    HazardText{RewriteHazard::OPEN_QUOTE, "open-quote",
               "The string ends in a backslash, behind which the closing quote counts as escaped; "
               "other words follow on its line."},
    HazardText{RewriteHazard::ZERO_BYTE, "zero-byte",
               "The value holds a zero byte, which ends the file when it is read."},
    HazardText{RewriteHazard::RAW_BYTE, "raw-byte",
               "The number was set by code and has no text; it is written as one raw byte."},
    HazardText{RewriteHazard::CHARACTER, "character",
               "The character is written as a number and read back as an integer."},
    HazardText{RewriteHazard::NOT_FINITE, "not-finite",
               "The number is not finite; its text is read as a name."},
    HazardText{RewriteHazard::EMPTY_TAG, "empty-tag",
               "The value is the empty tag, which is read as no value."},
    HazardText{RewriteHazard::NUMBER_QUOTE, "number-quote",
               "The text of the value holds a double quote that is not closed; what follows is "
               "taken for a string."},
    HazardText{RewriteHazard::NUMBER_COMMENT, "number-comment",
               "The text of the value holds '//', which begins a comment."},
    HazardText{RewriteHazard::UNREADABLE_TEXT, "unreadable-text",
               "The text of the value is not one word that is read as the same value."},
    HazardText{RewriteHazard::UNEXPLAINED, "unexplained", "It is not read back as it is."},
};

const HazardText& getText(RewriteHazard::Kind kind) {
  return HAZARDS[static_cast<std::size_t>(kind)];
}

/// Fills the list of hazards; paths are made where there is one.
class HazardList {
 public:
  explicit HazardList(const std::vector<RewritePart>& allParts)
      : parts(allParts), paths(allParts) {}

  void add(RewriteHazard::Kind kind, unsigned long part) {
    RewriteHazard& hazard = hazards.emplace_back();
    hazard.kind = kind;
    hazard.path = paths.getPath(part);
    hazard.reason = getHazardReason(kind);
    hazard.item = parts[part].item;
    hazard.value = parts[part].index;
  }

  std::vector<RewriteHazard> hazards;

 private:
  const std::vector<RewritePart>& parts;
  const RewritePaths paths;
};

/// Reads what was written as ParserFile::read() does.
/// @return the first part that is not read back as it is; NONE when all are
unsigned long findDifference(const RewriteText& written) {
  const RewrittenText preprocessed(written.getText());
  TreeComparison comparison(written, preprocessed.getText());
  if (preprocessed.getVersion() > 0.0) {
    ParserWordStream words(preprocessed.getText(), preprocessed.getVersion());
    TextParser(words, comparison).parse();
  }
  if (comparison.finish()) return RewritePart::NONE;
  return std::min<unsigned long>(comparison.getPosition(), written.getParts().size() - 1);
}

}  // namespace

const char* getHazardName(RewriteHazard::Kind kind) { return getText(kind).name; }

const char* getHazardReason(RewriteHazard::Kind kind) { return getText(kind).reason; }

const std::vector<RewriteHazard::Kind>& getHazardKinds() {
  static const std::vector<RewriteHazard::Kind>* const kinds = [] {
    auto* all = new std::vector<RewriteHazard::Kind>;
    for (const HazardText& text : HAZARDS)
      all->push_back(text.kind);
    return all;
  }();
  return *kinds;
}

/// Writing changes a root keyword `#SerialVersion`, and leaves its version line out then. It is
/// written here as it is: the preprocessor takes the keyword for a version line in either form, so
/// that it never survives.
std::vector<RewriteHazard> RewriteGuard::examine(const ParserGroup& root) {
  const RewriteText written(root);
  const unsigned long difference = findDifference(written);
  if (difference == RewritePart::NONE) return {};
  HazardList list(written.getParts());
  RewriteRules rules(written, root.getKeyword(VERSION_KEYWORD));
  rules.apply([&](RewriteHazard::Kind kind, unsigned long part) { list.add(kind, part); });
  if (list.hazards.empty()) list.add(RewriteHazard::UNEXPLAINED, difference);
  return std::move(list.hazards);
}

std::vector<RewriteHazard> RewriteGuard::examine(const ParserFile& file) {
  return examine(file.getRoot());
}

}  // namespace Quarry
