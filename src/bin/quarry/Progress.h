/// Tells on a terminal what takes long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace Tool {

/// Shows a line on standard error, where that is a terminal, once a second of work is over, with
/// the time that has gone by. The line is gone when this object is, and while it is hidden.
class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// Tells what is being done from now on.
  void show(const std::string& work);

  /// Has to be called before anything else is written.
  void hide();

 private:
  using Clock = std::chrono::steady_clock;

  void run();
  void draw();
  void erase();

  const Clock::time_point start = Clock::now();
  std::mutex mutex;
  std::condition_variable ended;
  bool hasEnded = false;
  bool isDrawn = false;
  std::string text;  ///< empty while hidden
  std::thread thread;
};

}  // namespace Tool
