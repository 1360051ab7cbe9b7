#include "io/Deserializer.h"

namespace com::veltrana::qvx::io {

// Anchors the vtable in the library.
Deserializer::~Deserializer() = default;

}  // namespace com::veltrana::qvx::io
