#include "platform/IVector.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/platform/TestScopes.h"

TEST(IVectorTest, DoublesBelowTheLimitThenGrowsByTheIncrementKeepingTheElements) {
  IVector<int> v(2, 5, 8);
  std::vector<std::size_t> capacities;
  for (int i = 0; i < 12; ++i) {
    i % 2 == 0 ? v.append(i) : v.insertAt(v.size(), i);
    capacities.push_back(v.capacity());
  }
  EXPECT_EQ(capacities, (std::vector<std::size_t>{2, 2, 4, 4, 8, 8, 8, 8, 13, 13, 13, 13}));
  v.insertFront(-1);
  v.removeAt(3);
  EXPECT_TRUE(v.removeElement(11));
  EXPECT_EQ(std::vector<int>(v.begin(), v.end()), (std::vector<int>{-1, 0, 1, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(IVectorTest, OutOfBoundAccessAndImpossibleGrowthThrowAndChangeNothing) {
  IVector<int> v(1);
  v.append(1);
  const std::string outOfBound = "Index is out of bound.";
  EXPECT_EQ(thrownMessage<IVectorException>([&] { (void)v[1]; }), outOfBound);
  EXPECT_EQ(thrownMessage<IVectorException>([&] { v.removeAt(1); }), outOfBound);
  EXPECT_EQ(thrownMessage<IVectorException>([&] { v.insertAt(2, 0); }), outOfBound);
  EXPECT_EQ(thrownMessage<IVectorException>([&] { v.ensureCapacity(SIZE_MAX / 2); }), "IVector failed to grow.");
  EXPECT_EQ(std::vector<int>(v.begin(), v.end()), std::vector<int>{1});
}

// An element of the vector itself, appended or inserted while the vector is full, must
// be taken before the storage moves (a moved std::string loses its heap text).
TEST(IVectorTest, AddingItsOwnElementToAFullVectorTakesItBeforeGrowing) {
  const std::string text(40, 'q');
  IVector<std::string> v(1, 1, 0);  // grows by one, so it is full after every addition
  v.append(text);
  v.append(v[0]);
  v.insertAt(1, v[0]);
  v.append(std::move(v[2]));
  ASSERT_EQ(v.size(), 4u);
  EXPECT_EQ(v[0], text);
  EXPECT_EQ(v[1], text);
  EXPECT_EQ(v[3], text);
}
