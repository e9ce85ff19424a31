#include <Quarry/ParserFile.h>

#include <Plinth/Console.h>
#include <Plinth/Label.h>

#include "internal/BinaryReader.h"
#include "internal/BinaryWriter.h"
#include "internal/Comments.h"
#include "internal/FileAccess.h"
#include "internal/FileReplacement.h"
#include "internal/Messages.h"
#include "internal/ParserWordStream.h"
#include "internal/Preprocessor.h"
#include "internal/TextReader.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace Quarry {

namespace {

constexpr double WRITTEN_VERSION = 1.1;
constexpr char VERSION_KEYWORD[] = "#SerialVersion";
constexpr char NESTING_LIMIT[] = "nestingDepth";

constexpr std::string_view BINARY_TAG = "QDBF";
constexpr std::size_t SHORTEST_BINARY = 9;

void warn(const std::string& message) { Plinth::console.warning(message, std::string()); }

/// The preprocessor's sink: collects what stays and gives warnings on the console.
///
/// What stays of a file is moved together at the beginning of that file's own text, which then
/// becomes the result. Only where an include is met, the result is put together by copying.
class TextCollector {
 public:
  /// @param wanted what becomes of the comments, where there is a choice
  TextCollector(std::string& text, Comments wanted) : out(text), wantedComments(wanted) {}

  void beginFile(const std::string&, const std::string&, std::string& text) {
    if (!hasIncludes) topText = &text;
  }
  void run(std::size_t offset, std::string_view bytes) {
    if (hasIncludes) {
      out += bytes;
      return;
    }
    if (kept == 0) begin = offset;
    if (offset != begin + kept) {
      std::memmove(topText->data() + begin + kept, bytes.data(), bytes.size());
    }
    kept += bytes.size();
  }
  void comment(std::size_t, std::string_view) {}
  void versionLine(std::size_t, std::string_view) {}
  void include(std::size_t, std::string_view, const std::string&) {
    if (!hasIncludes) out.append(*topText, begin, kept);
    hasIncludes = true;
  }
  void endFile(double) {
    if (hasIncludes) return;
    topText->resize(begin + kept);
    if (out.empty()) {
      out = std::move(*topText);
      outBegin = begin;
    } else {
      out.append(*topText, begin, kept);
    }
  }
  void unclosedInclude(std::size_t) {}

  bool takesComments() {
    const bool mayBeLeft = !hasIncludes && isBlank(std::string_view(*topText).substr(begin, kept));
    if (mayBeLeft) comments = wantedComments;
    return comments == Comments::LEFT;
  }
  void warning(FileDiagnostic, const std::string& message) { warn(message); }

  /// Returns where the collected text begins: behind a version line at a file's beginning, so that
  /// the rest need not be moved.
  std::size_t getBegin() const { return outBegin; }

  /// Tells whether the text still has its comments. Where it has, nothing but blanks stands before
  /// them: what was dropped there has joined nothing that looks like a comment and is none.
  Comments getComments() const { return comments; }

 private:
  static bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
  }

  std::string& out;
  std::size_t outBegin = 0;
  std::string* topText = nullptr;  ///< the text of the file that all begins with
  std::size_t begin = 0;           ///< the first byte of it that stays
  std::size_t kept = 0;            ///< how many bytes from there on stay
  bool hasIncludes = false;        ///< all of `topText` that stays, so far, is in `out`
  const Comments wantedComments;
  Comments comments = Comments::REMOVED;
};

/// Makes the document declare the version that is written: by its keyword, or by a version line.
void declareVersion(const ParserGroup& root, std::string& text) {
  ParserItem* keyword = root.getKeyword(VERSION_KEYWORD);
  if (keyword == nullptr) {
    text = std::string(VERSION_KEYWORD) + " " + Plinth::getLabel(WRITTEN_VERSION) + "\n";
  } else if (keyword->getValueCount() == 0) {
    keyword->addDouble(WRITTEN_VERSION);
  } else {
    keyword->setDouble(WRITTEN_VERSION, 0);
  }
}

/// Returns the text of a whole document.
std::string renderDocument(const ParserFile& file) {
  std::string text;
  declareVersion(file.getRoot(), text);
  file.getText(text);
  return text;
}

