// The identity of an identifiable model object: a small immutable value that names
// the object across documents and streams. Each kind of identity has an externalizer
// (icore/runtime/IdentityExternalizer.h) that turns identities of that kind into text
// and back.
#pragma once

#include "platform/IStatus.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

namespace runtime {
class IdentityExternalizer;
}

// Identities are immutable once made, so one may be read from several threads. The
// object that receives an identity owns it and deletes it through this interface.
class QVX_API IIdentity {
 public:
  virtual ~IIdentity();

  // True when `other` is an identity of the same kind with the same value. Identities
  // of different kinds are never equal, even when their texts are.
  virtual IBOOLEAN operator==(IIdentity const& other) const = 0;

  // The externalizer singleton of this identity's kind; may be null for a foreign kind
  // that has none, in which case the identity cannot be written.
  virtual runtime::IdentityExternalizer* getIdentityExternalizer() const = 0;

 protected:
  // Copies only through a concrete kind, never sliced through the interface; an
  // immutable value is not assigned to.
  IIdentity() = default;
  IIdentity(const IIdentity&) = default;
  IIdentity& operator=(const IIdentity&) = delete;
};

}  // namespace com::veltrana::qvx::icore
