// The reflective facade of a model object: generic code (serializers, tools) reads and
// writes any property of any object through it. Each object owns its facade; the
// facade adds the proxy checks and forwards to the object's i-operations.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IClass;
class IIdentity;
class IObject;
class IProperty;
namespace internal {
class IObjectInternal;
}

class QVX_API IObjectInfo {
 public:
  // Throws IllegalArgumentException (73009) for a null object.
  explicit IObjectInfo(internal::IObjectInternal* object);

  IClass const* getIClass() const;
  void const* get(IProperty const& property, unsigned int* index, IBOOLEAN flag) const;
  void const* get(IProperty const& property, IBOOLEAN flag) const;
  // Refuses a proxy (UnresolvedProxyException 75000).
  void set(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag);
  // Leaves the proxy check to the object's own iSet (75004).
  void set(IProperty const& property, void* value, IBOOLEAN flag);
  int getCardinality(IProperty const& property) const;
  IBOOLEAN hasItems(IProperty const& property);
  IIdentity const* getIdentity() const;
  // Takes ownership of `identity`.
  void setIdentity(IIdentity const*& identity);
  IUString getIdentityString() const;
  void setIdentityString(IUString const& text);
  IBOOLEAN isProxy() const;
  void resolveProxy(IObject* resolved);
  void unsetProxy();
  IObject const* getContainer() const;
  IProperty const* getContainmentProperty() const;
  internal::IObjectInternal* getAssociatedObject() { return object_; }
  internal::IObjectInternal const* getAssociatedObject() const { return object_; }

 private:
  IObjectInfo() = default;
  void checkNotProxy() const;

  internal::IObjectInternal* object_ = nullptr;
};

}  // namespace com::veltrana::qvx::icore
