#include "icore/IObject.h"

#include <gtest/gtest.h>

namespace {

using com::veltrana::qvx::icore::IObject;

TEST(IObjectTest, EqualityIsAddressIdentity) {
  const IObject a;
  const IObject b;
  EXPECT_TRUE(a == a);
  EXPECT_FALSE(a == b);
}

}  // namespace
