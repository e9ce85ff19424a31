/// Makes bytes of a document harmless to a terminal.
#pragma once

#include <string>
#include <string_view>

namespace Tool {

/// What becomes of line feeds and tabs.
enum class Layout { KEPT, ESCAPED };

/// Returns `bytes` with everything escaped that a terminal might obey instead of showing: control
/// bytes, the C1 control characters, marks that change the direction of writing, and bytes that are
/// no UTF-8. They become `\n`, `\t`, `\r` or `\xNN`; other characters stay.
/// @param utf8 whether the terminal shows UTF-8; otherwise every byte from 0x80 on is escaped
std::string escapeForTerminal(std::string_view bytes, Layout layout, bool utf8);

/// Tells whether the locale of the environment is one of UTF-8.
bool isUtf8Environment();

}  // namespace Tool
