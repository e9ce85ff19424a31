#include <Plinth/Console.h>
#include <Quarry/ParserItem.h>

#include "CommandTable.h"
#include "Commands.h"
#include "Failure.h"
#include "SharedOptions.h"
#include "SourceLocation.h"
#include "SourceOptions.h"
#include "Texts.h"
#include "TypeName.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <string_view>

namespace Tool {

using Quarry::ParserItem;
using Quarry::ParserValue;
using Quarry::SourceDiagnostic;
using Quarry::SourceDocument;
using Quarry::SourceItem;
using Quarry::SourcePiece;
using Quarry::SourcePlace;
using Quarry::SourcePosition;
using Quarry::SourceRule;
using Quarry::SourceSpan;
using Quarry::SourceTree;
using Quarry::SourceValue;

namespace {

constexpr std::size_t LABEL_WIDTH = 10;
constexpr unsigned long MOST_OPENINGS = 10;  ///< that are explained of a file
constexpr unsigned long MOST_BYTES = 32;     ///< that are shown of binary data

// --- Names and values ----------------------------------------------------------------------------

const char* getKindName(ParserItem::Type type) {
  switch (type) {
    case ParserItem::ITEM_KEYWORD: return "keyword";
    case ParserItem::ITEM_CALL: return "call";
    default: return "plain item";
  }
}

std::string describeDouble(double number) {
  std::array<char, 32> digits;
  const std::to_chars_result result =
      std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return std::string(digits.data(), result.ptr);
}

std::string describeBytes(const void* data, unsigned long size) {
  constexpr char DIGITS[] = "0123456789abcdef";
  std::string text = Texts::counted(size, "byte");
  if (size > 0) text += ":";
  const auto* const bytes = static_cast<const unsigned char*>(data);
  for (unsigned long i = 0; i < std::min(size, MOST_BYTES); ++i) {
    text += ' ';
    text += DIGITS[bytes[i] >> 4];
    text += DIGITS[bytes[i] & 15];
  }
  return size > MOST_BYTES ? text + " ..." : text;
}

/// Returns what the library makes of a value.
std::string describeValue(const SourceTree& tree, const SourceValue& value) {
  ParserItem item("value", ParserItem::ITEM_PLAIN, 0, 0);
  tree.appendTo(item, value);
  switch (value.type) {
    case ParserValue::TYPE_BOOL: return item.getBool(0) ? "yes" : "no";
    case ParserValue::TYPE_INT: return std::to_string(item.getInt(0));
    case ParserValue::TYPE_DOUBLE: return describeDouble(item.getDouble(0));
    case ParserValue::TYPE_STRING: return item.getString(0);
    case ParserValue::TYPE_BINARYDATA:
      return describeBytes(item.getBinaryData(0), item.getBinaryDataSize(0));
    default: return "no value";
  }
}

/// Returns what brackets of an item, and words that only stand between others, are for.
const char* getPurpose(const SourceItem& item, unsigned long textOffset) {
  if (textOffset == item.groupBegin) return "opens the group";
  if (textOffset == item.groupEnd) return "closes the group";
  if (textOffset == item.argumentsBegin) return "opens the arguments";
  if (textOffset == item.argumentsEnd) return "closes the arguments";
  return nullptr;
}

const char* getPurpose(std::string_view word) {
  if (word == ",") return "comma between values";
  if (word == "=") return "equals sign behind a name";
  return "dropped word";
}

const char* getPurpose(SourceSpan::Kind kind) {
  switch (kind) {
    case SourceSpan::SPAN_COMMENT: return "comment";
    case SourceSpan::SPAN_INCLUDE: return "include";
    case SourceSpan::SPAN_VERSION: return "version line";
    case SourceSpan::SPAN_UNREAD: return "not read";
    default: return "blank";
  }
}

// --- Explaining ----------------------------------------------------------------------------------

/// Writes what stands at a byte of an opened file, one fact a line.
class Explanation {
 public:
  Explanation(const SourceTree& whole, Output& target)
      : tree(whole), document(whole.getDocument()), output(target) {}

