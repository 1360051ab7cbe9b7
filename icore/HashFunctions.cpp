#include "icore/HashFunctions.h"

#include <cmath>
#include <limits>

#include "platform/WkDate.h"

namespace {

std::uint32_t low32(std::uint64_t value) { return static_cast<std::uint32_t>(value & 0xffffffffu); }

std::uint32_t hashScaled(double key) {
  const double scaled = key * 1e6;
  if (std::isnan(scaled)) return 0;
  // 2^63 is exactly representable; every double below it converts without overflow.
  constexpr double kTwoTo63 = 9223372036854775808.0;
  std::int64_t truncated;
  if (scaled >= kTwoTo63) {
    truncated = std::numeric_limits<std::int64_t>::max();
  } else if (scaled < -kTwoTo63) {
    truncated = std::numeric_limits<std::int64_t>::min();
  } else {
    truncated = static_cast<std::int64_t>(scaled);  // truncates towards zero
  }
  return low32(static_cast<std::uint64_t>(truncated));
}

std::uint32_t hashPointer(void const* key) { return low32(reinterpret_cast<std::uintptr_t>(key)); }

}  // namespace

std::uint32_t hashFunction(char const& key) { return static_cast<std::uint32_t>(static_cast<std::int32_t>(key)); }

std::uint32_t hashFunction(short const& key) { return static_cast<std::uint32_t>(static_cast<std::int32_t>(key)); }

std::uint32_t hashFunction(int const& key) { return static_cast<std::uint32_t>(key); }

std::uint32_t hashFunction(std::int64_t const& key) { return low32(static_cast<std::uint64_t>(key)); }

std::uint32_t hashFunction(float const& key) { return hashScaled(static_cast<double>(key)); }

std::uint32_t hashFunction(double const& key) { return hashScaled(key); }

std::uint32_t hashFunction(WkDate const& key) {
  std::uint32_t sum = static_cast<std::uint32_t>(key.getYear());
  sum += static_cast<std::uint32_t>(key.getMonth());
  sum += static_cast<std::uint32_t>(key.getDay());
  sum += static_cast<std::uint32_t>(key.getHour());
  sum += static_cast<std::uint32_t>(key.getMinute());
  sum += static_cast<std::uint32_t>(key.getSecond());
  sum += static_cast<std::uint32_t>(key.getNanosecond());
  return sum;
}

std::uint32_t hashFunction(com::veltrana::qvx::icore::IObject const* const& key) { return hashPointer(key); }

std::uint32_t hashFunction(com::veltrana::qvx::icore::IClass const* const& key) { return hashPointer(key); }

std::uint32_t hashFunction(void const* const& key) { return hashPointer(key); }
