#include "icore/IPackage.h"

#include <memory>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

IPackage::IPackage() {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) iSetIClass(core->getIPackageIClass());
}

IPackage::~IPackage() {
  QVXRuntime::getInstance()->withdrawPackage(this);
  for (IType* type : types_) delete type;
}

IType* IPackage::getType(IUString const& name) {
  for (IType* type : types_) {
    if (type->getName() == name) return type;
  }
  return nullptr;
}

IType const* IPackage::getType(IUString const& name) const { return const_cast<IPackage*>(this)->getType(name); }

void const* IPackage::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  switch (property.getPropertyId()) {
    case 2: return &types_;
    case 3: return &version_;
    default: return IModelElement::iGet(property, index, flag);
  }
}

void IPackage::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  switch (property.getPropertyId()) {
    case 2: throwElementCollectionSet(property);
    case 3: setVersion(*static_cast<IUString*>(value)); return;
    default: IModelElement::iSet(property, value, index, flag); return;
  }
}

namespace {
IBOOLEAN flag(unsigned flags, unsigned bit) { return (flags & bit) != 0 ? ITRUE : IFALSE; }
IUString textOrEmpty(const char* text) { return text != nullptr ? IUString(text) : IUString(); }
}  // namespace

void IPackage::createContents(internal::PackageTables const& tables) {
  std::size_t nextClass = 0;
  std::size_t nextEnum = 0;
  std::size_t nextProperty = 0;
  const std::size_t typeCount = tables.classCount + tables.enumCount;
  for (int typeId = 0; static_cast<std::size_t>(typeId) < typeCount; ++typeId) {
    if (nextClass < tables.classCount && tables.classes[nextClass].typeId == typeId) {
      IClass* created = createIClass(typeId);
      ++nextClass;
      for (; nextProperty < tables.propertyCount && tables.properties[nextProperty].ownerTypeId == typeId;
           ++nextProperty) {
        createIProperty(created, tables.properties[nextProperty].id);
      }
    } else if (nextEnum < tables.enumCount && tables.enums[nextEnum].typeId == typeId) {
      createIEnumeration(typeId);
      ++nextEnum;
    } else {
      QVX_ASSERT_FAIL("package tables must number their types from 0 without gaps");
      return;
    }
  }
  QVX_ASSERT(nextProperty == tables.propertyCount);
}

void IPackage::initializeContents(internal::PackageTables const& tables) {
  for (std::size_t index = 0; index < tables.classCount; ++index) {
    const internal::ClassRow& row = tables.classes[index];
    if (row.superTypeId != internal::kNoType) classById(row.typeId)->setSuperClass(classById(row.superTypeId));
  }
  std::size_t nextProperty = 0;
  for (std::size_t index = 0; index < tables.classCount; ++index) {
    const internal::ClassRow& row = tables.classes[index];
    IClass* target = classById(row.typeId);
    initIClass(target, row.name, row.isAbstract ? ITRUE : IFALSE, *row.kind, *row.scope, row.isFinal ? ITRUE : IFALSE,
               row.isSeeded ? ITRUE : IFALSE, IUString());
    for (IProperty* property : target->getDeclaredProperties()) {
      const internal::PropertyRow& p = tables.properties[nextProperty++];
      IProperty* opposite = p.oppositeOwnerTypeId != internal::kNoType ? propertyById(p.oppositeOwnerTypeId, p.oppositeId)
                                                                       : nullptr;
      initIProperty(property, typeById(p.typeId), p.name, textOrEmpty(p.defaultValueLiteral), p.minOccurs,
                    p.maxOccurs, opposite, IFALSE, flag(p.flags, internal::kContainment),
                    flag(p.flags, internal::kContainer), IFALSE, flag(p.flags, internal::kUnique),
                    flag(p.flags, internal::kOrdered), textOrEmpty(p.redefinedPropertyName),
                    p.redefinability != nullptr ? *p.redefinability : IRedefinability::FINAL_PROPERTY, *p.scope,
                    IUString(), flag(p.flags, internal::kSensitive));
      property->setXMLPropertyAsElement(flag(p.flags, internal::kXmlAsElement));
      property->setXMLPropertyElementName(textOrEmpty(p.xmlPropertyElementName));
    }
  }
  for (std::size_t index = 0; index < tables.enumCount; ++index) {
    const internal::EnumRow& row = tables.enums[index];
    IEnumeration* target = initIEnumeration(enumerationById(row.typeId), row.name, IUString());
    for (int ordinal = 0; ordinal < row.literalCount; ++ordinal) {
      IEnumerationLiteral* literal = addIEnumerationLiteral(target, row.literals[ordinal], ordinal, IUString());
      if (ordinal == row.defaultLiteral) target->setDefaultLiteral(literal);
    }
  }
}

