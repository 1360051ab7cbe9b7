#include "platform/IVector.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string messageOf(const IVectorException& e) { return e.getMessage().toUtf8(); }

TEST(IVectorTest, DoublesBelowTheLimitThenGrowsByTheIncrement) {
  IVector<int> v(2, 5, 8);
  EXPECT_EQ(v.capacity(), 2u);
  std::size_t seen[12];
  for (int i = 0; i < 12; ++i) {
    v.append(i);
    seen[i] = v.capacity();
  }
  EXPECT_EQ(seen[1], 2u);
  EXPECT_EQ(seen[2], 4u);
  EXPECT_EQ(seen[4], 8u);
  EXPECT_EQ(seen[8], 13u);  // at the limit: 8 + 5
  EXPECT_EQ(v.size(), 12u);
}

TEST(IVectorTest, AccessOutsideTheElementsThrows) {
  IVector<int> v;
  v.append(1);
  try {
    (void)v[1];
    FAIL() << "no exception";
  } catch (const IVectorException& e) {
    EXPECT_EQ(messageOf(e), "Index is out of bound.");
  }
  EXPECT_THROW(v.removeAt(3), IVectorException);
  EXPECT_THROW(v.insertAt(2, 0), IVectorException);
}

TEST(IVectorTest, InsertFrontRemoveAndCopy) {
  IVector<int> v;
  v.append(2);
  v.insertFront(1);
  v.append(3);
  EXPECT_EQ(v.indexOf(3), 2);
  EXPECT_TRUE(v.removeElement(2));
  EXPECT_FALSE(v.removeElement(42));
  IVector<int> copy(v);
  copy.append(4);
  ASSERT_EQ(v.size(), 2u);
  EXPECT_EQ(v[0], 1);
  EXPECT_EQ(v[1], 3);
  EXPECT_EQ(copy.size(), 3u);
}

TEST(IVectorTest, ImpossibleGrowthReportsFailureToGrow) {
  IVector<int> v(1);
  try {
    v.ensureCapacity(static_cast<std::size_t>(-1) / 2);
    FAIL() << "no exception";
  } catch (const IVectorException& e) {
    EXPECT_EQ(messageOf(e), "IVector failed to grow.");
  }
}

}  // namespace
