/// Stands between the library and the system while a document is read or saved.
#pragma once

#include <string>
#include <vector>

namespace Saving {

/// What happens to the call that is chosen.
enum class Fault {
  NONE,
  FAILS,         ///< it fails, and what it was to do is not done
  ENDS_PROCESS,  ///< the process ends before it, as if it was killed
};

/// As long as this lives, the system calls of this program that reading and saving make are
/// counted, and one of them meets a fault.
class SystemCalls {
 public:
  /// @param number which call meets it, from 1
  /// @param error what a failing call tells
  explicit SystemCalls(Fault fault = Fault::NONE, int number = 0, int error = 0);
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;
  ~SystemCalls();

  /// Lets no call write more than so many bytes.
  void setLargestWrite(unsigned long bytes);

  /// Returns the names of the calls that were made, in order.
  const std::vector<std::string>& getNames() const;
};

/// How a process that a fault has ended exits.
constexpr int ENDED_BY_FAULT = 99;

}  // namespace Saving
