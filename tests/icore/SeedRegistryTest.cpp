// The seed registry: objects from the loader callback and their seeded contents, look-up
// by type, emptying, the dump, locking, and the seed-file path up to the point where the
// file would be read (seed file names, missing resolver, missing file).
#include "icore/runtime/SeedRegistry.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include "icore/IClass.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/SeedIdentity.h"
#include "io/ResourceResolver.h"
#include "io/exception/IOException.h"
#include "platform/StdOutputStream.h"
#include "tests/support/AssertionCatcher.h"
#include "tests/support/TestPackageLoader.h"

namespace {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::icore::runtime::SeedIdentity;
using com::veltrana::qvx::icore::runtime::SeedRegistry;
using com::veltrana::qvx::io::ResourceResolver;
using com::veltrana::qvx::io::exception::IOException;
using shapes_test::infoOf;
using shapes_test::shapesClass;
using shapes_test::shapesProperty;

// The registry's callback is a plain function; it forwards to what the test installs.
std::function<IObject*(IUString const&)> gLoader;
std::vector<IUString> gLoaderRequests;

IObject* forwardingLoader(IUString const& id) {
  gLoaderRequests.push_back(id);
  return gLoader ? gLoader(id) : nullptr;
}

// The resource resolver records what it is asked for and answers gFolder.
std::vector<IUString> gResolverRequests;
IUString gFolder;

IUString recordingResolver(IUString const& name) {
  gResolverRequests.push_back(name);
  return gFolder;
}

IObject* makeSeed(const char* className, const IUString& seedId) {
  IObject* object = shapesClass(className)->create();
  if (!seedId.isEmpty()) infoOf(object)->setIdentityString(seedId);
  return object;
}

// Puts `shape` into `stencil`'s shapes, as a reader would.
void contain(IObject* stencil, IObject* shape) {
  IProperty* shapes = shapesProperty("Stencil", "shapes");
  auto* collection = const_cast<IVector<IObject*>*>(static_cast<IVector<IObject*> const*>(infoOf(stencil)->get(*shapes, IFALSE)));
  collection->append(shape);
  infoOf(shape)->getAssociatedObject()->iSetContainer(infoOf(stencil)->getAssociatedObject(), shapes);
}

void containNote(IObject* stencil, const char* text) {
  IObject* note = shapesClass("Note")->create();
  IUString value(text);
  infoOf(note)->set(*shapesProperty("Note", "text"), &value, 0, ITRUE);
  infoOf(stencil)->set(*shapesProperty("Stencil", "note"), note, 0, IFALSE);
}

const IUString kBasic("com.example.test.shapes:Stencil.basic");
const IUString kSquare("com.example.test.shapes:Stencil.basic/square");
const IUString kCircle("com.example.test.shapes:Stencil.basic/circle");

// A stencil with a square, a circle and a note (which is not a seed object).
IObject* makeBasicStencil() {
  IObject* stencil = makeSeed("Stencil", kBasic);
  contain(stencil, makeSeed("Shape", kSquare));
  contain(stencil, makeSeed("Circle", kCircle));
  containNote(stencil, "standard set");
  return stencil;
}

std::unique_ptr<IVector<IObject*>> all() { return std::unique_ptr<IVector<IObject*>>(SeedRegistry::getInstance()->getAllRegisteredObjects()); }

// Each test starts and ends with an empty registry, no callback and a recording
// resolver that finds nothing. Registered objects belong to the registry; the top-level
// ones that emptying it by type does not delete are deleted here.
class SeedRegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(shapes_test::loadShapesPackage(), nullptr);
    previousResolver_ = ResourceResolver::getQVXResourceResolver();
    ResourceResolver::registerQVXResourceResolver(&recordingResolver);
    previousLoader_ = SeedRegistry::getInstance()->registerSeedLoaderCallback(nullptr);
    empty();
  }

  void TearDown() override {
    empty();
    SeedRegistry::getInstance()->registerSeedLoaderCallback(previousLoader_);
    ResourceResolver::registerQVXResourceResolver(previousResolver_);
  }

  static void empty() {
    IClass* stencilClass = shapesClass("Stencil");
    std::vector<IObject*> others;
    std::unordered_set<IObject*> seen;
    const std::unique_ptr<IVector<IObject*>> registered = all();
    for (IObject* object : *registered) {
      IObjectInfo* info = infoOf(object);
      if (info->getContainer() != nullptr || info->getIClass()->isTypeOf(*stencilClass)) continue;
      if (seen.insert(object).second) others.push_back(object);
    }
    SeedRegistry::getInstance()->removeObjectsByType(*stencilClass);
    for (IObject* object : others) delete object;
    gLoader = nullptr;
    gLoaderRequests.clear();
    gResolverRequests.clear();
    gFolder = IUString();
  }

 private:
  ResourceResolver::Resolver previousResolver_ = nullptr;
  SeedRegistry::SeedLoaderCallback previousLoader_ = nullptr;
};

