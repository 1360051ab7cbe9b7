// Chains of objects far deeper than any call stack would allow, each object containing
// or referring to the next, are written and read back on the default stack.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "icore/IObject.h"
#include "icore/ObjectGraphComparator.h"
#include "icore/internal/IObjectInternal.h"
#include "tests/io/BinaryStreamTestSupport.h"
#include "tests/support/TestPackageAccess.h"

namespace {

using namespace binary_test;
namespace icore = com::veltrana::qvx::icore;
using icore::internal::IObjectInternal;

#ifdef QVX_IO_TESTS_SANITIZED
constexpr int kChainLength = 100000;
#else
constexpr int kChainLength = 1000000;
#endif

// A chain of drawings, each holding the next in `property` ("layers": contained,
// "partner": referred to). Returns the first; the caller owns the chain (a referring
// chain: every drawing).
std::vector<icore::IObject*> buildChain(const char* property) {
  using namespace shapes_test;
  std::vector<icore::IObject*> chain;
  chain.reserve(kChainLength);
  chain.push_back(make("Drawing", "d"));
  icore::IProperty const& layers = propertyOf(chain[0], "layers");
  for (int i = 1; i < kChainLength; ++i) {
    icore::IObject* next = make("Drawing");
    if (std::string(property) == "layers") {
      itemsOf<icore::IObject>(chain.back(), "layers").append(next);
      static_cast<IObjectInternal*>(next)->iSetContainer(static_cast<IObjectInternal*>(chain.back()), &layers);
    } else {
      refer(chain.back(), "partner", next);
    }
    chain.push_back(next);
  }
  return chain;
}

std::string written(icore::IObject const* first) {
  std::ostringstream out;
  QVXBinaryOutputStream stream(&out, nullptr, nullptr);
  stream.writeObject(first);
  return out.str();
}

TEST(BinaryStreamDeepGraphTest, AContainmentChainRoundTrips) {
  const int before = shapes_test::shapesLiveObjectCount();
  std::vector<icore::IObject*> chain = buildChain("layers");
  std::unique_ptr<icore::IObject> first(chain.front());
  const std::string data = written(first.get());
  std::istringstream in(data);
  QVXBinaryInputStream stream(&in, nullptr, nullptr);
  std::unique_ptr<icore::IObject> read(stream.readObject());
  ASSERT_NE(read, nullptr);
  const auto result = icore::ObjectGraphComparator::compare(first.get(), read.get());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  std::unique_ptr<IVector<icore::IObject*>> detached(stream.releaseDetachedObjects());
  EXPECT_TRUE(detached->isEmpty());
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), before + 2 * kChainLength);
  first.reset();
  read.reset();
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), before);
}

TEST(BinaryStreamDeepGraphTest, AReferenceChainRoundTripsAndTheStreamHandsOverTheRest) {
  const int before = shapes_test::shapesLiveObjectCount();
  std::vector<icore::IObject*> chain = buildChain("partner");
  const std::string data = written(chain.front());
  std::istringstream in(data);
  QVXBinaryInputStream stream(&in, nullptr, nullptr);
  std::unique_ptr<icore::IObject> read(stream.readObject());
  ASSERT_NE(read, nullptr);
  const auto result = icore::ObjectGraphComparator::compare(chain.front(), read.get());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  std::unique_ptr<IVector<icore::IObject*>> detached(stream.releaseDetachedObjects());
  EXPECT_EQ(detached->size(), static_cast<std::size_t>(kChainLength - 1));
  for (icore::IObject* object : *detached) delete object;
  for (icore::IObject* object : chain) delete object;
  read.reset();
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), before);
}

TEST(BinaryStreamDeepGraphTest, AnAbandonedDeepChainIsFreedAndTheStreamFreesWhatItKept) {
  const int before = shapes_test::shapesLiveObjectCount();
  std::vector<icore::IObject*> chain = buildChain("layers");
  std::unique_ptr<icore::IObject> first(chain.front());
  const std::string data = written(first.get());
  first.reset();
  {
    // Cut off in the middle: every drawing read so far is freed.
    std::istringstream in(data.substr(0, data.size() / 2));
    QVXBinaryInputStream stream(&in, nullptr, nullptr);
    EXPECT_THROW(stream.readObject(), IOException);
  }
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), before);
}

}  // namespace
