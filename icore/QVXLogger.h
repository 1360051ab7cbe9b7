// The logger that the library offers to clients and that components create when
// their caller gives them none. It is deliberately silent: it accepts levels 1 to 3
// and swallows every message. It keeps, unused by the library, the mechanism for
// opening a log file of its own (a "QVX_logs" directory and time-stamped names).
#pragma once

#include <fstream>

#include "platform/IUString.h"
#include "platform/QvxExport.h"
#include "platform/WkMutex.h"
#include "utils/ILogger.h"

namespace com::veltrana::qvx::icore {

class QVX_API QVXLogger : public utils::ILogger {
 public:
  // The name is not kept: no directory is chosen and no file is opened.
  explicit QVXLogger(IUString logName);
  ~QVXLogger() override;

  // Writes nothing, whatever the arguments.
  void logMessage(const WkDate* time, MsgLevel level, const IUString& text, int code,
                  const IUString& context) override;

  // Closes the log file, if one is open.
  void close();

 private:
  friend class QVXLoggerTestPeer;

  QVXLogger();

  // Makes "QVX_logs" (in the current directory) the log directory, creating it when
  // it is not there; when it cannot be created the directory is ".".
  void setLogDirectory();
  // Closes any open file and opens a new one named by getNewLogFileName(name) for
  // appending. Throws io::exception::IOException (message 77013) when it does not
  // open; the logger then has no open file.
  void initialize(IUString name);
  // "<dir>/<name>-<MMDDYYYYHHMISSmmm>-<low 32 bits of this logger's address>.log";
  // without a log directory the "<dir>/" part is left out. The address tells apart
  // loggers that ask for a name in the same millisecond.
  IUString getNewLogFileName(IUString name);

  IUString logFileName_;
  IUString logDirectory_;
  std::ofstream logStream_;
  IUString buffer_;
  WkMutex lock_;
};

}  // namespace com::veltrana::qvx::icore
