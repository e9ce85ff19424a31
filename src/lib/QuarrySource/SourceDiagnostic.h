/// @file
/// What is wrong in a document, and where.
#pragma once

#include <QuarrySource/Export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Quarry {

/// What a diagnostic is about. The names that getRuleName() gives are stable.
enum class SourceRule : std::int32_t {
  // What the preprocessor warns of.
  FILE_NOT_FOUND,   ///< no search path has the file: reading fails, as for all of these
  FILE_NOT_OPENED,  ///< the file is there and cannot be read
  LIMIT_EXCEEDED,   ///< one of ParserLimits; what is nested too deeply only is left out
  INCLUDE_OUTSIDE,  ///< an included file lies outside of the search paths, which limits forbid
  INCLUDE_CYCLE,    ///< a file includes itself, and limits are set
  // What the parser warns of.
  TEMPLATE_INSIDE_TEMPLATE,       ///< a template name within a template name
  HAS_NO_VALUE,                   ///< a name where a value is expected
  WRONGLY_PLACED,                 ///< a comma or an equals sign where none belongs
  VALUE_WITHOUT_ITEM,             ///< a value behind no name
  GROUP_WITHOUT_ITEM,             ///< an opening brace behind no name
  ARGUMENTS_WITHOUT_ITEM,         ///< an opening parenthesis behind no name
  ARGUMENTS_MIXED_WITH_VALUES,    ///< an opening parenthesis behind values
  ARGUMENTS_INSIDE_ARGUMENTS,     ///< an opening parenthesis within parentheses
  ARGUMENTS_ON_KEYWORD,           ///< an opening parenthesis behind a keyword
  ARGUMENTS_CLOSED_WITHOUT_ITEM,  ///< a closing parenthesis behind no name
  ARGUMENTS_CLOSED_WITHOUT_CALL,  ///< a closing parenthesis that no opening one belongs to
  UNKNOWN_WORD,                   ///< a word of no kind
  // What the library passes over in silence, or with an exception.
  UNCLOSED_INCLUDE,     ///< `#include "` without a closing quote: reading fails
  UNUSABLE_VERSION,     ///< a file declares version 0, or none that is positive: reading fails
  CLOSES_NO_GROUP,      ///< a closing brace ends the document; what is behind it is not read
  GROUP_NOT_CLOSED,     ///< the document ends within a group
  BAD_COMPRESSED_LINE,  ///< a line of a compressed file has less than two bytes: reading fails
};

/// Returns the name of a rule, such as "has-no-value"; it lives as long as the program.
QUARRYSOURCE_EXPORT const char* getRuleName(SourceRule rule);

/// Returns what a rule finds, in a sentence; it lives as long as the program.
QUARRYSOURCE_EXPORT const char* getRuleDescription(SourceRule rule);

/// Returns all rules, in the order of their numbers.
QUARRYSOURCE_EXPORT const std::vector<SourceRule>& getRules();

/// A finding. The document that made it tells its text, with SourceDocument::describe().
struct SourceDiagnostic {
  /// What it is about.
  SourceRule rule = SourceRule::UNKNOWN_WORD;

  /// Whether the library itself warns of it, in the same order and words.
  bool isWarning = true;

  /// The opening of the file in which it is, an index for SourceDocument::getOpening(); NO_OPENING
  /// where there is no file.
  unsigned long opening = 0;
  unsigned long offset = 0;  ///< in that file, from 0, where what it is about begins
  unsigned long length = 0;  ///< of what it is about, in bytes; within that opening

  /// The line as the library's own warning shows it, in the preprocessed text; 0 for none.
  unsigned long line = 0;
  unsigned long column = 0;  ///< as the warning shows it, see ParserWord::getColumn()

  /// The word it is about, an offset in the preprocessed text.
  unsigned long wordBegin = 0;
  unsigned long wordLength = 0;  ///< in bytes; 0 for no word

  /// Which text it has where that is not made from the word.
  unsigned long message = 0;

  /// Stands for no file.
  static constexpr unsigned long NO_OPENING = static_cast<unsigned long>(-1);
};

}  // namespace Quarry
