/// Whole files as they stand.
#pragma once

#include "Output.h"

#include <string>
#include <string_view>

namespace Tool {

/// Returns the bytes of a file. Throws a Failure when they cannot be read, or are more than `most`.
std::string readFile(const std::string& name, unsigned long most);

/// Returns everything that is on standard input, which messages call `shownName`; in the same way.
std::string readStandardInput(const std::string& shownName, unsigned long most);

/// Tells whether bytes begin as a file that gzip made.
bool isCompressed(std::string_view bytes);

/// Writes bytes that are no text to a file, or to standard output for `-`. A file is replaced as a
/// whole; a device or a pipe takes the bytes as they come. Throws a Failure when that cannot be
/// done, or standard output is a terminal.
void writeData(const std::string& target, std::string_view bytes, Output& output);

/// Writes a text in the same way; a terminal gets it escaped.
void writeText(const std::string& target, std::string_view text, Output& output);

}  // namespace Tool
