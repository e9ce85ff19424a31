#include "FileAccess.h"

#include <zlib.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <memory>

namespace Quarry {

namespace {

constexpr mode_t NEW_FILE_MODE = 0666;

/// The system would take a name with a zero byte for another, shorter one.
bool isPossibleName(const std::string& path) { return path.find('\0') == std::string::npos; }

bool isRegularFile(const std::string& path) {
  struct stat status = {};
  return isPossibleName(path) && ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Only regular files are probed: opening a FIFO or a device could block.
bool isCompressed(const std::string& name) {
  constexpr char SIGNATURE[2] = {'\x1F', '\x8B'};
  QFile file;
  if (!isRegularFile(name) || !openFile(file, name, QIODevice::ReadOnly)) return false;
  return file.read(sizeof SIGNATURE) == QByteArray::fromRawData(SIGNATURE, sizeof SIGNATURE);
}

/// Removes the last byte and returns it; the standard library's error when there is none.
char takeLastByte(std::string& line) {
  const char last = line.empty() ? '\0' : line.back();
  line.erase(line.size() - 1);
  return last;
}

/// Takes the line feed and the marker before it off a compressed line. A piece of an overlong line
/// loses two bytes in the same way.
void appendCompressedLine(QByteArray& text, std::string line) {
  constexpr char LINE_BREAK_MARKER = '$';
  takeLastByte(line);
  const bool breaksLine = takeLastByte(line) == LINE_BREAK_MARKER;
  if (breaksLine) line += '\n';
  text.append(line.data(), static_cast<int>(line.size()));
}

LoadResult loadCompressed(const std::string& name, QByteArray& text) {
  constexpr int LINE_BUFFER_SIZE = 8192;
  constexpr int READ_LIMIT = LINE_BUFFER_SIZE - 1;  // the terminating zero byte included
  const std::unique_ptr<gzFile_s, int (*)(gzFile)> file(gzopen(name.c_str(), "r"), gzclose);
  if (file == nullptr) return LoadResult::COMPRESSED_NOT_OPENED;
  char buffer[LINE_BUFFER_SIZE];
  while (gzgets(file.get(), buffer, READ_LIMIT) != nullptr)
    appendCompressedLine(text, buffer);
  return LoadResult::LOADED;
}

LoadResult loadPlain(const std::string& path, QByteArray& text) {
  QFile file;
  if (!openFile(file, path, QIODevice::ReadOnly)) return LoadResult::NOT_OPENED;
  text = file.readAll();
  const auto end = text.indexOf('\0');
  if (end >= 0) text.truncate(end);
  return LoadResult::LOADED;
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

LoadResult loadFile(const std::string& name, const std::string& path, QByteArray& text) {
  text.clear();
  return isCompressed(name) ? loadCompressed(name, text) : loadPlain(path, text);
}

bool openFile(QFile& file, const std::string& path, QIODevice::OpenMode mode) {
  const bool writes = mode.testFlag(QIODevice::WriteOnly);
  const int flags = O_CLOEXEC | (writes ? O_WRONLY | O_CREAT | O_TRUNC : O_RDONLY);
  const int descriptor = isPossibleName(path) ? ::open(path.c_str(), flags, NEW_FILE_MODE) : -1;
  return descriptor >= 0 &&
         file.open(descriptor, mode | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
}

}  // namespace Quarry
