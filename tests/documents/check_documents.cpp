// Checks that the library reads a folder of documents and writes them back unchanged:
//
//     CheckDocuments FOLDER
//
// Every FOLDER/NAME.cfg has to be laid out as the library writes documents. It is read without a
// message and written again; the result has to be the same bytes, but for the version line that
// write() puts first where the document has none. Its binary form has to read back as the same
// bytes. Where FOLDER/counts.json has an object NAME, the tree has to have the counts given there
// (see DocumentCounts.h).
//
// Exit status: 0 all is well, 1 a document is not, 2 the check could not be made.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>

#include "DocumentCounts.h"
#include "support/RecordingConsole.h"
#include "support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr char VERSION_LINE[] = "#SerialVersion 1.1\n";

/// What two ways of adding may differ by, as a part of the sum of all absolute values.
constexpr double SUM_TOLERANCE = 1e-13;

/// What is wrong with a document, a line each.
using Faults = std::vector<std::string>;

std::string readBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> findDocuments(const fs::path& folder) {
  std::vector<fs::path> documents;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".cfg") documents.push_back(entry.path());
  }
  std::sort(documents.begin(), documents.end());
  if (documents.empty()) throw std::runtime_error("no documents in " + folder.string());
  return documents;
}

nlohmann::json readCounts(const fs::path& folder) {
  const fs::path path = folder / "counts.json";
  if (!fs::exists(path)) return nlohmann::json::object();
  return nlohmann::json::parse(readBytes(path));
}

void checkMessages(const TestSupport::RecordingConsole& console, Faults& faults) {
  for (const TestSupport::Message& message : console.getMessages()) {
    if (message.level == Plinth::Console::LEVEL_DEBUG) continue;
    faults.push_back("message: " + message.text);
  }
}

void checkBytes(const std::string& original, const std::string& written, Faults& faults) {
  const bool hasVersionLine = original.rfind(VERSION_LINE, 0) == 0;
  const std::string expected = hasVersionLine ? original : VERSION_LINE + original;
  if (written == expected) return;
  const auto difference =
      std::mismatch(expected.begin(), expected.end(), written.begin(), written.end());
  faults.push_back("written differently from byte " +
                   std::to_string(difference.first - expected.begin()) + " on");
}

bool isSameCount(const std::string& name, double expected, const DocumentCheck::Counts& counts) {
  const double counted = counts.at(name);
  if (name != "number_sum") return counted == expected;
  return std::fabs(counted - expected) <= SUM_TOLERANCE * counts.at("number_magnitude");
}

void checkCounts(const nlohmann::json& expected, const DocumentCheck::Counts& counts,
                 Faults& faults) {
  for (const auto& [name, number] : expected.items()) {
    if (counts.count(name) == 0) throw std::runtime_error("no such count: " + name);
    if (isSameCount(name, number.get<double>(), counts)) continue;
    std::ostringstream fault;
    fault.precision(std::numeric_limits<double>::max_digits10);
    fault << name << ": " << counts.at(name) << " counted, " << number << " expected";
    faults.push_back(fault.str());
  }
}

void checkBinary(const Quarry::ParserFile& file, Faults& faults) {
  const std::vector<char> data = file.getBinary();
  Quarry::ParserFile decoded;
  if (!decoded.setBinary(data)) faults.push_back("its binary form cannot be read");
  if (decoded.getBinary() != data) faults.push_back("its binary form reads back differently");
}

/// The text is checked first: converting the values must not be what makes them be written
/// unchanged.
Faults check(const fs::path& document, const nlohmann::json& expectedCounts) {
  Faults faults;
  const TestSupport::RecordingConsole console;
  const TestSupport::TemporaryFolder folder;
  Quarry::ParserFile file;
  if (!file.read(document.string())) faults.push_back("cannot be read");
  if (!file.write(folder.getPath("written.cfg"))) faults.push_back("cannot be written");
  checkBytes(readBytes(document), readBytes(folder.getPath("written.cfg")), faults);
  checkCounts(expectedCounts, DocumentCheck::count(file.getRoot()), faults);
  checkBinary(file, faults);
  checkMessages(console, faults);
  return faults;
}

void report(const std::string& name, bool hasCounts, const Faults& faults) {
  std::cout << name << ": ";
  if (faults.empty()) std::cout << (hasCounts ? "same bytes, same counts" : "same bytes");
  if (!faults.empty()) std::cout << "FAULTY";
  std::cout << "\n";
  for (const std::string& fault : faults)
    std::cout << "  " << fault << "\n";
}

/// @return whether all documents are well
bool checkFolder(const fs::path& folder) {
  const nlohmann::json counts = readCounts(folder);
  bool isWell = true;
  for (const fs::path& document : findDocuments(folder)) {
    const std::string name = document.stem().string();
    const bool hasCounts = counts.contains(name);
    const Faults faults = check(document, hasCounts ? counts[name] : nlohmann::json::object());
    report(name, hasCounts, faults);
    isWell = isWell && faults.empty();
  }
  return isWell;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: CheckDocuments FOLDER\n";
    return 2;
  }
  try {
    return checkFolder(argv[1]) ? 0 : 1;
  } catch (const std::exception& failure) {
    std::cerr << "CheckDocuments: " << failure.what() << "\n";
    return 2;
  }
}
