// The externalizer table and the qualified string form of identities.
#include "icore/internal/IdentityManager.h"

#include <algorithm>
#include <string_view>

#include "icore/IIdentity.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/runtime/SeedExternalizer.h"
#include "icore/runtime/StringExternalizer.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIDExternalizer.h"
#include "icore/runtime/UUIIdentity.h"
#include "platform/QvxAssert.h"
#include "platform/WkUString.h"

namespace com::veltrana::qvx::icore::internal {

using exception::IdentityException;
using runtime::IdentityExternalizer;

namespace {

constexpr std::size_t kInitialBucketCount = 11;
// A short prefix for UUIDs that is read but never written.
constexpr std::u16string_view kUuidAlias = u"U";

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
  externalizers_.emplace(IUString(kUuidAlias.data(), kUuidAlias.size()), uuidExternalizer);
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

IdentityExternalizer& IdentityManager::externalizerOf(IIdentity const* identity) {
  IdentityExternalizer* const externalizer = identity != nullptr ? identity->getIdentityExternalizer() : nullptr;
  if (externalizer == nullptr) {
    throw IdentityException(qvxGetMsg(74000));
  }
  // The built-in externalizers are registered for good; only a foreign one needs the lock.
  const bool builtIn = externalizer == runtime::UUIDExternalizer::getInstance() ||
                       externalizer == runtime::StringExternalizer::getInstance() ||
                       externalizer == runtime::SeedExternalizer::getInstance();
  if (!builtIn) {
    registerExternalizer(externalizer);
  }
  return *externalizer;
}

IUString IdentityManager::identityToString(IIdentity const* identity) {
  IdentityExternalizer& externalizer = externalizerOf(identity);
  const IUString body = externalizer.toString(identity);
  const IUString& prefix = externalizer.getExternalizerId();
  IUString text;
  text.reserve(prefix.length() + 1 + body.length());
  text += prefix;
  text += u':';
  text += body;
  return text;
}

void IdentityManager::appendIdentityString(std::string& utf8Out, IIdentity const* identity) {
  IdentityExternalizer& externalizer = externalizerOf(identity);
  const IUString& prefix = externalizer.getExternalizerId();
  WkUString::appendUtf16AsUtf8(utf8Out, prefix.data(), prefix.length());
  utf8Out += ':';
  externalizer.appendText(identity, utf8Out);
}

IIdentity* IdentityManager::identityFromString(IUString const& text) { return identityFromText(text.data(), text.length()); }

IIdentity* IdentityManager::identityFromText(const char16_t* text, std::size_t length) {
  const char16_t* const end = text + length;
  const char16_t* const colon = std::find(text, end, u':');
  if (colon == end) {
    return new runtime::StringIdentity(IUString(text, length));
  }
  const auto prefixLength = static_cast<std::size_t>(colon - text);
  IdentityExternalizer* externalizer = findBuiltIn(text, prefixLength);
  if (externalizer == nullptr) {
    const IUString prefix(text, prefixLength);
    externalizer = findExternalizer(prefix);
    if (externalizer == nullptr) {
      throw IdentityException(qvxFormatMsg(74001, prefix));
    }
  }
  return externalizer->fromText(colon + 1, static_cast<std::size_t>(end - colon - 1));
}

IdentityExternalizer* IdentityManager::findBuiltIn(const char16_t* prefix, std::size_t length) {
  const std::u16string_view wanted(prefix, length);
  IdentityExternalizer* const uuidExternalizer = runtime::UUIDExternalizer::getInstance();
  if (wanted == kUuidAlias) return uuidExternalizer;
  IdentityExternalizer* const builtIns[] = {uuidExternalizer, runtime::StringExternalizer::getInstance(),
                                            runtime::SeedExternalizer::getInstance()};
  for (IdentityExternalizer* const builtIn : builtIns) {
    const IUString& id = builtIn->getExternalizerId();
    if (wanted == std::u16string_view(id.data(), id.length())) return builtIn;
  }
  return nullptr;
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
