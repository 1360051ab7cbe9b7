// The externalizer interface has no behaviour of its own; its destructor anchors the vtable.
#include "icore/runtime/IdentityExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

IdentityExternalizer::~IdentityExternalizer() = default;

}  // namespace com::veltrana::qvx::icore::runtime
