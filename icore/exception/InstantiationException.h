// Thrown when an instance was requested of a class that cannot have one.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API InstantiationException {
 public:
  InstantiationException() = default;
  explicit InstantiationException(IUString message) : message_(std::move(message)) {}
  InstantiationException(const InstantiationException&) = default;
  InstantiationException& operator=(const InstantiationException&) = default;
  ~InstantiationException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
