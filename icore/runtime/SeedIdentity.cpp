// Binds the seed identity to its externalizer.
#include "icore/runtime/SeedIdentity.h"

#include "icore/runtime/SeedExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

SeedIdentity::~SeedIdentity() = default;

IdentityExternalizer* SeedIdentity::getIdentityExternalizer() const { return SeedExternalizer::getInstance(); }

}  // namespace com::veltrana::qvx::icore::runtime
