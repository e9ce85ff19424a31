/// What can be wrong with a document.
#pragma once

#include <cstdint>

namespace Quarry {

/// What the preprocessor can find wrong.
enum class FileDiagnostic : std::int32_t {
  NOT_FOUND,
  NOT_OPENED,
  EXCEEDS_LIMIT,
  OUTSIDE_SEARCH_PATHS,
  INCLUDES_ITSELF
};

/// What the text parser can find wrong.
enum class Diagnostic : std::int32_t {
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
  UNKNOWN_WORD
};

}  // namespace Quarry
