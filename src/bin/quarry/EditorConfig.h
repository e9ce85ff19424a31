/// What .editorconfig files ask of a file.
#pragma once

#include "FormatStyle.h"

#include <map>
#include <string>

namespace Tool {

/// The properties of a file, by their names in lower case.
using EditorProperties = std::map<std::string, std::string>;

/// Reads the .editorconfig files in the folder of a file and in those around it. Throws a Failure
/// when one of them has a line that says nothing.
EditorProperties readEditorProperties(const std::string& path);

/// Returns the style that indent_style, indent_size, tab_width, end_of_line and
/// insert_final_newline ask for. Values that make no sense count as not given; so does
/// `end_of_line = cr`, since comments end with a line feed only.
FormatStyle makeFormatStyle(const EditorProperties& properties);

}  // namespace Tool
