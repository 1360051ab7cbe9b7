// The logging wrapper that components hold: it forwards to an ILogger, owning it or
// not, and is silent when it holds none. Components ask isLoggable before they build
// a message, so texts are formatted only when they will be written.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"
#include "utils/ILogger.h"

namespace com::veltrana::qvx::utils {

// Adds no locking: one component (and so one thread) uses a wrapper at a time; a
// logger shared by several wrappers must be thread-safe itself.
class QVX_API ILoggerUtils {
 public:
  ILoggerUtils() = default;
  // Takes ownership of `logger` when `owns` is true. `logger` may be null.
  ILoggerUtils(ILogger* logger, IBOOLEAN owns);
  ILoggerUtils(const ILoggerUtils&) = delete;
  ILoggerUtils& operator=(const ILoggerUtils&) = delete;
  ~ILoggerUtils();

  // Replaces the logger (null for none); a previously owned, different logger is
  // deleted. Takes ownership of `logger` when `owns` is true.
  void setLogger(ILogger* logger, IBOOLEAN owns);
  // The logger in use, may be null; still owned as setLogger said.
  ILogger* getLogger() const { return logger_; }

  IBOOLEAN isLoggable(ILogger::MsgLevel level) const {
    return logger_ != nullptr ? logger_->isLoggable(level) : IFALSE;
  }

  // Writes `text` at `level`, stamped with the current time, when the level is
  // enabled. The narrow form takes UTF-8.
  void log(ILogger::MsgLevel level, const char* text);
  void log(ILogger::MsgLevel level, const IUString& text);

 private:
  void releaseOwned();

  ILogger* logger_ = nullptr;
  bool owns_ = false;
};

}  // namespace com::veltrana::qvx::utils
