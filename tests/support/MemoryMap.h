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

/// Tells whether the system has large pages and tells flags.
inline bool tellsLargePages() {
  const int variable = 0;
  return std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled").is_open() &&
         getMappingFlags(&variable).has_value();
}

}  // namespace TestSupport
