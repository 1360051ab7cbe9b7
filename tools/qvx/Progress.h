// A progress line on standard error for work that runs longer than a second: the step's
// name and the time spent so far, redrawn twice a second and erased when the step ends.
// Shown only when standard error is a terminal, never in a pipe or a file. The
// environment variable QVX_PROGRESS_AFTER_MS changes the second to another wait.
#pragma once
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace qvx_tool {

class Progress {
 public:
  explicit Progress(std::string step);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void run();

  std::string step_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool done_ = false;
  bool shown_ = false;
  std::thread ticker_;
};

}  // namespace qvx_tool
