// Thrown when a seeded object could not be found or made; for user code and generated packages.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API SeedException {
 public:
  SeedException() = default;
  explicit SeedException(IUString message) : message_(std::move(message)) {}
  SeedException(const SeedException&) = default;
  SeedException& operator=(const SeedException&) = default;
  ~SeedException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
