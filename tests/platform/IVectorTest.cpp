#include "platform/IVector.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
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

TEST(IVectorTest, NothingIsAllocatedBeforeTheFirstElementYetCapacityFollowsThePolicy) {
  IVector<int> empty(3, 2, 4);
  EXPECT_EQ(empty.capacity(), 3u);
  EXPECT_EQ(empty.begin(), nullptr);
  EXPECT_EQ(empty.begin(), empty.end());
  EXPECT_EQ(thrownMessage<IVectorException>([&] { (void)empty[0]; }), "Index is out of bound.");
  EXPECT_EQ(empty.indexOf(1), -1);
  empty.clear();

  // The first buffer has the initial capacity; a zero one starts at a single element.
  std::vector<std::size_t> capacities;
  for (int i = 0; i < 8; ++i) {
    empty.append(i);
    capacities.push_back(empty.capacity());
  }
  EXPECT_EQ(capacities, (std::vector<std::size_t>{3, 3, 3, 6, 6, 6, 8, 8}));
  IVector<int> zero(0, 3, 0);
  zero.insertFront(7);
  EXPECT_EQ(zero.capacity(), 3u);
  // A capacity that 32 bits cannot count is refused at once, not at the first element.
  EXPECT_EQ(thrownMessage<IVectorException>([] { IVector<char> huge(std::size_t{1} << 33); }),
            "IVector failed to grow.");
}

// Copies, moves and swaps of vectors of owning elements, the middle insertions and
// removals that shift them, all checked by the sanitizer build for leaks and double frees.
TEST(IVectorTest, CopiesMovesAndShiftsKeepEveryElementExactlyOnce) {
  const std::string longText(64, 'x');
  IVector<std::string> texts(2, 1, 4);
  for (int i = 0; i < 5; ++i) texts.append(longText + std::to_string(i));
  texts.insertAt(2, texts[4]);
  texts.removeAt(0);
  IVector<std::string> copy(texts);
  EXPECT_EQ(copy.capacity(), texts.capacity());
  IVector<std::string> moved(std::move(copy));
  copy = moved;  // assigning to a moved-from vector revives it
  moved.swap(texts);
  texts.removeElement(longText + "4");
  const auto joined = [](IVector<std::string> const& v) {
    std::string all;
    for (std::string const& text : v) all += text.substr(64) + ",";
    return all;
  };
  EXPECT_EQ(joined(moved), "1,4,2,3,4,");
  EXPECT_EQ(joined(copy), "1,4,2,3,4,");
  EXPECT_EQ(joined(texts), "1,2,3,4,");
}

// Values made by appendValue live in blocks that the vector owns; values appended from
// outside stay separate allocations. deleteValues frees each kind its own way (a
// mistake is a bad free or a leak under the sanitizer build).
TEST(IVectorTest, OwnValuesStayPutAsTheVectorGrowsAndOnlyOutsideValuesAreDeletedOneByOne) {
  IVector<std::int32_t*> values(2, 3, 4);
  std::vector<std::int32_t*> handedOut;
  for (std::int32_t i = 0; i < 20; ++i) {
    handedOut.push_back(i % 5 == 4 ? new std::int32_t(i) : nullptr);
    if (handedOut.back() != nullptr) {
      values.append(handedOut.back());
    } else {
      handedOut.back() = values.appendValue(i);
    }
  }
  ASSERT_EQ(values.size(), 20u);
  for (std::int32_t i = 0; i < 20; ++i) {
    EXPECT_EQ(values[static_cast<std::size_t>(i)], handedOut[static_cast<std::size_t>(i)]);
    EXPECT_EQ(*handedOut[static_cast<std::size_t>(i)], i);  // still where it was made
  }
  values.removeAt(0);  // an own value leaves; its slot stays the vector's
  values.deleteValues();
  EXPECT_TRUE(values.isEmpty());
  // The vector takes values again after deleteValues.
  std::int32_t* again = values.appendValue(42);
  EXPECT_EQ(*values[0], 42);
  EXPECT_EQ(values[0], again);
}

// A short list of own values shares one allocation with its first buffer: every way
// of leaving that buffer (growing, deleteValues, assignment, destruction) must free
// the allocation exactly once (the sanitizer build reports anything else).
TEST(IVectorTest, FirstBufferSharedWithTheValueBlockIsFreedOnceWhicheverWayItIsLeft) {
  IVector<std::int16_t*> values(3);
  values.appendValue(1);
  values.appendValue(2);
  values.deleteValues();  // buffer and block go together
  EXPECT_TRUE(values.isEmpty());
  values.append(new std::int16_t(7));  // a fresh buffer for an outside value
  values.appendValue(8);
  EXPECT_EQ(*values[0] + *values[1], 15);
  values.deleteValues();

  IVector<std::int16_t*> growing(2);
  std::int16_t* first = growing.appendValue(10);
  for (std::int16_t i = 11; i < 15; ++i) growing.appendValue(i);
  EXPECT_EQ(growing[0], first);  // the buffer moved, the value did not
  EXPECT_EQ(*growing[4], 14);
  IVector<std::int16_t*> assigned(4);
  assigned.appendValue(99);
  assigned = growing;  // the old shared allocation is released
  EXPECT_EQ(assigned[0], first);
  assigned.clear();
}

TEST(IVectorTest, OwnValuesMoveWithTheVectorAndCopiesOnlyShareThem) {
  auto made = std::make_unique<IVector<double*>>(1);
  made->appendValue(1.5);
  made->append(new double(2.5));
  IVector<double*> taken(std::move(*made));
  IVector<double*> shared(taken);
  made.reset();  // the blocks went with the move
  EXPECT_EQ(*taken[0], 1.5);
  EXPECT_EQ(shared[0], taken[0]);

  IVector<double*> swapped;
  swapped.swap(taken);
  EXPECT_TRUE(taken.isEmpty());
  EXPECT_EQ(*swapped[1], 2.5);
  shared.clear();  // the copy never frees what it shares
  swapped.deleteValues();
}

// Generic code (the serializers) reads any collection of pointers as IVector<void*>:
// the value blocks of number vectors must not move the members that all vectors share.
TEST(IVectorTest, EveryVectorOfPointersReadsAsAVectorOfVoidPointers) {
  IVector<int*> numbers(2, 2, 8);
  for (int i = 0; i < 5; ++i) numbers.appendValue(i * 7);
  auto const& generic = *reinterpret_cast<IVector<void*> const*>(&numbers);
  ASSERT_EQ(generic.size(), numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) EXPECT_EQ(generic[i], static_cast<void*>(numbers[i]));
  EXPECT_EQ(*static_cast<int*>(generic[4]), 28);
}