TEST_F(SeedRegistryTest, SeedFileNameComesFromTheIdBeforeSlashAndLastDot) {
  const struct {
    const char* id;
    const char* file;
  } cases[] = {
      {"a.b:T.x/y", "a.b.T.seed.xml"},
      {"abc", "abc.seed.xml"},
      {"com.acme:Colours.red", "com.acme.Colours.seed.xml"},
      {"pkg:Type/member.part", "pkg.Type.seed.xml"},
      {"a.b.c", "a.b.seed.xml"},
  };
  for (const auto& entry : cases) {
    gResolverRequests.clear();
    EXPECT_THROW(SeedRegistry::getInstance()->getObjectById(entry.id), IOException) << entry.id;
    ASSERT_EQ(gResolverRequests.size(), 1u) << entry.id;
    EXPECT_EQ(gResolverRequests[0], IUString(entry.file)) << entry.id;
  }
}

TEST_F(SeedRegistryTest, FolderNotFoundThrowsIOExceptionNamingTheFile) {
  try {
    SeedRegistry::getInstance()->getObjectById("abc");
    FAIL() << "a seed file without a folder was accepted";
  } catch (const IOException& error) {
    EXPECT_EQ(error.getMessage(), qvxFormatMsg(76004, IUString("abc.seed.xml")));
  }

  ResourceResolver::registerQVXResourceResolver(nullptr);
  try {
    SeedRegistry::getInstance()->getObjectById("abc");
    FAIL() << "a seed file was looked for without a resolver";
  } catch (const IOException& error) {
    EXPECT_NE(error.getMessage().toUtf8().find("abc.seed.xml"), std::string::npos);
  }
}

TEST_F(SeedRegistryTest, MissingSeedFileThrows76000) {
  gFolder = IUString::fromUtf8(::testing::TempDir());
  try {
    SeedRegistry::getInstance()->getObjectById("com.example.nowhere:Set.item");
    FAIL() << "a missing seed file was accepted";
  } catch (const IOException& error) {
    EXPECT_EQ(error.getMessage(), qvxFormatMsg(76000, IUString("com.example.nowhere.Set.seed.xml")));
  }
}

// Until the XML reader exists, a seed file that is there is reported, not read.
TEST_F(SeedRegistryTest, ExistingSeedFileIsNotYetReadable) {
  const std::string folder = ::testing::TempDir();
  const std::string path = folder + (folder.empty() || folder.back() == '/' ? "" : "/") + "com.example.present.Set.seed.xml";
  std::ofstream(path) << "<ozl:OZL/>\n";
  gFolder = IUString::fromUtf8(folder);
  try {
    SeedRegistry::getInstance()->getObjectById("com.example.present:Set.item");
    FAIL() << "reading a seed file claimed to succeed";
  } catch (const IOException& error) {
    EXPECT_NE(error.getMessage().toUtf8().find(path), std::string::npos) << error.getMessage().toUtf8();
  }
  std::remove(path.c_str());
}

