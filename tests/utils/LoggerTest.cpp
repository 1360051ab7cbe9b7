// Tests of the logger interface's level filter, the wrapper that components hold and
// the stream logger's lines.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>

#include "platform/WkDate.h"
#include "utils/ILoggerUtils.h"
#include "utils/StreamLogger.h"

namespace com::veltrana::qvx::utils {

TEST(LoggerTest, StreamLoggerWritesOneLinePerMessageUpToItsLevel) {
  std::ostringstream out;
  StreamLogger logger(out, ILogger::WARNING_LEVEL);
  const WkDate time = WkDate::fromTime(86400 + 3661);
  logger.logMessage(&time, ILogger::ERROR_LEVEL, "Unknown element ozl:thing.", 78013, "XMLDeserializer");
  logger.logMessage(&time, ILogger::PROGRESS_LEVEL, "filtered out", 0, "");
  logger.logMessage(&time, ILogger::WARNING_LEVEL, "first\nsecond\r\nthird", 0, "");
  ILoggerUtils wrapper(&logger, IFALSE);  // as components hold it: it adds the time
  wrapper.log(ILogger::PROGRESS_LEVEL, "filtered out");
  wrapper.log(ILogger::NOTICE_LEVEL, IUString(u"\u00e9t\u00e9"));
  ILoggerUtils().log(ILogger::ERROR_LEVEL, "nobody listens");
  const std::regex expected(
      "01/02/1970 01:01:01 ERROR \\[78013\\] Unknown element ozl:thing\\. \\(XMLDeserializer\\)\n"
      "01/02/1970 01:01:01 WARNING first second  third\n"
      "\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d NOTICE \xC3\xA9t\xC3\xA9\n");
  EXPECT_TRUE(std::regex_match(out.str(), expected)) << out.str();
  // Level 0 switches everything off, even messages of level 0.
  logger.setLevel(ILogger::LEVEL_OFF);
  EXPECT_FALSE(logger.isLoggable(ILogger::LEVEL_OFF));
  EXPECT_FALSE(logger.isLoggable(ILogger::ERROR_LEVEL));
  logger.setLevel(ILogger::ERROR_LEVEL);
  EXPECT_TRUE(logger.isLoggable(ILogger::LEVEL_OFF));
  EXPECT_FALSE(logger.isLoggable(ILogger::NOTICE_LEVEL));
}

}  // namespace com::veltrana::qvx::utils
