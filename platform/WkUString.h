// Character-set conversions between UTF-8 and UTF-16, used by IUString and WkLocale.
//
// Replacement policy: malformed input never fails and never reads out of bounds.
// Each maximal ill-formed subsequence of UTF-8 (a stray continuation byte, a
// truncated sequence, an overlong form, an encoded surrogate, a value above
// U+10FFFF) becomes one U+FFFD; a lone UTF-16 surrogate becomes U+FFFD in UTF-8.
// This is the substitution the Unicode standard recommends, so the output is
// always well-formed.
#pragma once

#include <cstddef>
#include <string>

#include "platform/QvxExport.h"

class QVX_API WkUString {
 public:
  static constexpr char16_t kReplacementCharacter = u'\uFFFD';

  // Appends the UTF-16 form of `length` bytes of UTF-8 text to `out`.
  static void appendUtf8AsUtf16(std::u16string& out, const char* text, std::size_t length);
  // Appends the UTF-8 form of `length` UTF-16 code units to `out`.
  static void appendUtf16AsUtf8(std::string& out, const char16_t* text, std::size_t length);
  // Writes the UTF-8 form of `length` UTF-16 code units into out[0, capacity) without
  // allocating and returns the bytes written. It stops before the first character
  // whose bytes do not all fit, so the output never ends in a partial sequence;
  // `consumed` (may be null) receives the code units converted.
  static std::size_t writeUtf16AsUtf8(const char16_t* text, std::size_t length, char* out,
                                      std::size_t capacity, std::size_t* consumed = nullptr);
  // The number of UTF-8 bytes that appendUtf16AsUtf8 produces for the same input.
  static std::size_t utf8Length(const char16_t* text, std::size_t length);
  // The number of UTF-16 code units that appendUtf8AsUtf16 produces for the same input.
  static std::size_t utf16Length(const char* text, std::size_t length);

  // Number parsing in the manner of strtol/strtod: leading blanks are skipped, the
  // longest valid prefix is taken and anything else yields 0. Out-of-range values
  // saturate. The decimal point is '.' whatever locale the process has set. Never
  // throws.
  static long long parseLong(const char16_t* text, std::size_t length);
  static int parseInt(const char16_t* text, std::size_t length);
  static double parseDouble(const char16_t* text, std::size_t length);
};
