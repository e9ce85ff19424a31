// Any bytes are read as a compressed document, and any lines come back from one as the rules say.

#include "CompressedFile.h"
#include "Folder.h"
#include "Fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Fuzz::Folder folder;
  Fuzz::Input input(data, size);
  const bool isCompressed = input.takeChoice() % 2 == 0;
  const std::string& bytes = input.getBytes();
  const std::string path = folder.getPath("document");
  if (isCompressed) {
    folder.write("document", bytes);
    Fuzz::readFile(path);
  } else {
    Fuzz::compress(path, bytes);
    Fuzz::require(Fuzz::readFile(path) == Fuzz::readByRules(bytes));
  }
  return 0;
}
