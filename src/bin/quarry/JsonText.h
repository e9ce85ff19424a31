/// The words of JSON.
#pragma once

#include <string>
#include <string_view>

namespace Tool {

bool isUtf8(std::string_view bytes);

/// Appends a string of UTF-8 with its quotes. No control byte is left in it.
void appendJsonString(std::string& out, std::string_view text);

/// Appends bytes: as a string where they are UTF-8, otherwise as {"base64":"..."}.
void appendJsonBytes(std::string& out, std::string_view bytes);

/// Appends bytes as {"base64":"..."}.
void appendJsonBlock(std::string& out, std::string_view bytes);

std::string encodeBase64(std::string_view bytes);

/// Appends the bytes that digits of base64 stand for.
/// @return false for a text that encodeBase64() does not make
bool decodeBase64(std::string_view digits, std::string& bytes);

}  // namespace Tool
