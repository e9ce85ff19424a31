#include "FileBytes.h"

#include <Quarry/internal/FileReplacement.h>

#include "Failure.h"
#include "Texts.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace Tool {

namespace {

std::string readAll(int descriptor, const std::string& name, unsigned long most) {
  std::string bytes;
  std::array<char, 1 << 16> block;
  for (;;) {
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count == 0) return bytes;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Failure(Texts::cannotRead(name, strerror(errno)));
    bytes.append(block.data(), static_cast<std::size_t>(count));
    if (bytes.size() > most) throw Failure(Texts::tooLarge(name, most));
  }
}

/// A file that is open for reading.
class OpenFile {
 public:
  explicit OpenFile(const std::string& name)
      : descriptor(::open(name.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor < 0) throw Failure(Texts::cannotRead(name, strerror(errno)));
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { ::close(descriptor); }

  int get() const { return descriptor; }

 private:
  int descriptor;
};

bool canBeReplaced(const std::string& name) {
  std::error_code ignored;
  const std::filesystem::file_type type = std::filesystem::status(name, ignored).type();
  return type == std::filesystem::file_type::regular ||
         type == std::filesystem::file_type::not_found;
}

void writeTarget(const std::string& target, std::string_view bytes) {
  if (!canBeReplaced(target)) return writeFile(target, bytes);
  Quarry::FileReplacement replacement(target);
  if (!replacement.write(bytes)) throw Failure(Texts::cannotSave(target, replacement.getProblem()));
}

}  // namespace

std::string readFile(const std::string& name, unsigned long most) {
  return readAll(OpenFile(name).get(), name, most);
}

std::string readStandardInput(const std::string& shownName, unsigned long most) {
  return readAll(STDIN_FILENO, shownName, most);
}

bool isCompressed(std::string_view bytes) { return bytes.starts_with("\x1F\x8B"); }

void writeData(const std::string& target, std::string_view bytes, Output& output) {
  if (target != "-") return writeTarget(target, bytes);
  if (isatty(STDOUT_FILENO) == 1) throw Failure(Texts::noBinaryOnTerminal());
  output.write(bytes);
}

void writeText(const std::string& target, std::string_view text, Output& output) {
  if (target != "-") return writeTarget(target, text);
  output.writeText(text);
}

}  // namespace Tool
