#include <Quarry/ParserFile.h>

#include "../Measure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <set>
#include <vector>

namespace QuarryBenchmarks {

namespace {

using benchmark::State;
using ::Quarry::ParserFile;
using ::Quarry::ParserGroup;

/// This library: setText() of a text that is preprocessed already.
struct Library {
  struct Tree {
    std::optional<ParserGroup> root;
  };

  static Source convert(const Workload& workload) { return {workload.text, workload.version}; }

  static void read(Tree& tree, const Source& source) {
    tree.root.emplace("root").setText(source.text, source.version);
  }

  static double addNumbers(const Tree& tree, const Source&) {
    return QuarryBenchmarks::addNumbers(*tree.root);
  }

  static std::string write(const Tree& tree) {
    std::string text;
    tree.root->getText(text, false, true, 1);
    return text;
  }

  static std::vector<char> encode(const Tree& tree) { return tree.root->getBinary(false); }

  static void decode(Tree& tree, const std::vector<char>& bytes) {
    unsigned long position = 0;
    tree.root.emplace("root").setBinary(bytes, position);
  }

  static void copy(Tree& tree, const Tree& other) { tree.root.emplace(*other.root); }

  static bool find(const Tree& tree, const std::string& name) {
    return tree.root->getItem(name) != nullptr;
  }
};

// --- What only this library is measured with -----------------------------------------------------

/// Without the blanks of indentation, which deep groups would need more of than of anything else.
void writeOneLine(State& state, const Workload& workload) {
  Library::Tree tree;
  Library::read(tree, Library::convert(workload));
  for ([[maybe_unused]] auto _ : state) {
    std::string text;
    tree.root->getText(text, false, false, 1);
    keep(text);
  }
  setPerValue(state, workload.values);
}

/// Returns where the files are looked for that a document includes. A program knows that before it
/// reads one.
std::vector<std::string> getSearchPaths(const Workload& workload) {
  return {"", std::filesystem::path(workload.path).parent_path()};
}

/// From a file, which the system has in memory, to a tree, and the tree's end.
void readFile(State& state, const Workload& workload) {
  const std::vector<std::string> searchPaths = getSearchPaths(workload);
  for ([[maybe_unused]] auto _ : state) {
    ParserFile file;
    file.setSearchPaths(searchPaths);
    if (!file.read(workload.path)) return state.SkipWithError("cannot be read");
    keep(file);
  }
  setPerValue(state, workload.values);
}

/// Returns a file's bytes with the fewest calls of the system; an empty string when it cannot.
std::string loadBytes(const std::string& path) {
  std::string bytes;
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status = {};
  if (::fstat(file, &status) == 0) bytes.resize(static_cast<std::size_t>(status.st_size));
  const ssize_t count = ::read(file, bytes.data(), bytes.size());
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  ::close(file);
  return bytes;
}

/// The least that there is to do for readFile(): the file's bytes are loaded, and its text is read,
/// which was preprocessed before.
void readFileParts(State& state, const Workload& workload) {
  const Source source = Library::convert(workload);
  for ([[maybe_unused]] auto _ : state) {
    const std::string bytes = loadBytes(workload.path);
    if (bytes.empty()) return state.SkipWithError("cannot be loaded");
    Library::Tree tree;
    Library::read(tree, source);
    keep(tree);
  }
  setPerValue(state, workload.values);
}

/// From a file to the text that the parser reads.
void preprocess(State& state, const Workload& workload) {
  const std::vector<std::string> searchPaths = getSearchPaths(workload);
  for ([[maybe_unused]] auto _ : state) {
    ParserFile file;
    file.setSearchPaths(searchPaths);
    std::string text;
    std::set<std::string> included;
    keep(file.preprocessFile(text, workload.path, included));
    keep(text);
  }
  setPerValue(state, workload.values);
}

Peer makePeer() {
  const auto isDeep = [](const Workload& workload) { return workload.isDeep; };
  const auto isFile = [](const Workload& workload) {
    return !workload.path.empty() && workload.names.empty();
  };
  Peer peer = Measure<Library>::makePeer("Quarry");
  const std::vector<Operation> more = {
      {"WriteOneLine", writeOneLine, Operation::OF_LOOP, isDeep},
      {"ReadFile", readFile, Operation::OF_LOOP, isFile},
      {"ReadFileParts", readFileParts, Operation::OF_LOOP, isFile},
      {"Preprocess", preprocess, Operation::OF_LOOP, isFile},
      {"Threads", Measure<Library>::read, Operation::OF_THREADS, isFile}};
  peer.operations.insert(peer.operations.end(), more.begin(), more.end());
  return peer;
}

const PeerRegistration registration(makePeer());

}  // namespace

}  // namespace QuarryBenchmarks
