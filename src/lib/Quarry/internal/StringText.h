/// How a string is written between quotes and how its escapes are read.
#pragma once

#include <string>
#include <string_view>

namespace Quarry {

/// Appends `text` in double quotes, with a backslash escape for CR, tab, LF, both quotes and the
/// backslash. Every other byte stands as it is.
void appendQuoted(std::string& out, std::string_view text);

/// Appends `text` with its backslash escapes resolved: `\n`, `\r` and `\t` to the control byte,
/// any other escaped byte to itself. A backslash at the very end is dropped.
void appendUnescaped(std::string& out, std::string_view text);

/// Makes a string of `text`, with bytes up to `readable` that may be read, though not used. Short
/// texts are copied by the room that a string has within itself, and cut to their length then:
/// copying by the length would take a call and its branches.
inline std::string makeString(std::string_view text, const char* readable) {
  constexpr std::size_t ROOM = 15;
  const auto left = static_cast<std::size_t>(readable - text.data());
  if (text.size() > ROOM || left < ROOM) return std::string(text);
  std::string string(text.data(), ROOM);
  string.resize(text.size());
  return string;
}

}  // namespace Quarry
