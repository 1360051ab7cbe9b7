// The externalizer of seed identities, registered as "smd". Its text of a seed identity
// is the seed id unchanged (of any other identity, empty); any text reads back as a new
// SeedIdentity, which the caller owns.
#pragma once

#include "icore/runtime/TextExternalizer.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class SeedIdentity;

// A process-wide singleton, created on first use and never destroyed before exit.
class QVX_API SeedExternalizer : public TextExternalizer<SeedIdentity, SeedIdentity> {
 public:
  static SeedExternalizer* getInstance();

 private:
  SeedExternalizer();
  ~SeedExternalizer() override;
};

}  // namespace com::veltrana::qvx::icore::runtime
