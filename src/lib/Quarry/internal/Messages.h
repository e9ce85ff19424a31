/// Every sentence that the library says, in one place.
#pragma once

#include <Plinth/Label.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include "Diagnostic.h"

#include <cstdint>
#include <string>

namespace Quarry::Messages {

// --- Text parser ---------------------------------------------------------------------------------

/// What is wrong with `word`, without the place.
inline std::string describe(Diagnostic diagnostic, const ParserWord& word) {
  switch (diagnostic) {  // LCOV_EXCL_BR_LINE: each diagnostic has its case
    case Diagnostic::TEMPLATE_INSIDE_TEMPLATE:
      return "item '" + word.getString() + "' has template inside template declaration.\n";
    case Diagnostic::HAS_NO_VALUE: return "item '" + word.getString() + "' has no value.\n";
    case Diagnostic::WRONGLY_PLACED: return "item '" + word.getString() + "' wrongly placed.\n";
    case Diagnostic::VALUE_WITHOUT_ITEM: return "Value without item: " + word.getString() + "\n";
    case Diagnostic::GROUP_WITHOUT_ITEM: return "Group without item\n";
    case Diagnostic::ARGUMENTS_WITHOUT_ITEM: return "Argument list without item\n";
    case Diagnostic::ARGUMENTS_MIXED_WITH_VALUES:
      return "Cannot mix argument list with item values\n";
    case Diagnostic::ARGUMENTS_INSIDE_ARGUMENTS: return "Argument list inside an argument list\n";
    case Diagnostic::ARGUMENTS_ON_KEYWORD: return "Function call on keyword\n";
    case Diagnostic::ARGUMENTS_CLOSED_WITHOUT_ITEM:
      return "Closing an argument list without item\n";
    case Diagnostic::ARGUMENTS_CLOSED_WITHOUT_CALL:
      return "Closing an argument list in a non function call\n";
    case Diagnostic::UNKNOWN_WORD: return "Unknown word type: '" + word.getString() + "'\n";
  }
  return std::string();  // LCOV_EXCL_LINE: each diagnostic has its case
}

/// What every warning about a place in a text begins with.
inline std::string atPlace(const unsigned long& line, const unsigned long& column) {
  return "ParserGroup::setText: (" + Plinth::getLabel(line) + ":" + Plinth::getLabel(column) + ") ";
}

/// The whole warning, with the place of `word`.
inline std::string parserWarning(Diagnostic diagnostic, const ParserWord& word) {
  return atPlace(word.getLine(), word.getColumn()) + describe(diagnostic, word);
}

// --- Values and groups ---------------------------------------------------------------------------

/// @param operation the conversion, such as "getAsInt"
inline std::string typeMismatch(const std::string& operation, const ParserValue::Type& type) {
  return "ParserValue::" + operation + ": type mismatch, value type is '" +
         ParserValue::getType_name(type) + "' \n";
}

inline std::string invalidItemName(const std::string& name) {
  return "ParserGroup::addItem: '" + name + "' is not a valid item name\n";
}

// --- Binary form ---------------------------------------------------------------------------------

inline std::string stringNotRead() { return "ParserValue::binTostring: Failed to parse string\n"; }

/// It says "string" of a block, and has since the first version.
inline std::string blockNotRead() {
  return "ParserValue::binToBinaryData: Failed to parse string\n";
}

inline std::string groupLargerThanData() {
  return "ParserGroup::setBinary: ParserGroup size larger than the given data\n";
}

inline std::string itemNameNotRead() {
  return "ParserGroup::setBinary: Failed to read item name\n";
}

/// Printed, not warned of, and without a line feed.
inline std::string chunkLargerThanData(const std::string& item, std::uint64_t chunk,
                                       const unsigned long& data) {
  return "ParserItem::setBinary:  '" + item + "', chunk size (" + std::to_string(chunk) +
         ") is larger than the given buffer (" + Plinth::getLabel(data) + ")";
}

inline std::string containerTooShort() { return "ParserFile.setBinary: data too short\n"; }

inline std::string unknownContainerTag() { return "ParserFile.setBinary: Unknown data tag\n"; }

inline std::string unknownContainer() { return "ParserFile.setBinary: Unknown format\n"; }

// --- Files ---------------------------------------------------------------------------------------

inline std::string fileNotFound(const std::string& name) {
  return "File '" + name + "' not found.\n";
}

inline std::string fileNotOpened(const std::string& name) {
  return "Failed to open file '" + name + "'.\n";
}

/// @param limit the name of the limit, which is a member of ParserLimits
inline std::string limitExceeded(const std::string& file, const std::string& limit,
                                 const unsigned long& value) {
  return "File '" + file + "' exceeds the limit " + limit + " (" + Plinth::getLabel(value) + ").\n";
}

inline std::string includeOutside(const std::string& name) {
  return "File '" + name + "' lies outside of the search paths (includesBelowSearchPaths).\n";
}

/// @param chain the names of the files, each included by the one before it
inline std::string includeCycle(const std::string& name, const std::string& chain) {
  return "File '" + name + "' includes itself: " + chain + ".\n";
}

inline std::string fileNotSaved(const std::string& name) {
  return "ParserFile.write: Can't save project '" + name + "'.\n";
}

/// @param problem what went wrong, and why
inline std::string fileNotReplaced(const std::string& name, const std::string& problem) {
  return "ParserFile.save: Can't save '" + name + "': " + problem + "\n";
}

inline std::string fileWritten(const std::string& name, const unsigned long& bytes) {
  return "Written " + Plinth::getLabel(bytes) + "bytes in '" + name + "'.";
}

}  // namespace Quarry::Messages
