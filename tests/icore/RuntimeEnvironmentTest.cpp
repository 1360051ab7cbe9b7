// The encryption provider that the runtime loads from the library named by
// QVX_ENCRYPTION_PROVIDER_LIBRARY, a variable it consults at most once per process: each
// case runs in a process of its own.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "icore/IEncryptionProvider.h"
#include "icore/QVXRuntime.h"
#include "icore/internal/IObjectInternal.h"
#include "tests/support/FreshProcess.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file

// How often the entry point of the test provider library `stem` has been called; -1 when
// the library is not loaded.
int entryPointCalls(const char* stem) {
  void* library = dlopen((std::string(stem) + ".so").c_str(), RTLD_NOW | RTLD_NOLOAD);
  void* address = library != nullptr ? dlsym(library, "testEncryptionProviderCallCount") : nullptr;
  int (*count)() = nullptr;
  std::memcpy(&count, &address, sizeof count);
  return count != nullptr ? count() : -1;
}

TEST(RuntimeEnvironmentTest, ProviderLibraryIsLoadedOnFirstNeedAndOnlyOnce) {
  const struct { const char* stem; bool isLibrary, givesProvider; } cases[] = {
      {"/nonexistent-qvx-dir/libqvx_no_provider", false, false},
      {QVX_TEST_PROVIDER_LIBRARY_STEM, true, true},
      {QVX_TEST_NULL_PROVIDER_LIBRARY_STEM, true, false},  // its entry point returns null
  };
  for (const auto& entry : cases) {
    runInFreshProcess([&entry](FreshProcessChecks& checks) {
      const std::string name = std::string(entry.stem) + ": ";
      setenv("QVX_ENCRYPTION_PROVIDER_LIBRARY", entry.stem, 1);
      QVXRuntime* theRuntime = QVXRuntime::getInstance();
      checks.expect(theRuntime->isEncryptionProviderRegistered() == IFALSE, name + "asking if one is there loaded it");
      IEncryptionProvider* loaded = theRuntime->getEncryptionProvider();
      checks.expect((loaded != nullptr) == entry.givesProvider, name + "the wrong outcome");
      checks.expect(theRuntime->isEncryptionProviderRegistered() == (entry.givesProvider ? ITRUE : IFALSE),
                    name + "the outcome is not what is registered");
      // The variable is not read again, even when it names a working library now.
      setenv("QVX_ENCRYPTION_PROVIDER_LIBRARY", QVX_TEST_PROVIDER_LIBRARY_STEM, 1);
      checks.expect(theRuntime->getEncryptionProvider() == loaded, name + "a second lookup gave another answer");
      if (entry.isLibrary) checks.expect(entryPointCalls(entry.stem) == 1, name + "entry point not called once");
      if (loaded != nullptr) {
        internal::IObjectInternal plain;  // objects encrypt with it: "test:" and the reversed text
        const IUString sealed = plain.encrypt("abc", nullptr, &plain);
        checks.expect(sealed == IUString("test:cba") && plain.decrypt(sealed, nullptr, &plain) == IUString("abc"),
                      name + "objects do not use the loaded provider: " + sealed.toUtf8());
      }
      // Cleared, the provider stays gone: clearing does not make the runtime load one.
      theRuntime->registerEncryptionProvider(nullptr);
      delete loaded;  // replaced without deletion, so it is ours
      checks.expect(theRuntime->getEncryptionProvider() == nullptr, name + "a provider came back after clearing");
    });
  }
}

// The first encryption of a process often comes from an object, not from the runtime:
// it must find the provider that the environment names rather than install the default
// one, and threads that all encrypt first at once must install that one provider once.
TEST(RuntimeEnvironmentTest, FirstEncryptionsOfObjectsFromManyThreadsUseTheProviderTheEnvironmentNames) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    setenv("QVX_ENCRYPTION_PROVIDER_LIBRARY", QVX_TEST_PROVIDER_LIBRARY_STEM, 1);
    QVXRuntime::getInstance();
    constexpr int kThreads = 8;
    std::vector<IUString> sealed(kThreads);
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
      threads.emplace_back([&sealed, &waiting, index] {
        internal::IObjectInternal object;
        --waiting;
        while (waiting.load() > 0) std::this_thread::yield();  // all released together
        sealed[index] = object.encrypt("abc", nullptr, &object);
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (const IUString& text : sealed) {
      checks.expect(text == IUString("test:cba"), "an object did not use the provider the environment names: " +
                                                      text.toUtf8());
    }
    checks.expect(entryPointCalls(QVX_TEST_PROVIDER_LIBRARY_STEM) == 1, "the provider library's entry point was not "
                                                                        "called exactly once");
    // The runtime owns the provider it loaded.
    IEncryptionProvider* loaded = QVXRuntime::getInstance()->getEncryptionProvider();
    QVXRuntime::getInstance()->registerEncryptionProvider(nullptr);
    delete loaded;
  });
}

}  // namespace
