#include "io/IdentityText.h"

#include "icore/QVXRuntime.h"

namespace com::veltrana::qvx::io {

IUString IdentityText::toText(icore::IIdentity const* identity) {
  return icore::QVXRuntime::getInstance()->identityToString(identity);
}

icore::IIdentity* IdentityText::fromText(IUString const& text) {
  return icore::QVXRuntime::getInstance()->identityFromString(text);
}

}  // namespace com::veltrana::qvx::io
