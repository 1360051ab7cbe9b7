// A class of the metamodel: super class (single inheritance), declared properties,
// flags, kind and reference scope. Derived answers (all properties, super types, the
// per-class property table) are built on first use under the class's locks and then
// read without locking; they are never invalidated, so a package adds every property
// before the first look-up.
#pragma once

#include <atomic>
#include <memory>

#include "icore/IType.h"
#include "icore/internal/ClassTable.h"
#include "platform/IVector.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {

class IClassKind;
class IProperty;
class IReferenceScope;

class QVX_API IClass : public IType {
 public:
  IClass();
  // Deletes the declared properties, which the class owns.
  ~IClass() override;

  IClass* getSuperClass() { return superClass_; }
  IClass const* getSuperClass() const { return superClass_; }
  void setSuperClass(IClass* superClass) { superClass_ = superClass; }

  IBOOLEAN const& isAbstract() const { return abstract_; }
  void setAbstract(IBOOLEAN value) { abstract_ = value; }
  IBOOLEAN const& isFinal() const { return final_; }
  void setFinal(IBOOLEAN value) { final_ = value; }
  IBOOLEAN const& isSeeded() const { return seeded_; }
  void setSeeded(IBOOLEAN value) { seeded_ = value; }

  IClassKind const& getClassKind() const;
  void setClassKind(IClassKind const& kind) { classKind_ = &kind; }
  IReferenceScope const& getReferenceScope() const;
  void setReferenceScope(IReferenceScope const& scope) { referenceScope_ = &scope; }

  IBOOLEAN isFirstClass() const;
  IBOOLEAN isSecondClass() const;
  IBOOLEAN isValueClass() const;
  // Only identifiable classes (reference scope EXTERNAL) receive generated identities.
  IBOOLEAN isIdentifiableClass() const;
  IBOOLEAN isInternallyReferable() const;
  IBOOLEAN isClass() const override { return ITRUE; }

  IVector<IProperty*>& getDeclaredProperties() { return declaredProperties_; }
  IVector<IProperty*> const& getDeclaredProperties() const { return declaredProperties_; }
  IProperty* getDeclaredProperty(IUString const& name);
  IProperty const* getDeclaredProperty(IUString const& name) const;

  // The properties of the class, inherited ones first (root class first, own
  // declarations last). With `keepRedefined` false, every property that another one
  // redefines is left out.
  IVector<IProperty*> const& getAllProperties(IBOOLEAN keepRedefined) const;
  // The first property of getAllProperties(true) with this name, or null.
  IProperty* getProperty(IUString const& name);
  IProperty const* getProperty(IUString const& name) const;

  // True when `property` is one of getAllProperties(true), answered by the class table
  // in constant time.
  bool hasProperty(IProperty const& property) const { return getClassTable().contains(property); }

  // The class's property table (kinds, defaults, XML names, look-up by id and name);
  // made on first use, then read without locking. See internal/ClassTable.h.
  internal::ClassTable const& getClassTable() const {
    internal::ClassTable const* table = classTable_.load(std::memory_order_acquire);
    return table != nullptr ? *table : buildClassTable();
  }

  // True when `other` is this class or one of its super classes.
  IBOOLEAN isTypeOf(IClass const& other) const;

  // A new instance made by the package's factory; the caller owns it. Throws
  // InstantiationException (73000) for an abstract class.
  IObject* create() const;
  // A new proxy for `identity`, made by the package's factory; the caller owns it.
  IObject* createProxy(IIdentity const*& identity) const;

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override;

 private:
  struct PropertyCache {
    std::unique_ptr<IVector<IProperty*>> list;
    std::atomic<bool> valid{false};
  };

  IVector<IClass*> const& getAllSuperTypes() const;
  std::unique_ptr<IVector<IProperty*>> getInheritedProperties(IBOOLEAN keepRedefined) const;
  static void pruneRedefinedProperties(IVector<IProperty*>& list);
  internal::ClassTable const& buildClassTable() const;

  IBOOLEAN abstract_ = IFALSE;
  IBOOLEAN final_ = IFALSE;
  IBOOLEAN seeded_ = IFALSE;
  IVector<IProperty*> declaredProperties_{20, 200, 1000};
  IClass* superClass_ = nullptr;
  IClassKind const* classKind_;
  IReferenceScope const* referenceScope_;

  mutable PropertyCache allProperties_;
  mutable PropertyCache prunedProperties_;
  mutable WkMutex propertyCacheLock_;
  mutable std::unique_ptr<IVector<IClass*>> superTypes_;
  mutable std::atomic<bool> superTypesValid_{false};
  mutable WkMutex superTypesLock_;
  mutable std::unique_ptr<internal::ClassTable const> classTableOwner_;
  mutable std::atomic<internal::ClassTable const*> classTable_{nullptr};
};

// The membership check every reflective access makes (declared in
// internal/IObjectInternal.h): inline, so that a reflective get or set costs the
// object's virtual call and little else.
inline void internal::IObjectInternal::checkPropertyAccess(IProperty const& property) const {
  if (class_ == nullptr || !class_->hasProperty(property)) throwUnknownGet(property);
  if (proxy_) throwProxyAccess();
}

}  // namespace com::veltrana::qvx::icore
