// The externalizer of string identities, registered as "stringIdentity". Its text of an
// identity is the identity's text unchanged; any text reads back as a string identity.
#pragma once

#include "icore/runtime/IdentityExternalizer.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

// A process-wide singleton, created on first use and never destroyed before exit.
class QVX_API StringExternalizer : public IdentityExternalizer {
 public:
  static StringExternalizer* getInstance();

  // The text of any text identity (a StringId, so also of a seed identity), else empty.
  IUString toString(IIdentity const* identity) override;
  // A new StringIdentity with `text`. Caller owns the result.
  IIdentity* fromString(IUString const& text) override;
  // "stringIdentity"
  IUString const& getExternalizerId() const override;

 private:
  StringExternalizer();
  ~StringExternalizer() override;

  const IUString externalizerId_;
};

}  // namespace com::veltrana::qvx::icore::runtime
