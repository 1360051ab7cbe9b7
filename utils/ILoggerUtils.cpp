#include "utils/ILoggerUtils.h"

#include "platform/WkDate.h"

namespace com::veltrana::qvx::utils {

ILoggerUtils::ILoggerUtils(ILogger* logger, IBOOLEAN owns) : logger_(logger), owns_(owns != IFALSE) {}

ILoggerUtils::~ILoggerUtils() { releaseOwned(); }

void ILoggerUtils::releaseOwned() {
  if (owns_) delete logger_;
  logger_ = nullptr;
  owns_ = false;
}

void ILoggerUtils::setLogger(ILogger* logger, IBOOLEAN owns) {
  if (logger != logger_) releaseOwned();
  logger_ = logger;
  owns_ = logger != nullptr && owns != IFALSE;
}

void ILoggerUtils::log(ILogger::MsgLevel level, const char* text) {
  if (!isLoggable(level)) return;
  log(level, IUString(text != nullptr ? text : ""));
}

void ILoggerUtils::log(ILogger::MsgLevel level, const IUString& text) {
  if (!isLoggable(level)) return;
  WkDate now;
  now.SetToNow();
  logger_->logMessage(&now, level, text, 0, IUString());
}

}  // namespace com::veltrana::qvx::utils
