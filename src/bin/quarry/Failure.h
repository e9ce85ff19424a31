/// Why a command cannot go on.
#pragma once

#include <stdexcept>

namespace Tool {

/// Thrown with a message for the person at the keyboard; main() turns it into an exit status.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace Tool
