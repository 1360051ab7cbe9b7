// Thrown when an identity could not be read, written, converted or assigned.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API IdentityException {
 public:
  IdentityException() = default;
  explicit IdentityException(IUString message) : message_(std::move(message)) {}
  IdentityException(const IdentityException&) = default;
  IdentityException& operator=(const IdentityException&) = default;
  ~IdentityException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
