// The externalizer of seed identities, registered as "smd". Its text of a seed identity
// is the seed id unchanged; any text reads back as a seed identity.
#pragma once

#include "icore/runtime/IdentityExternalizer.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

// A process-wide singleton, created on first use and never destroyed before exit.
class QVX_API SeedExternalizer : public IdentityExternalizer {
 public:
  static SeedExternalizer* getInstance();

  // The seed id of a SeedIdentity, else empty.
  IUString toString(IIdentity const* identity) override;
  // A new SeedIdentity with `text`. Caller owns the result.
  IIdentity* fromString(IUString const& text) override;
  // "smd"
  IUString const& getExternalizerId() const override;

 private:
  SeedExternalizer();
  ~SeedExternalizer() override;

  const IUString externalizerId_;
};

}  // namespace com::veltrana::qvx::icore::runtime
