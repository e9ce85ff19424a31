/// What .editorconfig files ask of a file.
#pragma once

#include "FormatStyle.h"

#include <map>
#include <string>
#include <string_view>

namespace Tool {

/// The properties of a file, by their names in lower case. Values are in lower case, too: the
/// properties that are used here know no other.
using EditorProperties = std::map<std::string, std::string>;

/// Adds what one .editorconfig asks of a file to what those in outer folders ask.
/// @param text of the .editorconfig
/// @param path of the file, from the folder of the .editorconfig on
void applyEditorConfig(std::string_view text, const std::string& path,
                       EditorProperties& properties);

/// Tells whether the .editorconfig is the outermost one.
bool isRootEditorConfig(std::string_view text);

/// Reads the .editorconfig files in the folder of a file and in those around it.
EditorProperties readEditorProperties(const std::string& path);

/// Returns the style that indent_style, indent_size, tab_width, end_of_line and
/// insert_final_newline ask for. Values that make no sense count as not given; so does
/// `end_of_line = cr`, since comments end with a line feed only.
FormatStyle makeFormatStyle(const EditorProperties& properties);

}  // namespace Tool
