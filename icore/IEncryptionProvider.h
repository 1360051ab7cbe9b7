// The pluggable cipher for encrypted property values. The runtime holds one provider
// for the process; a host registers its own, names a library that supplies one, or
// gets the default IEncryptionProviderImpl on first use.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IProperty;
class IObject;

// A provider is owned by whoever registered it with the runtime (the runtime deletes
// it through this interface). The property and the object say which value is being
// transformed, so a provider may pick keys or algorithms per property or per object;
// either may be null. Failures are reported by throwing
// exception::EncryptionFailureException.
class QVX_API IEncryptionProvider {
 public:
  IEncryptionProvider() = default;
  IEncryptionProvider(const IEncryptionProvider&) = delete;
  IEncryptionProvider& operator=(const IEncryptionProvider&) = delete;
  virtual ~IEncryptionProvider();

  // The encrypted form of `value`.
  virtual IUString encrypt(IUString value, IProperty const* property, IObject const* object) = 0;
  // The clear form of `value`, which encrypt produced.
  virtual IUString decrypt(IUString value, IProperty const* property, IObject const* object) = 0;
};

}  // namespace com::veltrana::qvx::icore
