// The one place where the binary streams turn identities into text and back, so that a
// faster conversion can replace the runtime's in one spot.
#pragma once

#include "platform/IUString.h"

namespace com::veltrana::qvx::icore {
class IIdentity;
}

namespace com::veltrana::qvx::io {

class IdentityText {
 public:
  IdentityText() = delete;

  // The qualified text of `identity` (externalizer id, ":", text).
  static IUString toText(icore::IIdentity const* identity);
  // A new identity parsed from its qualified text; the caller owns it.
  static icore::IIdentity* fromText(IUString const& text);
};

}  // namespace com::veltrana::qvx::io
