#include "platform/WkDate.h"

#include <gtest/gtest.h>

#include <climits>
#include <ctime>
#include <random>
#include <string>

namespace {

std::string text(const IUString& s) { return s.toUtf8(); }

WkDate makeDate(int year, int month, int day, int hour, int minute, int second, std::int32_t nanosecond = 0) {
  WkDate date;
  EXPECT_EQ(date.setDate(year, month, day), ISTATUS_SUCCESS);
  EXPECT_EQ(date.setTime(hour, minute, second, nanosecond), ISTATUS_SUCCESS);
  return date;
}

TEST(WkDateTest, UtcTextRoundTripsAtEpochLeapDaysAndRangeEnds) {
  // Time values computed independently (calendar.timegm).
  const struct {
    const char* text;
    std::int64_t seconds;
  } cases[] = {
      {"01/01/1970 00:00:00", 0},
      {"12/31/1969 23:59:59", -1},
      {"02/29/2024 12:00:00", 1709208000},
      {"02/29/2000 23:59:59", 951868799},
      {"03/01/1900 00:00:00", -2203891200},
      {"01/31/2024 13:45:07", 1706708707},
      {"12/31/9999 23:59:59", 253402300799},
      {"01/01/0001 00:00:00", -62135596800},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(text(convertTimeToUTCStr(c.seconds)), c.text);
    EXPECT_EQ(convertUTCStrToTime(c.text), c.seconds);
  }
}

TEST(WkDateTest, AgreesWithGmtimeOverTheWholeRange) {
  std::mt19937_64 random(20240229);
  std::uniform_int_distribution<std::int64_t> anySecond(WkDate::kMinTime, WkDate::kMaxTime);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t seconds = anySecond(random);
    const std::time_t asTimeT = static_cast<std::time_t>(seconds);
    std::tm expected{};
    ASSERT_NE(gmtime_r(&asTimeT, &expected), nullptr);
    const WkDate date = WkDate::fromTime(seconds);
    ASSERT_EQ(date.getYear(), expected.tm_year + 1900) << seconds;
    ASSERT_EQ(date.getMonth(), expected.tm_mon + 1) << seconds;
    ASSERT_EQ(date.getDay(), expected.tm_mday) << seconds;
    ASSERT_EQ(date.getHour(), expected.tm_hour) << seconds;
    ASSERT_EQ(date.getMinute(), expected.tm_min) << seconds;
    ASSERT_EQ(date.getSecond(), expected.tm_sec) << seconds;
    ASSERT_EQ(date.toTime(), seconds);
  }
}

TEST(WkDateTest, CivilDayArithmeticStepsThroughEveryDayOfTheRange) {
  std::int64_t year = 1;
  int month = 1;
  int day = 1;
  const std::int64_t first = WkDate::daysFromCivil(1, 1, 1);
  const std::int64_t last = WkDate::daysFromCivil(9999, 12, 31);
  for (std::int64_t days = first; days <= last; ++days) {
    std::int64_t y;
    int m, d;
    WkDate::civilFromDays(days, y, m, d);
    ASSERT_TRUE(y == year && m == month && d == day) << "day " << days;
    ASSERT_EQ(WkDate::daysFromCivil(y, m, d), days);
    if (++day > WkDate::daysInMonth(year, month)) {
      day = 1;
      if (++month > 12) {
        month = 1;
        ++year;
      }
    }
  }
  EXPECT_EQ(year, 10000);
  EXPECT_EQ(last - first + 1, 3652059);  // 400-year cycles of 146097 days, less year 10000
}

TEST(WkDateTest, MalformedUtcTextYieldsZeroAndIsReported) {
  const char* const bad[] = {
      "",
      "1/1/1970 00:00:00",
      "01/01/1970 00:00:00 ",
      "01/01/1970:00:00:00",
      "01-01-1970 00:00:00",
      "13/01/2024 00:00:00",
      "00/10/2024 00:00:00",
      "02/30/2024 00:00:00",
      "02/29/2023 00:00:00",
      "02/29/1900 00:00:00",
      "01/01/0000 00:00:00",
      "01/01/2024 24:00:00",
      "01/01/2024 00:60:00",
      "01/01/2024 00:00:60",
      "0a/01/2024 00:00:00",
      "+1/01/2024 00:00:00",
  };
  for (const char* candidate : bad) {
    SCOPED_TRACE(candidate);
    EXPECT_EQ(convertUTCStrToTime(candidate), 0);
    std::int64_t seconds = 42;
    EXPECT_FALSE(WkDate::parseUtcText(candidate, seconds));
    EXPECT_EQ(seconds, 42);
  }
  // Non-ASCII digits (fullwidth) are not digits here.
  EXPECT_EQ(convertUTCStrToTime(IUString(u"\uFF101/01/2024 00:00:00")), 0);
}

TEST(WkDateTest, AddMillisecondsCarriesAcrossDayAndYearBoundaries) {
  WkDate date = makeDate(1999, 12, 31, 23, 59, 59, 999000000);
  ASSERT_EQ(date.AddToPart("MS", 1), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(2000, 1, 1, 0, 0, 0));

  WkDate epoch;
  ASSERT_EQ(epoch.AddToPart("MS", -1), ISTATUS_SUCCESS);
  EXPECT_EQ(epoch, makeDate(1969, 12, 31, 23, 59, 59, 999000000));
  EXPECT_EQ(epoch.toTime(), -1);

  // A whole leap year of milliseconds in one step.
  WkDate leapYear = makeDate(2024, 1, 1, 6, 0, 0, 250000000);
  ASSERT_EQ(leapYear.AddToPart("ms", 366LL * 86400 * 1000 + 750), ISTATUS_SUCCESS);
  EXPECT_EQ(leapYear, makeDate(2025, 1, 1, 6, 0, 1));
}

