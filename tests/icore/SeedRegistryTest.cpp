// The seed registry: objects from the loader callback with their seeded contents, the
// dump, look-up by type, emptying, and the seed file that a miss asks the resolver for.
#include "icore/runtime/SeedRegistry.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "icore/QVXMsgCatalog.h"
#include "icore/runtime/SeedIdentity.h"
#include "io/ResourceResolver.h"
#include "io/exception/IOException.h"
#include "platform/StdOutputStream.h"
#include "tests/support/TestPackageAccess.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using namespace shapes_test;                // NOLINT: the test package's helpers
using com::veltrana::qvx::io::ResourceResolver;
using com::veltrana::qvx::io::exception::IOException;
using runtime::SeedRegistry;

// The registry's callback and resolver are plain functions: these record what they are
// asked in gRecorded and answer with what the test put there.
struct Recorded {
  std::function<IObject*(IUString const&)> loader;
  IUString folder;
  std::vector<IUString> loaderRequests, resolverRequests;
} gRecorded;

IObject* forwardingLoader(IUString const& id) {
  gRecorded.loaderRequests.push_back(id);
  return gRecorded.loader ? gRecorded.loader(id) : nullptr;
}

IUString recordingResolver(IUString const& name) {
  gRecorded.resolverRequests.push_back(name);
  return gRecorded.folder;
}

IObject* makeSeed(const char* className, const IUString& seedId) {
  IObject* object = make(className);
  infoOf(object)->setIdentityString(seedId);
  return object;
}

const IUString kBasic("com.example.test.shapes:Stencil.basic");
const IUString kSquare("com.example.test.shapes:Stencil.basic/square");
const IUString kCircle("com.example.test.shapes:Stencil.basic/circle");

// A stencil holding a square, a circle and a note (of a class without identities).
IObject* makeBasicStencil() {
  IObject* stencil = makeSeed("Stencil", kBasic);
  adopt(stencil, "shapes", makeSeed("Shape", kSquare));
  adopt(stencil, "shapes", makeSeed("Circle", kCircle));
  refer(stencil, "note", make("Note"));
  return stencil;
}

std::size_t registeredCount() {
  return std::unique_ptr<IVector<IObject*>>(SeedRegistry::getInstance()->getAllRegisteredObjects())->size();
}

// Tests register stencils only, through the callback; emptying the registry at the end
// deletes them (the sanitizer build reports any it failed to delete).
class SeedRegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(loadShapesPackage(), nullptr);
    previousResolver_ = ResourceResolver::getQVXResourceResolver();
    ResourceResolver::registerQVXResourceResolver(&recordingResolver);
    previousLoader_ = registry_->registerSeedLoaderCallback(&forwardingLoader);
  }

  void TearDown() override {
    registry_->removeObjectsByType(*shapesClass("Stencil"));
    EXPECT_EQ(registry_->registerSeedLoaderCallback(previousLoader_), &forwardingLoader);
    ResourceResolver::registerQVXResourceResolver(previousResolver_);
    gRecorded = Recorded();
  }

  SeedRegistry* registry_ = SeedRegistry::getInstance();

 private:
  ResourceResolver::Resolver previousResolver_ = nullptr;
  SeedRegistry::SeedLoaderCallback previousLoader_ = nullptr;
};

TEST_F(SeedRegistryTest, MissIsAskedOfTheCallbackThenOfTheSeedFileNamedFromTheId) {
  const std::pair<const char*, const char*> idsAndFiles[] = {
      {"a.b:T.x/y", "a.b.T.seed.xml"}, {"abc", "abc.seed.xml"}, {"p:T/m.x", "p.T.seed.xml"}, {"a.b.c", "a.b.seed.xml"}};
  for (const auto& [id, file] : idsAndFiles) {
    // 76004: no folder holds the file; 76000: the folder has no such file.
    for (const bool hasFolder : {false, true}) {
      gRecorded = Recorded();
      gRecorded.folder = hasFolder ? IUString::fromUtf8(::testing::TempDir()) : IUString();
      EXPECT_EQ(qvx_test::messageOf<IOException>([id = id] { SeedRegistry::getInstance()->getObjectById(id); }),
                qvxFormatMsg(hasFolder ? 76000 : 76004, IUString(file)));
      EXPECT_EQ(gRecorded.loaderRequests, std::vector<IUString>{IUString(id)});
      EXPECT_EQ(gRecorded.resolverRequests, std::vector<IUString>{IUString(file)});
    }
  }
}

