#include "FileAccess.h"

#include <zlib.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

namespace Quarry {

namespace {

constexpr mode_t NEW_FILE_MODE = 0666;

bool isRegularFile(const std::string& path) {
  struct stat status = {};
  return isPossibleName(path) && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Returns the first path for which `isFile(path)` is true, or an empty string.
template <class IsFile>
std::string findFile(const std::vector<std::string>& searchPaths, const std::string& name,
                     IsFile isFile) {
  for (const std::string& searchPath : searchPaths) {
    std::string path = searchPath;
    if (!path.empty() && path.back() != '/') path += '/';
    path += name;
    if (isFile(path)) return path;
  }
  return std::string();
}

/// The first bytes of a compressed file.
constexpr std::string_view SIGNATURE = "\x1F\x8B";

/// Only regular files are probed: opening a FIFO or a device could block.
bool isCompressed(const std::string& name) {
  InputFile file;
  char bytes[SIGNATURE.size()] = {};
  return isRegularFile(name) && file.open(name) && file.read(bytes, sizeof bytes) == sizeof bytes &&
         SIGNATURE == std::string_view(bytes, sizeof bytes);
}

/// Removes the last byte and returns it; the standard library's error when there is none.
char takeLastByte(std::string& line) {
  const char last = line.empty() ? '\0' : line.back();
  line.erase(line.size() - 1);
  return last;
}

/// Takes the line feed and the marker before it off a compressed line. A piece of an overlong line
/// loses two bytes in the same way.
void appendCompressedLine(std::string& text, std::string line) {
  constexpr char LINE_BREAK_MARKER = '$';
  takeLastByte(line);
  const bool breaksLine = takeLastByte(line) == LINE_BREAK_MARKER;
  if (breaksLine) line += '\n';
  text += line;
}

bool hasRunOutOfMemory(gzFile file) {
  int error = Z_OK;
  gzerror(file, &error);
  return error == Z_MEM_ERROR;
}

/// The lines count with their markers: a file could consist of nothing else.
LoadResult loadCompressed(const std::string& name, std::string& text, unsigned long& allowance) {
  constexpr int LINE_BUFFER_SIZE = 8192;
  constexpr int READ_LIMIT = LINE_BUFFER_SIZE - 1;  // the terminating zero byte included
  errno = 0;
  const std::unique_ptr<gzFile_s, int (*)(gzFile)> file(gzopen(name.c_str(), "r"), gzclose);
  if (file == nullptr && errno == ENOMEM) throw std::bad_alloc();
  if (file == nullptr) return LoadResult::COMPRESSED_NOT_OPENED;
  char buffer[LINE_BUFFER_SIZE];
  while (gzgets(file.get(), buffer, READ_LIMIT) != nullptr) {
    const std::string_view line = buffer;
    if (line.size() > allowance) return LoadResult::TOO_LARGE;
    allowance -= line.size();
    appendCompressedLine(text, std::string(line));
  }
  if (hasRunOutOfMemory(file.get())) throw std::bad_alloc();
  return LoadResult::LOADED;
}

/// Appends what `fill(bytes, most)` writes; it returns how many bytes that are. Where the library
/// allows it, the memory is not cleared before, which takes nearly as long as to read a file.
template <class Fill>
void appendFilled(std::string& text, std::size_t most, Fill fill) {
  const std::size_t size = text.size();
#ifdef __cpp_lib_string_resize_and_overwrite
  text.resize_and_overwrite(size + most, [size, most, &fill](char* bytes, std::size_t) {
    return size + fill(bytes + size, most);
  });
#else
  text.resize(size + most);
  text.resize(size + fill(text.data() + size, most));
#endif
}

/// Reads the text of a file, which ends at the first zero byte.
class TextInput {
 public:
  explicit TextInput(InputFile& textFile) : file(textFile) {}

  bool isAtEnd() const { return ended; }

  /// Returns the number of bytes read. It is less than `most` only at the end.
  ///
  /// Parts of this size are searched for zero bytes while they are in the processor's cache.
  std::size_t read(char* bytes, std::size_t most) {
    constexpr std::size_t PART_SIZE = 1 << 18;
    std::size_t count = 0;
    while (count < most && !ended)
      count += readPart(bytes + count, std::min(most - count, PART_SIZE));
    return count;
  }

 private:
  /// A file that has the size that was expected, and less than was asked for, ends there. Another
  /// call would only tell that again.
  std::size_t readPart(char* bytes, std::size_t most) {
    const std::size_t count = file.read(bytes, most);
    const std::size_t textSize = std::min(std::string_view(bytes, count).find('\0'), count);
    readSize += count;
    ended = count == 0 || textSize < count || (count < most && readSize == file.getSize());
    return textSize;
  }

  InputFile& file;
  std::size_t readSize = 0;
  bool ended = false;
};

/// Reads a file up to its first zero byte.
///
/// The size that the system tells is believed up to a point: a file may be nearly all hole.
LoadResult loadPlain(InputFile& file, std::string& text, unsigned long largest) {
  constexpr std::size_t LEAST_ROOM = 1 << 14;
  constexpr std::size_t BELIEVED_SIZE = 1 << 28;
  if (!file.isOpen()) return LoadResult::NOT_OPENED;
  const std::size_t size = file.getSize();
  TextInput input(file);
  std::size_t room = size != 0 ? std::min(size, BELIEVED_SIZE) : LEAST_ROOM;
  while (!input.isAtEnd()) {
    const std::size_t most = std::min<std::size_t>(room, largest - text.size()) + 1;
    appendFilled(text, most,
                 [&input](char* bytes, std::size_t count) { return input.read(bytes, count); });
    if (errno != 0) return LoadResult::NOT_OPENED;
    if (text.size() > largest) return LoadResult::TOO_LARGE;
    room = std::max(text.size(), LEAST_ROOM);
  }
  return LoadResult::LOADED;
}

}  // namespace

std::string locateFile(const std::vector<std::string>& searchPaths, const std::string& name) {
  return findFile(searchPaths, name, isRegularFile);
}

/// A file that may not be read is found all the same, and so is one that is not opened at once:
/// another program may have to let go of it first.
std::string openFile(const std::vector<std::string>& searchPaths, const std::string& name,
                     InputFile& file) {
  return findFile(searchPaths, name, [&file](const std::string& path) {
    return file.openRegular(path) || (errno != ENOENT && isRegularFile(path));
  });
}

bool prefersCompressed(const std::string& name, const std::string& path) {
  return name != path && isCompressed(name);
}

std::string resolvePath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                             std::free);
  if (resolved == nullptr && errno == ENOMEM) throw std::bad_alloc();
  return resolved != nullptr ? resolved.get() : std::string();
}

/// A file that is found under its own name is opened once: its text shows whether it is compressed.
LoadResult loadFile(const std::string& name, const std::string& path, std::string& text,
                    unsigned long& allowance, InputFile file) {
  text.clear();
  if (prefersCompressed(name, path)) return loadCompressed(name, text, allowance);
  if (!file.isOpen()) file.open(path);
  const LoadResult result = loadPlain(file, text, allowance);
  const bool showsCompression = name == path && text.starts_with(SIGNATURE);
  if (showsCompression && isRegularFile(name)) {
    text.clear();
    return loadCompressed(name, text, allowance);
  }
  if (result == LoadResult::LOADED) allowance -= text.size();
  return result;
}

OutputFile::OutputFile(const std::string& path)
    : descriptor(isPossibleName(path)
                     ? ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, NEW_FILE_MODE)
                     : -1) {}

OutputFile::~OutputFile() {
  if (isOpen()) ::close(descriptor);
}

bool OutputFile::write(std::string_view text) { return writeAll(descriptor, text); }

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count == 0) errno = EIO;
    if (count <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace Quarry
