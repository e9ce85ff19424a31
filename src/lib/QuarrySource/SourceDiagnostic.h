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
  FILE_NOT_FOUND,
  FILE_NOT_OPENED,
  LIMIT_EXCEEDED,
  INCLUDE_OUTSIDE,
  INCLUDE_CYCLE,
  // What the parser warns of.
  TEMPLATE_INSIDE_TEMPLATE,
  HAS_NO_VALUE,
  WRONGLY_PLACED,
  VALUE_WITHOUT_ITEM,
  GROUP_WITHOUT_ITEM,
  ARGUMENTS_WITHOUT_ITEM,
  ARGUMENTS_MIXED_WITH_VALUES,
  ARGUMENTS_INSIDE_ARGUMENTS,
  ARGUMENTS_ON_KEYWORD,
  ARGUMENTS_CLOSED_WITHOUT_ITEM,
  ARGUMENTS_CLOSED_WITHOUT_CALL,
  UNKNOWN_WORD,
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
  SourceRule rule = SourceRule::UNKNOWN_WORD;

  /// Whether the library itself warns of it, in the same order and words.
  bool isWarning = true;

  /// The opening of the file in which it is, an index for SourceDocument::getOpening(), and the
  /// byte at which what it is about begins; NO_OPENING where there is no file.
  unsigned long opening = 0;
  unsigned long offset = 0;
  unsigned long length = 0;  ///< of what it is about, in bytes; within that opening

  /// The place as the library's own warning shows it, in the preprocessed text; 0 for none.
  unsigned long line = 0;
  unsigned long column = 0;

  /// The word it is about, in the preprocessed text; of length 0 for none.
  unsigned long wordBegin = 0;
  unsigned long wordLength = 0;

  /// Which text it has where that is not made from the word.
  unsigned long message = 0;

  static constexpr unsigned long NO_OPENING = static_cast<unsigned long>(-1);
};

}  // namespace Quarry
