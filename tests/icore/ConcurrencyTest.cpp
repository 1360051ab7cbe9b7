// First use of the shared singletons from several threads at once, in a process of its
// own so that the first use really is in the test: the runtime, the seed registry,
// the core package (built on first request), a generated package (the test package,
// linked into this program, whose building also builds the core package), the
// all-properties cache of a metaclass, and identity parsing.
//
// What it shows: in this run, threads released together all got the same fully built
// singletons, equal cached lists and equal identities, and each package was
// registered once. What it cannot show: that no interleaving ever goes wrong. The
// threads may happen to run one after another, and a data race that gives the right
// answer goes unseen here (that needs a thread sanitizer).
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "icore/IClass.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/SeedRegistry.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/TestPackage.h"

namespace {

using com::example::test::shapes::ShapesIPackage;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IPackage;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::runtime::SeedRegistry;

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
  IUString identityText;
};

std::size_t countListed(IVector<IPackage*> const& packages, IPackage const* package) {
  std::size_t count = 0;
  for (IPackage* listed : packages) count += listed == package ? 1 : 0;
  return count;
}

TEST(ConcurrencyTest, FirstUseFromManyThreadsGivesOneConsistentState) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    constexpr int kThreads = 8;
    std::vector<Sighting> seen(kThreads);
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
      threads.emplace_back([&seen, &waiting, index] {
        // Release every thread at once, so first use is contended.
        --waiting;
        while (waiting.load() > 0) std::this_thread::yield();
        Sighting& mine = seen[static_cast<std::size_t>(index)];
        // Half start at the runtime, half at the packages, so that each is somebody's
        // first request.
        if (index % 2 == 0) {
          mine.runtime = QVXRuntime::getInstance();
          mine.shapes = ShapesIPackage::iGetInstance();
          mine.core = IcoreIPackage::iGetInstance();
        } else {
          mine.core = IcoreIPackage::iGetInstance();
          mine.shapes = ShapesIPackage::iGetInstance();
          mine.runtime = QVXRuntime::getInstance();
        }
        mine.seeds = SeedRegistry::getInstance();
        if (mine.core != nullptr) {
          mine.propertyList = &mine.core->getIPropertyIClass()->getAllProperties(ITRUE);
          mine.properties.assign(mine.propertyList->begin(), mine.propertyList->end());
        }
        mine.identity.reset(mine.runtime->identityFromString(kSeedText));
        if (mine.identity) mine.identityText = mine.runtime->identityToString(mine.identity.get());
      });
    }
    for (std::thread& thread : threads) thread.join();

    const Sighting& first = seen[0];
    checks.expect(first.runtime != nullptr && first.core != nullptr && first.shapes != nullptr && first.seeds != nullptr,
                  "a singleton was null");
    // IModelElement's name and comment, ITypedElement's type, and IProperty's twelve.
    checks.expect(first.properties.size() == 15, "IProperty has " + std::to_string(first.properties.size()) +
                                                     " properties, not 15");
    for (int index = 0; index < kThreads; ++index) {
      const Sighting& other = seen[static_cast<std::size_t>(index)];
      const std::string who = "thread " + std::to_string(index) + ": ";
      checks.expect(other.runtime == first.runtime, who + "another runtime");
      checks.expect(other.seeds == first.seeds, who + "another seed registry");
      checks.expect(other.core == first.core, who + "another core package");
      checks.expect(other.shapes == first.shapes, who + "another test package");
      checks.expect(other.propertyList == first.propertyList, who + "another all-properties list");
      checks.expect(other.properties == first.properties, who + "different all-properties contents");
      checks.expect(other.identity != nullptr && first.identity != nullptr && *other.identity == *first.identity,
                    who + "a different identity from the same text");
      checks.expect(other.identityText == kSeedText, who + "identity text " + other.identityText.toUtf8());
    }

    QVXRuntime* runtime = QVXRuntime::getInstance();
    const IVector<IPackage*> packages = runtime->getAllIPackages();
    checks.expect(countListed(packages, first.core) == 1, "the core package is not listed once");
    checks.expect(countListed(packages, first.shapes) == 1, "the test package is not listed once");
    checks.expect(runtime->getIPackageForName("com.example.test.shapes") == first.shapes,
                  "the test package is not registered under its name");
    checks.expect(runtime->getIPackageForName("com.veltrana.qvx.icore") == first.core,
                  "the core package is not registered under its name");
  });
}

}  // namespace
