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

/// The system would take a name with a zero byte for another, shorter one.
bool isPossibleName(const std::string& path) { return path.find('\0') == std::string::npos; }

bool isRegularFile(const std::string& path) {
  struct stat status = {};
  return isPossibleName(path) && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// A file that is read from its beginning to its end. A small document takes about as long to open
/// as to parse, so this asks the system for no more than it needs.
class InputFile {
 public:
  explicit InputFile(const std::string& path)
      : descriptor(isPossibleName(path) ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : -1) {}
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() {
    if (descriptor >= 0) ::close(descriptor);
  }

  bool isOpen() const { return descriptor >= 0; }

  /// Returns the file's size: 0 where the system does not know it, as for a pipe and for the files
  /// that it makes up when they are read.
  std::size_t getSize() const {
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
  }

  /// Returns the number of bytes read: less than `size` at the end of the file, or behind an error,
  /// which `errno` then tells.
  std::size_t read(char* bytes, std::size_t size) {
    std::size_t count = 0;
    errno = 0;
    while (count < size) {
      const ssize_t added = ::read(descriptor, bytes + count, size - count);
      if (added > 0) count += static_cast<std::size_t>(added);
      if (added < 0 && errno == EINTR) {
        errno = 0;
      } else if (added <= 0) {
        break;
      }
    }
    return count;
  }

 private:
  int descriptor;
};

/// The first bytes of a compressed file.
constexpr std::string_view SIGNATURE = "\x1F\x8B";

/// Only regular files are probed: opening a FIFO or a device could block.
bool isCompressed(const std::string& name) {
  if (!isRegularFile(name)) return false;
  InputFile file(name);
  char bytes[SIGNATURE.size()] = {};
  return file.read(bytes, sizeof bytes) == sizeof bytes &&
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

/// Reads a file up to its first zero byte. Each block is read and searched where it stays in the
/// processor's cache, which takes no longer than to read all at once into a string of zero bytes.
///
/// The size that the system tells is believed up to a point: a file may be nearly all hole.
LoadResult loadPlain(const std::string& path, std::string& text, unsigned long largest) {
  constexpr std::size_t BLOCK_SIZE = 1 << 14;
  constexpr std::size_t BELIEVED_SIZE = 1 << 28;
  InputFile file(path);
  if (!file.isOpen()) return LoadResult::NOT_OPENED;
  char block[BLOCK_SIZE];
  for (;;) {
    const std::size_t count = file.read(block, BLOCK_SIZE);
    if (errno != 0) return LoadResult::NOT_OPENED;
    const std::size_t size = std::min(std::string_view(block, count).find('\0'), count);
    if (size == BLOCK_SIZE && text.empty()) text.reserve(std::min(file.getSize(), BELIEVED_SIZE));
    text.append(block, size);
    if (text.size() > largest) return LoadResult::TOO_LARGE;
    if (size < BLOCK_SIZE) return LoadResult::LOADED;
  }
}

}  // namespace

std::string locateFile(const std::vector<std::string>& searchPaths, const std::string& name) {
  for (const std::string& searchPath : searchPaths) {
    std::string path = searchPath;
    if (!path.empty() && path.back() != '/') path += '/';
    path += name;
    if (isRegularFile(path)) return path;
  }
  return std::string();
}

std::string chooseFile(const std::string& name, const std::string& path) {
  return name != path && isCompressed(name) ? name : path;
}

std::string resolvePath(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr),
                                                             std::free);
  if (resolved == nullptr && errno == ENOMEM) throw std::bad_alloc();
  return resolved != nullptr ? resolved.get() : std::string();
}

/// A file that is found under its own name is opened once: its text shows whether it is compressed.
LoadResult loadFile(const std::string& name, const std::string& path, std::string& text,
                    unsigned long& allowance) {
  text.clear();
  if (chooseFile(name, path) != path) return loadCompressed(name, text, allowance);
  const LoadResult result = loadPlain(path, text, allowance);
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
