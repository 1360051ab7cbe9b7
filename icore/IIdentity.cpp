// Anchors the vtable of the identity interface in the library.
#include "icore/IIdentity.h"

namespace com::veltrana::qvx::icore {

IIdentity::~IIdentity() = default;

}  // namespace com::veltrana::qvx::icore
