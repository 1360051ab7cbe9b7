// The platform's date service: a calendar date-time in UTC with nanoseconds, and the
// conversions between time values (seconds since 1970-01-01 00:00:00 UTC) and the
// "MM/DD/YYYY HH:MM:SS" text that the date datatype and the logger build on.
#pragma once

#include <cstdint>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

// A proleptic Gregorian date and time of day in UTC. No time zone or daylight
// saving is ever applied. A WkDate is always valid: it holds a real calendar date
// between 01/01/0001 00:00:00 and 12/31/9999 23:59:59.999999999 (the range of a
// four-digit year), and every operation that would leave that range or build an
// impossible date (February 30) fails and leaves the date unchanged.
//
// A default-constructed date is the epoch, 01/01/1970 00:00:00.000000000: that is
// the date of time value 0, so a date built from nothing and a date parsed from
// empty text agree.
//
// A WkDate is a small value type; it is not synchronised.
class QVX_API WkDate {
 public:
  static constexpr int kMinYear = 1;
  static constexpr int kMaxYear = 9999;
  // The time values of the first and the last second of the range.
  static constexpr std::int64_t kMinTime = -62135596800LL;  // 01/01/0001 00:00:00
  static constexpr std::int64_t kMaxTime = 253402300799LL;  // 12/31/9999 23:59:59

  WkDate() = default;

  // The date of `seconds` since the epoch plus `nanosecond`; seconds outside the
  // range are clamped to its first or last instant, and a nanosecond outside
  // [0, 999999999] is taken as 0.
  static WkDate fromTime(std::int64_t seconds, std::int32_t nanosecond = 0);

  // Sets the date to the current time of the system clock, to the nanosecond as far
  // as the clock resolves it.
  void SetToNow();

  // Seconds since the epoch, rounded towards the past: the nanoseconds stay in the
  // date (getNanosecond) and are always a positive offset from the returned second,
  // also before 1970.
  std::int64_t toTime() const;

  int getYear() const { return year_; }
  int getMonth() const { return month_; }  // 1 to 12
  int getDay() const { return day_; }      // 1 to the length of the month
  int getHour() const { return hour_; }    // 0 to 23
  int getMinute() const { return minute_; }
  int getSecond() const { return second_; }  // 0 to 59; there are no leap seconds
  std::int32_t getNanosecond() const { return nanosecond_; }

  // Each setter checks the new part against the others as they stand: setDay(31)
  // fails in a 30-day month, setYear(2023) fails on February 29. To move between
  // such dates, use setDate, which checks the three parts together.
  ISTATUS setYear(int year);
  ISTATUS setMonth(int month);
  ISTATUS setDay(int day);
  ISTATUS setHour(int hour);
  ISTATUS setMinute(int minute);
  ISTATUS setSecond(int second);
  ISTATUS setNanosecond(std::int32_t nanosecond);
  ISTATUS setDate(int year, int month, int day);
  ISTATUS setTime(int hour, int minute, int second, std::int32_t nanosecond = 0);

  // Adds `amount` (negative to go back) of one unit and carries into the other parts
  // across day, month and year boundaries. Units, case-insensitive: "NS"
  // nanoseconds, "MS" milliseconds, "S" seconds, "MI" minutes, "H" hours, "D" days.
  // Fails, leaving the date unchanged, for an unknown unit or a result outside the
  // range.
  ISTATUS AddToPart(const char* part, long long amount);

  // Formats the date. Tokens: "YYYY" four-digit year, "MM" month, "DD" day, "HH24"
  // hour (0-23), "MI" minute, "SS" second (each two digits), "ms" three-digit
  // milliseconds, "NS" nine-digit nanoseconds. Every other character is copied, so
  // "MM/DD/YYYY:HH24:MI:SS.ms" gives "01/31/2024:13:45:07.250".
  IUString format(const IUString& pattern) const;

  friend bool operator==(const WkDate& a, const WkDate& b) {
    return a.year_ == b.year_ && a.month_ == b.month_ && a.day_ == b.day_ && a.hour_ == b.hour_ &&
           a.minute_ == b.minute_ && a.second_ == b.second_ && a.nanosecond_ == b.nanosecond_;
  }
  friend bool operator!=(const WkDate& a, const WkDate& b) { return !(a == b); }

  // Parses exactly "MM/DD/YYYY HH:MM:SS" (19 characters, 24-hour time, UTC) into
  // `seconds`. Returns false, leaving `seconds` alone, for any other text or for an
  // impossible date or time.
  static bool parseUtcText(const IUString& text, std::int64_t& seconds);

  // Days from 1970-01-01 to the given proleptic Gregorian date, and back. Exact for
  // any year of int range; month and day must be valid.
  static std::int64_t daysFromCivil(std::int64_t year, int month, int day);
  static void civilFromDays(std::int64_t days, std::int64_t& year, int& month, int& day);
  static int daysInMonth(std::int64_t year, int month);

 private:
  void assignTime(std::int64_t seconds, std::int32_t nanosecond);

  // The parts in the narrowest types their ranges fit, so that a date takes 12 bytes:
  // objects keep dates inline, and there are millions of them.
  std::int32_t nanosecond_ = 0;
  std::int16_t year_ = 1970;
  std::uint8_t month_ = 1;
  std::uint8_t day_ = 1;
  std::uint8_t hour_ = 0;
  std::uint8_t minute_ = 0;
  std::uint8_t second_ = 0;
};
static_assert(sizeof(WkDate) == 12, "WkDate is kept at 12 bytes; see the member comment");

// "MM/DD/YYYY HH:MM:SS" of `seconds` since the epoch, in UTC, e.g.
// "12/31/1969 23:59:59" for -1. Values outside WkDate's range are clamped to it.
QVX_API IUString convertTimeToUTCStr(std::int64_t seconds);

// The time value of "MM/DD/YYYY HH:MM:SS" read as UTC. Malformed text (wrong length
// or separators, non-digits, month 13, February 30, hour 24, ...) yields 0, the
// value of the epoch; use WkDate::parseUtcText to tell the two apart.
QVX_API std::int64_t convertUTCStrToTime(const IUString& text);
