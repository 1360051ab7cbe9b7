// First use of the shared singletons from several threads at once, in a process of its
// own so that the first use really is in the test: the runtime, the seed registry, the
// core package, the test package (linked into this program; building it also builds the
// core package), a metaclass's all-properties cache and identity parsing.
//
// It shows that in this run, threads released together got the same fully built
// singletons, equal cached lists and equal identities, and that each package was
// registered once. It cannot show that no interleaving ever goes wrong: a data race
// that gives the right answer needs a thread sanitizer to be seen.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "icore/IClass.h"
#include "icore/IIdentity.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/SeedRegistry.h"
#include "io/exception/IOException.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/TestPackage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using com::example::test::shapes::ShapesIPackage;
using runtime::SeedRegistry;

const IUString kSeedText("smd:com.example.test.shapes:Stencil.basic/square");

// What one thread saw.
struct Sighting {
  QVXRuntime* runtime = nullptr;
  SeedRegistry* seeds = nullptr;
  IcoreIPackage* core = nullptr;
  ShapesIPackage* shapes = nullptr;
  IVector<IProperty*> const* propertyList = nullptr;
  std::vector<IProperty*> properties;
  std::unique_ptr<IIdentity> identity;
};

TEST(ConcurrencyTest, FirstUseFromManyThreadsGivesOneConsistentState) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    constexpr int kThreads = 8;
    std::vector<Sighting> seen(kThreads);
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
      threads.emplace_back([&seen, &waiting, index] {
        --waiting;
        while (waiting.load() > 0) std::this_thread::yield();  // all released together
        Sighting& mine = seen[index];
        // A third of the threads start at each singleton, so each is somebody's first request.
        if (index % 3 == 0) mine.runtime = QVXRuntime::getInstance();
        if (index % 3 == 1) mine.shapes = ShapesIPackage::iGetInstance();
        mine.core = IcoreIPackage::iGetInstance();
        mine.shapes = ShapesIPackage::iGetInstance();
        mine.runtime = QVXRuntime::getInstance();
        mine.seeds = SeedRegistry::getInstance();
        if (mine.core == nullptr) return;
        mine.propertyList = &mine.core->getIPropertyIClass()->getAllProperties(ITRUE);
        mine.properties.assign(mine.propertyList->begin(), mine.propertyList->end());
        mine.identity.reset(mine.runtime->identityFromString(kSeedText));
      });
    }
    for (std::thread& thread : threads) thread.join();

    const Sighting& first = seen[0];
    checks.expect(first.core != nullptr && first.shapes != nullptr && first.identity != nullptr, "a null answer");
    // IModelElement's name and comment, ITypedElement's type, and IProperty's twelve.
    checks.expect(first.properties.size() == 15, "IProperty has " + std::to_string(first.properties.size()));
    for (const Sighting& other : seen) {
      checks.expect(other.runtime == first.runtime && other.seeds == first.seeds && other.core == first.core &&
                        other.shapes == first.shapes,
                    "threads got different singletons");
      checks.expect(other.propertyList == first.propertyList && other.properties == first.properties,
                    "threads got different all-properties lists");
      checks.expect(other.identity != nullptr && *other.identity == *first.identity, "one text, two identities");
    }
    const IVector<IPackage*> packages = first.runtime->getAllIPackages();
    for (IPackage* package : {static_cast<IPackage*>(first.core), static_cast<IPackage*>(first.shapes)}) {
      checks.expect(std::count(packages.begin(), packages.end(), package) == 1, "a package is not listed once");
      checks.expect(first.runtime->getIPackageForName(package->getQualifiedName()) == package,
                    "a package is not registered under its name");
    }
  });
}

const IUString kSeedUserPackage("com.example.test.seeduser");

IUString seedUserLibrary(IUString const& packageName, IUString& error) {
  if (packageName == kSeedUserPackage) return IUString(QVX_TEST_SEED_USER_LIBRARY_STEM);
  error = IUString("no library is known for ") + packageName;
  return IUString();
}

std::atomic<bool> gLookupInCallback{false};

// A seed loader that, like a host's, loads the package library of the id it is asked
// for. It lingers first, so that the other thread's load is under way by then.
IObject* loaderThatLoadsALibrary(IUString const&) {
  gLookupInCallback = true;
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  IUString error;
  QVXRuntime::loadPackageLibrary(kSeedUserPackage, error);
  return nullptr;
}

// Waits until `finished` reaches `count`. Threads that take longer than `limit` are
// taken to be deadlocked: they can never be joined, so the process says so and ends.
void awaitOrEnd(std::atomic<int> const& finished, int count, std::chrono::seconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (finished.load() < count) {
    if (std::chrono::steady_clock::now() > deadline) {
      std::fputs("the threads are deadlocked\n", stderr);
      std::_Exit(1);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

// One thread misses in the seed registry and its loader loads a package library;
// another loads a library whose static initialisation uses the seed registry. Each
// path takes the registry's lock and the loader's lock, so they must never hold one
// while waiting for the other.
TEST(ConcurrencyTest, SeedLookupThatLoadsALibraryAndALibraryThatUsesSeedsDoNotDeadlock) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    QVXRuntime::registerPackageLibraryResolver(&seedUserLibrary);
    SeedRegistry::getInstance()->registerSeedLoaderCallback(&loaderThatLoadsALibrary);
    std::atomic<int> finished{0};
    bool lookupFailedAsExpected = false;
    ISTATUS loaded = ISTATUS_FAILURE;
    IUString error;
    std::thread lookup([&] {
      try {
        SeedRegistry::getInstance()->getObjectById("smd:com.example.test.seeduser:Kind.x");
      } catch (com::veltrana::qvx::io::exception::IOException const&) {
        lookupFailedAsExpected = true;  // no resource resolver, so no seed file either
      }
      ++finished;
    });
    std::thread load([&] {
      while (!gLookupInCallback.load()) std::this_thread::yield();
      loaded = QVXRuntime::loadPackageLibrary(kSeedUserPackage, error);
      ++finished;
    });
    awaitOrEnd(finished, 2, std::chrono::seconds(30));
    lookup.join();
    load.join();
    checks.expect(lookupFailedAsExpected, "the lookup did not end in the missing seed file");
    checks.expect(loaded == ISTATUS_SUCCESS, "the library did not load: " + error.toUtf8());
  });
}

}  // namespace
