/// The arguments and options that several commands share.
#pragma once

#include "Command.h"
#include "Output.h"

#include <string>
#include <vector>

namespace Tool {

/// FILE, the document.
void addFile(Command& command, std::string& file);

/// FILE..., the documents.
void addFiles(Command& command, std::vector<std::string>& files);

/// -I, --include.
void addSearchPaths(Command& command, std::vector<std::string>& searchPaths);

/// -o, --output.
void addTarget(Command& command, std::string& target);

/// --color.
void addColor(Command& command, ColorChoice& color);

/// --depth.
void addDepth(Command& command, const std::string& description, unsigned long& depth);

/// -q, --quiet.
void addQuiet(Command& command, bool& quiet);

/// --no-limits.
void addUnlimited(Command& command, bool& isUnlimited);

}  // namespace Tool
