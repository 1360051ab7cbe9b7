// Thrown when an operation that the receiver does not support, such as proxy resolution on an ordinary object.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API UnsupportedOperationException {
 public:
  UnsupportedOperationException() = default;
  explicit UnsupportedOperationException(IUString message) : message_(std::move(message)) {}
  UnsupportedOperationException(const UnsupportedOperationException&) = default;
  UnsupportedOperationException& operator=(const UnsupportedOperationException&) = default;
  ~UnsupportedOperationException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
