// The encryption provider that the runtime loads from the library named by
// QVX_ENCRYPTION_PROVIDER_LIBRARY. The runtime reads the variable at most once per
// process, so each case runs in a process of its own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "icore/IEncryptionProvider.h"
#include "icore/QVXRuntime.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/DynLoadLib.h"
#include "tests/support/FreshProcess.h"

namespace {

using com::veltrana::qvx::icore::IEncryptionProvider;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::internal::IObjectInternal;

const char* const kVariable = "QVX_ENCRYPTION_PROVIDER_LIBRARY";

class FixedProvider : public IEncryptionProvider {
 public:
  IUString encrypt(IUString value, IProperty const*, IObject const*) override { return IUString("fixed:") + value; }
  IUString decrypt(IUString value, IProperty const*, IObject const*) override { return value.substr(6); }
};

TEST(RuntimeEnvironmentTest, MissingProviderLibraryGivesNullNowAndLater) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    setenv(kVariable, "/nonexistent-qvx-dir/libqvx_no_provider", 1);
    QVXRuntime* runtime = QVXRuntime::getInstance();
    checks.expect(runtime->getEncryptionProvider() == nullptr, "a provider appeared from a missing library");
    checks.expect(runtime->isEncryptionProviderRegistered() == IFALSE, "a provider counts as registered");

    // The variable is not read again, even once it names a working library.
    setenv(kVariable, QVX_TEST_PROVIDER_LIBRARY_STEM, 1);
    checks.expect(runtime->getEncryptionProvider() == nullptr, "the variable was read a second time");

    auto* fixed = new FixedProvider();
    runtime->registerEncryptionProvider(fixed);
    checks.expect(runtime->getEncryptionProvider() == fixed, "registration after a failed load did not take");
    runtime->registerEncryptionProvider(nullptr);
    delete fixed;  // the runtime let go of it above
    checks.expect(runtime->isEncryptionProviderRegistered() == IFALSE, "null did not clear the provider");
    checks.expect(runtime->getEncryptionProvider() == nullptr, "clearing the provider made the runtime load one");
  });
}

TEST(RuntimeEnvironmentTest, VariableNamingAProviderLibraryLoadsItsProvider) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    setenv(kVariable, QVX_TEST_PROVIDER_LIBRARY_STEM, 1);
    QVXRuntime* runtime = QVXRuntime::getInstance();
    checks.expect(runtime->isEncryptionProviderRegistered() == IFALSE, "asking whether one is registered loaded it");

    IEncryptionProvider* loaded = runtime->getEncryptionProvider();
    checks.expect(loaded != nullptr, "the library's provider was not loaded");
    checks.expect(runtime->isEncryptionProviderRegistered() == ITRUE, "the loaded provider is not registered");
    checks.expect(runtime->getEncryptionProvider() == loaded, "a second lookup gave another provider");

    // Objects encrypt with it (the test provider writes "test:" and the reversed text).
    IObjectInternal plain;
    const IUString sealed = plain.encrypt("abc", nullptr, &plain);
    checks.expect(sealed == IUString("test:cba"), "encrypt did not use the loaded provider: " + sealed.toUtf8());
    checks.expect(plain.decrypt(sealed, nullptr, &plain) == IUString("abc"), "decrypt did not use it");
  });
}

TEST(RuntimeEnvironmentTest, LibraryWhoseEntryPointGivesNullLeavesNoProvider) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    setenv(kVariable, QVX_TEST_NULL_PROVIDER_LIBRARY_STEM, 1);
    QVXRuntime* runtime = QVXRuntime::getInstance();
    checks.expect(runtime->getEncryptionProvider() == nullptr, "a provider came from a null entry point");
    checks.expect(runtime->getEncryptionProvider() == nullptr, "the second lookup found a provider");

    // The runtime did load the library and call its entry point, once: the failure
    // is not retried.
    DynLoadLib library;
    if (library.load(QVX_TEST_NULL_PROVIDER_LIBRARY) != ISTATUS_SUCCESS) {
      checks.expect(false, "the null provider library does not load: " + library.getError().toUtf8());
      return;
    }
    void* address = library.getFunctionAddr("testEncryptionProviderCallCount");
    checks.expect(address != nullptr, "the library has no call counter");
    if (address == nullptr) return;
    int (*callCount)() = nullptr;
    std::memcpy(&callCount, &address, sizeof callCount);
    checks.expect(callCount() == 1, "the entry point was called " + std::to_string(callCount()) + " times");
  });
}

}  // namespace
