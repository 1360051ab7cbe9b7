// The logger interface that every component of the library reports through (via
// ILoggerUtils). Clients implement logMessage to send the lines where they want;
// the library supplies QVXLogger (silent) and StreamLogger (lines to a std::ostream).
#pragma once

#include <cstdint>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

class WkDate;

namespace com::veltrana::qvx::utils {

// The level is a plain value, read and written without synchronisation: set it before
// the logger is shared between threads.
class QVX_API ILogger {
 public:
  // Message levels; a message is written when its level is at most the logger's.
  // The library logs errors at 1, warnings at 3 and step-by-step progress at 4; a
  // logger at LEVEL_OFF writes nothing.
  enum MsgLevel : std::int32_t {
    LEVEL_OFF = 0,
    ERROR_LEVEL = 1,
    NOTICE_LEVEL = 2,
    WARNING_LEVEL = 3,
    PROGRESS_LEVEL = 4,
    DEBUG_LEVEL = 5,
  };

  explicit ILogger(std::int32_t level);
  ILogger(const ILogger&) = delete;
  ILogger& operator=(const ILogger&) = delete;
  virtual ~ILogger();

  // False whenever the logger is off (level 0), even for level 0 itself; otherwise
  // whether `level` is at most the logger's level.
  IBOOLEAN isLoggable(MsgLevel level) const { return level_ != LEVEL_OFF && level_ >= level ? ITRUE : IFALSE; }
  std::int32_t getLevel() const { return level_; }
  void setLevel(std::int32_t level) { level_ = level; }

  // Writes one message. `time` is when it was raised (may be null: now), `code` a
  // number the caller attaches (0 for none), `context` where it was raised (may be
  // empty). Callers test isLoggable first; implementations may filter again.
  virtual void logMessage(const WkDate* time, MsgLevel level, const IUString& text, int code,
                          const IUString& context) = 0;

 private:
  std::int32_t level_;
};

}  // namespace com::veltrana::qvx::utils
