// Feeds arbitrary text to the qualified identity reader (the form identities take in
// both interchange documents). Every input must either give an identity whose text
// reads back to the same text, give none, or be refused with IdentityException.
// Malformed compact UUID text goes to the assertion handler; services install one that
// logs and returns, so this fuzzer does too, and the reader must then fall back safely.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "icore/IIdentity.h"
#include "icore/exception/IdentityException.h"
#include "icore/internal/IdentityManager.h"
#include "platform/IUString.h"
#include "platform/QvxAssert.h"

using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::exception::IdentityException;
using com::veltrana::qvx::icore::internal::IdentityManager;

namespace {
void returningHandler(const char*, int, const char*) {}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qvxSetAssertionHandler(returningHandler);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  IdentityManager* identities = IdentityManager::getInstance();
  const IUString text = IUString::fromUtf8({reinterpret_cast<const char*>(data), size});
  try {
    std::unique_ptr<IIdentity> identity(identities->identityFromString(text));
    if (!identity) return 0;
    const IUString written = identities->identityToString(identity.get());
    std::unique_ptr<IIdentity> reread(identities->identityFromString(written));
    if (!reread || identities->identityToString(reread.get()) != written) std::abort();
  } catch (const IdentityException&) {
  }
  return 0;
}
