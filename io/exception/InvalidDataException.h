// Thrown when stream content is malformed: a bad marker, version or type code.
// It is an IOException, so it is caught by handlers of either type.
#pragma once

#include "io/exception/IOException.h"

namespace com::veltrana::qvx::io::exception {

class QVX_API InvalidDataException : public IOException {
 public:
  InvalidDataException() = default;
  explicit InvalidDataException(const IUString& message) : IOException(message) {}
};

}  // namespace com::veltrana::qvx::io::exception
