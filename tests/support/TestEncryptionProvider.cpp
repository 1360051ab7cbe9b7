// A provider library for the tests of run-time provider loading. Built twice: as
// qvx_test_encryption_provider, whose entry point hands out a provider that writes
// "test:" followed by the reversed text, and with QVX_TEST_NULL_PROVIDER defined as
// qvx_test_null_encryption_provider, whose entry point returns null.
#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

#include "icore/IEncryptionProvider.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: the provider's own file

std::atomic<int> entryPointCalls{0};

IUString reversed(const IUString& text) {
  std::u16string units(text.str());
  std::reverse(units.begin(), units.end());
  return IUString(std::move(units));
}

class TestEncryptionProvider : public IEncryptionProvider {
 public:
  IUString encrypt(IUString value, IProperty const*, IObject const*) override {
    return IUString("test:") + reversed(value);
  }
  IUString decrypt(IUString value, IProperty const*, IObject const*) override { return reversed(value.substr(5)); }
};

}  // namespace

// The entry point the runtime looks up. Caller owns the result.
extern "C" QVX_API_EXPORT IEncryptionProvider* getEncryptionProviderInstance() {
  ++entryPointCalls;
#if defined(QVX_TEST_NULL_PROVIDER)
  return nullptr;
#else
  return new TestEncryptionProvider();
#endif
}

extern "C" QVX_API_EXPORT int testEncryptionProviderCallCount() { return entryPointCalls; }
