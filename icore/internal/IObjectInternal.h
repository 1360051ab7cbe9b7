// The storage base of every model object. It holds what all objects have (class,
// proxy state, container, containing property, the reflective facade) and fixes the
// reflective protocol: concrete classes keep their values in typed members and
// implement iGet / iSet / iHasItems as a switch over IProperty::getPropertyId().
//
// Values at the reflective interface (the void pointers of iGet and iSet):
//   primitive           pointer to the value (IBOOLEAN for booleans, IUString for strings,
//                       WkDate for dates); a blob's iGet returns the bytes and writes the
//                       count through its `unsigned int*` argument
//   enumeration         pointer to the IEnumerationLiteral
//   single reference    the referenced object itself (null when unset)
//   multi-valued        pointer to the owner's collection, never a copy:
//                       IVector<IObject*> for references, IVector<IEnumerationLiteral*>
//                       for enumerations, IVector<T*> for primitives of value type T
//                       (the owner owns the values; numbers it adds itself may
//                       sit in the collection's value blocks, IVector::appendValue,
//                       so no other code deletes a value of a collection)
// iSet copies the value it is pointed to, in every class (a date too, the boxed IDate's
// included), so `b.set(p, a.get(p))` never shares a value. Proxy resolution relies on
// the copy.
// Ownership: an object owns the values of its containment properties and the values of
// its multi-valued primitive properties, and destroys them with itself. Setting a
// single-valued containment replaces the value without destroying the old one: the
// replaced object is detached (its container cleared) and belongs to the caller.
// Objects are not synchronised: one thread uses an object at a time.
#pragma once

#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IClass;
class IIdentity;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::icore::internal {

class QVX_API IObjectInternal : public IObject {
 public:
  IObjectInternal();
  // A copy takes the source's class, proxy state and container; its facade designates
  // the copy itself.
  IObjectInternal(const IObjectInternal& other);
  IObjectInternal& operator=(const IObjectInternal& other);
  ~IObjectInternal() override;

  // Reflective access; the base implementations are assertion failures, every
  // concrete class overrides them.
  virtual void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const;
  virtual void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag);
  // The object's identity. The base throws IdentityException (73008): only
  // identifiable classes override these.
  virtual IIdentity const* iGetIdentity() const;
  // Takes ownership of `identity`.
  virtual void iSetIdentity(IIdentity const*& identity);
  virtual IBOOLEAN iHasItems(IProperty const& property);
  // Sets a generated UUID identity, given as its 16 bytes in RFC 4122 order, and
  // returns it; the checks are those of iSetIdentity. The base makes a UUIIdentity
  // and passes it to iSetIdentity; classes that keep the identity inline
  // (IdentitySlot) override this to make it in place without allocating.
  virtual IIdentity const* iSetUUIDIdentity(const unsigned char* bytes);

  IClass* iGetIClass() { return class_; }
  IClass const* iGetIClass() const { return class_; }
  void iSetIClass(IClass* objectClass) { class_ = objectClass; }

  IObjectInternal* iGetContainer() { return container_; }
  IObjectInternal const* iGetContainer() const { return container_; }
  IProperty const* iGetContainmentProperty() const { return containmentProperty_; }
  void iSetContainer(IObjectInternal* container) { container_ = container; }
  void iSetContainer(IObjectInternal* container, IProperty const* property) {
    container_ = container;
    containmentProperty_ = property;
  }
  void iSetContainmentProperty(IProperty const* property) { containmentProperty_ = property; }

  IBOOLEAN iIsProxy() const { return proxy_; }
  // Turns a proxy into an ordinary object; UnsupportedOperationException (75001) otherwise.
  void iUnsetProxy();
  // Copies the state of the fully read object `resolved` into this proxy.
  void iResolveProxy(IObject* resolved);

  int iGetCardinality(IProperty const& property) const;
  IUString iGetIdentityString() const;
  // Makes a StringIdentity (a SeedIdentity for seeded classes) from `text` and sets it.
  void iSetIdentity(IUString const& text);

  IObjectInfo& iGetIObjectInfo() { return info_; }
  IObjectInfo const& iGetIObjectInfo() const { return info_; }

  IBOOLEAN instanceOf(IClass const& candidate) const;
  IBOOLEAN operator==(IObjectInternal const& other) const { return this == &other ? ITRUE : IFALSE; }
  using IObject::operator==;

  // Encryption services for classes that keep encrypted string values. The default
  // provider is installed on first use when none is registered.
  IUString encrypt(IUString value, IProperty const* property, IObject const* object);
  IUString decrypt(IUString value, IProperty const* property, IObject const* object);

 protected:
  // Makes this object a proxy; used by factories when they create one.
  void iSetProxy() { proxy_ = ITRUE; }
  // Guard for a concrete iSetIdentity: an identity is set once (74002 otherwise).
  void performChecksBeforeSet() const;

  // Helpers for the reflective contract of concrete classes.
  // Throws 73005 unless `property` belongs to this object's class, then 75004 on a proxy.
  // Every reflective access makes this check, through the class table in constant time.
  // Inline, defined in icore/IClass.h where the class table is complete.
  inline void checkPropertyAccess(IProperty const& property) const;
  // Throws 75004 when this object is a proxy (typed accessors call it first).
  // Inline: every typed accessor of every generated class starts with it.
  void checkNotProxy() const {
    if (proxy_) throwProxyAccess();
  }
  // The exceptions of an id that the class does not handle.
  [[noreturn]] void throwUnknownGet(IProperty const& property) const;
  [[noreturn]] void throwUnknownSet(IProperty const& property) const;
  [[noreturn]] void throwCollectionSet(IProperty const& property) const;
  // iHasItems of a property that is not multi-valued: 75004 on a proxy, 73005 otherwise.
  [[noreturn]] void throwNotMultiValued(IProperty const& property) const;

 private:
  [[noreturn]] static void throwProxyAccess();

  IObjectInfo info_;
  IBOOLEAN proxy_ = IFALSE;
  IClass* class_ = nullptr;
  IObjectInternal* container_ = nullptr;
  IProperty const* containmentProperty_ = nullptr;
};

}  // namespace com::veltrana::qvx::icore::internal

// The inline operations of the facade (declared in IObjectInfo.h), here because they
// need IObjectInternal complete whichever of the two headers is included first.
namespace com::veltrana::qvx::icore {

inline void IObjectInfo::checkNotProxy() const {
  if (object_->iIsProxy()) throwProxy();
}

inline IClass const* IObjectInfo::getIClass() const { return object_->iGetIClass(); }

inline void const* IObjectInfo::get(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  return object_->iGet(property, index, flag);
}

inline void const* IObjectInfo::get(IProperty const& property, IBOOLEAN flag) const {
  return object_->iGet(property, nullptr, flag);
}

inline void IObjectInfo::set(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  checkNotProxy();
  object_->iSet(property, value, index, flag);
}

inline void IObjectInfo::set(IProperty const& property, void* value, IBOOLEAN flag) {
  object_->iSet(property, value, 0, flag);
}

inline int IObjectInfo::getCardinality(IProperty const& property) const {
  checkNotProxy();
  return object_->iGetCardinality(property);
}

inline IBOOLEAN IObjectInfo::isProxy() const { return object_->iIsProxy(); }

}  // namespace com::veltrana::qvx::icore
