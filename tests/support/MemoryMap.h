/// What the system tells of the process's own memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace TestSupport {

/// Returns the flags of the mapping in which an address lies, each between blanks, as in
/// " rd wr mr "; nothing where the system does not tell them, or nothing is mapped there.
inline std::optional<std::string> getMappingFlags(const void* address) {
  constexpr char FLAGS[] = "VmFlags:";
  const auto wanted = reinterpret_cast<std::uintptr_t>(address);
  std::ifstream file("/proc/self/smaps");
  bool isWanted = false;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    if (words >> std::hex >> begin >> dash >> end && dash == '-') {
      isWanted = begin <= wanted && wanted < end;
    } else if (isWanted && line.starts_with(FLAGS)) {
      return " " + line.substr(sizeof FLAGS - 1) + " ";
    }
  }
  return std::nullopt;
}

/// Returns how many bytes the process has mapped, used or not.
inline std::size_t getMappedBytes() {
  constexpr char SIZE[] = "VmSize:";
  std::ifstream file("/proc/self/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(SIZE)) return std::stoul(line.substr(sizeof SIZE - 1)) * 1024;
  }
  return 0;
}

/// Tells whether all of so many bytes, which begin a page, belong to the process.
inline bool isMapped(void* begin, std::size_t size) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  std::vector<unsigned char> pages((size + page - 1) / page);
  return ::mincore(begin, size, pages.data()) == 0;
}

/// The kinds of mapping that have large pages, and that must not have any.
constexpr char WITH_LARGE_PAGES[] = " hg ";
constexpr char WITHOUT_LARGE_PAGES[] = " nh ";

/// Tells whether the system has large pages and tells who asked for them. An emulator does not.
inline bool tellsLargePages() {
  constexpr std::size_t SIZE = std::size_t(1) << 22;
  void* memory = ::mmap(nullptr, SIZE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return false;
  ::madvise(memory, SIZE, MADV_HUGEPAGE);
  const std::string flags = getMappingFlags(memory).value_or("");
  ::munmap(memory, SIZE);
  return flags.find(WITH_LARGE_PAGES) != std::string::npos;
}

}  // namespace TestSupport
