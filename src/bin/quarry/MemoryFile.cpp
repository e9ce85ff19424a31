#include "MemoryFile.h"

#include "Failure.h"
#include "Output.h"
#include "Texts.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace Tool {

namespace {

constexpr std::size_t BLOCK_SIZE = 1 << 16;

void fail() { throw Failure(Texts::cannotBuffer(strerror(errno))); }

}  // namespace

MemoryFile::MemoryFile()
    : descriptor(memfd_create("quarry", MFD_CLOEXEC)),
      path("/proc/self/fd/" + std::to_string(descriptor)) {
  if (descriptor < 0) fail();
}

MemoryFile::~MemoryFile() { close(descriptor); }

std::string MemoryFile::read() const {
  std::string bytes;
  std::array<char, BLOCK_SIZE> block;
  for (;;) {
    const ssize_t count =
        pread(descriptor, block.data(), block.size(), static_cast<off_t>(bytes.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail();
    if (count == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace Tool
