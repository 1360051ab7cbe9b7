// Fixed-point text for doubles. The double datatype prints with "%.15lg", which
// switches to exponent notation for magnitudes below 0.0001; values in
// [1e-15, 0.0001) are printed here instead, so their text has no exponent.
#pragma once

#include <cstddef>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

class QVX_API WkFloatFormat {
 public:
  // Enough for any double in fixed notation: the smallest subnormal needs 326
  // characters, the largest finite value 309 digits, plus a sign.
  static constexpr std::size_t kMaxLength = 330;

  // The shortest fixed-point decimal that reads back (strtod) as exactly `value`:
  // no exponent, no trailing zeros after the point, no point for whole numbers.
  // 3.3e-5 gives "0.000033", 1e-15 "0.000000000000001", 0.1 + 0.2
  // "0.30000000000000004". Infinities and NaN give "inf", "-inf" and "nan".
  // Independent of the C locale.
  static IUString ftoaReformat(double value);

  // The same text as ASCII in out[0, capacity), without allocating; returns its
  // length, or 0 (writing nothing) when it does not fit. kMaxLength always fits.
  static std::size_t ftoaReformat(double value, char* out, std::size_t capacity);
};

// WkFloatFormat::ftoaReformat under its platform name.
QVX_API IUString wkFtoaReformat(double value);
