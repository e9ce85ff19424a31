/// How a string is written between quotes and how its escapes are read.
#pragma once

#include <string>
#include <string_view>

namespace Quarry {

class OutputBuffer;

/// Appends `text` in double quotes, with a backslash escape for CR, tab, LF, both quotes and the
/// backslash. Every other byte stands as it is.
void appendQuoted(OutputBuffer& out, std::string_view text);

/// Appends `text` with its backslash escapes resolved: `\n`, `\r` and `\t` to the control byte,
/// any other escaped byte to itself. A backslash at the very end is dropped.
void appendUnescaped(std::string& out, std::string_view text);

}  // namespace Quarry
