#include "platform/IOutputStream.h"

#include <charconv>

#include "platform/WkUString.h"

IOutputStream::~IOutputStream() = default;

void IOutputStream::write(const IUString& text) {
  char buffer[256];
  const char16_t* units = text.data();
  std::size_t remaining = text.length();
  while (remaining > 0) {
    std::size_t consumed = 0;
    const std::size_t produced = WkUString::writeUtf16AsUtf8(units, remaining, buffer, sizeof buffer, &consumed);
    write(buffer, produced);
    units += consumed;
    remaining -= consumed;
  }
}

IOutputStream& IOutputStream::writeSigned(long long value) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
  write(digits, static_cast<std::size_t>(result.ptr - digits));
  return *this;
}

IOutputStream& IOutputStream::writeUnsigned(unsigned long long value) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
  write(digits, static_cast<std::size_t>(result.ptr - digits));
  return *this;
}