TEST_F(SeedRegistryTest, CallbackObjectAndItsSeededContentsAreFoundWithoutFiles) {
  IObject* made = nullptr;
  gLoader = [&made](IUString const& id) -> IObject* {
    if (id != kBasic) return nullptr;
    made = makeBasicStencil();
    return made;
  };
  SeedRegistry::getInstance()->registerSeedLoaderCallback(&forwardingLoader);
  SeedRegistry* registry = SeedRegistry::getInstance();

  IObject* stencil = registry->getObjectById(kBasic);
  ASSERT_NE(stencil, nullptr);
  EXPECT_EQ(stencil, made);
  EXPECT_EQ(gLoaderRequests.size(), 1u);

  IObject* square = registry->getObjectById(kSquare);
  IObject* circle = registry->getObjectById(kCircle);
  ASSERT_TRUE(square != nullptr && circle != nullptr);
  EXPECT_EQ(infoOf(square)->getContainer(), stencil);
  EXPECT_EQ(infoOf(circle)->getIClass(), shapesClass("Circle"));
  EXPECT_EQ(registry->getObjectById(kBasic), stencil);
  // All three came from memory: neither the callback nor a seed file was asked again.
  EXPECT_EQ(gLoaderRequests.size(), 1u);
  EXPECT_TRUE(gResolverRequests.empty());
  // The note is not a seed object and is not registered.
  EXPECT_EQ(all()->size(), 3u);
}

TEST_F(SeedRegistryTest, CallbackWithoutAnswerFallsBackToTheSeedFile) {
  SeedRegistry::getInstance()->registerSeedLoaderCallback(&forwardingLoader);
  EXPECT_THROW(SeedRegistry::getInstance()->getObjectById("com.example.other:Set.item"), IOException);
  ASSERT_EQ(gLoaderRequests.size(), 1u);
  EXPECT_EQ(gLoaderRequests[0], IUString("com.example.other:Set.item"));
  ASSERT_EQ(gResolverRequests.size(), 1u);
  EXPECT_EQ(gResolverRequests[0], IUString("com.example.other.Set.seed.xml"));
}

TEST_F(SeedRegistryTest, RegisteringACallbackReturnsTheOneItReplaces) {
  SeedRegistry* registry = SeedRegistry::getInstance();
  EXPECT_EQ(registry->registerSeedLoaderCallback(&forwardingLoader), nullptr);
  EXPECT_EQ(registry->registerSeedLoaderCallback(nullptr), &forwardingLoader);
  EXPECT_EQ(registry->registerSeedLoaderCallback(nullptr), nullptr);
}

TEST_F(SeedRegistryTest, ObjectsByTypeIncludeSubclassesAndAreNullWhenNone) {
  SeedRegistry* registry = SeedRegistry::getInstance();
  EXPECT_EQ(registry->getObjectsByType(*shapesClass("Shape")), nullptr);

  gLoader = [](IUString const&) -> IObject* { return makeBasicStencil(); };
  registry->registerSeedLoaderCallback(&forwardingLoader);
  ASSERT_NE(registry->getObjectById(kBasic), nullptr);

  std::unique_ptr<IVector<IObject*>> shapes(registry->getObjectsByType(*shapesClass("Shape")));
  ASSERT_NE(shapes, nullptr);
  EXPECT_EQ(shapes->size(), 2u);
  EXPECT_TRUE(shapes->contains(registry->getObjectById(kSquare)));
  EXPECT_TRUE(shapes->contains(registry->getObjectById(kCircle)));

  std::unique_ptr<IVector<IObject*>> circles(registry->getObjectsByType(*shapesClass("Circle")));
  ASSERT_NE(circles, nullptr);
  ASSERT_EQ(circles->size(), 1u);
  EXPECT_EQ((*circles)[0], registry->getObjectById(kCircle));

  EXPECT_EQ(registry->getObjectsByType(*shapesClass("Drawing")), nullptr);
}

