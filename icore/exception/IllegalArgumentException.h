// Thrown when an argument that the operation cannot accept: a null object, a property that is not the receiver's, a name already taken.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API IllegalArgumentException {
 public:
  IllegalArgumentException() = default;
  explicit IllegalArgumentException(IUString message) : message_(std::move(message)) {}
  IllegalArgumentException(const IllegalArgumentException&) = default;
  IllegalArgumentException& operator=(const IllegalArgumentException&) = default;
  ~IllegalArgumentException() = default;

  // The one exception class whose message can be edited in place by a handler.
  IUString& getMessage() { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
