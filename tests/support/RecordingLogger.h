// A logger that keeps every line it is given, with its level, for tests of what the
// readers and writers log.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/IUString.h"
#include "utils/ILogger.h"

namespace qvx_test {

class RecordingLogger : public com::veltrana::qvx::utils::ILogger {
 public:
  struct Line {
    int level;
    std::string text;
  };

  explicit RecordingLogger(std::int32_t level = PROGRESS_LEVEL) : ILogger(level) {}
  void logMessage(const WkDate*, MsgLevel level, const IUString& text, int, const IUString&) override {
    lines.push_back({level, text.toUtf8()});
  }
  // Whether a line of `level` reads exactly `text`.
  bool has(int level, const std::string& text) const {
    for (const Line& line : lines) {
      if (line.level == level && line.text == text) return true;
    }
    return false;
  }
  // Whether any line contains `part`.
  bool mentions(const std::string& part) const {
    for (const Line& line : lines) {
      if (line.text.find(part) != std::string::npos) return true;
    }
    return false;
  }

  std::vector<Line> lines;
};

}  // namespace qvx_test
