#include "io/XMLSerializerValues.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>

#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/WkDate.h"
#include "platform/WkUString.h"

namespace com::veltrana::qvx::io {

using icore::ICoreDatatypes;

namespace {

constexpr std::array<bool, 128> plainCharacters() {
  std::array<bool, 128> plain{};
  for (char c = 'A'; c <= 'Z'; ++c) plain[static_cast<std::size_t>(c)] = true;
  for (char c = 'a'; c <= 'z'; ++c) plain[static_cast<std::size_t>(c)] = true;
  for (char c = '0'; c <= '9'; ++c) plain[static_cast<std::size_t>(c)] = true;
  plain['-'] = plain['.'] = plain[':'] = plain['_'] = true;
  return plain;
}

constexpr std::array<bool, 128> kPlain = plainCharacters();

void appendPercent(unsigned char byte, std::string& out) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  const char escaped[] = {'%', kHex[byte >> 4], kHex[byte & 0xF]};
  out.append(escaped, sizeof escaped);
}

void appendEscapedByte(unsigned char byte, std::string& out) {
  if (byte < 0x80 && kPlain[byte]) {
    out.push_back(static_cast<char>(byte));
  } else if (byte == ' ') {
    out.push_back('+');
  } else {
    appendPercent(byte, out);
  }
}

// Values arrive as untyped pointers, sometimes to a type of the same size but another
// name, so they are copied out bytewise.
template <typename T>
T loadValue(void const* value) {
  T loaded;
  std::memcpy(&loaded, value, sizeof loaded);
  return loaded;
}

template <typename Number>
void appendNumber(Number value, std::string& out) {
  char digits[24];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
  out.append(digits, static_cast<std::size_t>(result.ptr - digits));
}

void appendDigits(int value, int width, std::string& out) {
  char digits[4];
  for (int i = width - 1; i >= 0; --i) {
    digits[i] = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  out.append(digits, static_cast<std::size_t>(width));
}

// "MM/DD/YYYY:HH24:MI:SS.ms". A WkDate is always a valid date of four-digit years, so
// its parts are the parts of its UTC text.
void appendDate(WkDate const& date, std::string& out) {
  const struct {
    int value;
    int width;
    char separator;  // after the value; none after the last
  } parts[] = {{date.getMonth(), 2, '/'},  {date.getDay(), 2, '/'},    {date.getYear(), 4, ':'},
               {date.getHour(), 2, ':'},   {date.getMinute(), 2, ':'}, {date.getSecond(), 2, '.'},
               {date.getNanosecond() / 1000000, 3, '\0'}};
  for (const auto& part : parts) {
    appendDigits(part.value, part.width, out);
    if (part.separator != '\0') out.push_back(part.separator);
  }
}

// The rest goes through primitiveToString: the small doubles that the platform's
// reformatter writes, blobs (Base64 by the parser library) and identities.
bool appendSlowText(icore::IDatatype const& datatype, void const* value, unsigned int length, std::string& out) {
  const std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(datatype, value, length));
  if (text == nullptr) return false;
  WkUString::appendUtf16AsUtf8(out, text->data(), text->length());
  return true;
}

}  // namespace

void XMLSerializerValues::appendEscaped(std::u16string_view text, std::string& out) {
  if (text.empty()) {
    out.push_back('*');
    return;
  }
  const char16_t* unit = text.data();
  const char16_t* const end = unit + text.size();
  while (unit != end) {
    if (*unit < 0x80) {
      appendEscapedByte(static_cast<unsigned char>(*unit++), out);
      continue;
    }
    // A run of non-ASCII units, converted together so that surrogate pairs stay whole.
    const char16_t* const runStart = unit;
    while (unit != end && *unit >= 0x80) ++unit;
    char utf8[64];
    const char16_t* pending = runStart;
    while (pending != unit) {
      std::size_t consumed = 0;
      const std::size_t produced =
          WkUString::writeUtf16AsUtf8(pending, static_cast<std::size_t>(unit - pending), utf8, sizeof utf8, &consumed);
      for (std::size_t i = 0; i < produced; ++i) appendPercent(static_cast<unsigned char>(utf8[i]), out);
      pending += consumed;
    }
  }
}

void XMLSerializerValues::appendEscaped(std::string_view utf8, std::string& out) {
  if (utf8.empty()) {
    out.push_back('*');
    return;
  }
  for (char byte : utf8) appendEscapedByte(static_cast<unsigned char>(byte), out);
}

bool XMLSerializerValues::appendPrimitiveText(icore::IDatatype const& datatype, void const* value,
                                              unsigned int length, std::string& out) {
  if (value == nullptr || !datatype.isPrimitive()) return false;
  switch (datatype.getTypeId()) {
    case ICoreDatatypes::BYTE_TYPE_ID: appendNumber(static_cast<int>(loadValue<signed char>(value)), out); return true;
    case ICoreDatatypes::BOOLEAN_TYPE_ID: out.append(loadValue<IBOOLEAN>(value) == 1 ? "true" : "false"); return true;
    case ICoreDatatypes::CHARACTER_TYPE_ID: {
      const char16_t unit = loadValue<char16_t>(value);
      if (unit != 0) WkUString::appendUtf16AsUtf8(out, &unit, 1);
      return true;
    }
    case ICoreDatatypes::DATE_TYPE_ID: appendDate(*static_cast<WkDate const*>(value), out); return true;
    case ICoreDatatypes::DOUBLE_TYPE_ID: {
      const double number = loadValue<double>(value);
      const double magnitude = std::fabs(number);
      if (magnitude >= 1e-15 && magnitude < 1e-4) return appendSlowText(datatype, value, length, out);
      char digits[32];
      const std::to_chars_result result =
          std::to_chars(digits, digits + sizeof digits, number, std::chars_format::general, 15);
      out.append(digits, static_cast<std::size_t>(result.ptr - digits));
      return true;
    }
    case ICoreDatatypes::FLOAT_TYPE_ID: {
      char digits[64];  // FLT_MAX needs 39 digits before the point
      const std::to_chars_result result = std::to_chars(
          digits, digits + sizeof digits, static_cast<double>(loadValue<float>(value)), std::chars_format::fixed, 6);
      out.append(digits, static_cast<std::size_t>(result.ptr - digits));
      return true;
    }
    case ICoreDatatypes::INTEGER_TYPE_ID: appendNumber(loadValue<std::int32_t>(value), out); return true;
    case ICoreDatatypes::LONG_TYPE_ID: appendNumber(loadValue<std::int64_t>(value), out); return true;
    case ICoreDatatypes::SHORT_TYPE_ID: appendNumber(static_cast<int>(loadValue<std::int16_t>(value)), out); return true;
    case ICoreDatatypes::STRING_TYPE_ID: {
      IUString const& text = *static_cast<IUString const*>(value);
      WkUString::appendUtf16AsUtf8(out, text.data(), text.length());
      return true;
    }
    default: return appendSlowText(datatype, value, length, out);
  }
}

}  // namespace com::veltrana::qvx::io
