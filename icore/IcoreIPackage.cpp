#include "icore/IcoreIPackage.h"

#include <atomic>
#include <mutex>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIFactory.h"
#include "icore/QVXRuntime.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

namespace {

using internal::ClassRow;
using internal::EnumRow;
using internal::kNoType;
using internal::PropertyRow;

// Type ids: the classes 0-9, the enumerations 10-12, the core data types 1000-1011.
enum TypeId { kIClass, kIDatatype, kIEnumeration, kIEnumerationLiteral, kIModelElement, kIObject,
              kIPackage, kIProperty, kIType, kITypedElement, kIClassKind, kIRedefinability, kIReferenceScope };
constexpr int kClassCount = 10;
constexpr int kBoolean = ICoreDatatypes::BOOLEAN_TYPE_ID;
constexpr int kInteger = ICoreDatatypes::INTEGER_TYPE_ID;
constexpr int kString = ICoreDatatypes::STRING_TYPE_ID;

IClassKind const* const kSECOND = &IClassKind::SECOND_CLASS;
IClassKind const* const kANY = &IClassKind::ANY_CLASS;
IReferenceScope const* const kEXTERNAL = &IReferenceScope::EXTERNAL;
IReferenceScope const* const kNONE = &IReferenceScope::NONE;
IReferenceScope const* const kINTERNAL = &IReferenceScope::INTERNAL;
IReferenceScope const* const kDEFERRED = &IReferenceScope::DEFERRED;

const ClassRow kClasses[] = {
    {kIClass, "IClass", kIType, false, false, false, kSECOND, kEXTERNAL},
    {kIDatatype, "IDatatype", kIType, false, true, false, kSECOND, kEXTERNAL},
    {kIEnumeration, "IEnumeration", kIDatatype, false, false, false, kSECOND, kEXTERNAL},
    {kIEnumerationLiteral, "IEnumerationLiteral", kIModelElement, false, false, false, kSECOND, kEXTERNAL},
    {kIModelElement, "IModelElement", kNoType, true, true, false, kANY, kDEFERRED},
    {kIObject, "IObject", kNoType, true, true, false, kANY, kDEFERRED},
    {kIPackage, "IPackage", kIModelElement, false, false, false, &IClassKind::FIRST_CLASS, kEXTERNAL},
    {kIProperty, "IProperty", kITypedElement, false, false, false, kSECOND, kEXTERNAL},
    {kIType, "IType", kIModelElement, true, true, false, kSECOND, kEXTERNAL},
    {kITypedElement, "ITypedElement", kIModelElement, true, true, false, kANY, kDEFERRED},
};

constexpr unsigned kContainment = internal::kContainment | internal::kOrdered;
constexpr unsigned kContainer = internal::kContainer;

// Every property: redefinability FINAL_PROPERTY, no default literal, not sensitive.
const PropertyRow kProperties[] = {
    {kIClass, 3, "Abstract", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIClass, 4, "Final", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIClass, 5, "seeded", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIClass, 6, "declaredProperties", kIProperty, 0, -1, kContainment, kIProperty, 3, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kIClass, 7, "superClass", kIClass, 0, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kIClass, 8, "classKind", kIClassKind, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIClass, 9, "referenceScope", kIReferenceScope, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIEnumeration, 3, "literals", kIEnumerationLiteral, 1, 1, kContainment, kIEnumerationLiteral, 2, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kIEnumeration, 4, "defaultLiteral", kIEnumerationLiteral, 0, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kIEnumerationLiteral, 2, "declaringEnumeration", kIEnumeration, 1, 1, kContainer, kIEnumeration, 3, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kIEnumerationLiteral, 3, "ordinalValue", kInteger, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIModelElement, 0, "name", kString, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIModelElement, 1, "comment", kString, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIPackage, 2, "types", kIType, 0, -1, kContainment, kIType, 2, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kIPackage, 3, "version", kString, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 3, "declaringClass", kIClass, 1, 1, kContainer, kIClass, 6, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kIProperty, 4, "defaultValueLiteral", kString, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 5, "minOccurs", kInteger, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 6, "maxOccurs", kInteger, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 7, "oppositeProperty", kIProperty, 0, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kIProperty, 8, "containment", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 9, "container", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 10, "redefinability", kIRedefinability, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 11, "redefinedProperty", kIProperty, 0, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kIProperty, 12, "referenceScope", kIReferenceScope, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 13, "ordered", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIProperty, 14, "unique", kBoolean, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kIType, 2, "declaringPackage", kIPackage, 1, 1, kContainer, kIPackage, 2, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kITypedElement, 2, "type", kIType, 1, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
};

// The literals carry the names and values of the value-enumeration constants.
const char* const kClassKindLiterals[] = {"FIRST_CLASS", "SECOND_CLASS", "VALUE_CLASS", "ANNOTATION_CLASS",
                                          "ANY_CLASS", "UNSET"};
const char* const kRedefinabilityLiterals[] = {"FINAL_PROPERTY", "ABSTRACT_PROPERTY", "REDEFINABLE_PROPERTY"};
const char* const kReferenceScopeLiterals[] = {"INTERNAL", "EXTERNAL", "DEFERRED", "NONE", "UNSET"};
const EnumRow kEnums[] = {
    {kIClassKind, "IClassKind", kClassKindLiterals, 6, -1},
    {kIRedefinability, "IRedefinability", kRedefinabilityLiterals, 3, -1},
    {kIReferenceScope, "IReferenceScope", kReferenceScopeLiterals, 5, -1},
};

const internal::PackageTables kTables = {kClasses, std::size(kClasses), kProperties, std::size(kProperties),
                                         kEnums, std::size(kEnums)};

// The literals of a core enumeration sit at the position of their ordinal.
IEnumerationLiteral const* literalAt(IEnumeration const& enumeration, int ordinal) {
  IVector<IEnumerationLiteral*> const& literals = enumeration.getLiterals();
  QVX_ASSERT(ordinal >= 0 && static_cast<std::size_t>(ordinal) < literals.size());
  return literals[static_cast<std::size_t>(ordinal)];
}

// The ordinal of `literal` when it is one of the literals of `enumeration`, else -1.
int ordinalIn(IEnumeration const& enumeration, void const* literal) {
  for (IEnumerationLiteral const* candidate : enumeration.getLiterals()) {
    if (candidate == literal) return candidate->getOrdinalValue();
  }
  return -1;
}

}  // namespace

IcoreIPackage::IcoreIPackage() = default;

IcoreIPackage::~IcoreIPackage() = default;

IcoreIPackage* IcoreIPackage::iGetInstance() {
  return internal::PackageInstance<IcoreIPackage>::process().get(&IcoreIPackage::init);
}

IcoreIPackage* IcoreIPackage::init() {
  auto* package = new IcoreIPackage();
  QVX_ASSERT(package != nullptr);
  package->createPackageContents();
  ICoreDatatypes::initialize(package);
  package->initializePackageContents();
  return package;
}

IUString const& IcoreIPackage::getIName() {
  static const IUString name("icore");
  return name;
}

IUString const& IcoreIPackage::getIPrefix() {
  static const IUString prefix("com.veltrana.qvx");
  return prefix;
}

IFactory* IcoreIPackage::getFactory() { return IPackage::getFactory(); }

IFactory const* IcoreIPackage::getFactory() const { return IPackage::getFactory(); }

IEnumerationLiteral const* IcoreIPackage::literalOf(IClassKind const& constant) const {
  return literalAt(*getIClassKindIEnumeration(), constant.getOrdinalValue());
}

IEnumerationLiteral const* IcoreIPackage::literalOf(IRedefinability const& constant) const {
  return literalAt(*getIRedefinabilityIEnumeration(), constant.getOrdinalValue());
}

IEnumerationLiteral const* IcoreIPackage::literalOf(IReferenceScope const& constant) const {
  return literalAt(*getIReferenceScopeIEnumeration(), constant.getOrdinalValue());
}

IClassKind const* IcoreIPackage::classKindOf(void const* literal) const {
  return IClassKind::get(ordinalIn(*getIClassKindIEnumeration(), literal));
}

IRedefinability const* IcoreIPackage::redefinabilityOf(void const* literal) const {
  return IRedefinability::get(ordinalIn(*getIRedefinabilityIEnumeration(), literal));
}

IReferenceScope const* IcoreIPackage::referenceScopeOf(void const* literal) const {
  return IReferenceScope::get(ordinalIn(*getIReferenceScopeIEnumeration(), literal));
}

IProperty* IcoreIPackage::declaredProperty(int classIndex, int position) const {
  return classes_[classIndex]->getDeclaredProperties()[static_cast<std::size_t>(position)];
}

void IcoreIPackage::createPackageContents() {
  createContents(kTables);
  for (int typeId = 0; typeId < kClassCount; ++typeId) classes_[typeId] = classById(typeId);
  for (int index = 0; index < 3; ++index) enumerations_[index] = enumerationById(kIClassKind + index);
}

void IcoreIPackage::initializePackageContents() {
  std::lock_guard<WkMutex> guard(lock_);
  if (contentsInitialised_) return;
  contentsInitialised_ = true;
  setName(getIName());
  setNsPrefix(getIPrefix());
  setComment(IUString());
  QVXRuntime::getInstance()->registerPackage(this);
  initializeContents(kTables);
  IcoreIFactory* factory = IcoreIFactory::iGetInstance();
  setFactory(factory);
  factory->setPackage(this);
  initializeMetaClasses();
}

void IcoreIPackage::initializeMetaClasses() {
  IClass* classMeta = getIClassIClass();
  IProperty* typesProperty = getIPackage_TypesIProperty();
  iSetIClass(getIPackageIClass());
  for (IType* type : getTypes()) {
    type->iSetContainmentProperty(typesProperty);
    if (type->isClass()) {
      type->iSetIClass(classMeta);
      for (IProperty* property : static_cast<IClass*>(type)->getDeclaredProperties()) {
        property->iSetIClass(getIPropertyIClass());
        property->iSetContainmentProperty(getIClass_DeclaredPropertiesIProperty());
      }
    } else if (type->isEnum()) {
      type->iSetIClass(getIEnumerationIClass());
      for (IEnumerationLiteral* literal : static_cast<IEnumeration*>(type)->getLiterals()) {
        literal->iSetIClass(getIEnumerationLiteralIClass());
        literal->iSetContainmentProperty(getIEnumeration_LiteralsIProperty());
      }
    } else {
      type->iSetIClass(getIDatatypeIClass());
    }
  }
}

}  // namespace com::veltrana::qvx::icore