TEST_F(SeedRegistryTest, CallbackObjectAndItsSeededContentsAreFoundWithoutFilesAndDumped) {
  std::size_t registeredInCallback = 99;
  gRecorded.loader = [&registeredInCallback](IUString const& id) {
    registeredInCallback = registeredCount();  // calls back into the registry
    return id == kBasic ? makeBasicStencil() : nullptr;
  };
  IObject* stencil = registry_->getObjectById(kBasic);
  IObject* square = registry_->getObjectById(kSquare);
  IObject* circle = registry_->getObjectById(kCircle);
  ASSERT_TRUE(stencil != nullptr && square != nullptr && circle != nullptr);
  EXPECT_EQ(registeredInCallback, 0u);
  EXPECT_EQ(infoOf(square)->getContainer(), stencil);
  EXPECT_EQ(infoOf(circle)->getIClass(), shapesClass("Circle"));
  EXPECT_EQ(registry_->getObjectById(kBasic), stencil);
  // After the first request all came from memory; the note is not a seed object.
  EXPECT_EQ(gRecorded.loaderRequests.size(), 1u);
  EXPECT_TRUE(gRecorded.resolverRequests.empty());
  EXPECT_EQ(registeredCount(), 3u);

  std::ostringstream text;
  StdOutputStream out(text);
  registry_->debugDumpRegistryContents(out);
  out.flush();
  // In the map's order, which getAllRegisteredObjects shares.
  std::string expected;
  const std::unique_ptr<IVector<IObject*>> registered(registry_->getAllRegisteredObjects());
  for (IObject* object : *registered) {
    const auto lowBits = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(object));
    expected += "Id\t =" + infoOf(object)->getIdentityString().toUtf8() + "\nObject\t =" + std::to_string(lowBits);
    expected += "\n\n";
  }
  EXPECT_EQ(text.str(), expected);
  EXPECT_NE(text.str().find("Id\t =" + kSquare.toUtf8() + "\nObject"), std::string::npos);
}

TEST_F(SeedRegistryTest, ObjectsByTypeIncludeSubclassesAndRemovingAnyTypeEmptiesTheRegistry) {
  EXPECT_EQ(registry_->getObjectsByType(*shapesClass("Shape")), nullptr);
  gRecorded.loader = [](IUString const&) { return makeBasicStencil(); };
  IObject* stencil = registry_->getObjectById(kBasic);
  ASSERT_NE(stencil, nullptr);
  const std::unique_ptr<IVector<IObject*>> shapes(registry_->getObjectsByType(*shapesClass("Shape")));
  const std::unique_ptr<IVector<IObject*>> circles(registry_->getObjectsByType(*shapesClass("Circle")));
  ASSERT_TRUE(shapes != nullptr && circles != nullptr);
  EXPECT_EQ(shapes->size(), 2u);
  EXPECT_TRUE(shapes->contains(registry_->getObjectById(kSquare)));
  EXPECT_EQ(circles->size(), 1u);
  EXPECT_EQ(registry_->getObjectsByType(*shapesClass("Drawing")), nullptr);

  // The only circle is contained, so nothing is deleted, yet every entry goes and the
  // stencil is the test's again.
  const int liveBefore = shapesLiveObjectCount();
  registry_->removeObjectsByType(*shapesClass("Circle"));
  EXPECT_EQ(registeredCount(), 0u);
  EXPECT_EQ(shapesLiveObjectCount(), liveBefore);
  delete stencil;
}

TEST_F(SeedRegistryTest, DeepContainmentIsRegisteredWithoutExhaustingTheStack) {
  constexpr int kDepth = 100000;  // a walk with a stack frame per level would overflow
  auto idAt = [](int level) { return IUString::format("com.example.test.shapes:Stencil.deep/%d", level); };
  std::vector<IObject*> chain{makeSeed("Stencil", idAt(0))};
  for (int level = 1; level < kDepth; ++level) {
    chain.push_back(adopt(chain.back(), "parts", makeSeed("Stencil", idAt(level))));
  }
  gRecorded.loader = [&chain](IUString const&) { return chain.front(); };
  EXPECT_EQ(registry_->getObjectById(idAt(0)), chain.front());
  EXPECT_EQ(registry_->getObjectById(idAt(kDepth - 1)), chain.back());
  EXPECT_EQ(registeredCount(), static_cast<std::size_t>(kDepth));
  // Taken apart, so that each stencil is deleted by itself rather than by a chain of
  // destructors as deep as the tree.
  for (IObject* stencil : chain) {
    itemsOf<IObject>(stencil, "parts").clear();
    infoOf(stencil)->getAssociatedObject()->iSetContainer(nullptr, nullptr);
  }
}

std::atomic<int> gLoadersInside{0};

// Makes a new stencil for each thread that asks, after waiting a while for the other
// thread to come in too, so that both loads overlap.
IObject* overlappingLoader(IUString const&) {
  ++gLoadersInside;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
  while (gLoadersInside.load() < 2 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  return makeBasicStencil();
}

// The loader runs without the registry's lock, so two threads that miss the same id
// may both load it: both must get the object registered first, and the registry deletes
// the other copy, which it was handed.
TEST_F(SeedRegistryTest, TwoThreadsMissingTheSameIdShareTheFirstObjectAndTheCopyIsDeleted) {
  const int liveBefore = shapesLiveObjectCount();
  registry_->registerSeedLoaderCallback(&overlappingLoader);
  IObject* found[2] = {};
  std::thread first([&found, this] { found[0] = registry_->getObjectById(kBasic); });
  std::thread second([&found, this] { found[1] = registry_->getObjectById(kBasic); });
  first.join();
  second.join();
  registry_->registerSeedLoaderCallback(&forwardingLoader);
  ASSERT_NE(found[0], nullptr);
  EXPECT_EQ(found[0], found[1]);
  EXPECT_EQ(gLoadersInside.load(), 2) << "the loads did not overlap";
  EXPECT_EQ(registeredCount(), 3u);
  // One stencil with its square, circle and note is left alive.
  EXPECT_EQ(shapesLiveObjectCount(), liveBefore + 4);
}

}  // namespace
