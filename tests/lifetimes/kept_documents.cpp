// Documents that nobody destroys: the process ends as they are, without running any destructor.

#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

/// Reads a document that is kept until the process ends.
Quarry::ParserFile* read(int number) {
  auto file = std::make_unique<Quarry::ParserFile>();
  for (int i = 0; i < 5000; ++i)
    file->getRoot().setText("item " + std::to_string(number) + " { a \"b\" }", 1.1);
  return file.release();
}

}  // namespace

int main() {
  static const Quarry::ParserFile* const first = read(1);
  std::vector<const Quarry::ParserFile*> others(3);
  for (const Quarry::ParserFile*& file : others)
    std::thread([&file] { file = read(2); }).join();
  unsigned long items = first->getRoot().getItemCount();
  for (const Quarry::ParserFile* file : others)
    items += file->getRoot().getItemCount();
  std::printf("%lu items kept\n", items);
  std::fflush(stdout);
  ::_exit(0);
}
