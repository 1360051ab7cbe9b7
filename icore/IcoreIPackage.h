// The core package "com.veltrana.qvx.icore": the metamodel described by itself. Its
// classes are the metaclasses of every class, property, package, enumeration and
// literal, so generic code can treat metamodel elements like any model object. It is
// built once, on the first iGetInstance(), from the tables in its source file.
#pragma once

#include <atomic>

#include "icore/IPackage.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {

class IClassKind;
class IcoreIFactory;
class IRedefinability;
class IReferenceScope;

class QVX_API IcoreIPackage : public IPackage {
 public:
  // The package, built on the first call. Returns null while the package is being
  // built on this thread; other threads wait until it is complete.
  static IcoreIPackage* iGetInstance();
  static IUString const& getIName();
  static IUString const& getIPrefix();

  IFactory* getFactory() override;
  IFactory const* getFactory() const override;

  IClass* getIClassIClass() const { return classes_[0]; }
  IClass* getIDatatypeIClass() const { return classes_[1]; }
  IClass* getIEnumerationIClass() const { return classes_[2]; }
  IClass* getIEnumerationLiteralIClass() const { return classes_[3]; }
  IClass* getIModelElementIClass() const { return classes_[4]; }
  IClass* getIObjectIClass() const { return classes_[5]; }
  IClass* getIPackageIClass() const { return classes_[6]; }
  IClass* getIPropertyIClass() const { return classes_[7]; }
  IClass* getITypeIClass() const { return classes_[8]; }
  IClass* getITypedElementIClass() const { return classes_[9]; }
  IEnumeration* getIClassKindIEnumeration() const { return enumerations_[0]; }
  IEnumeration* getIRedefinabilityIEnumeration() const { return enumerations_[1]; }
  IEnumeration* getIReferenceScopeIEnumeration() const { return enumerations_[2]; }

  IProperty* getIModelElement_NameIProperty() const { return declaredProperty(4, 0); }
  IProperty* getIModelElement_CommentIProperty() const { return declaredProperty(4, 1); }
  IProperty* getIType_DeclaringPackageIProperty() const { return declaredProperty(8, 0); }
  IProperty* getITypedElement_TypeIProperty() const { return declaredProperty(9, 0); }
  IProperty* getIClass_AbstractIProperty() const { return declaredProperty(0, 0); }
  IProperty* getIClass_FinalIProperty() const { return declaredProperty(0, 1); }
  IProperty* getIClass_SeededIProperty() const { return declaredProperty(0, 2); }
  IProperty* getIClass_DeclaredPropertiesIProperty() const { return declaredProperty(0, 3); }
  IProperty* getIClass_SuperClassIProperty() const { return declaredProperty(0, 4); }
  IProperty* getIClass_ClassKindIProperty() const { return declaredProperty(0, 5); }
  IProperty* getIClass_ReferenceScopeIProperty() const { return declaredProperty(0, 6); }
  IProperty* getIEnumeration_LiteralsIProperty() const { return declaredProperty(2, 0); }
  IProperty* getIEnumeration_DefaultLiteralIProperty() const { return declaredProperty(2, 1); }
  IProperty* getIEnumerationLiteral_DeclaringEnumerationIProperty() const { return declaredProperty(3, 0); }
  IProperty* getIEnumerationLiteral_OrdinalValueIProperty() const { return declaredProperty(3, 1); }
  IProperty* getIPackage_TypesIProperty() const { return declaredProperty(6, 0); }
  IProperty* getIPackage_VersionIProperty() const { return declaredProperty(6, 1); }
  IProperty* getIProperty_DeclaringClassIProperty() const { return declaredProperty(7, 0); }
  IProperty* getIProperty_DefaultValueLiteralIProperty() const { return declaredProperty(7, 1); }
  IProperty* getIProperty_MinOccursIProperty() const { return declaredProperty(7, 2); }
  IProperty* getIProperty_MaxOccursIProperty() const { return declaredProperty(7, 3); }
  IProperty* getIProperty_OppositePropertyIProperty() const { return declaredProperty(7, 4); }
  IProperty* getIProperty_ContainmentIProperty() const { return declaredProperty(7, 5); }
  IProperty* getIProperty_ContainerIProperty() const { return declaredProperty(7, 6); }
  IProperty* getIProperty_RedefinabilityIProperty() const { return declaredProperty(7, 7); }
  IProperty* getIProperty_RedefinedPropertyIProperty() const { return declaredProperty(7, 8); }
  IProperty* getIProperty_ReferenceScopeIProperty() const { return declaredProperty(7, 9); }
  IProperty* getIProperty_OrderedIProperty() const { return declaredProperty(7, 10); }
  IProperty* getIProperty_UniqueIProperty() const { return declaredProperty(7, 11); }

  // The enumeration-valued properties of metamodel objects (class kind, reference
  // scope, redefinability) hold value-enumeration constants. Reflectively they read and
  // write the literal of the core enumeration with the constant's ordinal, so generic
  // code (both serializers) treats them like the enumerations of any package.
  IEnumerationLiteral const* literalOf(IClassKind const& constant) const;
  IEnumerationLiteral const* literalOf(IRedefinability const& constant) const;
  IEnumerationLiteral const* literalOf(IReferenceScope const& constant) const;
  // The constant that `literal` stands for; null when it is not a literal of the
  // matching core enumeration.
  IClassKind const* classKindOf(void const* literal) const;
  IRedefinability const* redefinabilityOf(void const* literal) const;
  IReferenceScope const* referenceScopeOf(void const* literal) const;

  void createPackageContents();
  void initializePackageContents();

 private:
  IcoreIPackage();
  ~IcoreIPackage() override;
  static IcoreIPackage* init();
  friend class internal::PackageInstance<IcoreIPackage>;

  void initializeMetaClasses();
  IProperty* declaredProperty(int classIndex, int position) const;

  IClass* classes_[10] = {};
  IEnumeration* enumerations_[3] = {};
  bool contentsInitialised_ = false;
  WkMutex lock_;
};

}  // namespace com::veltrana::qvx::icore
