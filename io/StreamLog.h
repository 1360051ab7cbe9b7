// Logging and throwing helpers shared by the binary stream classes. Texts are built only
// when the logger takes the level; every thrown error is logged at error level first.
#pragma once

#include <cstdint>
#include <memory>

#include "icore/QVXLogger.h"
#include "icore/QVXMsgCatalog.h"
#include "platform/IUString.h"
#include "utils/ILoggerUtils.h"

namespace com::veltrana::qvx::io::detail {

using utils::ILogger;
using utils::ILoggerUtils;

// The logging wrapper of a stream: around the caller's logger (not owned), or around a
// silent logger named `name` that the wrapper owns.
inline std::unique_ptr<ILoggerUtils> makeStreamLogger(ILogger* logger, const char* name) {
  if (logger != nullptr) return std::make_unique<ILoggerUtils>(logger, IFALSE);
  return std::make_unique<ILoggerUtils>(new icore::QVXLogger(IUString(name)), ITRUE);
}

inline bool isProgressLogged(ILoggerUtils& logger) { return logger.isLoggable(ILogger::PROGRESS_LEVEL) != IFALSE; }

inline void logProgress(ILoggerUtils& logger, const char* text) {
  if (isProgressLogged(logger)) logger.log(ILogger::PROGRESS_LEVEL, text);
}

// `pattern` is formatted with `args` (IUString::format) only when progress is logged.
template <typename... Args>
void logProgressf(ILoggerUtils& logger, const char* pattern, const Args&... args) {
  if (isProgressLogged(logger)) logger.log(ILogger::PROGRESS_LEVEL, IUString::format(IUString(pattern), args...));
}

inline void logError(ILoggerUtils& logger, const IUString& text) {
  if (logger.isLoggable(ILogger::ERROR_LEVEL) != IFALSE) logger.log(ILogger::ERROR_LEVEL, text);
}

// Logs catalog message `number`, formatted with `args`, at error level and throws it as
// an Exception.
template <typename Exception, typename... Args>
[[noreturn]] void throwLogged(ILoggerUtils& logger, int number, const Args&... args) {
  const IUString text = icore::qvxFormatMsg(number, args...);
  logError(logger, text);
  throw Exception(text);
}

// The same for errors in input: the message ends with the byte offset in the stream at
// which the reader stood, so that a bad stream can be examined.
template <typename Exception, typename... Args>
[[noreturn]] void throwLoggedAt(ILoggerUtils& logger, std::int64_t offset, int number, const Args&... args) {
  const IUString text = icore::qvxFormatMsg(number, args...) +
                        IUString::format(IUString(" (binary stream offset %lld)"), static_cast<long long>(offset));
  logError(logger, text);
  throw Exception(text);
}

}  // namespace com::veltrana::qvx::io::detail
