// Anchors the vtable of the message catalog interface in this object file.
#include "icore/IMsgCatalog.h"

namespace com::veltrana::qvx::icore {

IMsgCatalog::~IMsgCatalog() = default;

}  // namespace com::veltrana::qvx::icore
