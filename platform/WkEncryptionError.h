// The failure of the platform cipher (WkEncryption): no key, a bad key file, or an
// encrypted text that is malformed or fails authentication. The platform layer
// reports it on its own; the object layer translates it into its own exception.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

class QVX_API WkEncryptionError {
 public:
  WkEncryptionError() = default;
  explicit WkEncryptionError(IUString message);

  const IUString& getMessage() const;

 private:
  IUString message_;
};
