// The one place where the binary streams turn identities into text and back, so that a
// faster conversion can replace the runtime's in one spot.
#pragma once

#include <cstddef>
#include <string>

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
  // The same text appended as UTF-8 to `utf8Out`; a writer that keeps its buffer
  // allocates nothing per identity.
  static void appendText(std::string& utf8Out, icore::IIdentity const* identity);
  // A new identity parsed from its qualified text; the caller owns it.
  static icore::IIdentity* fromText(IUString const& text);
  // The same from `length` UTF-16 code units held by the caller, parsed in place.
  static icore::IIdentity* fromText(const char16_t* text, std::size_t length);
};

}  // namespace com::veltrana::qvx::io
