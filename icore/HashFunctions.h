// The hashFunction family: the 32-bit hashes that the library's hash containers use for
// keys of the primitive types, dates and object pointers. hashFunction(IUString const&)
// lives with IUString in platform/IUString.h.
#pragma once

#include <cstdint>

#include "platform/QvxExport.h"

class WkDate;

namespace com::veltrana::qvx::icore {
class IClass;
class IObject;
}  // namespace com::veltrana::qvx::icore

// Integers: the value sign-extended to 32 bits; a 64-bit value's low 32 bits.
QVX_API std::uint32_t hashFunction(char const& key);
QVX_API std::uint32_t hashFunction(short const& key);
QVX_API std::uint32_t hashFunction(int const& key);
QVX_API std::uint32_t hashFunction(std::int64_t const& key);

// The low 32 bits of the value times 1,000,000, truncated towards zero to a 64-bit
// integer. The product is taken in double precision for both overloads. Where the
// truncation has no 64-bit result it is pinned instead of being undefined: products
// beyond the int64 range give INT64_MAX or INT64_MIN, NaN gives 0.
QVX_API std::uint32_t hashFunction(float const& key);
QVX_API std::uint32_t hashFunction(double const& key);

// year + month + day + hour + minute + second + nanosecond, wrapping in 32 bits.
QVX_API std::uint32_t hashFunction(WkDate const& key);

// The low 32 bits of the pointer value. A string literal converts to void const*
// more readily than to IUString, so hash text as an IUString, not as a literal.
QVX_API std::uint32_t hashFunction(com::veltrana::qvx::icore::IObject const* const& key);
QVX_API std::uint32_t hashFunction(com::veltrana::qvx::icore::IClass const* const& key);
QVX_API std::uint32_t hashFunction(void const* const& key);
