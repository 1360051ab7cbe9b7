// Tests of the logger interface's level filter, the wrapper that components hold
// (forwarding, silence without a logger, ownership) and the stream logger's lines.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "platform/WkDate.h"
#include "utils/ILogger.h"
#include "utils/ILoggerUtils.h"
#include "utils/StreamLogger.h"

namespace com::veltrana::qvx::utils {
namespace {

struct Record {
  bool hasTime;
  ILogger::MsgLevel level;
  IUString text;
  int code;
};

// Keeps what it is given; counts its own destruction for the ownership tests.
class RecordingLogger : public ILogger {
 public:
  explicit RecordingLogger(std::int32_t level, int* destroyed = nullptr) : ILogger(level), destroyed_(destroyed) {}
  ~RecordingLogger() override {
    if (destroyed_ != nullptr) ++*destroyed_;
  }
  void logMessage(const WkDate* time, MsgLevel level, const IUString& text, int code, const IUString&) override {
    records.push_back({time != nullptr, level, text, code});
  }
  std::vector<Record> records;

 private:
  int* destroyed_;
};

std::vector<int> loggableLevels(const ILogger& logger) {
  std::vector<int> levels;
  for (int level = 0; level <= 6; ++level) {
    if (logger.isLoggable(static_cast<ILogger::MsgLevel>(level))) levels.push_back(level);
  }
  return levels;
}

TEST(LoggerTest, LevelFilterFollowsTheLoggersLevelAndZeroSwitchesAllOff) {
  RecordingLogger logger(0);
  EXPECT_EQ(loggableLevels(logger), std::vector<int>{});
  logger.setLevel(ILogger::WARNING_LEVEL);
  EXPECT_EQ(loggableLevels(logger), (std::vector<int>{0, 1, 2, 3}));
  logger.setLevel(ILogger::ERROR_LEVEL);
  EXPECT_EQ(loggableLevels(logger), (std::vector<int>{0, 1}));
  logger.setLevel(ILogger::LEVEL_OFF);
  EXPECT_EQ(loggableLevels(logger), std::vector<int>{});
}

TEST(LoggerTest, WrapperWithoutLoggerIsSilent) {
  ILoggerUtils wrapper;
  EXPECT_EQ(wrapper.getLogger(), nullptr);
  EXPECT_FALSE(wrapper.isLoggable(ILogger::ERROR_LEVEL));
  wrapper.log(ILogger::ERROR_LEVEL, "nobody listens");
  wrapper.log(ILogger::ERROR_LEVEL, IUString("nobody listens"));
  wrapper.setLogger(nullptr, ITRUE);
  EXPECT_FALSE(wrapper.isLoggable(ILogger::ERROR_LEVEL));
}

TEST(LoggerTest, WrapperForwardsEnabledLevelsWithTimeAndText) {
  RecordingLogger logger(ILogger::WARNING_LEVEL);
  ILoggerUtils wrapper(&logger, IFALSE);
  EXPECT_TRUE(wrapper.isLoggable(ILogger::WARNING_LEVEL));
  EXPECT_FALSE(wrapper.isLoggable(ILogger::PROGRESS_LEVEL));

  wrapper.log(ILogger::PROGRESS_LEVEL, "progress is filtered");
  wrapper.log(ILogger::ERROR_LEVEL, "caf\xC3\xA9 narrow");
  wrapper.log(ILogger::WARNING_LEVEL, IUString(u"wide \u20AC"));
  wrapper.log(ILogger::ERROR_LEVEL, static_cast<const char*>(nullptr));

  ASSERT_EQ(logger.records.size(), 3u);
  EXPECT_EQ(logger.records[0].level, ILogger::ERROR_LEVEL);
  EXPECT_EQ(logger.records[0].text, IUString(u"caf\u00e9 narrow"));
  EXPECT_TRUE(logger.records[0].hasTime);
  EXPECT_EQ(logger.records[0].code, 0);
  EXPECT_EQ(logger.records[1].level, ILogger::WARNING_LEVEL);
  EXPECT_EQ(logger.records[1].text, IUString(u"wide \u20AC"));
  EXPECT_TRUE(logger.records[2].text.isEmpty());
}

TEST(LoggerTest, WrapperDeletesOnlyTheLoggerItOwns) {
  int destroyed = 0;
  RecordingLogger borrowed(ILogger::ERROR_LEVEL, &destroyed);
  {
    ILoggerUtils wrapper(&borrowed, IFALSE);
  }
  EXPECT_EQ(destroyed, 0);

  {
    ILoggerUtils wrapper(new RecordingLogger(ILogger::ERROR_LEVEL, &destroyed), ITRUE);
    ILogger* owned = wrapper.getLogger();
    wrapper.setLogger(owned, ITRUE);  // the same logger again is not deleted
    EXPECT_EQ(destroyed, 0);
    wrapper.setLogger(&borrowed, IFALSE);  // replacing an owned logger deletes it
    EXPECT_EQ(destroyed, 1);
    wrapper.setLogger(new RecordingLogger(ILogger::ERROR_LEVEL, &destroyed), ITRUE);
  }
  EXPECT_EQ(destroyed, 2);
}

TEST(LoggerTest, StreamLoggerWritesOneFilteredLinePerMessage) {
  std::ostringstream out;
  StreamLogger logger(out, ILogger::WARNING_LEVEL);
  const WkDate epoch = WkDate::fromTime(86400 + 3661);

  logger.logMessage(&epoch, ILogger::ERROR_LEVEL, "Unknown element ozl:thing.", 78013, "XMLDeserializer");
  logger.logMessage(&epoch, ILogger::PROGRESS_LEVEL, "filtered out", 0, "");
  logger.logMessage(&epoch, ILogger::WARNING_LEVEL, "first\nsecond\r\nthird", 0, "");
  logger.logMessage(nullptr, ILogger::NOTICE_LEVEL, IUString(u"\u00e9t\u00e9"), 0, "");

  std::istringstream lines(out.str());
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line, "01/02/1970 01:01:01 ERROR [78013] Unknown element ozl:thing. (XMLDeserializer)");
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(line, "01/02/1970 01:01:01 WARNING first second  third");
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_TRUE(std::regex_match(line, std::regex(R"(\d\d/\d\d/\d{4} \d\d:\d\d:\d\d NOTICE \xC3\xA9t\xC3\xA9)"))) << line;
  EXPECT_FALSE(std::getline(lines, line));

  EXPECT_EQ(StreamLogger::levelName(ILogger::DEBUG_LEVEL), IUString("DEBUG"));
  EXPECT_EQ(StreamLogger::levelName(9), IUString("LEVEL9"));
}

}  // namespace
}  // namespace com::veltrana::qvx::utils
