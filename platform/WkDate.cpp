#include "platform/WkDate.h"

#include <chrono>

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int32_t kNanosPerSecond = 1000000000;
// Number of seconds in the whole range; a larger step can only leave it, and
// checking this first keeps the multiplications below from overflowing.
constexpr std::int64_t kRangeSeconds = WkDate::kMaxTime - WkDate::kMinTime + 1;

bool isLeapYear(std::int64_t year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

// Floor division and the matching non-negative remainder.
std::int64_t floorDiv(std::int64_t value, std::int64_t divisor) {
  const std::int64_t quotient = value / divisor;
  return (value % divisor < 0) ? quotient - 1 : quotient;
}
std::int64_t floorMod(std::int64_t value, std::int64_t divisor) {
  const std::int64_t rest = value % divisor;
  return rest < 0 ? rest + divisor : rest;
}

bool equalsIgnoringCase(const char* text, const char* upper) {
  for (; *text != '\0' && *upper != '\0'; ++text, ++upper) {
    const char c = (*text >= 'a' && *text <= 'z') ? static_cast<char>(*text - 'a' + 'A') : *text;
    if (c != *upper) return false;
  }
  return *text == *upper;
}

// Writes `value` as exactly `width` decimal digits, zero-padded (value must be
// non-negative and fit), and returns the position after them.
char16_t* putDigits(char16_t* out, int value, int width) {
  for (int index = width - 1; index >= 0; --index) {
    out[index] = static_cast<char16_t>(u'0' + value % 10);
    value /= 10;
  }
  return out + width;
}

void appendDigits(std::u16string& out, int value, int width) {
  char16_t digits[10];
  out.append(digits, static_cast<std::size_t>(putDigits(digits, value, width) - digits));
}

bool startsWithAt(std::u16string_view text, std::size_t at, std::u16string_view token) {
  return text.compare(at, token.size(), token) == 0;
}

// Reads `width` ASCII digits at text[at]; false if any is not a digit.
bool readDigits(std::u16string_view text, std::size_t at, int width, int& value) {
  value = 0;
  for (int i = 0; i < width; ++i) {
    const char16_t unit = text[at + static_cast<std::size_t>(i)];
    if (unit < u'0' || unit > u'9') return false;
    value = value * 10 + (unit - u'0');
  }
  return true;
}

}  // namespace

