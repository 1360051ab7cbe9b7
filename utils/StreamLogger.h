// A logger that writes one text line per message to a caller's std::ostream, for
// hosts such as the command-line tool:
//     <MM/DD/YYYY HH:MM:SS UTC> <LEVEL> [<code>] <text> (<context>)
// "[<code>] " appears only for a non-zero code and " (<context>)" only for a
// non-empty context. Line breaks inside the text become blanks, so every message is
// exactly one line. LEVEL is ERROR, NOTICE, WARNING, PROGRESS, DEBUG or LEVEL<n>.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "platform/QvxExport.h"
#include "platform/WkMutex.h"
#include "utils/ILogger.h"

namespace com::veltrana::qvx::utils {

// The stream is not owned and must outlive the logger. Messages above the logger's
// level are dropped. Lines from several threads do not interleave (one lock per
// logger); the stream is not flushed after each line.
class QVX_API StreamLogger : public ILogger {
 public:
  StreamLogger(std::ostream& out, std::int32_t level);
  ~StreamLogger() override;

  void logMessage(const WkDate* time, MsgLevel level, const IUString& text, int code,
                  const IUString& context) override;

  // The name a line shows for `level`.
  static IUString levelName(std::int32_t level);

 private:
  std::ostream& out_;
  WkMutex lock_;
};

}  // namespace com::veltrana::qvx::utils
