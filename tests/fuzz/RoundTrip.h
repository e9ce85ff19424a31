/// Writes a tree and reads it back: it has to be the same tree, which writes the same binary data.
#pragma once

#include <Quarry/ParserFile.h>
#include <Quarry/ParserGroup.h>

#include <string>
#include <vector>

#include "Folder.h"
#include "Fuzz.h"
#include "Trees.h"

namespace Fuzz {

/// The data are read to their end.
inline void readBackBinary(const Quarry::ParserGroup& root) {
  const std::vector<char> bytes = root.getBinary(false);
  Quarry::ParserGroup again("root");
  unsigned long position = 0;
  require(again.setBinary(bytes, position));
  require(position == bytes.size());
  require(again.getBinary(false) == bytes);
}

/// Returns the tree that was read.
inline Quarry::ParserGroup readBackText(const Quarry::ParserGroup& root, bool multiline) {
  Quarry::ParserGroup again("root");
  again.setText(writeText(root, multiline), 1.1);
  require(again.getBinary(false) == root.getBinary(false));
  return again;
}

/// The text stays the same, too.
inline void readBackFile(Quarry::ParserFile& file) {
  static const Folder folder;
  const std::string path = folder.getPath("document");
  const std::string text = writeText(file.getRoot(), true);
  require(file.write(path));
  Quarry::ParserFile again;
  require(again.read(path));
  require(writeText(again.getRoot(), true) == text);
  require(again.getBinary() == file.getBinary());
}

}  // namespace Fuzz
