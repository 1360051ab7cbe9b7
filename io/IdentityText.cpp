#include "io/IdentityText.h"

#include "icore/internal/IdentityManager.h"

namespace com::veltrana::qvx::io {

using icore::internal::IdentityManager;

IUString IdentityText::toText(icore::IIdentity const* identity) {
  return IdentityManager::getInstance()->identityToString(identity);
}

void IdentityText::appendText(std::string& utf8Out, icore::IIdentity const* identity) {
  IdentityManager::getInstance()->appendIdentityString(utf8Out, identity);
}

icore::IIdentity* IdentityText::fromText(IUString const& text) { return fromText(text.data(), text.length()); }

icore::IIdentity* IdentityText::fromText(const char16_t* text, std::size_t length) {
  return IdentityManager::getInstance()->identityFromText(text, length);
}

}  // namespace com::veltrana::qvx::io
