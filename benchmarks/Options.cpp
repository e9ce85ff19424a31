#include "Options.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace QuarryBenchmarks {

namespace {

/// Takes the first argument that begins with `option` and returns what follows there.
std::optional<std::string> take(int& argc, char** argv, std::string_view option) {
  char** const end = argv + argc;
  char** const found = std::find_if(argv + 1, end, [option](std::string_view argument) {
    return argument.substr(0, option.size()) == option;
  });
  if (found == end) return std::nullopt;
  std::string value(std::string_view(*found).substr(option.size()));
  std::copy(found + 1, end + 1, found);  // with the null behind the last one
  --argc;
  return value;
}

unsigned long parseMegabytes(const std::string& text) {
  unsigned long megabytes = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, megabytes);
  if (result.ec != std::errc() || result.ptr != end || megabytes == 0)
    throw std::invalid_argument("--scaling needs a number of megabytes, not '" + text + "'");
  return megabytes;
}

}  // namespace

Options takeOptions(int& argc, char** argv) {
  Options options;
  options.documents = take(argc, argv, "--documents=").value_or("");
  options.generated = take(argc, argv, "--generated").has_value();
  options.big = take(argc, argv, "--big").has_value();
  options.memory = take(argc, argv, "--memory").has_value();
  if (const std::optional<std::string> size = take(argc, argv, "--scaling="))
    options.scalingMegabytes = parseMegabytes(*size);
  return options;
}

}  // namespace QuarryBenchmarks
