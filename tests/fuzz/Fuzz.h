/// What all fuzz targets share.
#pragma once

#include <Plinth/Console.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Every target defines this. It is called with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzz {

/// Ends the program where something does not hold that has to, in every kind of build.
inline void require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: what has to hold here does not hold\n", file, line);
  std::abort();
}

/// An input: a text or binary data, and behind it the bytes that choose what is done with it. So a
/// document can be an input as it is.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : bytes(reinterpret_cast<const char*>(data), size) {}

  /// Takes the last byte off and returns it; 0 when none is left.
  unsigned takeChoice() {
    if (bytes.empty()) return 0;
    const auto last = static_cast<unsigned char>(bytes.back());
    bytes.pop_back();
    return last;
  }

  const std::string& getBytes() const { return bytes; }

  /// Returns the bytes up to the first `separator`, and takes both off.
  std::string takePart(char separator) {
    const std::size_t end = bytes.find(separator);
    std::string part = bytes.substr(0, end);
    bytes.erase(0, end == std::string::npos ? end : end + 1);
    return part;
  }

 private:
  std::string bytes;
};

/// Keeps the console silent, from before the first input on.
class SilentConsole {
 public:
  SilentConsole() {
    Plinth::console.setHandler(
        [](Plinth::Console::Level, const std::string& message, const std::string& second) {
          require(!message.empty() && second.empty());
        });
  }
};

inline const SilentConsole silentConsole;

}  // namespace Fuzz
