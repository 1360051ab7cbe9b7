// Thrown when reading or writing a stream or document fails, and by the seed registry
// and the logger when a file cannot be opened. InvalidDataException derives from it,
// so a handler for IOException also catches malformed-data errors.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::io::exception {

class QVX_API IOException {
 public:
  IOException() = default;
  explicit IOException(const IUString& message) : message_(message) {}
  IOException(const IOException&) = default;
  IOException& operator=(const IOException&) = default;
  ~IOException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::io::exception
