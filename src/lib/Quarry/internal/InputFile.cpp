#include "InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Quarry {

bool isPossibleName(const std::string& path) { return path.find('\0') == std::string::npos; }

bool InputFile::open(const std::string& path) {
  bool isRegular = false;
  return open(path, 0, isRegular);
}

bool InputFile::openRegular(const std::string& path) {
  bool isRegular = false;
  if (open(path, O_NONBLOCK | O_NOCTTY, isRegular) && !isRegular) close();
  return isOpen();
}

bool InputFile::open(const std::string& path, int flags, bool& isRegular) {
  close();
  errno = ENOENT;
  if (isPossibleName(path)) descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
  if (!isOpen()) return false;
  struct stat status = {};
  isRegular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  size = static_cast<std::size_t>(status.st_size);
  return true;
}

void InputFile::close() {
  if (isOpen()) ::close(descriptor);
  descriptor = NONE;
  size = 0;
}

std::size_t InputFile::read(char* bytes, std::size_t most) {
  for (;;) {
    errno = 0;
    const ssize_t count = ::read(descriptor, bytes, most);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) return 0;
  }
}

}  // namespace Quarry