TEST_F(SeedRegistryTest, RemovingByTypeDeletesTopLevelMatchesAndEmptiesEverything) {
  SeedRegistry* registry = SeedRegistry::getInstance();
  const int liveBefore = shapes_test::shapesLiveObjectCount();
  IObject* loose = makeSeed("Shape", "com.example.test.shapes:Shape.loose");
  gLoader = [loose](IUString const& id) -> IObject* { return id == kBasic ? makeBasicStencil() : loose; };
  registry->registerSeedLoaderCallback(&forwardingLoader);
  IObject* firstStencil = registry->getObjectById(kBasic);
  ASSERT_NE(firstStencil, nullptr);
  ASSERT_EQ(registry->getObjectById("com.example.test.shapes:Shape.loose"), loose);
  EXPECT_EQ(all()->size(), 4u);
  // The loose shape, and the stencil with its two shapes and its note.
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore + 5);

  // Circles: the only one is contained, so nothing is deleted, yet all entries go.
  registry->removeObjectsByType(*shapesClass("Circle"));
  std::unique_ptr<IVector<IObject*>> remaining(registry->getAllRegisteredObjects());
  ASSERT_NE(remaining, nullptr);
  EXPECT_EQ(remaining->size(), 0u);
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore + 5);

  // Registered again, a new stencil goes with its contents; the loose shape is not a
  // stencil and stays alive, though forgotten.
  ASSERT_NE(registry->getObjectById(kBasic), nullptr);
  ASSERT_EQ(registry->getObjectById("com.example.test.shapes:Shape.loose"), loose);
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore + 9);
  registry->removeObjectsByType(*shapesClass("Stencil"));
  EXPECT_EQ(all()->size(), 0u);
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore + 5);
  EXPECT_EQ(infoOf(loose)->getIClass(), shapesClass("Shape"));

  // What the registry forgot without deleting is the caller's again.
  delete firstStencil;
  delete loose;
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore);
}

TEST_F(SeedRegistryTest, CallbackObjectWithoutSeedIdentityIsReturnedButNotKept) {
  IObject* drawing = shapesClass("Drawing")->create();
  QVXRuntime::getInstance()->assignUUID(drawing);
  gLoader = [drawing](IUString const&) -> IObject* { return drawing; };
  SeedRegistry* registry = SeedRegistry::getInstance();
  registry->registerSeedLoaderCallback(&forwardingLoader);

  EXPECT_EQ(registry->getObjectById("com.example.test.shapes:Drawing.d"), drawing);
  EXPECT_EQ(all()->size(), 0u);
  EXPECT_EQ(registry->getObjectById("com.example.test.shapes:Drawing.d"), drawing);
  EXPECT_EQ(gLoaderRequests.size(), 2u);
  delete drawing;  // never registered, so still the test's
}

TEST_F(SeedRegistryTest, CallbackObjectOfAClassWithoutIdentitiesIsAnAssertionFailure) {
  IObject* note = shapesClass("Note")->create();
  gLoader = [note](IUString const&) -> IObject* { return note; };
  SeedRegistry* registry = SeedRegistry::getInstance();
  registry->registerSeedLoaderCallback(&forwardingLoader);
  {
    AssertionCatcher catcher;
    EXPECT_THROW(registry->getObjectById("com.example.test.shapes:Note.n"), AssertionFailure);
  }
  EXPECT_EQ(all()->size(), 0u);
  delete note;
}

TEST_F(SeedRegistryTest, DeepContainmentIsRegisteredWithoutExhaustingTheStack) {
  // Deep enough that a walk with one stack frame per level would overflow the stack.
  constexpr int kDepth = 100000;
  IProperty* parts = shapesProperty("Stencil", "parts");
  auto partsOf = [parts](IObject* stencil) {
    return const_cast<IVector<IObject*>*>(static_cast<IVector<IObject*> const*>(infoOf(stencil)->get(*parts, IFALSE)));
  };
  auto idAt = [](int level) { return IUString::format("com.example.test.shapes:Stencil.deep/%d", level); };
  std::vector<IObject*> chain;
  chain.reserve(kDepth);
  chain.push_back(makeSeed("Stencil", idAt(0)));
  for (int level = 1; level < kDepth; ++level) {
    IObject* part = makeSeed("Stencil", idAt(level));
    partsOf(chain.back())->append(part);
    infoOf(part)->getAssociatedObject()->iSetContainer(infoOf(chain.back())->getAssociatedObject(), parts);
    chain.push_back(part);
  }
  IObject* root = chain.front();
  gLoader = [root](IUString const&) -> IObject* { return root; };
  SeedRegistry* registry = SeedRegistry::getInstance();
  registry->registerSeedLoaderCallback(&forwardingLoader);

  EXPECT_EQ(registry->getObjectById(idAt(0)), root);
  EXPECT_EQ(registry->getObjectById(idAt(kDepth - 1)), chain.back());
  EXPECT_EQ(all()->size(), static_cast<std::size_t>(kDepth));

  // Take the chain apart, so that each stencil is deleted on its own rather than by a
  // chain of destructors as deep as the tree.
  for (IObject* stencil : chain) {
    partsOf(stencil)->clear();
    infoOf(stencil)->getAssociatedObject()->iSetContainer(nullptr, nullptr);
  }
}