/// Says why, and that, data is no binary document; returns false.
bool refuseBinary(const std::string& reason) {
  Plinth::console.print(reason, std::string());
  warn(Messages::unknownContainer());
  return false;
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

ParserFile::ParserFile() : root(new ParserGroup("root")), version(WRITTEN_VERSION) {}

ParserFile::ParserFile(ParserGroup& group) : root(&group), version(WRITTEN_VERSION) {}

ParserFile::ParserFile(const std::string& name) : ParserFile() { setFilename(name); }

ParserFile::~ParserFile() { delete root; }

// --- Change --------------------------------------------------------------------------------------

void ParserFile::setSearchPaths(const std::vector<std::string>& paths) { searchPaths = paths; }

/// Both change or neither; the name may be one of the two.
bool ParserFile::setFilename(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  std::string newDirectory = slash == std::string::npos ? std::string() : name.substr(0, slash);
  filename = name;
  directory = std::move(newDirectory);
  return !filename.empty();
}

void ParserFile::setLimits(const ParserLimits& newLimits) { limits = newLimits; }

void ParserFile::clear() { root->clear(); }

// --- Text and files ------------------------------------------------------------------------------

void ParserFile::getText(std::string& text) const { root->getText(text, false, true, 1); }

/// The empty search path, under which a file is found by its own name, is there for this call. An
/// exception leaves it in the list, as it always has.
bool ParserFile::read(const std::string& name) {
  if (!name.empty()) setFilename(name);
  searchPaths.emplace_back();
  includedFiles.clear();
  std::string text;
  TextCollector collector(text, Comments::LEFT);
  const double declared = Preprocessor(searchPaths, collector, limits).process(filename);
  searchPaths.pop_back();
  version = declared;
  if (!(version > 0.0)) return false;
  ParserWordStream words(text, version, collector.getBegin(), collector.getComments());
  const TextOutcome outcome = readText(words, *root, limits.nestingDepth);
  if (outcome.leavesOut) {
    warn(Messages::atPlace(outcome.line, outcome.column) +
         Messages::limitExceeded(filename, NESTING_LIMIT, limits.nestingDepth));
  }
  return !outcome.leavesOut;
}

bool ParserFile::write(const std::string& name) {
  std::string givenName;
  givenName = name;  // a copy: the name may be the directory, which changes
  if (!name.empty()) setFilename(name);
  OutputFile file(filename);
  if (!file.isOpen()) return false;
  const std::string text = renderDocument(*this);
  if (file.write(text)) {
    Plinth::console.debug(Messages::fileWritten(givenName, text.size()), std::string());
  } else {
    Plinth::console.error(Messages::fileNotSaved(givenName), std::string());
  }
  return true;
}

/// The text is complete before the disk is touched.
bool ParserFile::save(const std::string& name) {
  if (!name.empty()) setFilename(name);
  const std::string text = renderDocument(*this);
  FileReplacement replacement(filename);
  const bool isSaved = replacement.write(text);
  if (isSaved) {
    Plinth::console.debug(Messages::fileWritten(filename, text.size()), std::string());
  } else {
    Plinth::console.error(Messages::fileNotReplaced(filename, replacement.getProblem()),
                          std::string());
  }
  return isSaved;
}

double ParserFile::preprocessFile(std::string& out, const std::string& file,
                                  std::set<std::string>& /*included*/) {
  TextCollector collector(out, Comments::REMOVED);
  const double declared = Preprocessor(searchPaths, collector, limits).process(file);
  out.erase(0, collector.getBegin());
  return declared;
}

// --- Binary --------------------------------------------------------------------------------------

std::vector<char> ParserFile::getBinary() const {
  std::vector<char> data(BINARY_TAG.begin(), BINARY_TAG.end());
  BinaryWriter writer;
  writer.writeGroup(*root);
  writer.appendTo(data);
  return data;
}

/// The shortest data that is looked at is shorter than the shortest document; the root's own checks
/// find that out.
bool ParserFile::setBinary(const std::vector<char>& data) {
  if (data.size() < SHORTEST_BINARY) return refuseBinary(Messages::containerTooShort());
  if (!std::equal(BINARY_TAG.begin(), BINARY_TAG.end(), data.begin())) {
    return refuseBinary(Messages::unknownContainerTag());
  }
  unsigned long position = BINARY_TAG.size();
  BinaryReader reader(data, position, limits.nestingDepth);
  const bool isWhole = reader.readGroup(*root);
  if (!reader.leavesOut()) return isWhole;
  warn(Messages::limitExceeded(filename, NESTING_LIMIT, limits.nestingDepth));
  return false;
}

}  // namespace Quarry
