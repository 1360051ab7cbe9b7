// Tests of the library's logger: silent in use, and its file-opening mechanism
// (directory, time-stamped names, failure to open), reached through a peer class
// because no library code calls it.
#include "icore/QVXLogger.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <regex>
#include <string>
#include <utility>

#include "icore/QVXMsgCatalog.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"
#include "tests/platform/TestScopes.h"

namespace com::veltrana::qvx::icore {

class QVXLoggerTestPeer {
 public:
  static void setLogDirectory(QVXLogger& logger) { logger.setLogDirectory(); }
  static void setLogDirectory(QVXLogger& logger, const IUString& directory) { logger.logDirectory_ = directory; }
  static void initialize(QVXLogger& logger, const IUString& name) { logger.initialize(name); }
  static const IUString& logFileName(const QVXLogger& logger) { return logger.logFileName_; }
  static bool isFileOpen(const QVXLogger& logger) { return logger.logStream_.is_open(); }
};

namespace {

namespace fs = std::filesystem;
using Peer = QVXLoggerTestPeer;

// A fresh temporary directory that is the current directory for the scope.
class InTempDirectory : public TempDir {
 public:
  InTempDirectory() : previous_(fs::current_path()) { fs::current_path(path()); }
  ~InTempDirectory() { fs::current_path(previous_); }

 private:
  fs::path previous_;
};

// Splits "<prefix>-<MMDDYYYYHHMISSmmm>-<number>.log" into the time stamp, reordered as
// YYYYMMDDHHMISSmmm to sort like the time, and the number.
std::pair<std::string, std::string> splitFileName(const IUString& fileName, const std::string& prefix) {
  const std::string text = fileName.toUtf8();
  std::smatch match;
  if (!std::regex_match(text, match, std::regex(R"((.*)-(\d{4})(\d{4})(\d{9})-(\d+)\.log)")) || match[1] != prefix) {
    ADD_FAILURE() << text << " is not " << prefix << "-<time>-<number>.log";
    return {};
  }
  return {match[3].str() + match[2].str() + match[4].str(), match[5].str()};
}

std::string nowSortable() {
  WkDate now;
  now.SetToNow();
  return now.format("YYYYMMDDHH24MISSms").toUtf8();
}

TEST(QVXLoggerTest, IsSilentAtEveryLevelAndTouchesNoDisk) {
  InTempDirectory directory;
  {
    QVXLogger logger("XMLSerializer");
    EXPECT_EQ(logger.getLevel(), 3);
    for (int level = 0; level <= 5; ++level) {
      logger.logMessage(nullptr, static_cast<utils::ILogger::MsgLevel>(level), "text", 42, "context");
    }
    EXPECT_FALSE(Peer::isFileOpen(logger));
  }
  EXPECT_TRUE(fs::is_empty(directory.path())) << "the logger created a file or directory";
}

// The address in the name tells apart loggers that ask for one in the same millisecond.
TEST(QVXLoggerTest, InitializeOpensATimeStampedFileInQvxLogsOrThrows77013) {
  InTempDirectory directory;
  QVXLogger logger("ignored");
  Peer::setLogDirectory(logger);
  const std::string before = nowSortable();
  Peer::initialize(logger, "session");
  const auto [stamp, number] = splitFileName(Peer::logFileName(logger), "QVX_logs/session");
  EXPECT_LE(before, stamp);
  EXPECT_LE(stamp, nowSortable());
  EXPECT_EQ(number, std::to_string(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&logger))));
  EXPECT_TRUE(fs::is_regular_file(directory.path() / Peer::logFileName(logger).toUtf8()));

  Peer::setLogDirectory(logger, "/nonexistent-qvx-directory/deeper");
  EXPECT_EQ(thrownMessage<io::exception::IOException>([&] { Peer::initialize(logger, "session"); }),
            qvxGetMsg(77013).toUtf8());
  EXPECT_FALSE(Peer::isFileOpen(logger));
}

}  // namespace
}  // namespace com::veltrana::qvx::icore
