/// Why a command cannot go on.
#pragma once

#include <exception>
#include <stdexcept>

namespace Tool {

/// Thrown with a message for the person at the keyboard; main() turns it into an exit status.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Thrown when nobody reads standard output any more, as behind `| head`. That is everyday use and
/// needs no message.
class ReaderGone : public std::exception {};

}  // namespace Tool
