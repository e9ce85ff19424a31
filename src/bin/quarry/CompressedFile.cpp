#include "CompressedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace Tool {

namespace {

constexpr std::string_view SIGNATURE = "\x1F\x8B";
constexpr std::string_view KEPT_LINE_END = "$\n";
constexpr std::string_view JOINED_LINE_END = "\\\n";
constexpr std::size_t LOST_SIZE = 2;

/// Only regular files are probed: opening a FIFO or a device could block.
bool isCompressed(const std::string& name) {
  struct stat status = {};
  if (::stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  char bytes[SIGNATURE.size()] = {};
  const ssize_t count = ::read(file, bytes, sizeof bytes);
  ::close(file);
  return count == static_cast<ssize_t>(SIGNATURE.size()) &&
         SIGNATURE == std::string_view(bytes, sizeof bytes);
}

/// The parts in which the library reads a compressed file: lines, and parts of overlong lines.
class Parts {
 public:
  explicit Parts(const std::string& name) : file(gzopen(name.c_str(), "r"), gzclose) {}

  bool next() {
    if (file == nullptr) return false;
    if (part.ends_with('\n')) {
      ++line;
      before = 0;
    } else {
      before += part.size();
    }
    if (gzgets(file.get(), buffer, READ_LIMIT) == nullptr) return false;
    part = buffer;
    return true;
  }

  std::string_view get() const { return part; }

  LostBytes describeLoss() const {
    const std::string_view text = part.substr(0, part.size() - (part.ends_with('\n') ? 1 : 0));
    const std::size_t begin = part.size() - std::min(LOST_SIZE, part.size());
    return {line, before + begin + 1, std::string(text), begin, text.size() - begin};
  }

 private:
  static constexpr int BUFFER_SIZE = 8192;
  static constexpr int READ_LIMIT = BUFFER_SIZE - 1;  // as the library

  std::unique_ptr<gzFile_s, int (*)(gzFile)> file;
  char buffer[BUFFER_SIZE] = {};
  std::string_view part;
  unsigned long line = 1;
  unsigned long before = 0;  ///< bytes of the line in parts passed
};

}  // namespace

std::optional<LostBytes> findLostBytes(const std::string& name) {
  if (!isCompressed(name)) return std::nullopt;
  std::optional<LostBytes> withoutMarker;
  std::optional<LostBytes> withoutLineFeed;
  bool hasMarker = false;
  Parts parts(name);
  while (parts.next()) {
    const std::string_view part = parts.get();
    if (part.ends_with(KEPT_LINE_END)) {
      hasMarker = true;
      continue;
    }
    const bool isJoined = part.ends_with(JOINED_LINE_END);
    if (!isJoined && !withoutMarker) withoutMarker = parts.describeLoss();
    const bool isCut = part.size() < LOST_SIZE || part.back() != '\n';
    if (isCut && !withoutLineFeed) withoutLineFeed = parts.describeLoss();
  }
  return hasMarker ? withoutLineFeed : withoutMarker;
}

}  // namespace Tool
