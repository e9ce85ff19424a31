/// A file that is read.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace Quarry {

/// A file that is read from its beginning to its end, or none. A small document takes about as long
/// to open as to parse, so this asks the system for no more than it needs.
class InputFile {
 public:
  InputFile() = default;
  InputFile(InputFile&& other) noexcept
      : descriptor(std::exchange(other.descriptor, NONE)), size(std::exchange(other.size, 0)) {}
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() { close(); }

  /// Opens a file of any kind. That of a FIFO waits for a writer.
  /// @return whether it is open now; `errno` tells why not
  bool open(const std::string& path);

  /// Opens a regular file. What is anything else is opened as well, to find that out, and closed
  /// again: without waiting for a writer, and without becoming a terminal of the process.
  /// @return whether it is open now; where it could not be opened, `errno` tells why not
  bool openRegular(const std::string& path);

  void close();

  bool isOpen() const { return descriptor != NONE; }

  /// Returns the size in bytes that the file had when it was opened: 0 where the system does not
  /// know it, as for a pipe and for the files that it makes up when they are read.
  std::size_t getSize() const { return size; }

  /// Returns the number of bytes read: 0 at the end of the file, or for an error, which `errno`
  /// then tells. It may be less than `most` anywhere.
  std::size_t read(char* bytes, std::size_t most);

 private:
  static constexpr int NONE = -1;

  bool open(const std::string& path, int flags, bool& isRegular);

  int descriptor = NONE;
  std::size_t size = 0;
};

/// The system would take a name with a zero byte for another, shorter one.
bool isPossibleName(const std::string& path);

}  // namespace Quarry
