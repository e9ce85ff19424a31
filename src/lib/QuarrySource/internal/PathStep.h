/// The steps of a path: the names between its slashes, with their numbers.
#pragma once

#include <string>
#include <string_view>

namespace Quarry {

/// A number from 1 on that stands at the end of a text, with what leads to it.
struct NumberedText {
  std::string_view text;     ///< before the number; all of it where there is none
  unsigned long number = 0;  ///< 0 for none
};

/// Takes the number off `layer[2]`, which counts items of a name.
NumberedText splitOrdinal(std::string_view step);

/// Takes the number off `size#2`, which counts values of an item.
NumberedText splitValueNumber(std::string_view step);

/// Returns the shortest step that leads to the n-th item of a name, from 1.
std::string makeStep(std::string_view name, unsigned long ordinal);

}  // namespace Quarry
