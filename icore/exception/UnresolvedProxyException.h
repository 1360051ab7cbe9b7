// Thrown when an operation that needs property values was applied to an object that is still a proxy.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API UnresolvedProxyException {
 public:
  UnresolvedProxyException() = default;
  explicit UnresolvedProxyException(IUString message) : message_(std::move(message)) {}
  UnresolvedProxyException(const UnresolvedProxyException&) = default;
  UnresolvedProxyException& operator=(const UnresolvedProxyException&) = default;
  ~UnresolvedProxyException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
