// The text form of one kind of identity. Each kind has one externalizer, a process-wide
// singleton kept by the identity manager under its externalizer id; a qualified identity
// string is that id, a colon and the externalizer's text of the identity.
#pragma once

#include <cstddef>
#include <string>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IIdentity;

namespace runtime {

// Externalizers live until the process ends and are shared by all threads, so each
// guards whatever state it keeps.
class QVX_API IdentityExternalizer {
 public:
  // The text of `identity` when it is of this externalizer's kind, else the empty string.
  virtual IUString toString(IIdentity const* identity) = 0;
  // A new identity read from `text`, or null when the text names none. Caller owns the result.
  virtual IIdentity* fromString(IUString const& text) = 0;
  // The id under which the externalizer is registered (the prefix of qualified strings).
  virtual IUString const& getExternalizerId() const = 0;

  // Appends what toString gives, as UTF-8, to `utf8Out`. The built-in externalizers
  // write it without making the intermediate string; the default converts toString.
  virtual void appendText(IIdentity const* identity, std::string& utf8Out);
  // Reads `length` UTF-16 code units as fromString does, for callers that hold the text
  // inside a larger string; the built-in externalizers make no copy of it. Caller owns
  // the result.
  virtual IIdentity* fromText(const char16_t* text, std::size_t length);

 protected:
  IdentityExternalizer() = default;
  // Externalizers are singletons, never deleted through this interface. Virtual all the
  // same (and declared after the operations, whose slots it leaves in place) so that
  // derived externalizers need not hide their destructors.
  virtual ~IdentityExternalizer();
  IdentityExternalizer(const IdentityExternalizer&) = delete;
  IdentityExternalizer& operator=(const IdentityExternalizer&) = delete;
};

}  // namespace runtime
}  // namespace com::veltrana::qvx::icore
