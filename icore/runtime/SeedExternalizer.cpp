// Text form of seed identities, and the externalizer's singleton.
#include "icore/runtime/SeedExternalizer.h"

#include <atomic>

#include "icore/runtime/SeedIdentity.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore::runtime {

namespace {

// Constant-initialised, so the singleton needs no static constructor; set once under
// the creation lock and read without it afterwards.
std::atomic<SeedExternalizer*> instance{nullptr};

WkMutex& creationLock() {
  static WkMutex* const lock = new WkMutex();  // never destroyed: usable until exit
  return *lock;
}

}  // namespace

SeedExternalizer* SeedExternalizer::getInstance() {
  SeedExternalizer* current = instance.load(std::memory_order_acquire);
  if (current != nullptr) {
    return current;
  }
  WkMutexGuard guard(creationLock());
  current = instance.load(std::memory_order_relaxed);
  if (current == nullptr) {
    current = new SeedExternalizer();
    instance.store(current, std::memory_order_release);
  }
  return current;
}

SeedExternalizer::SeedExternalizer() : externalizerId_("smd") {}

SeedExternalizer::~SeedExternalizer() = default;

IUString SeedExternalizer::toString(IIdentity const* identity) {
  const auto* textIdentity = dynamic_cast<const SeedIdentity*>(identity);
  return textIdentity != nullptr ? textIdentity->getIdString() : IUString();
}

IIdentity* SeedExternalizer::fromString(IUString const& text) { return new SeedIdentity(text); }

IUString const& SeedExternalizer::getExternalizerId() const { return externalizerId_; }

}  // namespace com::veltrana::qvx::icore::runtime
