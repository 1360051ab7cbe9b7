// The hashFunction family: sign extension, 64-bit truncation, the scaled floating
// hashes at their edges (negative, huge, NaN), dates and pointers.
#include "icore/HashFunctions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "platform/IUString.h"
#include "platform/WkDate.h"

namespace {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IObject;

TEST(HashFunctionsTest, IntegersAreSignExtendedOrTruncated) {
  EXPECT_EQ(hashFunction(IUString("ab")), 12805u);
  EXPECT_EQ(hashFunction(char(-1)), 0xFFFFFFFFu);
  EXPECT_EQ(hashFunction(char(65)), 65u);
  EXPECT_EQ(hashFunction(short(-2)), 0xFFFFFFFEu);
  EXPECT_EQ(hashFunction(int(-3)), 0xFFFFFFFDu);
  EXPECT_EQ(hashFunction(std::int64_t{0x100000005LL}), 5u);
  EXPECT_EQ(hashFunction(std::int64_t{-1}), 0xFFFFFFFFu);
}

TEST(HashFunctionsTest, FloatingValuesAreScaledAndTruncatedTowardsZero) {
  EXPECT_EQ(hashFunction(0.5f), 500000u);
  EXPECT_EQ(hashFunction(1.0000009), 1000000u);
  EXPECT_EQ(hashFunction(-1.5), static_cast<std::uint32_t>(-1500000));
  EXPECT_EQ(hashFunction(-0.0000019), static_cast<std::uint32_t>(-1));  // -1.9 truncates to -1
  EXPECT_EQ(hashFunction(5000.0), static_cast<std::uint32_t>(5000000000LL & 0xFFFFFFFF));
  // Out of the 64-bit range the product is pinned to the nearest end.
  EXPECT_EQ(hashFunction(1e300), 0xFFFFFFFFu);
  EXPECT_EQ(hashFunction(-1e300), 0u);
  EXPECT_EQ(hashFunction(std::numeric_limits<float>::infinity()), 0xFFFFFFFFu);
  EXPECT_EQ(hashFunction(std::nan("")), 0u);
}

TEST(HashFunctionsTest, DatesSumTheirParts) {
  WkDate date;
  ASSERT_EQ(date.setDate(2024, 1, 31), ISTATUS_SUCCESS);
  ASSERT_EQ(date.setTime(13, 45, 7, 250000000), ISTATUS_SUCCESS);
  EXPECT_EQ(hashFunction(date), 2024u + 1 + 31 + 13 + 45 + 7 + 250000000);
}

TEST(HashFunctionsTest, PointersHashToTheirLow32Bits) {
  const auto* object = reinterpret_cast<IObject const*>(std::uintptr_t{0x123456789AB0});
  const auto* cls = reinterpret_cast<IClass const*>(std::uintptr_t{0x1000000010});
  void const* raw = reinterpret_cast<void const*>(std::uintptr_t{0xFFFFFFFF00000020});
  EXPECT_EQ(hashFunction(object), 0x56789AB0u);
  EXPECT_EQ(hashFunction(cls), 0x10u);
  EXPECT_EQ(hashFunction(raw), 0x20u);
}

}  // namespace
