/// Tells on a terminal what takes long.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace Tool {

/// Shows a line on standard error, where that is a terminal, once the program has run for a second,
/// with the time that has gone by. The line is gone when this object is: nothing else may be
/// written while it lives. Within the life of another, an object shows nothing: the whole work has
/// the line.
class Progress {
 public:
  /// @param work what is being done
  explicit Progress(const std::string& work);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void run();
  void draw();

  const std::string text;
  std::mutex mutex;
  std::condition_variable ended;
  bool hasEnded = false;
  bool isDrawn = false;
  std::thread thread;
};

}  // namespace Tool
