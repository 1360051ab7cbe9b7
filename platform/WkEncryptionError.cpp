// Out-of-line members of WkEncryptionError, so that the class is defined in exactly
// one object file of the library.
#include "platform/WkEncryptionError.h"

#include <utility>

WkEncryptionError::WkEncryptionError(IUString message) : message_(std::move(message)) {}

const IUString& WkEncryptionError::getMessage() const { return message_; }