std::int64_t WkDate::daysFromCivil(std::int64_t year, int month, int day) {
  // The year is counted from March, so the leap day falls at its end.
  year -= month <= 2 ? 1 : 0;
  const std::int64_t era = floorDiv(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

void WkDate::civilFromDays(std::int64_t days, std::int64_t& year, int& month, int& day) {
  days += 719468;
  const std::int64_t era = floorDiv(days, 146097);
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
  day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
}

int WkDate::daysInMonth(std::int64_t year, int month) {
  static const int kLengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && isLeapYear(year)) return 29;
  return kLengths[month - 1];
}

WkDate WkDate::fromTime(std::int64_t seconds, std::int32_t nanosecond) {
  WkDate date;
  if (nanosecond < 0 || nanosecond >= kNanosPerSecond) nanosecond = 0;
  if (seconds < kMinTime) {
    seconds = kMinTime;
    nanosecond = 0;
  } else if (seconds > kMaxTime) {
    seconds = kMaxTime;
    nanosecond = kNanosPerSecond - 1;
  }
  date.assignTime(seconds, nanosecond);
  return date;
}

void WkDate::assignTime(std::int64_t seconds, std::int32_t nanosecond) {
  const std::int64_t days = floorDiv(seconds, kSecondsPerDay);
  const std::int64_t secondOfDay = floorMod(seconds, kSecondsPerDay);
  std::int64_t year;
  int month;
  int day;
  civilFromDays(days, year, month, day);
  year_ = static_cast<std::int16_t>(year);
  month_ = static_cast<std::uint8_t>(month);
  day_ = static_cast<std::uint8_t>(day);
  hour_ = static_cast<std::uint8_t>(secondOfDay / 3600);
  minute_ = static_cast<std::uint8_t>(secondOfDay / 60 % 60);
  second_ = static_cast<std::uint8_t>(secondOfDay % 60);
  nanosecond_ = nanosecond;
}

void WkDate::SetToNow() {
  const std::int64_t nanos =
      std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
          .count();
  assignTime(floorDiv(nanos, kNanosPerSecond), static_cast<std::int32_t>(floorMod(nanos, kNanosPerSecond)));
}

std::int64_t WkDate::toTime() const {
  return daysFromCivil(year_, month_, day_) * kSecondsPerDay + hour_ * 3600 + minute_ * 60 + second_;
}

ISTATUS WkDate::setDate(int year, int month, int day) {
  if (year < kMinYear || year > kMaxYear || month < 1 || month > 12) return ISTATUS_FAILURE;
  if (day < 1 || day > daysInMonth(year, month)) return ISTATUS_FAILURE;
  year_ = static_cast<std::int16_t>(year);
  month_ = static_cast<std::uint8_t>(month);
  day_ = static_cast<std::uint8_t>(day);
  return ISTATUS_SUCCESS;
}

ISTATUS WkDate::setTime(int hour, int minute, int second, std::int32_t nanosecond) {
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return ISTATUS_FAILURE;
  if (nanosecond < 0 || nanosecond >= kNanosPerSecond) return ISTATUS_FAILURE;
  hour_ = static_cast<std::uint8_t>(hour);
  minute_ = static_cast<std::uint8_t>(minute);
  second_ = static_cast<std::uint8_t>(second);
  nanosecond_ = nanosecond;
  return ISTATUS_SUCCESS;
}

ISTATUS WkDate::setYear(int year) { return setDate(year, month_, day_); }
ISTATUS WkDate::setMonth(int month) { return setDate(year_, month, day_); }
ISTATUS WkDate::setDay(int day) { return setDate(year_, month_, day); }
ISTATUS WkDate::setHour(int hour) { return setTime(hour, minute_, second_, nanosecond_); }
ISTATUS WkDate::setMinute(int minute) { return setTime(hour_, minute, second_, nanosecond_); }
ISTATUS WkDate::setSecond(int second) { return setTime(hour_, minute_, second, nanosecond_); }
ISTATUS WkDate::setNanosecond(std::int32_t nanosecond) { return setTime(hour_, minute_, second_, nanosecond); }

ISTATUS WkDate::AddToPart(const char* part, long long amount) {
  if (part == nullptr) return ISTATUS_FAILURE;
  // The step is split into whole seconds and a sub-second rest so that no unit
  // needs more than 64 bits, whatever the amount.
  std::int64_t stepSeconds;
  std::int64_t stepNanos = 0;
  if (equalsIgnoringCase(part, "NS")) {
    stepSeconds = amount / kNanosPerSecond;
    stepNanos = amount % kNanosPerSecond;
  } else if (equalsIgnoringCase(part, "MS")) {
    stepSeconds = amount / 1000;
    stepNanos = amount % 1000 * 1000000;
  } else {
    std::int64_t unit;
    if (equalsIgnoringCase(part, "S")) {
      unit = 1;
    } else if (equalsIgnoringCase(part, "MI")) {
      unit = 60;
    } else if (equalsIgnoringCase(part, "H")) {
      unit = 3600;
    } else if (equalsIgnoringCase(part, "D")) {
      unit = kSecondsPerDay;
    } else {
      return ISTATUS_FAILURE;
    }
    if (amount > kRangeSeconds / unit || amount < -(kRangeSeconds / unit)) return ISTATUS_FAILURE;
    stepSeconds = amount * unit;
  }
  if (stepSeconds > kRangeSeconds || stepSeconds < -kRangeSeconds) return ISTATUS_FAILURE;

  std::int64_t nanos = nanosecond_ + stepNanos;
  std::int64_t seconds = toTime() + stepSeconds + floorDiv(nanos, kNanosPerSecond);
  nanos = floorMod(nanos, kNanosPerSecond);
  if (seconds < kMinTime || seconds > kMaxTime) return ISTATUS_FAILURE;
  assignTime(seconds, static_cast<std::int32_t>(nanos));
  return ISTATUS_SUCCESS;
}

IUString WkDate::format(const IUString& pattern) const {
  const std::u16string_view text = pattern.view();
  std::u16string out;
  out.reserve(text.size() + 8);
  std::size_t i = 0;
  while (i < text.size()) {
    if (startsWithAt(text, i, u"YYYY")) {
      appendDigits(out, year_, 4);
      i += 4;
    } else if (startsWithAt(text, i, u"HH24")) {
      appendDigits(out, hour_, 2);
      i += 4;
    } else if (startsWithAt(text, i, u"MM")) {
      appendDigits(out, month_, 2);
      i += 2;
    } else if (startsWithAt(text, i, u"DD")) {
      appendDigits(out, day_, 2);
      i += 2;
    } else if (startsWithAt(text, i, u"MI")) {
      appendDigits(out, minute_, 2);
      i += 2;
    } else if (startsWithAt(text, i, u"SS")) {
      appendDigits(out, second_, 2);
      i += 2;
    } else if (startsWithAt(text, i, u"ms")) {
      appendDigits(out, nanosecond_ / 1000000, 3);
      i += 2;
    } else if (startsWithAt(text, i, u"NS")) {
      appendDigits(out, nanosecond_, 9);
      i += 2;
    } else {
      out.push_back(text[i++]);
    }
  }
  return IUString(std::move(out));
}

bool WkDate::parseUtcText(const IUString& text, std::int64_t& seconds) {
  // "MM/DD/YYYY HH:MM:SS"
  const std::u16string_view view = text.view();
  if (view.size() != 19 || view[2] != u'/' || view[5] != u'/' || view[10] != u' ' || view[13] != u':' ||
      view[16] != u':') {
    return false;
  }
  int month, day, year, hour, minute, second;
  if (!readDigits(view, 0, 2, month) || !readDigits(view, 3, 2, day) || !readDigits(view, 6, 4, year) ||
      !readDigits(view, 11, 2, hour) || !readDigits(view, 14, 2, minute) || !readDigits(view, 17, 2, second)) {
    return false;
  }
  WkDate date;
  if (date.setDate(year, month, day) != ISTATUS_SUCCESS || date.setTime(hour, minute, second) != ISTATUS_SUCCESS) {
    return false;
  }
  seconds = date.toTime();
  return true;
}

// Written digit by digit: the serializers format a date per value, and interpreting a
// pattern cost several times more than the conversion itself.
IUString convertTimeToUTCStr(std::int64_t seconds) {
  const WkDate date = WkDate::fromTime(seconds);
  char16_t text[19];
  char16_t* out = putDigits(text, date.getMonth(), 2);
  *out++ = u'/';
  out = putDigits(out, date.getDay(), 2);
  *out++ = u'/';
  out = putDigits(out, date.getYear(), 4);
  *out++ = u' ';
  out = putDigits(out, date.getHour(), 2);
  *out++ = u':';
  out = putDigits(out, date.getMinute(), 2);
  *out++ = u':';
  putDigits(out, date.getSecond(), 2);
  return IUString(text, 19);
}

std::int64_t convertUTCStrToTime(const IUString& text) {
  std::int64_t seconds = 0;
  WkDate::parseUtcText(text, seconds);
  return seconds;
}
