// Chains of objects, each containing or referring to the next, are written, read back,
// compared and freed on a thread whose stack is far too small for one call per object:
// 20,000 objects on 512 KiB leave under 27 bytes per object, less than any call frame.
// (A longer chain on the default stack proves the same at a hundred times the cost.)
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <memory>
#include <sstream>

#include "tests/io/BinaryStreamTestSupport.h"
#include "tests/support/TestPackageAccess.h"

namespace {

using namespace binary_test;
namespace icore = com::veltrana::qvx::icore;
using icore::internal::IObjectInternal;

constexpr int kChainLength = 20000;
constexpr std::size_t kSmallStackBytes = 512 * 1024;

// Runs `body` on a new thread with a stack of kSmallStackBytes and waits for it.
void onSmallStack(std::function<void()> body) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStackBytes), 0);
  pthread_t thread;
  const int created = pthread_create(
      &thread, &attributes,
      [](void* work) -> void* {
        (*static_cast<std::function<void()>*>(work))();
        return nullptr;
      },
      &body);
  pthread_attr_destroy(&attributes);
  ASSERT_EQ(created, 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
}

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
  onSmallStack([] {
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
  });
}

TEST(BinaryStreamDeepGraphTest, AReferenceChainRoundTripsAndTheStreamHandsOverTheRest) {
  onSmallStack([] {
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
  });
}

TEST(BinaryStreamDeepGraphTest, AnAbandonedDeepChainIsFreedAndTheStreamFreesWhatItKept) {
  onSmallStack([] {
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
  });
}

}  // namespace
