// Tests of the library's logger: silent in use, and its file-opening mechanism
// (directory choice, time-stamped names, failure to open), reached through a peer
// class because no library code calls it.
#include "icore/QVXLogger.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <regex>
#include <string>

#include "icore/QVXMsgCatalog.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::icore {

class QVXLoggerTestPeer {
 public:
  static void setLogDirectory(QVXLogger& logger) { logger.setLogDirectory(); }
  static void initialize(QVXLogger& logger, const IUString& name) { logger.initialize(name); }
  static IUString getNewLogFileName(QVXLogger& logger, const IUString& name) { return logger.getNewLogFileName(name); }
  static const IUString& logDirectory(const QVXLogger& logger) { return logger.logDirectory_; }
  static void setLogDirectory(QVXLogger& logger, const IUString& directory) { logger.logDirectory_ = directory; }
  static const IUString& logFileName(const QVXLogger& logger) { return logger.logFileName_; }
  static bool isFileOpen(const QVXLogger& logger) { return logger.logStream_.is_open(); }
};

namespace {

namespace fs = std::filesystem;
using Peer = QVXLoggerTestPeer;

// Runs a test inside a fresh temporary directory and returns to the old one after.
class InTempDirectory {
 public:
  InTempDirectory() : previous_(fs::current_path()) {
    std::string pattern = (fs::temp_directory_path() / "qvx-logger-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
    fs::current_path(path_);
  }
  ~InTempDirectory() {
    fs::current_path(previous_);
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  InTempDirectory(const InTempDirectory&) = delete;
  InTempDirectory& operator=(const InTempDirectory&) = delete;
  const fs::path& path() const { return path_; }
  bool isEmpty() const { return fs::is_empty(path_); }

 private:
  fs::path previous_;
  fs::path path_;
};

struct NameParts {
  std::string stamp;    // MMDDYYYYHHMISSmmm
  std::string address;  // decimal
};

// Splits "<prefix><name>-<17 digits>-<digits>.log"; fails the test when it does not fit.
NameParts splitFileName(const IUString& fileName, const std::string& expectedPrefix) {
  const std::regex shape(R"((.*)-(\d{17})-(\d+)\.log)");
  std::smatch match;
  const std::string text = fileName.toUtf8();
  NameParts parts;
  EXPECT_TRUE(std::regex_match(text, match, shape)) << text;
  if (match.empty()) return parts;
  EXPECT_EQ(match[1].str(), expectedPrefix);
  parts.stamp = match[2].str();
  parts.address = match[3].str();
  return parts;
}

// MMDDYYYYHHMISSmmm -> YYYYMMDDHHMISSmmm, which orders like the time it stands for.
std::string sortableStamp(const std::string& stamp) { return stamp.substr(4, 4) + stamp.substr(0, 4) + stamp.substr(8); }

std::string nowSortable() {
  WkDate now;
  now.SetToNow();
  return now.format("YYYYMMDDHH24MISSms").toUtf8();
}

std::string addressNumber(const void* object) {
  return std::to_string(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(object)));
}

TEST(QVXLoggerTest, AcceptsLevelsOneToThreeAndSwallowsEverythingWithoutTouchingDisk) {
  InTempDirectory directory;
  {
    QVXLogger logger("XMLSerializer");
    EXPECT_EQ(logger.getLevel(), 3);
    EXPECT_TRUE(logger.isLoggable(utils::ILogger::ERROR_LEVEL));
    EXPECT_TRUE(logger.isLoggable(utils::ILogger::WARNING_LEVEL));
    EXPECT_FALSE(logger.isLoggable(utils::ILogger::PROGRESS_LEVEL));
    WkDate now;
    now.SetToNow();
    for (int level = 0; level <= 5; ++level) {
      logger.logMessage(&now, static_cast<utils::ILogger::MsgLevel>(level), "text", 42, "context");
    }
    logger.logMessage(nullptr, utils::ILogger::ERROR_LEVEL, "text", 0, "");
    EXPECT_FALSE(Peer::isFileOpen(logger));
    EXPECT_TRUE(Peer::logFileName(logger).isEmpty());
    EXPECT_TRUE(Peer::logDirectory(logger).isEmpty());
    logger.close();
  }
  EXPECT_TRUE(directory.isEmpty()) << "the logger created a file or directory";
}

TEST(QVXLoggerTest, FileNameIsNameTimeDigitsAndAddressNumber) {
  QVXLogger logger("ignored");
  const std::string before = nowSortable();
  const IUString fileName = Peer::getNewLogFileName(logger, "run");
  const std::string after = nowSortable();

  const NameParts parts = splitFileName(fileName, "run");
  ASSERT_EQ(parts.stamp.size(), 17u);
  EXPECT_LE(before, sortableStamp(parts.stamp));
  EXPECT_LE(sortableStamp(parts.stamp), after);
  EXPECT_EQ(parts.address, addressNumber(&logger));

  Peer::setLogDirectory(logger, "some/dir");
  splitFileName(Peer::getNewLogFileName(logger, "run"), "some/dir/run");
}

TEST(QVXLoggerTest, TwoLoggersInTheSameMillisecondGetDifferentNames) {
  QVXLogger first("same");
  QVXLogger second("same");
  // Retry until both names carry the same time stamp, the case the address is for.
  for (int attempt = 0; attempt < 1000; ++attempt) {
    const IUString a = Peer::getNewLogFileName(first, "same");
    const IUString b = Peer::getNewLogFileName(second, "same");
    const NameParts partsA = splitFileName(a, "same");
    const NameParts partsB = splitFileName(b, "same");
    if (partsA.stamp != partsB.stamp) continue;
    EXPECT_NE(a, b);
    EXPECT_EQ(partsA.address, addressNumber(&first));
    EXPECT_EQ(partsB.address, addressNumber(&second));
    return;
  }
  FAIL() << "never got two names within one millisecond";
}

TEST(QVXLoggerTest, LogDirectoryIsQvxLogsCreatedWhenMissing) {
  InTempDirectory directory;
  QVXLogger logger("ignored");
  Peer::setLogDirectory(logger);
  EXPECT_EQ(Peer::logDirectory(logger), IUString("QVX_logs"));
  EXPECT_TRUE(fs::is_directory(directory.path() / "QVX_logs"));

  // An existing directory is simply taken.
  QVXLogger other("ignored");
  Peer::setLogDirectory(other);
  EXPECT_EQ(Peer::logDirectory(other), IUString("QVX_logs"));

  Peer::initialize(logger, "session");
  EXPECT_TRUE(Peer::isFileOpen(logger));
  splitFileName(Peer::logFileName(logger), "QVX_logs/session");
  EXPECT_TRUE(fs::is_regular_file(directory.path() / Peer::logFileName(logger).toUtf8()));
  logger.close();
  EXPECT_FALSE(Peer::isFileOpen(logger));
}

TEST(QVXLoggerTest, LogDirectoryFallsBackToCurrentDirectoryWhenItCannotBeCreated) {
  InTempDirectory directory;
  // A working directory that has been removed: nothing can be created in it, even
  // with root rights.
  const fs::path doomed = directory.path() / "removed";
  fs::create_directory(doomed);
  fs::current_path(doomed);
  fs::remove(doomed);

  QVXLogger logger("ignored");
  Peer::setLogDirectory(logger);
  EXPECT_EQ(Peer::logDirectory(logger), IUString("."));
  fs::current_path(directory.path());
}

TEST(QVXLoggerTest, InitializeThrowsIOExceptionWithMessage77013WhenTheFileDoesNotOpen) {
  QVXLogger logger("ignored");
  Peer::setLogDirectory(logger, "/nonexistent-qvx-directory/deeper");
  try {
    Peer::initialize(logger, "session");
    FAIL() << "opening a log file in a missing directory succeeded";
  } catch (const io::exception::IOException& e) {
    EXPECT_FALSE(e.getMessage().isEmpty());
    EXPECT_EQ(e.getMessage(), qvxGetMsg(77013));
  }
  EXPECT_FALSE(Peer::isFileOpen(logger));
}

}  // namespace
}  // namespace com::veltrana::qvx::icore
