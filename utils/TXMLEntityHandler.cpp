#include "utils/TXMLEntityHandler.h"

namespace com::veltrana::qvx::utils {

// Anchors the vtable in the library.
TXMLEntityHandler::~TXMLEntityHandler() = default;

}  // namespace com::veltrana::qvx::utils
