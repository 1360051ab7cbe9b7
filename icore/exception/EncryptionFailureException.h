// Thrown when a property value could not be encrypted or decrypted.
// Carries one formatted catalog message; thrown by value and caught by its exact type.
#pragma once

#include <utility>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::exception {

class QVX_API EncryptionFailureException {
 public:
  EncryptionFailureException() = default;
  explicit EncryptionFailureException(IUString message) : message_(std::move(message)) {}
  EncryptionFailureException(const EncryptionFailureException&) = default;
  EncryptionFailureException& operator=(const EncryptionFailureException&) = default;
  ~EncryptionFailureException() = default;

  const IUString& getMessage() const { return message_; }

 private:
  IUString message_;
};

}  // namespace com::veltrana::qvx::icore::exception
