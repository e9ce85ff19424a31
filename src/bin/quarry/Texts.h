/// What the tool says of its own, apart from the descriptions of its options in main.cpp.
#pragma once

#include <string>

namespace Tool::Texts {

inline constexpr char WARNING[] = "quarry: warning: ";
inline constexpr char ERROR[] = "quarry: error: ";

/// Stands in messages where the library names the file that standard input was copied to.
inline constexpr char STANDARD_INPUT[] = "standard input";

inline std::string badCommandLine(const std::string& reason) {
  return reason + "; quarry --help tells more.";
}

inline std::string cannotRead(const std::string& name) { return "Cannot read '" + name + "'."; }

inline std::string cannotRead(const std::string& name, const std::string& reason) {
  return "Cannot read '" + name + "': " + reason + ".";
}

inline std::string badCompression(const std::string& name) {
  return cannotRead(name, "a line of the compressed file has less than two bytes");
}

inline std::string cannotWrite(const std::string& name) { return "Cannot write '" + name + "'."; }

inline std::string cannotWrite(const std::string& name, const std::string& reason) {
  return "Cannot write '" + name + "': " + reason + ".";
}

inline std::string cannotSave(const std::string& name, const std::string& reason) {
  return "Cannot save '" + name + "': " + reason + ".";
}

inline std::string cannotWriteOutput(const std::string& reason) {
  return "Cannot write to standard output: " + reason + ".";
}

inline std::string cannotBuffer(const std::string& reason) {
  return "Cannot make a file in memory: " + reason + ".";
}

// --- The binary form -----------------------------------------------------------------------------

inline std::string noBinaryOnTerminal() {
  return "Binary data is not written to a terminal; name a file with -o.";
}

inline std::string noBinaryDocument(const std::string& name) {
  return cannotRead(name, "it is no whole binary document");
}

/// The library goes on behind a broken place within a group, for the most part without a message.
inline std::string brokenWithin(unsigned long given, unsigned long understood) {
  return "The data is broken: it has " + std::to_string(given) +
         " bytes, what could be read of it takes " + std::to_string(understood) + ".";
}

inline std::string textHoldsInclude() {
  return "The text holds '#include \"', which is obeyed wherever it is read.";
}

inline std::string textDiffers() { return "The text does not read back as the same document."; }

// --- Converting ----------------------------------------------------------------------------------

inline std::string cannotConvert(const std::string& name, const std::string& reason) {
  return "Cannot convert '" + name + "': " + reason + ".";
}

inline std::string versionsLeftOut() {
  return "Items '#SerialVersion' are left out: the text declares its own version.";
}

inline std::string dataDiffers() {
  return "The data does not read back as the same document: a name or string has a zero byte.";
}

inline std::string tooLarge(const std::string& name, unsigned long limit) {
  return cannotRead(name, "it has more than " + std::to_string(limit) +
                              " bytes; --no-limits reads it nevertheless");
}

// --- Compressed documents ------------------------------------------------------------------------

inline std::string alreadyPacked(const std::string& name) {
  return "'" + name + "' is compressed already.";
}

inline std::string notPacked(const std::string& name) {
  return cannotRead(name, "it is not compressed by gzip");
}

inline std::string damaged(const std::string& name) {
  return cannotRead(name, "the compressed data is damaged");
}

inline std::string zeroByte(const std::string& name, unsigned long line) {
  return "Cannot pack '" + name + "': line " + std::to_string(line) +
         " has a zero byte, where a document ends.";
}

inline std::string noLineMarkers(const std::string& name) {
  return "'" + name + "' was compressed without line markers; it is read with bytes missing.";
}

// --- Paths ---------------------------------------------------------------------------------------

inline std::string noSuchItem(const std::string& problem) {
  return "No such item: " + problem + ".";
}

inline std::string isGroup(const std::string& path) {
  return "'" + path + "' is a group; quarry list shows its items.";
}

inline std::string isValue(const std::string& path) {
  return "'" + path + "' is a value; name its item.";
}

inline std::string standardInputTwice() { return "Only one document can be standard input."; }

// --- Finding -------------------------------------------------------------------------------------

inline std::string badPattern(const std::string& pattern) {
  return "'" + pattern + "' is no regular expression.";
}

// --- Checking ------------------------------------------------------------------------------------

inline std::string byteOrderMark() {
  return "The file begins with a byte order mark (EF BB BF), which is taken for part of a word.";
}

inline std::string compressedWithoutMarkers() {
  return "The compressed file lacks a marker ('$') before its line feeds; reading takes the last "
         "two bytes of each line.";
}

inline std::string rewriteChanges(const std::string& path, const std::string& reason) {
  return "A rewrite changes '" + path + "'. " + reason;
}

inline std::string reading(const std::string& name) { return "Reading " + name; }

inline std::string formatting(const std::string& name) { return "Formatting " + name; }

inline std::string checking(const std::string& name, unsigned long number, unsigned long count) {
  return "Checking " + std::to_string(number) + " of " + std::to_string(count) + ": " + name;
}

/// "3 warnings", "1 warning"
inline std::string counted(unsigned long count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

inline std::string summary(unsigned long errors, unsigned long warnings, unsigned long files) {
  std::string found;
  if (errors > 0) found = counted(errors, "error");
  if (errors > 0 && warnings > 0) found += " and ";
  if (warnings > 0) found += counted(warnings, "warning");
  return found + " in " + counted(files, "file");
}

// --- Explaining ----------------------------------------------------------------------------------

inline std::string badLocation(const std::string& text) {
  return "'" + text + "' is no place; write FILE:LINE:COLUMN, counted from 1.";
}

inline std::string notIncluded(const std::string& path, const std::string& document) {
  return "'" + path + "' is no file of '" + document + "'.";
}

inline std::string tooFewLines(const std::string& path, unsigned long lines) {
  return "'" + path + "' has no such line; it has " + counted(lines, "line") + ".";
}

inline std::string tooFewColumns(unsigned long line, unsigned long columns) {
  return "Line " + std::to_string(line) + " has no such column; it has " +
         counted(columns, "column") + ".";
}

inline std::string moreOpenings(unsigned long count) {
  return "\nThe file is included " + counted(count, "more time") + ".\n";
}

// --- Formatting ----------------------------------------------------------------------------------

inline std::string cannotFormat(const std::string& name, const std::string& reason) {
  return "Cannot format '" + name + "': " + reason + ".";
}

inline std::string badEditorConfig(const std::string& name, int line) {
  return "Cannot read '" + name + "': line " + std::to_string(line) +
         " is neither a section nor a "
         "property.";
}

inline std::string cannotFormatCompressed(const std::string& name) {
  return cannotFormat(name, "it is compressed");
}

inline std::string cannotFormatZeroByte(const std::string& name) {
  return cannotFormat(name, "it has a zero byte, and what stands behind that is not read");
}

inline std::string cannotFormatAlike(const std::string& name) {
  return cannotFormat(name, "it would not read as before");
}

// --- Editing -------------------------------------------------------------------------------------

inline std::string editRefused(const std::string& problem) {
  return "Nothing was changed: " + problem + ".";
}

inline std::string changeIsElsewhere(const std::string& path) {
  return "The change is in '" + path + "', which is included; without -o it is made there.";
}

inline std::string oneValueIsNeeded() { return "A path that ends in #n takes one VALUE."; }

inline std::string groupTakesNoValue() { return "A group takes no VALUE."; }

}  // namespace Tool::Texts
