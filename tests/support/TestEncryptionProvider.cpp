// A provider library for the tests of run-time provider loading. Built twice: as
// qvx_test_encryption_provider, whose entry point hands out a provider with a
// recognisable reversible transform ("test:" followed by the reversed text), and with
// QVX_TEST_NULL_PROVIDER defined as qvx_test_null_encryption_provider, whose entry
// point returns null. The provider records what it was given, for the tests to read
// back through the accessors below.
#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

#include "icore/IEncryptionProvider.h"
#include "icore/exception/EncryptionFailureException.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace {

using com::veltrana::qvx::icore::IEncryptionProvider;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::exception::EncryptionFailureException;

// What the most recent call of any provider of this library received.
std::atomic<const IProperty*> lastProperty{nullptr};
std::atomic<const IObject*> lastObject{nullptr};
std::atomic<int> callCount{0};

const IUString kPrefix("test:");

void record(IProperty const* property, IObject const* object) {
  lastProperty = property;
  lastObject = object;
  ++callCount;
}

IUString reversed(const IUString& text) {
  std::u16string units(text.str());
  std::reverse(units.begin(), units.end());
  return IUString(std::move(units));
}

class TestEncryptionProvider : public IEncryptionProvider {
 public:
  IUString encrypt(IUString value, IProperty const* property, IObject const* object) override {
    record(property, object);
    return kPrefix + reversed(value);
  }

  IUString decrypt(IUString value, IProperty const* property, IObject const* object) override {
    record(property, object);
    if (!value.startsWith(kPrefix)) {
      throw EncryptionFailureException(IUString("value was not encrypted by the test provider"));
    }
    return reversed(value.substr(kPrefix.length()));
  }
};

}  // namespace

// The entry point the runtime looks up. Caller owns the result.
extern "C" QVX_API_EXPORT IEncryptionProvider* getEncryptionProviderInstance() {
#if defined(QVX_TEST_NULL_PROVIDER)
  ++callCount;
  return nullptr;
#else
  return new TestEncryptionProvider();
#endif
}

extern "C" QVX_API_EXPORT const IProperty* testEncryptionProviderLastProperty() { return lastProperty; }
extern "C" QVX_API_EXPORT const IObject* testEncryptionProviderLastObject() { return lastObject; }
// Calls of encrypt, decrypt and (in the null variant) the entry point.
extern "C" QVX_API_EXPORT int testEncryptionProviderCallCount() { return callCount; }
