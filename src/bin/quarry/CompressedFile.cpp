#include "CompressedFile.h"

#include "Compression.h"
#include "Failure.h"
#include "FileBytes.h"
#include "LineMarkers.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace Tool {

namespace {

constexpr std::string_view KEPT_LINE_END = "$\n";
constexpr std::string_view JOINED_LINE_END = "\\\n";
constexpr std::size_t LOST_SIZE = 2;

/// Only regular files are probed: opening a FIFO or a device could block.
bool isCompressedFile(const std::string& name) {
  struct stat status = {};
  if (::stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  std::array<char, 2> bytes = {};
  const ssize_t count = ::read(file, bytes.data(), bytes.size());
  ::close(file);
  return count > 0 && isCompressed({bytes.data(), static_cast<std::size_t>(count)});
}

/// The pieces of an unpacked file, with their places.
class Pieces {
 public:
  explicit Pieces(std::string_view unpacked) : rest(unpacked) {}

  bool next() {
    if (piece.ends_with('\n')) {
      ++line;
      before = 0;
    } else {
      before += piece.size();
    }
    if (rest.empty()) return false;
    piece = takePiece(rest);
    return true;
  }

  std::string_view get() const { return piece; }

  LostBytes describeLoss() const {
    const std::string_view text = piece.substr(0, piece.size() - (piece.ends_with('\n') ? 1 : 0));
    const std::size_t begin = piece.size() - std::min(LOST_SIZE, piece.size());
    return {line, before + begin + 1, std::string(text), begin, text.size() - begin};
  }

 private:
  std::string_view rest;
  std::string_view piece;
  unsigned long line = 1;
  unsigned long before = 0;  ///< bytes of the line in pieces passed
};

}  // namespace

std::optional<LostBytes> findLostBytes(std::string_view packed, unsigned long most) {
  std::string unpacked;
  (void)decompress(packed, most, unpacked);
  std::optional<LostBytes> withoutMarker;
  std::optional<LostBytes> withoutLineFeed;
  bool hasMarker = false;
  Pieces pieces(unpacked);
  while (pieces.next()) {
    const std::string_view piece = pieces.get();
    if (piece.ends_with(KEPT_LINE_END)) {
      hasMarker = true;
      continue;
    }
    const bool isJoined = piece.ends_with(JOINED_LINE_END);
    if (!isJoined && !withoutMarker) withoutMarker = pieces.describeLoss();
    const bool isCut = piece.size() < LOST_SIZE || piece.back() != '\n';
    if (isCut && !withoutLineFeed) withoutLineFeed = pieces.describeLoss();
  }
  return hasMarker ? withoutLineFeed : withoutMarker;
}

std::optional<LostBytes> findLostBytesOfFile(const std::string& name, unsigned long most) {
  if (!isCompressedFile(name)) return std::nullopt;
  try {
    return findLostBytes(readFile(name, most), most);
  } catch (const Failure&) {
    return std::nullopt;  // that it cannot be read is told where it was read
  }
}

}  // namespace Tool
