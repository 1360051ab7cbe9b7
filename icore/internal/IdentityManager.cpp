// The externalizer table and the qualified string form of identities.
#include "icore/internal/IdentityManager.h"

#include "icore/IIdentity.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/runtime/SeedExternalizer.h"
#include "icore/runtime/StringExternalizer.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIDExternalizer.h"
#include "icore/runtime/UUIIdentity.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::internal {

using exception::IdentityException;
using runtime::IdentityExternalizer;

namespace {

constexpr std::size_t kInitialBucketCount = 11;

}  // namespace

IdentityManager* IdentityManager::getInstance() {
  static auto* const instance = new IdentityManager();  // never destroyed: usable until exit
  return instance;
}

IdentityManager::IdentityManager() : externalizers_(kInitialBucketCount) {
  IdentityExternalizer* const uuidExternalizer = runtime::UUIDExternalizer::getInstance();
  registerExternalizer(uuidExternalizer);
  registerExternalizer(runtime::StringExternalizer::getInstance());
  registerExternalizer(runtime::SeedExternalizer::getInstance());
  // A short alias for UUIDs that is read but never written.
  externalizers_.emplace(IUString("U"), uuidExternalizer);
}

IdentityManager::~IdentityManager() = default;

IIdentity* IdentityManager::generateNewId() {
  IIdentity* const identity = runtime::UUIDExternalizer::getInstance()->generateNewId();
  QVX_ASSERT(identity != nullptr);
  return identity;
}

void IdentityManager::generateNewUUIDBytes(unsigned char* bytes) {
  const bool made = runtime::UUIDExternalizer::getInstance()->generateNewBytes(bytes);
  QVX_ASSERT(made);
  (void)made;
}

IUString IdentityManager::identityToString(IIdentity const* identity) {
  IdentityExternalizer* const externalizer = identity != nullptr ? identity->getIdentityExternalizer() : nullptr;
  if (externalizer == nullptr) {
    throw IdentityException(qvxGetMsg(74000));
  }
  registerExternalizer(externalizer);
  const IUString body = externalizer->toString(identity);
  const IUString& prefix = externalizer->getExternalizerId();
  IUString text;
  text.reserve(prefix.length() + 1 + body.length());
  text += prefix;
  text += u':';
  text += body;
  return text;
}

IIdentity* IdentityManager::identityFromString(IUString const& text) {
  const std::size_t colon = text.find(u':');
  if (colon == IUString::npos) {
    return new runtime::StringIdentity(text);
  }
  const IUString prefix = text.substr(0, colon);
  IdentityExternalizer* const externalizer = findExternalizer(prefix);
  if (externalizer == nullptr) {
    throw IdentityException(qvxFormatMsg(74001, prefix));
  }
  return externalizer->fromString(text.substr(colon + 1));
}

IBOOLEAN IdentityManager::registerExternalizer(IdentityExternalizer* externalizer) {
  if (externalizer == nullptr) {
    return IFALSE;
  }
  WkMutexGuard guard(mutex_);
  // try_emplace, unlike emplace, builds no node when the id is present, which it is for
  // every identity that identityToString writes.
  const auto inserted = externalizers_.try_emplace(externalizer->getExternalizerId(), externalizer);
  return inserted.first->second == externalizer ? ITRUE : IFALSE;
}

IdentityExternalizer* IdentityManager::findExternalizer(IUString const& externalizerId) {
  WkMutexGuard guard(mutex_);
  const auto found = externalizers_.find(externalizerId);
  return found != externalizers_.end() ? found->second : nullptr;
}

}  // namespace com::veltrana::qvx::icore::internal