TEST(WkDateTest, AddOtherUnitsNormalisesMonthsAndLeapDays) {
  WkDate date = makeDate(2024, 2, 28, 12, 0, 0);
  ASSERT_EQ(date.AddToPart("D", 1), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(2024, 2, 29, 12, 0, 0));
  ASSERT_EQ(date.AddToPart("H", 12), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(2024, 3, 1, 0, 0, 0));
  ASSERT_EQ(date.AddToPart("MI", -1), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(2024, 2, 29, 23, 59, 0));
  ASSERT_EQ(date.AddToPart("S", -366LL * 86400), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(2023, 2, 28, 23, 59, 0));
  ASSERT_EQ(date.AddToPart("NS", -1), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(2023, 2, 28, 23, 58, 59, 999999999));
}

TEST(WkDateTest, AddToPartRejectsUnknownUnitsAndLeavingTheRange) {
  const WkDate last = makeDate(9999, 12, 31, 23, 59, 59);
  const WkDate first = makeDate(1, 1, 1, 0, 0, 0);
  const struct {
    WkDate start;
    const char* part;
    long long amount;
  } cases[] = {
      {last, "S", 1},           {first, "MS", -1},       {first, "D", LLONG_MIN},
      {last, "D", LLONG_MAX},   {last, "MS", LLONG_MAX}, {first, "NS", LLONG_MIN},
      {last, "H", LLONG_MAX / 2}, {first, "Y", 1},       {first, "", 1},
      {first, nullptr, 1},
  };
  for (const auto& c : cases) {
    WkDate date = c.start;
    EXPECT_EQ(date.AddToPart(c.part, c.amount), ISTATUS_FAILURE) << (c.part ? c.part : "null") << " " << c.amount;
    EXPECT_EQ(date, c.start);
  }
  WkDate date = last;
  EXPECT_EQ(date.AddToPart("D", -(WkDate::kMaxTime - WkDate::kMinTime) / 86400), ISTATUS_SUCCESS);
  EXPECT_EQ(date, makeDate(1, 1, 1, 23, 59, 59));
}

TEST(WkDateTest, SettersKeepTheDateValid) {
  WkDate date = makeDate(2024, 2, 29, 10, 0, 0);
  EXPECT_EQ(date.setYear(2023), ISTATUS_FAILURE);
  EXPECT_EQ(date.setYear(2028), ISTATUS_SUCCESS);
  EXPECT_EQ(date.setMonth(4), ISTATUS_SUCCESS);
  EXPECT_EQ(date.setDay(31), ISTATUS_FAILURE);
  EXPECT_EQ(date.setMonth(13), ISTATUS_FAILURE);
  EXPECT_EQ(date.setYear(10000), ISTATUS_FAILURE);
  EXPECT_EQ(date.setHour(24), ISTATUS_FAILURE);
  EXPECT_EQ(date.setSecond(60), ISTATUS_FAILURE);
  EXPECT_EQ(date.setNanosecond(1000000000), ISTATUS_FAILURE);
  EXPECT_EQ(date.setNanosecond(-1), ISTATUS_FAILURE);
  EXPECT_EQ(date, makeDate(2028, 4, 29, 10, 0, 0));
}

TEST(WkDateTest, DefaultIsTheEpochAndNowIsNearTheSystemClock) {
  const WkDate epoch;
  EXPECT_EQ(epoch.toTime(), 0);
  EXPECT_EQ(epoch.getNanosecond(), 0);
  EXPECT_EQ(epoch, WkDate::fromTime(0));

  const std::int64_t before = static_cast<std::int64_t>(std::time(nullptr));
  WkDate now;
  now.SetToNow();
  const std::int64_t after = static_cast<std::int64_t>(std::time(nullptr));
  EXPECT_GE(now.toTime(), before);
  EXPECT_LE(now.toTime(), after);
}

TEST(WkDateTest, FromTimeKeepsNanosecondsPositiveAndClampsToTheRange) {
  const WkDate justBefore = WkDate::fromTime(-1, 500000000);
  EXPECT_EQ(justBefore, makeDate(1969, 12, 31, 23, 59, 59, 500000000));
  EXPECT_EQ(justBefore.toTime(), -1);
  EXPECT_EQ(WkDate::fromTime(LLONG_MAX), makeDate(9999, 12, 31, 23, 59, 59, 999999999));
  EXPECT_EQ(WkDate::fromTime(LLONG_MIN), makeDate(1, 1, 1, 0, 0, 0));
  EXPECT_EQ(text(convertTimeToUTCStr(LLONG_MIN)), "01/01/0001 00:00:00");
}

TEST(WkDateTest, FormatBuildsTheDatatypeTextForm) {
  const WkDate date = makeDate(2024, 1, 31, 13, 45, 7, 250999999);
  EXPECT_EQ(text(date.format("MM/DD/YYYY:HH24:MI:SS.ms")), "01/31/2024:13:45:07.250");
  EXPECT_EQ(text(date.format("YYYY-MM-DD NS [x]")), "2024-01-31 250999999 [x]");
  EXPECT_EQ(text(makeDate(7, 3, 4, 5, 6, 8).format("YYYY MM DD HH24 MI SS ms")), "0007 03 04 05 06 08 000");

  // The way the date datatype composes its text: the UTC text plus milliseconds.
  WkDate parsed = WkDate::fromTime(convertUTCStrToTime("01/01/1970 00:00:00"));
  ASSERT_EQ(parsed.AddToPart("MS", 7), ISTATUS_SUCCESS);
  EXPECT_EQ(text(parsed.format("MM/DD/YYYY:HH24:MI:SS.ms")), "01/01/1970:00:00:00.007");
}

}  // namespace
