#include "tools/qvx/Progress.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace qvx_tool {

namespace {

constexpr std::chrono::milliseconds kRedrawInterval{500};

// How long a step runs before its progress shows: a second, or QVX_PROGRESS_AFTER_MS.
std::chrono::milliseconds quietTime() {
  const char* setting = std::getenv("QVX_PROGRESS_AFTER_MS");
  if (setting == nullptr || *setting == '\0') return std::chrono::milliseconds(1000);
  return std::chrono::milliseconds(std::strtol(setting, nullptr, 10));
}

}  // namespace

Progress::Progress(std::string step) : step_(std::move(step)) {
  if (isatty(STDERR_FILENO) == 1) ticker_ = std::thread([this] { run(); });
}

Progress::~Progress() {
  if (!ticker_.joinable()) return;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    done_ = true;
  }
  wake_.notify_one();
  ticker_.join();
  if (shown_) std::fputs("\r\033[K", stderr);  // erase the line
}

void Progress::run() {
  auto const start = std::chrono::steady_clock::now();
  std::unique_lock<std::mutex> lock(mutex_);
  if (wake_.wait_for(lock, quietTime(), [this] { return done_; })) return;
  do {
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::fprintf(stderr, "\r%s ... %.1f s", step_.c_str(), seconds);
    std::fflush(stderr);
    shown_ = true;
  } while (!wake_.wait_for(lock, kRedrawInterval, [this] { return done_; }));
}

}  // namespace qvx_tool