IType* IPackage::typeById(int typeId) {
  if (typeId >= ICoreDatatypes::BYTE_TYPE_ID) {
    IVector<IDatatype*> const& primitives = ICoreDatatypes::getAllPrimitiveDatatypes();
    return primitives[static_cast<std::size_t>(typeId - ICoreDatatypes::BYTE_TYPE_ID)];
  }
  // Types are created in type-id order, so the id is normally the position.
  if (typeId >= 0 && static_cast<std::size_t>(typeId) < types_.size() && types_[static_cast<std::size_t>(typeId)]->getTypeId() == typeId) {
    return types_[static_cast<std::size_t>(typeId)];
  }
  for (IType* type : types_) {
    if (type->getTypeId() == typeId) return type;
  }
  QVX_ASSERT_FAIL("no type with this id in the package");
  return nullptr;
}

IClass* IPackage::classById(int typeId) {
  IType* type = typeById(typeId);
  QVX_ASSERT(type != nullptr && type->isClass());
  return static_cast<IClass*>(type);
}

IEnumeration* IPackage::enumerationById(int typeId) {
  IType* type = typeById(typeId);
  QVX_ASSERT(type != nullptr && type->isEnum());
  return static_cast<IEnumeration*>(type);
}

IProperty* IPackage::propertyById(int ownerTypeId, int propertyId) {
  for (IProperty* property : classById(ownerTypeId)->getDeclaredProperties()) {
    if (property->getPropertyId() == propertyId) return property;
  }
  QVX_ASSERT_FAIL("no property with this id in the class");
  return nullptr;
}

IClass* IPackage::createIClass(int typeId) {
  auto made = std::make_unique<IClass>();
  made->setTypeId(typeId);
  types_.append(made.get());
  return made.release();
}

IEnumeration* IPackage::createIEnumeration(int typeId) {
  auto made = std::make_unique<IEnumeration>();
  made->setTypeId(typeId);
  types_.append(made.get());
  return made.release();
}

IProperty* IPackage::createIProperty(IClass* owner, int propertyId) {
  auto made = std::make_unique<IProperty>();
  made->setPropertyId(propertyId);
  made->setDeclaringClass(owner);
  owner->getDeclaredProperties().append(made.get());
  return made.release();
}

void IPackage::initIType(IType* target, IUString const& name, IUString const& comment) {
  target->setName(name);
  target->setPackage(this);
  target->setComment(comment);
}

IClass* IPackage::initIClass(IClass* target, IUString const& name, IBOOLEAN isAbstract, IClassKind const& kind,
                             IReferenceScope const& scope, IBOOLEAN isFinal, IBOOLEAN isSeeded,
                             IUString const& comment) {
  initIType(target, name, comment);
  target->setAbstract(isAbstract);
  target->setFinal(isFinal);
  target->setClassKind(kind);
  target->setReferenceScope(scope);
  target->setSeeded(isSeeded);
  return target;
}

IEnumeration* IPackage::initIEnumeration(IEnumeration* target, IUString const& name, IUString const& comment) {
  initIType(target, name, comment);
  return target;
}

IEnumerationLiteral* IPackage::addIEnumerationLiteral(IEnumeration* owner, IUString const& name, int ordinal,
                                                      IUString const& comment) {
  auto literal = std::make_unique<IEnumerationLiteral>();
  literal->setName(name);
  literal->setOrdinalValue(ordinal);
  literal->setComment(comment);
  literal->setDeclaringEnumeration(owner);
  owner->getLiterals().append(literal.get());
  return literal.release();
}

IProperty* IPackage::initIProperty(IProperty* target, IType* type, IUString const& name,
                                   IUString const& defaultValueLiteral, int minOccurs, int maxOccurs,
                                   IProperty* opposite, IBOOLEAN, IBOOLEAN containment, IBOOLEAN container,
                                   IBOOLEAN, IBOOLEAN unique, IBOOLEAN ordered,
                                   IUString const& redefinedPropertyName, IRedefinability const& redefinability,
                                   IReferenceScope const& scope, IUString const& comment, IBOOLEAN sensitive) {
  target->setType(type);
  target->setName(name);
  target->setDefaultValueLiteral(defaultValueLiteral);
  target->setMinOccurs(minOccurs);
  target->setMaxOccurs(maxOccurs);
  if (opposite != nullptr) target->setOppositeProperty(opposite);
  target->setContainment(containment);
  target->setContainer(container);
  target->setUnique(unique);
  target->setOrdered(ordered);
  target->setRedefinedPropertyName(redefinedPropertyName);
  target->setRedefinability(redefinability);
  target->setReferenceScope(scope);
  target->setComment(comment);
  target->setSensitive(sensitive);
  return target;
}

IBOOLEAN IPackage::iHasItems(IProperty const& property) {
  if (property.getPropertyId() == 2) return types_.isEmpty() ? IFALSE : ITRUE;
  return IModelElement::iHasItems(property);
}

}  // namespace com::veltrana::qvx::icore