  void explain(const SourcePosition& position) {
    const SourceSpan span = findSpan(position);
    const SourcePosition begin = {position.opening, span.offset};
    const bool isWord = span.kind == SourceSpan::SPAN_WORD;
    const unsigned long textOffset = findTextOffset(document, isWord ? position : begin);
    if (!isWord || !explainWord(textOffset, span)) {
      if (!isWord) write("what", span.length > 0 ? getPurpose(span.kind) : "end of the file");
      writeAround(textOffset);
      writePlace({span.kind == SourceSpan::SPAN_BLANK ? position : begin, 1});
    }
    writeFindings(position, textOffset);
  }

 private:
  /// At the end of the file it is empty.
  SourceSpan findSpan(const SourcePosition& position) const {
    const std::vector<SourceSpan> spans = document.getSpans(position.opening);
    const auto behind = std::upper_bound(
        spans.begin(), spans.end(), position.offset,
        [](unsigned long offset, const SourceSpan& span) { return offset < span.offset; });
    const bool isWithin =
        behind != spans.begin() && position.offset < (behind - 1)->offset + (behind - 1)->length;
    return isWithin ? *(behind - 1) : SourceSpan{SourceSpan::SPAN_BLANK, position.offset, 0};
  }

  /// @return whether the word belongs to an item, and all is said
  bool explainWord(unsigned long textOffset, const SourceSpan& span) {
    const unsigned long index = tree.getItemAt(textOffset);
    if (index != SourceTree::NOWHERE) {
      const SourceItem& item = tree.getItem(index);
      const unsigned long value = tree.getValueAt(index, textOffset);
      const char* const purpose = getPurpose(item, textOffset);
      if (value != SourceTree::NOWHERE) return explainValue(index, value);
      if (purpose != nullptr) return explainBracket(index, textOffset, purpose);
      if (textOffset < item.nameBegin + item.nameLength) return explainName(index);
    }
    write("what", getPurpose(std::string_view(document.getText()).substr(textOffset, span.length)));
    return false;
  }

  bool explainValue(unsigned long index, unsigned long number) {
    const SourceItem& item = tree.getItem(index);
    const SourceValue& value = tree.getValue(item, number);
    write("path", tree.getPath(index) + "#" + std::to_string(number + 1));
    write("what", "value " + std::to_string(number + 1) + " of " + std::to_string(item.valueCount) +
                      ", of a " + getKindName(item.type));
    write("type", getTypeName(value.type));
    write("value", describeValue(tree, value));
    write("spelled", tree.getSpelling(value));
    writePlaces(value.begin, value.length);
    return true;
  }

  bool explainBracket(unsigned long index, unsigned long textOffset, const char* purpose) {
    write("path", tree.getPath(index));
    write("what", std::string(purpose) + " of a " + getKindName(tree.getItem(index).type));
    writePlaces(textOffset, 1);
    return true;
  }

  bool explainName(unsigned long index) {
    const SourceItem& item = tree.getItem(index);
    write("path", tree.getPath(index));
    write("what", std::string("name of a ") + getKindName(item.type) + " with " +
                      Texts::counted(item.valueCount, "value") +
                      (item.hasGroup() ? " and a group" : ""));
    writePlaces(item.nameBegin, item.nameLength);
    return true;
  }

  void writeAround(unsigned long textOffset) {
    const unsigned long around = findItemAround(tree, textOffset);
    write("within", around == SourceTree::NOWHERE ? "no item" : tree.getPath(around));
  }

  /// An include may stand within a word.
  void writePlaces(unsigned long begin, unsigned long length) {
    for (const SourcePiece& piece : document.getPieces(begin, length))
      writePlace(piece);
  }

  void writePlace(const SourcePiece& piece) {
    const SourcePlace place = document.getPlace(piece.position);
    write("place", format(place));
    for (const SourcePlace& includer : place.includedFrom)
      write("", "included from " + format(includer));
  }

