#include "platform/WkUString.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

// Decodes one UTF-8 sequence starting at text[i]. Returns the code point, or -1 for
// an ill-formed subsequence; `consumed` is set to the bytes taken (at least one).
long decodeUtf8(const unsigned char* text, std::size_t length, std::size_t i, std::size_t& consumed) {
  const unsigned char lead = text[i];
  consumed = 1;
  if (lead < 0x80) return lead;
  int trailing;
  unsigned long codePoint;
  unsigned char lowerBound = 0x80;
  unsigned char upperBound = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    trailing = 1;
    codePoint = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    trailing = 2;
    codePoint = lead & 0x0Fu;
    if (lead == 0xE0) lowerBound = 0xA0;  // overlong
    if (lead == 0xED) upperBound = 0x9F;  // surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    trailing = 3;
    codePoint = lead & 0x07u;
    if (lead == 0xF0) lowerBound = 0x90;  // overlong
    if (lead == 0xF4) upperBound = 0x8F;  // above U+10FFFF
  } else {
    return -1;
  }
  for (int k = 0; k < trailing; ++k) {
    const std::size_t at = i + 1 + static_cast<std::size_t>(k);
    if (at >= length) return -1;
    const unsigned char byte = text[at];
    const unsigned char low = k == 0 ? lowerBound : 0x80;
    const unsigned char high = k == 0 ? upperBound : 0xBF;
    if (byte < low || byte > high) return -1;
    codePoint = (codePoint << 6) | (byte & 0x3Fu);
    consumed = at - i + 1;
  }
  return static_cast<long>(codePoint);
}

bool isHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Reads one code point from UTF-16, replacing a lone surrogate.
unsigned long decodeUtf16(const char16_t* text, std::size_t length, std::size_t& i) {
  const char16_t unit = text[i++];
  if (isHighSurrogate(unit) && i < length && isLowSurrogate(text[i])) {
    const char16_t low = text[i++];
    return 0x10000ul + ((static_cast<unsigned long>(unit) - 0xD800u) << 10) + (low - 0xDC00u);
  }
  if (isHighSurrogate(unit) || isLowSurrogate(unit)) return WkUString::kReplacementCharacter;
  return unit;
}

std::size_t utf8Width(unsigned long codePoint) {
  if (codePoint < 0x80) return 1;
  if (codePoint < 0x800) return 2;
  if (codePoint < 0x10000) return 3;
  return 4;
}

// Writes the `width` (utf8Width) bytes of `codePoint` at `at`.
void encodeUtf8(unsigned long codePoint, char* at, std::size_t width) {
  switch (width) {
    case 1: at[0] = static_cast<char>(codePoint); return;
    case 2:
      at[0] = static_cast<char>(0xC0 | (codePoint >> 6));
      at[1] = static_cast<char>(0x80 | (codePoint & 0x3F));
      return;
    case 3:
      at[0] = static_cast<char>(0xE0 | (codePoint >> 12));
      at[1] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
      at[2] = static_cast<char>(0x80 | (codePoint & 0x3F));
      return;
    default:
      at[0] = static_cast<char>(0xF0 | (codePoint >> 18));
      at[1] = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
      at[2] = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
      at[3] = static_cast<char>(0x80 | (codePoint & 0x3F));
      return;
  }
}

// Converts to a NUL-terminated narrow buffer for the C parsers. Non-ASCII units end
// the number anyway, so they are mapped to a byte that no parser accepts.
template <typename Parse>
auto parseAscii(const char16_t* text, std::size_t length, Parse parse) {
  char local[64];
  std::string heap;
  char* buffer = local;
  if (length >= sizeof local) {
    heap.resize(length + 1);
    buffer = &heap[0];
  }
  for (std::size_t i = 0; i < length; ++i) {
    buffer[i] = text[i] < 0x80 && text[i] != 0 ? static_cast<char>(text[i]) : '\x7f';
  }
  buffer[length] = '\0';
  return parse(buffer);
}

}  // namespace

