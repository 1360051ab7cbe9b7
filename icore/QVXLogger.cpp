#include "icore/QVXLogger.h"

#include <cstdint>
#include <utility>

#include "icore/QVXMsgCatalog.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"
#include "platform/WkSystem.h"

namespace com::veltrana::qvx::icore {

QVXLogger::QVXLogger() : ILogger(WARNING_LEVEL) {}

QVXLogger::QVXLogger(IUString /*logName*/) : ILogger(WARNING_LEVEL) {}

QVXLogger::~QVXLogger() = default;

void QVXLogger::logMessage(const WkDate* /*time*/, MsgLevel /*level*/, const IUString& /*text*/, int /*code*/,
                           const IUString& /*context*/) {}

void QVXLogger::close() {
  if (logStream_.is_open()) logStream_.close();
}

void QVXLogger::setLogDirectory() {
  const IUString directory("QVX_logs");
  if (wkAccess(directory)) {
    logDirectory_ = directory;
    return;
  }
  WkMutexGuard guard(lock_);
  logDirectory_ = wkCreateDir(directory) == ISTATUS_SUCCESS ? directory : IUString(".");
}

void QVXLogger::initialize(IUString name) {
  close();
  logFileName_ = getNewLogFileName(std::move(name));
  // Appending through ofstream leaves the file shared: other processes may read and
  // write it at the same time.
  logStream_.clear();
  logStream_.open(logFileName_.toUtf8(), std::ios::out | std::ios::app);
  if (!logStream_.is_open()) {
    logStream_.clear();
    throw io::exception::IOException(qvxGetMsg(77013));
  }
}

IUString QVXLogger::getNewLogFileName(IUString name) {
  WkDate now;
  now.SetToNow();
  IUString stamp = now.format("MM/DD/YYYY:HH24:MI:SS.ms");
  stamp.replaceAll("/", "").replaceAll(":", "").replaceAll(".", "");
  const auto addressNumber = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this));

  IUString fileName = std::move(name) + "-" + stamp + "-" + IUString::format("%u", addressNumber) + ".log";
  if (logDirectory_.isEmpty()) return fileName;
  return logDirectory_ + "/" + fileName;
}

}  // namespace com::veltrana::qvx::icore
