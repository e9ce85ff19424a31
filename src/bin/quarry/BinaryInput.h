/// Reading documents in the binary form.
#pragma once

#include <Quarry/ParserFile.h>

#include "InputOptions.h"

#include <string>

namespace Tool {

/// Reads a document in the binary form. Warns where a part of it was not understood; throws a
/// Failure when it cannot be read at all.
/// @param name of the file from which the bytes come, for messages
void readBinary(Quarry::ParserFile& file, const std::string& bytes, const InputOptions& options,
                const std::string& name);

}  // namespace Tool
