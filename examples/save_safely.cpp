// Saves a document so that the old one is never lost: save_safely OUTPUT
#include <Quarry/ParserFile.h>
#include <QuarrySource/RewriteGuard.h>

#include <iostream>
#include <string>

using Quarry::ParserFile;
using Quarry::ParserItem;
using Quarry::RewriteGuard;
using Quarry::RewriteHazard;

namespace {

/// Tells what of the document would not be the same when it is read back. Saving it is no mistake;
/// but a program that lets people type into its documents tells them before.
bool survives(const ParserFile& file) {
  for (const RewriteHazard& hazard : RewriteGuard::examine(file)) {
    std::cout << hazard.path << ": " << hazard.reason << "\n";
  }
  return RewriteGuard::examine(file).empty();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  ParserFile file;
  ParserItem* title = file.getRoot().addItem("title", 0, 0);
  title->addString("Midsummer \\");
  title->addInt(2026);

  // Somebody typed a title that ends in a backslash; with a space behind it, it is read back.
  if (!survives(file)) title->setString("Midsummer \\ ", 0);
  if (!survives(file)) return 1;

  // The new text goes to a file beside the old one, is flushed to the disk and takes its place.
  if (!file.save(argv[1])) return 1;
  std::cout << "saved as " << file.getFilename() << "\n";

  // When that fails, the old file is there as it was, and the console says why.
  if (!file.save("no/such/folder.cfg")) std::cout << "not saved\n";
}