void WkUString::appendUtf8AsUtf16(std::u16string& out, const char* text, std::size_t length) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  out.reserve(out.size() + length);
  std::size_t i = 0;
  while (i < length) {
    // An ASCII run (names and identities are nothing else) is widened into room made
    // once, not unit by unit.
    std::size_t runEnd = i;
    while (runEnd < length && bytes[runEnd] < 0x80) ++runEnd;
    if (runEnd > i) {
      const std::size_t start = out.size();
      out.resize(start + (runEnd - i));
      std::copy(bytes + i, bytes + runEnd, out.begin() + static_cast<std::ptrdiff_t>(start));
      i = runEnd;
      continue;
    }
    std::size_t consumed;
    const long codePoint = decodeUtf8(bytes, length, i, consumed);
    i += consumed;
    if (codePoint < 0) {
      out.push_back(kReplacementCharacter);
    } else if (codePoint < 0x10000) {
      out.push_back(static_cast<char16_t>(codePoint));
    } else {
      const unsigned long offset = static_cast<unsigned long>(codePoint) - 0x10000ul;
      out.push_back(static_cast<char16_t>(0xD800u + (offset >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00u + (offset & 0x3FFu)));
    }
  }
}

void WkUString::appendUtf16AsUtf8(std::string& out, const char16_t* text, std::size_t length) {
  out.reserve(out.size() + length);
  std::size_t i = 0;
  while (i < length) {
    if (text[i] < 0x80) {  // fast path for ASCII runs
      out.push_back(static_cast<char>(text[i++]));
      continue;
    }
    const unsigned long codePoint = decodeUtf16(text, length, i);
    char bytes[4];
    const std::size_t width = utf8Width(codePoint);
    encodeUtf8(codePoint, bytes, width);
    out.append(bytes, width);
  }
}

std::size_t WkUString::writeUtf16AsUtf8(const char16_t* text, std::size_t length, char* out,
                                        std::size_t capacity, std::size_t* consumed) {
  std::size_t written = 0;
  std::size_t i = 0;
  while (i < length) {
    if (text[i] < 0x80) {  // fast path for ASCII runs
      if (written == capacity) break;
      out[written++] = static_cast<char>(text[i++]);
      continue;
    }
    std::size_t next = i;
    const unsigned long codePoint = decodeUtf16(text, length, next);
    const std::size_t width = utf8Width(codePoint);
    if (capacity - written < width) break;
    encodeUtf8(codePoint, out + written, width);
    written += width;
    i = next;
  }
  if (consumed != nullptr) *consumed = i;
  return written;
}

std::size_t WkUString::utf8Length(const char16_t* text, std::size_t length) {
  std::size_t total = 0;
  std::size_t i = 0;
  while (i < length) total += utf8Width(decodeUtf16(text, length, i));
  return total;
}

std::size_t WkUString::utf16Length(const char* text, std::size_t length) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  std::size_t total = 0;
  std::size_t i = 0;
  while (i < length) {
    std::size_t consumed;
    const long codePoint = decodeUtf8(bytes, length, i, consumed);
    i += consumed;
    total += codePoint >= 0x10000 ? 2 : 1;
  }
  return total;
}

long long WkUString::parseLong(const char16_t* text, std::size_t length) {
  return parseAscii(text, length, [](const char* s) { return std::strtoll(s, nullptr, 10); });
}

int WkUString::parseInt(const char16_t* text, std::size_t length) {
  const long long value = parseLong(text, length);
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

double WkUString::parseDouble(const char16_t* text, std::size_t length) {
  // Numbers are written with a '.' whatever the process locale is (to_chars), so they
  // are read in the C locale too: plain strtod would stop at the '.' once a host has
  // called setlocale with a decimal-comma locale.
  static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
  return parseAscii(text, length, [](const char* s) { return strtod_l(s, nullptr, cLocale); });
}
