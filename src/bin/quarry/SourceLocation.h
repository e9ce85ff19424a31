/// Places in documents as people write them, and what stands around a place.
#pragma once

#include <QuarrySource/SourceTree.h>

#include <string>
#include <vector>

namespace Tool {

/// A place in a file, written as FILE:LINE:COLUMN.
struct SourceLocation {
  std::string file;
  Quarry::LineColumn place;
};

/// Reads FILE:LINE:COLUMN, of which FILE may hold colons. Throws a Failure for anything else.
SourceLocation parseLocation(const std::string& text);

/// Returns the openings of a file, of which there are several where it is included several times.
/// @param path names the file, in any way that leads to it
std::vector<unsigned long> findOpenings(const Quarry::SourceDocument& document,
                                        const std::string& path);

/// Returns the offset of a place in its file. Throws a Failure where the file has no such line, or
/// the line no such column.
unsigned long findOffset(const Quarry::SourceFile& file, const Quarry::LineColumn& place);

/// Returns where in the preprocessed text a byte of a file ended up; of a byte that is dropped, the
/// place where it would be.
unsigned long findTextOffset(const Quarry::SourceDocument& document,
                             const Quarry::SourcePosition& position);

/// Returns the innermost item that begins before a place of the text and goes on behind it.
unsigned long findItemAround(const Quarry::SourceTree& tree, unsigned long textOffset);

}  // namespace Tool
