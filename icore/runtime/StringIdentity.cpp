// Binds the string identity to its externalizer.
#include "icore/runtime/StringIdentity.h"

#include "icore/runtime/StringExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

StringIdentity::~StringIdentity() = default;

IdentityExternalizer* StringIdentity::getIdentityExternalizer() const { return StringExternalizer::getInstance(); }

}  // namespace com::veltrana::qvx::icore::runtime
