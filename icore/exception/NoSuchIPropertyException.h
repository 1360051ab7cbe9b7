// Thrown when a property that a class does not have was asked for; for user code and generated packages.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API NoSuchIPropertyException {
 public:
  NoSuchIPropertyException() = default;
  explicit NoSuchIPropertyException(IUString message) : message_(std::move(message)) {}
  NoSuchIPropertyException(const NoSuchIPropertyException&) = default;
  NoSuchIPropertyException& operator=(const NoSuchIPropertyException&) = default;
  ~NoSuchIPropertyException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
