#include "platform/WkDate.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

std::string show(const WkDate& date) { return date.format("MM/DD/YYYY HH24:MI:SS NS").toUtf8(); }

WkDate at(const char* utcText, std::int32_t nanosecond = 0) {
  return WkDate::fromTime(convertUTCStrToTime(utcText), nanosecond);
}

TEST(WkDateTest, UtcTextRoundTripsAtEpochLeapDaysAndRangeEnds) {
  // Time values computed independently (calendar.timegm).
  const struct { const char* text; std::int64_t seconds; } cases[] = {
      {"01/01/1970 00:00:00", 0}, {"12/31/1969 23:59:59", -1}, {"02/29/2024 12:00:00", 1709208000},
      {"02/29/2000 23:59:59", 951868799}, {"03/01/1900 00:00:00", -2203891200},
      {"12/31/9999 23:59:59", 253402300799}, {"01/01/0001 00:00:00", -62135596800},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(convertTimeToUTCStr(c.seconds).toUtf8(), c.text);
    EXPECT_EQ(convertUTCStrToTime(c.text), c.seconds) << c.text;
  }
}

TEST(WkDateTest, MalformedUtcTextYieldsZeroAndIsReported) {
  for (const char* bad : {"", "1/1/1970 00:00:00", "01/01/1970 00:00:00 ", "01/01/1970:00:00:00", "01-01-1970 00:00:00",
                          "13/01/2024 00:00:00", "00/10/2024 00:00:00", "02/30/2024 00:00:00", "02/29/2023 00:00:00",
                          "02/29/1900 00:00:00", "01/01/0000 00:00:00", "01/01/2024 24:00:00", "01/01/2024 00:60:00",
                          "01/01/2024 00:00:60", "0a/01/2024 00:00:00", "+1/01/2024 00:00:00"}) {
    std::int64_t seconds = 42;
    EXPECT_FALSE(WkDate::parseUtcText(bad, seconds) || seconds != 42) << bad;
    EXPECT_EQ(convertUTCStrToTime(bad), 0) << bad;
  }
  EXPECT_EQ(convertUTCStrToTime(IUString(u"\uFF101/01/2024 00:00:00")), 0);  // fullwidth digit
}

TEST(WkDateTest, AddToPartCarriesAcrossBoundariesAndRefusesToLeaveTheRange) {
  const char* first = "01/01/0001 00:00:00";
  const char* last = "12/31/9999 23:59:59";
  // A null result: refused, and the date is left as it was.
  const struct { const char* start; std::int32_t nanosecond; const char* part; long long amount; const char* result; }
      cases[] = {
      {"12/31/1999 23:59:59", 999000000, "MS", 1, "01/01/2000 00:00:00 000000000"},
      {"01/01/1970 00:00:00", 0, "MS", -1, "12/31/1969 23:59:59 999000000"},
      {"01/01/2024 06:00:00", 250000000, "ms", 366LL * 86400 * 1000 + 750, "01/01/2025 06:00:01 000000000"},
      {"02/28/2024 12:00:00", 0, "D", 1, "02/29/2024 12:00:00 000000000"},
      {"02/29/2024 12:00:00", 0, "H", 12, "03/01/2024 00:00:00 000000000"},
      {"03/01/2024 00:00:00", 0, "MI", -1, "02/29/2024 23:59:00 000000000"},
      {"02/29/2024 23:59:00", 0, "S", -366LL * 86400, "02/28/2023 23:59:00 000000000"},
      {"02/28/2023 23:59:00", 0, "NS", -1, "02/28/2023 23:58:59 999999999"},
      {last, 0, "D", -3652058, "01/01/0001 23:59:59 000000000"},
      {last, 0, "S", 1, nullptr},          {first, 0, "MS", -1, nullptr},     {first, 0, "D", LLONG_MIN, nullptr},
      {last, 0, "MS", LLONG_MAX, nullptr}, {last, 0, "H", LLONG_MAX / 2, nullptr}, {first, 0, "Y", 1, nullptr},
      {first, 0, nullptr, 1, nullptr},
  };
  for (const auto& c : cases) {
    WkDate date = at(c.start, c.nanosecond);
    const ISTATUS status = date.AddToPart(c.part, c.amount);
    SCOPED_TRACE(std::string(c.start) + " + " + std::to_string(c.amount) + " " + (c.part ? c.part : "null"));
    EXPECT_EQ(status, c.result != nullptr ? ISTATUS_SUCCESS : ISTATUS_FAILURE);
    EXPECT_EQ(show(date), c.result != nullptr ? c.result : show(at(c.start, c.nanosecond)));
  }
}

}  // namespace
