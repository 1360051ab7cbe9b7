// A package: the unit in which a metamodel is defined, registered and versioned. It owns
// its types and hands out the factory for its classes. Generated packages derive from
// it and build their contents with the protected construction operations, in this
// order: create types and properties with their ids; name and register the package;
// set super classes; initialise classes, properties and enumerations; set the factory.
#pragma once

#include <memory>

#include "icore/IModelElement.h"
#include "icore/internal/PackageTables.h"
#include "platform/IVector.h"

namespace com::veltrana::qvx::icore {

class IClass;
class IClassKind;
class IEnumeration;
class IEnumerationLiteral;
class IFactory;
class IRedefinability;
class IReferenceScope;
class IType;

class QVX_API IPackage : public IModelElement {
 public:
  IPackage();
  // Deletes every type of the package. A package that dies while registered (its
  // build failed after registering) is taken out of the runtime first.
  ~IPackage() override;

  IVector<IType*>& getTypes() { return types_; }
  IVector<IType*> const& getTypes() const { return types_; }
  // The first type with this exact name, in creation order, or null.
  IType* getType(IUString const& name);
  IType const* getType(IUString const& name) const;

  IUString const& getNsPrefix() const { return nsPrefix_; }
  void setNsPrefix(IUString prefix) { nsPrefix_ = std::move(prefix); }
  IUString const& getVersion() const { return version_; }
  void setVersion(IUString version) { version_ = std::move(version); }
  IUString const& getXMLPackageNsPrefix() const { return xmlPackageNsPrefix_; }
  void setXMLPackageNsPrefix(IUString prefix) { xmlPackageNsPrefix_ = std::move(prefix); }

  virtual IFactory* getFactory() { return factory_; }
  virtual IFactory const* getFactory() const { return factory_; }
  void setFactory(IFactory* factory) { factory_ = factory; }

  IUString getNamespace() const override { return nsPrefix_; }
  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override;

 protected:
  // Creates the types and properties that `tables` list: types in type-id order,
  // each class's properties right after it.
  void createContents(internal::PackageTables const& tables);
  // Sets super classes, then initialises the classes with their properties and the
  // enumerations with their literals, from the same tables.
  void initializeContents(internal::PackageTables const& tables);
  // The package's own type with this id, or the core primitive data type (1000-1011).
  IType* typeById(int typeId);
  IClass* classById(int typeId);
  IEnumeration* enumerationById(int typeId);
  // The property of class `ownerTypeId` with property id `propertyId`.
  IProperty* propertyById(int ownerTypeId, int propertyId);

  IClass* createIClass(int typeId);
  IEnumeration* createIEnumeration(int typeId);
  IProperty* createIProperty(IClass* owner, int propertyId);
  IClass* initIClass(IClass* target, IUString const& name, IBOOLEAN isAbstract, IClassKind const& kind,
                     IReferenceScope const& scope, IBOOLEAN isFinal, IBOOLEAN isSeeded, IUString const& comment);
  IEnumeration* initIEnumeration(IEnumeration* target, IUString const& name, IUString const& comment);
  IEnumerationLiteral* addIEnumerationLiteral(IEnumeration* owner, IUString const& name, int ordinal,
                                              IUString const& comment);
  // `unusedFirst` and `unusedFourth` are accepted and ignored, so that generated code
  // keeps its shape. A null `opposite` leaves any existing opposite in place.
  IProperty* initIProperty(IProperty* target, IType* type, IUString const& name, IUString const& defaultValueLiteral,
                           int minOccurs, int maxOccurs, IProperty* opposite, IBOOLEAN unusedFirst,
                           IBOOLEAN containment, IBOOLEAN container, IBOOLEAN unusedFourth, IBOOLEAN unique,
                           IBOOLEAN ordered, IUString const& redefinedPropertyName,
                           IRedefinability const& redefinability, IReferenceScope const& scope,
                           IUString const& comment, IBOOLEAN sensitive);

 private:
  void initIType(IType* target, IUString const& name, IUString const& comment);

  IVector<IType*> types_;
  IFactory* factory_ = nullptr;
  IUString version_;
  IUString nsPrefix_;
  IUString xmlPackageNsPrefix_;
};

namespace internal {

// Owns a generated package while it is being built. A build that throws deletes it,
// through the base (generated packages keep their own destructors private), so a
// failed build leaks nothing and the next request builds the package afresh.
struct PackageBuildDeleter {
  void operator()(IPackage* package) const { delete package; }
};
template <typename Package>
using PackageUnderConstruction = std::unique_ptr<Package, PackageBuildDeleter>;

}  // namespace internal

}  // namespace com::veltrana::qvx::icore
