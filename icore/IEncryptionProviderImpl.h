// The default encryption provider: the platform cipher (WkEncryption, type 1) for
// every value, whatever its property or object. Its key and text form are described
// in platform/WkEncryption.h.
#pragma once

#include "icore/IEncryptionProvider.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

// Stateless; safe to use from any thread. Throws exception::EncryptionFailureException
// with the platform's reason when no key is configured or a value does not decrypt.
class QVX_API IEncryptionProviderImpl : public IEncryptionProvider {
 public:
  IEncryptionProviderImpl() = default;
  ~IEncryptionProviderImpl() override;

  IUString encrypt(IUString value, IProperty const* property, IObject const* object) override;
  IUString decrypt(IUString value, IProperty const* property, IObject const* object) override;
};

}  // namespace com::veltrana::qvx::icore
