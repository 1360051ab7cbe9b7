// Text form of string identities, and the externalizer's singleton.
#include "icore/runtime/StringExternalizer.h"

#include <atomic>

#include "icore/runtime/StringIdentity.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore::runtime {

namespace {

// Constant-initialised, so the singleton needs no static constructor; set once under
// the creation lock and read without it afterwards.
std::atomic<StringExternalizer*> instance{nullptr};

WkMutex& creationLock() {
  static WkMutex* const lock = new WkMutex();  // never destroyed: usable until exit
  return *lock;
}

}  // namespace

StringExternalizer* StringExternalizer::getInstance() {
  StringExternalizer* current = instance.load(std::memory_order_acquire);
  if (current != nullptr) {
    return current;
  }
  WkMutexGuard guard(creationLock());
  current = instance.load(std::memory_order_relaxed);
  if (current == nullptr) {
    current = new StringExternalizer();
    instance.store(current, std::memory_order_release);
  }
  return current;
}

StringExternalizer::StringExternalizer() : externalizerId_("stringIdentity") {}

StringExternalizer::~StringExternalizer() = default;

IUString StringExternalizer::toString(IIdentity const* identity) {
  const auto* textIdentity = dynamic_cast<const StringId*>(identity);
  return textIdentity != nullptr ? textIdentity->getIdString() : IUString();
}

IIdentity* StringExternalizer::fromString(IUString const& text) { return new StringIdentity(text); }

IUString const& StringExternalizer::getExternalizerId() const { return externalizerId_; }

}  // namespace com::veltrana::qvx::icore::runtime
