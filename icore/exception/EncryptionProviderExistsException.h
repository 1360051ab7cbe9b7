// Thrown when a second encryption provider was offered where one is installed; for user code and providers.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API EncryptionProviderExistsException {
 public:
  EncryptionProviderExistsException() = default;
  explicit EncryptionProviderExistsException(IUString message) : message_(std::move(message)) {}
  EncryptionProviderExistsException(const EncryptionProviderExistsException&) = default;
  EncryptionProviderExistsException& operator=(const EncryptionProviderExistsException&) = default;
  ~EncryptionProviderExistsException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
