// The reflective facade of a model object: generic code (serializers, tools) reads and
// writes any property of any object through it. Each object owns its facade; the
// facade adds the proxy checks and forwards to the object's i-operations.
//
// The hot operations (get, set, getCardinality, getIClass, isProxy) are inline: a reflective get costs
// one virtual call into the object plus its membership check against the class table
// (IClass::getClassTable), which is also where generic code finds each property's kind,
// default literal and XML names without asking the property again.
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

  // Inline; defined at the end of internal/IObjectInternal.h, which this header includes.
  inline IClass const* getIClass() const;
  inline void const* get(IProperty const& property, unsigned int* index, IBOOLEAN flag) const;
  inline void const* get(IProperty const& property, IBOOLEAN flag) const;
  // Refuses a proxy (UnresolvedProxyException 75000).
  inline void set(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag);
  // Leaves the proxy check to the object's own iSet (75004).
  inline void set(IProperty const& property, void* value, IBOOLEAN flag);
  inline int getCardinality(IProperty const& property) const;
  IBOOLEAN hasItems(IProperty const& property);
  IIdentity const* getIdentity() const;
  // Takes ownership of `identity`.
  void setIdentity(IIdentity const*& identity);
  IUString getIdentityString() const;
  void setIdentityString(IUString const& text);
  inline IBOOLEAN isProxy() const;
  void resolveProxy(IObject* resolved);
  void unsetProxy();
  IObject const* getContainer() const;
  IProperty const* getContainmentProperty() const;
  internal::IObjectInternal* getAssociatedObject() { return object_; }
  internal::IObjectInternal const* getAssociatedObject() const { return object_; }

 private:
  IObjectInfo() = default;
  inline void checkNotProxy() const;
  [[noreturn]] static void throwProxy();

  internal::IObjectInternal* object_ = nullptr;
};

}  // namespace com::veltrana::qvx::icore

// The inline operations need the complete object class.
#include "icore/internal/IObjectInternal.h"
