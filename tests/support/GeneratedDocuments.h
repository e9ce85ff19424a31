/// Makes documents of several files with comments and odd layout, for tests that need many.
#pragma once

#include <map>
#include <string>

namespace TestSupport {

/// A document as people might have typed it.
struct GeneratedDocument {
  std::string name;                          ///< of the top file
  std::map<std::string, std::string> files;  ///< the text of each file, by its name
};

/// What a generated document may have besides items.
enum class Faults {
  NONE,     ///< it is read without a diagnostic
  IN_TEXT,  ///< some words draw warnings, groups are left open or closed too often
  ANYWHERE  ///< besides, files are missing, versions unusable, includes unclosed
};

/// Makes a document: plain items, keywords, calls and groups in every style of layout, comments
/// between any two words, includes up to three deep (for items, values and parts of words; some
/// files are included twice), LF and CR LF, either format version. No file includes itself.
/// @param seed the same one always gives the same document
GeneratedDocument generateDocument(unsigned seed, Faults faults = Faults::NONE);

}  // namespace TestSupport
