#include "utils/StreamLogger.h"

#include <ostream>
#include <string>

#include "platform/WkDate.h"

namespace com::veltrana::qvx::utils {

namespace {

void appendOneLine(std::string& line, const IUString& text) {
  const std::size_t start = line.size();
  line += text.toUtf8();
  for (std::size_t i = start; i < line.size(); ++i) {
    if (line[i] == '\n' || line[i] == '\r') line[i] = ' ';
  }
}

}  // namespace

StreamLogger::StreamLogger(std::ostream& out, std::int32_t level) : ILogger(level), out_(out) {}

StreamLogger::~StreamLogger() = default;

IUString StreamLogger::levelName(std::int32_t level) {
  switch (level) {
    case ERROR_LEVEL:
      return "ERROR";
    case NOTICE_LEVEL:
      return "NOTICE";
    case WARNING_LEVEL:
      return "WARNING";
    case PROGRESS_LEVEL:
      return "PROGRESS";
    case DEBUG_LEVEL:
      return "DEBUG";
    default:
      return IUString::format("LEVEL%d", level);
  }
}

void StreamLogger::logMessage(const WkDate* time, MsgLevel level, const IUString& text, int code,
                              const IUString& context) {
  if (!isLoggable(level)) return;
  WkDate now;
  if (time == nullptr) {
    now.SetToNow();
    time = &now;
  }

  std::string line = convertTimeToUTCStr(time->toTime()).toUtf8();
  line += ' ';
  line += levelName(level).toUtf8();
  line += ' ';
  if (code != 0) {
    line += '[';
    line += std::to_string(code);
    line += "] ";
  }
  appendOneLine(line, text);
  if (!context.isEmpty()) {
    line += " (";
    appendOneLine(line, context);
    line += ')';
  }
  line += '\n';

  WkMutexGuard guard(lock_);
  out_.write(line.data(), static_cast<std::streamsize>(line.size()));
}

}  // namespace com::veltrana::qvx::utils
