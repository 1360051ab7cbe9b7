#include "platform/WkFloatFormat.h"

#include <charconv>

std::size_t WkFloatFormat::ftoaReformat(double value, char* out, std::size_t capacity) {
  // Without a precision, to_chars picks the fewest digits that still round-trip,
  // which is the shortest exact form asked for here.
  const std::to_chars_result result = std::to_chars(out, out + capacity, value, std::chars_format::fixed);
  if (result.ec != std::errc()) return 0;
  return static_cast<std::size_t>(result.ptr - out);
}

IUString WkFloatFormat::ftoaReformat(double value) {
  char buffer[kMaxLength];
  const std::size_t length = ftoaReformat(value, buffer, sizeof buffer);
  return IUString(buffer, length);
}

IUString wkFtoaReformat(double value) { return WkFloatFormat::ftoaReformat(value); }
