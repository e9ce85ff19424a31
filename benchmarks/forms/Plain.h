/// A document in the shape that most other formats know: objects, arrays and scalars.
#pragma once

#include "../Workload.h"

#include <string>
#include <vector>

namespace QuarryBenchmarks {

/// A value with all that is below it.
///
/// A group is an object. The items of one name in a group become one member: a single item with one
/// value that value, with several an array, with none EMPTY; several items an array of those. A
/// call is a member "name()" with the array of its arguments. A block is the string "b64:..." in
/// base64.
struct Plain {
  enum Kind { EMPTY, BOOL, NUMBER, STRING, BLOCK, ARRAY, OBJECT };

  Kind kind = EMPTY;
  std::string text = "";                ///< "true" or "false"; a number as JSON spells it; bytes
  std::vector<std::string> names = {};  ///< of an object's members
  std::vector<Plain> children = {};     ///< an object's members, an array's elements
};

/// Makes the plain form of a document. Its groups must not be nested so deeply that recursion over
/// them exhausts the stack.
Plain makePlain(const Workload& workload);

/// Returns the string that stands for a block where a format has none: "b64:" and base64.
std::string makeBlockText(const Plain& block);

/// Tells whether a value is an object or holds one.
bool holdsObject(const Plain& value);

}  // namespace QuarryBenchmarks
