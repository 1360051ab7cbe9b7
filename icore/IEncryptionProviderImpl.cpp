// Delegates to the platform cipher and turns its failures into the exception type of
// the object layer. The length-taking entry points keep a value with an embedded
// U+0000 whole.
#include "icore/IEncryptionProviderImpl.h"

#include "icore/exception/EncryptionFailureException.h"
#include "platform/WkEncryption.h"
#include "platform/WkEncryptionError.h"

namespace com::veltrana::qvx::icore {

IEncryptionProviderImpl::~IEncryptionProviderImpl() = default;

IUString IEncryptionProviderImpl::encrypt(IUString value, IProperty const* /*property*/, IObject const* /*object*/) {
  try {
    return encryptString(value.data(), value.length(), ENC_TYPE_DEFAULT);
  } catch (const WkEncryptionError& error) {
    throw exception::EncryptionFailureException(error.getMessage());
  }
}

IUString IEncryptionProviderImpl::decrypt(IUString value, IProperty const* /*property*/, IObject const* /*object*/) {
  try {
    return decryptString(value.data(), value.length(), ENC_TYPE_DEFAULT);
  } catch (const WkEncryptionError& error) {
    throw exception::EncryptionFailureException(error.getMessage());
  }
}

}  // namespace com::veltrana::qvx::icore
