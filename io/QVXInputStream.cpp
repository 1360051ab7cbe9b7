#include "io/QVXInputStream.h"

namespace com::veltrana::qvx::io {

QVXInputStream::~QVXInputStream() = default;

}  // namespace com::veltrana::qvx::io
