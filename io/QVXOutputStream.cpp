#include "io/QVXOutputStream.h"

namespace com::veltrana::qvx::io {

QVXOutputStream::~QVXOutputStream() = default;

}  // namespace com::veltrana::qvx::io
