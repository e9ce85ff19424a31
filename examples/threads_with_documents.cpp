// Reads several documents at once, each in a thread of its own: threads_with_documents FOLDER
#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>

#include <future>
#include <iostream>
#include <string>
#include <vector>

using Plinth::Console;
using Quarry::ParserFile;

namespace {

/// A document belongs to one thread at a time, also for looking: values remember what they were
/// converted to. What leaves the thread are results, or the document as a whole.
unsigned long countItems(const std::string& folder, const std::string& name) {
  ParserFile file;
  file.setSearchPaths({folder});
  return file.read(name) ? file.getRoot().getItemCount() : 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::vector<std::string> names = {"show.cfg", "lamps.cfg", "cues.cfg", "missing.cfg"};

  // All threads' messages pass through one handler, one at a time: it needs no lock of its own.
  std::vector<std::string> warnings;
  const Console::Handler previous =
      Plinth::console.setHandler([&warnings](Console::Level, const std::string& message,
                                             const std::string&) { warnings.push_back(message); });

  std::vector<std::future<unsigned long>> counts;
  for (const std::string& name : names)
    counts.push_back(std::async(std::launch::async, countItems, std::string(argv[1]), name));
  for (unsigned long i = 0; i < names.size(); ++i)
    std::cout << names[i] << ": " << counts[i].get() << " items\n";

  Plinth::console.setHandler(previous);
  for (const std::string& warning : warnings)
    std::cout << warning;
}