TEST_F(SeedRegistryTest, CallbackProxyIsRegisteredWithoutReadingItsValues) {
  gLoader = [](IUString const& id) -> IObject* {
    IIdentity const* identity = new SeedIdentity(id);
    return shapesClass("Stencil")->createProxy(identity);
  };
  SeedRegistry::getInstance()->registerSeedLoaderCallback(&forwardingLoader);
  IObject* proxy = SeedRegistry::getInstance()->getObjectById("com.example.test.shapes:Stencil.later");
  ASSERT_NE(proxy, nullptr);
  EXPECT_EQ(infoOf(proxy)->isProxy(), ITRUE);
  EXPECT_EQ(SeedRegistry::getInstance()->getObjectById("com.example.test.shapes:Stencil.later"), proxy);
}

TEST_F(SeedRegistryTest, DumpListsEachEntryWithTheLowBitsOfItsAddress) {
  gLoader = [](IUString const&) -> IObject* { return makeBasicStencil(); };
  SeedRegistry* registry = SeedRegistry::getInstance();
  registry->registerSeedLoaderCallback(&forwardingLoader);
  ASSERT_NE(registry->getObjectById(kBasic), nullptr);

  std::ostringstream text;
  {
    StdOutputStream out(text);
    registry->debugDumpRegistryContents(out);
    out.flush();
  }
  // Entries come in the map's order, which getAllRegisteredObjects shares.
  std::string expected;
  const std::unique_ptr<IVector<IObject*>> registered = all();
  for (IObject* object : *registered) {
    auto const* seed = dynamic_cast<SeedIdentity const*>(infoOf(object)->getIdentity());
    ASSERT_NE(seed, nullptr);
    const auto lowBits = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(object));
    expected += "Id\t =" + seed->getIdString().toUtf8() + "\nObject\t =" + std::to_string(lowBits) + "\n\n";
  }
  EXPECT_EQ(text.str(), expected);
  EXPECT_NE(text.str().find("Id\t =" + kSquare.toUtf8() + "\n"), std::string::npos);
}

TEST_F(SeedRegistryTest, CallbackMayCallBackIntoTheRegistry) {
  SeedRegistry* registry = SeedRegistry::getInstance();
  std::size_t seenInside = 99;
  gLoader = [registry, &seenInside](IUString const&) -> IObject* {
    seenInside = std::unique_ptr<IVector<IObject*>>(registry->getAllRegisteredObjects())->size();
    return makeBasicStencil();
  };
  registry->registerSeedLoaderCallback(&forwardingLoader);
  EXPECT_NE(registry->getObjectById(kBasic), nullptr);
  EXPECT_EQ(seenInside, 0u);
}

TEST_F(SeedRegistryTest, OtherThreadsWaitWhileTheCallbackRuns) {
  SeedRegistry* registry = SeedRegistry::getInstance();
  std::atomic<bool> inCallback{false};
  std::atomic<bool> release{false};
  std::atomic<bool> otherDone{false};
  gLoader = [&inCallback, &release](IUString const&) -> IObject* {
    inCallback = true;
    while (!release) std::this_thread::yield();
    return makeBasicStencil();
  };
  registry->registerSeedLoaderCallback(&forwardingLoader);

  std::thread loader([registry] { registry->getObjectById(kBasic); });
  while (!inCallback) std::this_thread::yield();
  std::thread other([registry, &otherDone] {
    std::unique_ptr<IVector<IObject*>> listed(registry->getAllRegisteredObjects());
    otherDone = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(otherDone) << "the registry answered while a callback was running";
  release = true;
  loader.join();
  other.join();
  EXPECT_TRUE(otherDone);
}

}  // namespace