  /// What is behind a brace that ends the document is no part of the tree.
  void writeFindings(const SourcePosition& position, unsigned long textOffset) {
    for (const SourceDiagnostic& diagnostic : document.getDiagnostics()) {
      const bool isHere = diagnostic.opening == position.opening &&
                          diagnostic.offset <= position.offset &&
                          position.offset < diagnostic.offset + diagnostic.length;
      const bool endsBefore =
          diagnostic.rule == SourceRule::CLOSES_NO_GROUP && diagnostic.wordBegin < textOffset;
      if (isHere || endsBefore) write("warning", formatDiagnostic(document, diagnostic));
    }
  }

  static std::string format(const SourcePlace& place) {
    return place.path + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
  }

  void write(std::string_view label, std::string_view text) {
    std::string padded(label);
    if (!label.empty()) padded += ':';
    padded.resize(LABEL_WIDTH, ' ');
    output.writeWord(Style::TYPE, padded);
    output.writeWord(Style::NAME, text);
    output.write("\n");
  }

  const SourceTree& tree;
  const SourceDocument& document;
  Output& output;
};

// --- The command ---------------------------------------------------------------------------------

struct ExplainOptions {
  std::string location;
  std::string document;  ///< empty where the file is the document
  SourceOptions source;
  ColorChoice color = ColorChoice::AUTO;
};

/// Reads the document without telling of its warnings: those of the place are shown with it.
void read(SourceDocument& document, const SourceOptions& options, const std::string& file) {
  if (options.read(document, file)) return;
  warnOf(document);
  throw Failure(Texts::cannotRead(options.getShownName(file)));
}

ExitStatus run(const ExplainOptions& options) {
  if (options.location.empty()) throw Failure(Texts::badCommandLine("A place is missing"));
  const SourceLocation location = parseLocation(options.location);
  const bool isTop = options.document.empty();
  SourceDocument document;
  read(document, options.source, isTop ? location.file : options.document);
  const std::string path = isTop ? document.getFileOf(0).getPath() : location.file;
  const std::vector<unsigned long> openings = findOpenings(document, path);
  if (openings.empty()) throw Failure(Texts::notIncluded(path, options.document));

  const unsigned long offset = findOffset(document.getFileOf(openings.front()), location.place);
  const SourceTree tree(document);
  Output output(options.color);
  Explanation explanation(tree, output);
  const unsigned long count = std::min<unsigned long>(openings.size(), MOST_OPENINGS);
  for (unsigned long i = 0; i < count; ++i) {
    if (i > 0) output.write("\n");
    explanation.explain({openings[i], offset});
  }
  if (count < openings.size()) output.write(Texts::moreOpenings(openings.size() - count));
  output.flush();
  return ExitStatus::FINE;
}

}  // namespace

void addExplainCommand(CommandTable& commands) {
  const auto options = std::make_shared<ExplainOptions>();
  Command command = commands.add(
      "explain",
      {"Look", "Tells what stands at a place of a file and where it comes from",
       "  quarry explain project.cfg:12:7\n"
       "  quarry explain layers.cfg:3:1 project.cfg",
       "Lines and columns count from 1, columns in bytes, as quarry check shows them.\n"
       "A file that is included several times is explained for each include, up to 10.\n"
       "\n"
       "Exit status: 0 fine, 2 the document cannot be read or has no such place."},
      [options](MessageLog&) { return run(*options); });
  command.addArgument("FILE:LINE:COLUMN", options->location,
                      "The place; - for FILE is standard input");
  // A place on standard input, -:LINE:COLUMN, has the form of an option.
  const auto takeStreamPlace = [options](const std::string& place) {
    options->location = "-:" + place;
  };
  command.addOption("-:", "LINE:COLUMN", takeStreamPlace, "The place on standard input").hide();
  command.addArgument("DOCUMENT", options->document,
                      "The document that includes FILE; FILE itself unless it is given");
  options->source.addTo(command);
  addColor(command, options->color);
}

}  // namespace Tool
