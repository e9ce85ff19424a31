/// Compresses files and reads compressed ones, with the library and by the rules.
#pragma once

#include <Quarry/ParserFile.h>
#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>

#include "Fuzz.h"
#include "Preprocessing.h"

namespace Fuzz {

/// Stored, not deflated: that is quick.
inline void compress(const std::string& path, const std::string& bytes) {
  gzFile file = gzopen(path.c_str(), "w0");
  require(file != nullptr);
  const auto length = static_cast<unsigned>(bytes.size());
  require(length == 0 || gzwrite(file, bytes.data(), length) == static_cast<int>(length));
  require(gzclose(file) == Z_OK);
}

/// Returns the preprocessed text, or nothing when reading throws. Includes are out of reach.
inline std::optional<std::string> readFile(const std::string& path) try {
  // Few bytes can be compressed from very many, of which a tree would take all memory.
  constexpr std::size_t LONGEST_PARSED = 1 << 20;
  Quarry::ParserLimits limits;
  limits.includeDepth = 0;
  Quarry::ParserFile file;
  file.setSearchPaths({""});
  file.setLimits(limits);
  const std::string text = preprocess(file, path).text;
  limits.preprocessedBytes = LONGEST_PARSED;
  file.setLimits(limits);
  require(!file.read(path) || text.size() <= LONGEST_PARSED);
  return text;
} catch (const std::out_of_range&) {
  return std::nullopt;
}

/// Of each line, or piece of a long one, the last two bytes are taken off; "$" before the line feed
/// keeps it. A zero byte ends the piece. Returns nothing when a piece has no two bytes.
inline std::optional<std::string> takeMarkersOff(const std::string& bytes) {
  constexpr std::size_t LONGEST_PIECE = 8190;
  std::string text;
  std::size_t begin = 0;
  while (begin < bytes.size()) {
    const std::size_t lineEnd = std::min(bytes.find('\n', begin), bytes.size() - 1) + 1;
    const std::size_t length = std::min(lineEnd - begin, LONGEST_PIECE);
    const std::string piece = bytes.substr(begin, length).c_str();
    begin += length;
    if (piece.size() < 2) return std::nullopt;
    text.append(piece, 0, piece.size() - 2);
    if (piece[piece.size() - 2] == '$') text += '\n';
  }
  return text;
}

/// Returns what readFile() has to return for a file that is compressed from `bytes`.
inline std::optional<std::string> readByRules(const std::string& bytes) {
  const std::string noIncluded("\0", 1);  // no text includes a file of this name
  const std::optional<std::string> text = takeMarkersOff(bytes);
  if (!text) return std::nullopt;
  return preprocessByRules({{noIncluded, *text}}, noIncluded).text;
}

}  // namespace Fuzz
