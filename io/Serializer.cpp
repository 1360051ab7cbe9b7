#include "io/Serializer.h"

namespace com::veltrana::qvx::io {

// Anchors the vtable in the library.
Serializer::~Serializer() = default;

}  // namespace com::veltrana::qvx::io
