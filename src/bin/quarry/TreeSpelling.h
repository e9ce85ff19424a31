/// Gives trees that came from binary data a text.
#pragma once

#include <Quarry/ParserGroup.h>

namespace Tool {

/// Copies a tree that came from binary data into an empty group so that its numbers are written in
/// digits, and its items are plain ones or keywords by their names. Items "#SerialVersion" are left
/// out. Throws Plinth::Fatal for a name that no text can have.
void spellTree(const Quarry::ParserGroup& source, Quarry::ParserGroup& target);

}  // namespace Tool
