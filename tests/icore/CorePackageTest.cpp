// The core package against its tables: every class, property, enumeration and
// primitive data type of "com.veltrana.qvx.icore", its factory, and the metaclasses of
// the core objects themselves. The expected tables are written out once here.
#include "icore/IcoreIPackage.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "tests/icore/TestModel.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using exception::IllegalArgumentException;
using exception::InstantiationException;
using exception::UnsupportedOperationException;
using testmodel::messageOf;

IcoreIPackage& core() { return *IcoreIPackage::iGetInstance(); }

struct ClassRow {
  const char* name;
  int typeId;
  const char* superClass;  // null: none
  bool isAbstract;
  bool isFinal;
  IClassKind const* kind;
  IReferenceScope const* scope;
  IClass* (IcoreIPackage::*getter)() const;
};

const ClassRow kClasses[] = {
    {"IClass", 0, "IType", false, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getIClassIClass},
    {"IDatatype", 1, "IType", false, true, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getIDatatypeIClass},
    {"IEnumeration", 2, "IDatatype", false, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getIEnumerationIClass},
    {"IEnumerationLiteral", 3, "IModelElement", false, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getIEnumerationLiteralIClass},
    {"IModelElement", 4, nullptr, true, true, &IClassKind::ANY_CLASS, &IReferenceScope::DEFERRED,
     &IcoreIPackage::getIModelElementIClass},
    {"IObject", 5, nullptr, true, true, &IClassKind::ANY_CLASS, &IReferenceScope::DEFERRED,
     &IcoreIPackage::getIObjectIClass},
    {"IPackage", 6, "IModelElement", false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getIPackageIClass},
    {"IProperty", 7, "ITypedElement", false, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getIPropertyIClass},
    {"IType", 8, "IModelElement", true, true, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL,
     &IcoreIPackage::getITypeIClass},
    {"ITypedElement", 9, "IModelElement", true, true, &IClassKind::ANY_CLASS, &IReferenceScope::DEFERRED,
     &IcoreIPackage::getITypedElementIClass},
};

struct PropertyRow {
  const char* owner;
  int id;
  const char* name;
  const char* type;
  int minOccurs;
  int maxOccurs;
  bool containment;
  bool container;
  bool ordered;
  bool unique;
  const char* opposite;  // "Class.property", or null
  IReferenceScope const* scope;
  IProperty* (IcoreIPackage::*getter)() const;
};

IReferenceScope const* const NONE = &IReferenceScope::NONE;
IReferenceScope const* const INTERNAL = &IReferenceScope::INTERNAL;
IReferenceScope const* const DEFERRED = &IReferenceScope::DEFERRED;

// Grouped by declaring class, each class's properties in id order.
const PropertyRow kProperties[] = {
    {"IModelElement", 0, "name", "IString", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIModelElement_NameIProperty},
    {"IModelElement", 1, "comment", "IString", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIModelElement_CommentIProperty},
    {"IType", 2, "declaringPackage", "IPackage", 1, 1, false, true, false, false, "IPackage.types", INTERNAL,
     &IcoreIPackage::getIType_DeclaringPackageIProperty},
    {"ITypedElement", 2, "type", "IType", 1, 1, false, false, false, false, nullptr, DEFERRED,
     &IcoreIPackage::getITypedElement_TypeIProperty},
    {"IClass", 3, "Abstract", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIClass_AbstractIProperty},
    {"IClass", 4, "Final", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIClass_FinalIProperty},
    {"IClass", 5, "seeded", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIClass_SeededIProperty},
    {"IClass", 6, "declaredProperties", "IProperty", 0, -1, true, false, true, false, "IProperty.declaringClass",
     INTERNAL, &IcoreIPackage::getIClass_DeclaredPropertiesIProperty},
    {"IClass", 7, "superClass", "IClass", 0, 1, false, false, false, false, nullptr, DEFERRED,
     &IcoreIPackage::getIClass_SuperClassIProperty},
    {"IClass", 8, "classKind", "IClassKind", 0, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIClass_ClassKindIProperty},
    {"IClass", 9, "referenceScope", "IReferenceScope", 0, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIClass_ReferenceScopeIProperty},
    {"IEnumeration", 3, "literals", "IEnumerationLiteral", 1, 1, true, false, true, false,
     "IEnumerationLiteral.declaringEnumeration", INTERNAL, &IcoreIPackage::getIEnumeration_LiteralsIProperty},
    {"IEnumeration", 4, "defaultLiteral", "IEnumerationLiteral", 0, 1, false, false, false, false, nullptr, DEFERRED,
     &IcoreIPackage::getIEnumeration_DefaultLiteralIProperty},
    {"IEnumerationLiteral", 2, "declaringEnumeration", "IEnumeration", 1, 1, false, true, false, false,
     "IEnumeration.literals", INTERNAL, &IcoreIPackage::getIEnumerationLiteral_DeclaringEnumerationIProperty},
    {"IEnumerationLiteral", 3, "ordinalValue", "IInteger", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIEnumerationLiteral_OrdinalValueIProperty},
    {"IPackage", 2, "types", "IType", 0, -1, true, false, true, false, "IType.declaringPackage", INTERNAL,
     &IcoreIPackage::getIPackage_TypesIProperty},
    {"IPackage", 3, "version", "IString", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIPackage_VersionIProperty},
    {"IProperty", 3, "declaringClass", "IClass", 1, 1, false, true, false, false, "IClass.declaredProperties", INTERNAL,
     &IcoreIPackage::getIProperty_DeclaringClassIProperty},
    {"IProperty", 4, "defaultValueLiteral", "IString", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_DefaultValueLiteralIProperty},
    {"IProperty", 5, "minOccurs", "IInteger", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_MinOccursIProperty},
    {"IProperty", 6, "maxOccurs", "IInteger", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_MaxOccursIProperty},
    {"IProperty", 7, "oppositeProperty", "IProperty", 0, 1, false, false, false, false, nullptr, DEFERRED,
     &IcoreIPackage::getIProperty_OppositePropertyIProperty},
    {"IProperty", 8, "containment", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_ContainmentIProperty},
    {"IProperty", 9, "container", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_ContainerIProperty},
    {"IProperty", 10, "redefinability", "IRedefinability", 0, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_RedefinabilityIProperty},
    {"IProperty", 11, "redefinedProperty", "IProperty", 0, 1, false, false, false, false, nullptr, DEFERRED,
     &IcoreIPackage::getIProperty_RedefinedPropertyIProperty},
    {"IProperty", 12, "referenceScope", "IReferenceScope", 0, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_ReferenceScopeIProperty},
    {"IProperty", 13, "ordered", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_OrderedIProperty},
    {"IProperty", 14, "unique", "IBoolean", 1, 1, false, false, false, false, nullptr, NONE,
     &IcoreIPackage::getIProperty_UniqueIProperty},
};

struct EnumRow {
  const char* name;
  int typeId;
  std::vector<const char*> literals;  // ordinal = position
  IEnumeration* (IcoreIPackage::*getter)() const;
};

const EnumRow kEnums[] = {
    {"IClassKind", 10, {"FIRST_CLASS", "SECOND_CLASS", "VALUE_CLASS", "ANNOTATION_CLASS", "ANY_CLASS", "UNSET"},
     &IcoreIPackage::getIClassKindIEnumeration},
    {"IRedefinability", 11, {"FINAL_PROPERTY", "ABSTRACT_PROPERTY", "REDEFINABLE_PROPERTY"},
     &IcoreIPackage::getIRedefinabilityIEnumeration},
    {"IReferenceScope", 12, {"INTERNAL", "EXTERNAL", "DEFERRED", "NONE", "UNSET"},
     &IcoreIPackage::getIReferenceScopeIEnumeration},
};

struct PrimitiveRow {
  const char* name;
  IDatatype* const* slot;
};

const PrimitiveRow kPrimitives[] = {
    {"IByte", &ICoreDatatypes::I_BYTE},       {"IBlob", &ICoreDatatypes::I_BLOB},
    {"IBoolean", &ICoreDatatypes::I_BOOLEAN}, {"ICharacter", &ICoreDatatypes::I_CHARACTER},
    {"IDate", &ICoreDatatypes::I_DATE},       {"IDouble", &ICoreDatatypes::I_DOUBLE},
    {"IFloat", &ICoreDatatypes::I_FLOAT},     {"IInteger", &ICoreDatatypes::I_INTEGER},
    {"ILong", &ICoreDatatypes::I_LONG},       {"IShort", &ICoreDatatypes::I_SHORT},
    {"IString", &ICoreDatatypes::I_STRING},   {"IIdentity", &ICoreDatatypes::I_IDENTITY},
};

IClass* coreClass(const char* name) {
  IType* type = core().getType(name);
  if (type == nullptr || !type->isClass()) return nullptr;
  return static_cast<IClass*>(type);
}

std::vector<std::string> namesOf(IVector<IProperty*> const& properties) {
  std::vector<std::string> names;
  for (IProperty const* property : properties) names.push_back(property->getName().toUtf8());
  return names;
}

TEST(CorePackageTest, PackageIsNamedAndRegisteredUnderItsQualifiedName) {
  IcoreIPackage* package = IcoreIPackage::iGetInstance();
  ASSERT_NE(package, nullptr);
  EXPECT_EQ(package, IcoreIPackage::iGetInstance());
  EXPECT_EQ(package->getName(), IUString("icore"));
  EXPECT_EQ(package->getNsPrefix(), IUString("com.veltrana.qvx"));
  EXPECT_EQ(IcoreIPackage::getIName(), IUString("icore"));
  EXPECT_EQ(IcoreIPackage::getIPrefix(), IUString("com.veltrana.qvx"));
  EXPECT_TRUE(package->getComment().isEmpty());
  EXPECT_EQ(package->getQualifiedName(), IUString("com.veltrana.qvx.icore"));
  QVXRuntime* runtime = QVXRuntime::getInstance();
  EXPECT_TRUE(runtime->isPackageRegistered("com.veltrana.qvx.icore"));
  EXPECT_EQ(runtime->getIPackageForName("com.veltrana.qvx.icore"), package);
  EXPECT_EQ(package->getFactory(), IcoreIFactory::iGetInstance());
  EXPECT_EQ(IcoreIFactory::iGetInstance()->getPackage(), package);
}

TEST(CorePackageTest, TypesAreListedInTypeIdOrder) {
  std::vector<std::pair<std::string, int>> expected;
  for (const ClassRow& row : kClasses) expected.emplace_back(row.name, row.typeId);
  for (const EnumRow& row : kEnums) expected.emplace_back(row.name, row.typeId);
  int primitiveId = 1000;
  for (const PrimitiveRow& row : kPrimitives) expected.emplace_back(row.name, primitiveId++);

  std::vector<std::pair<std::string, int>> actual;
  for (IType const* type : core().getTypes()) actual.emplace_back(type->getName().toUtf8(), type->getTypeId());
  EXPECT_EQ(actual, expected);
}

TEST(CorePackageTest, ClassesMatchTheirTable) {
  for (const ClassRow& row : kClasses) {
    SCOPED_TRACE(row.name);
    IClass* metaclass = coreClass(row.name);
    ASSERT_NE(metaclass, nullptr);
    EXPECT_EQ((core().*row.getter)(), metaclass);
    EXPECT_EQ(metaclass->getTypeId(), row.typeId);
    EXPECT_EQ(metaclass->getPackage(), &core());
    EXPECT_EQ(metaclass->getQualifiedName(), IUString("com.veltrana.qvx.icore.") + IUString(row.name));
    if (row.superClass == nullptr) {
      EXPECT_EQ(metaclass->getSuperClass(), nullptr);
    } else {
      EXPECT_EQ(metaclass->getSuperClass(), coreClass(row.superClass));
    }
    EXPECT_EQ(metaclass->isAbstract(), row.isAbstract ? ITRUE : IFALSE);
    EXPECT_EQ(metaclass->isFinal(), row.isFinal ? ITRUE : IFALSE);
    EXPECT_EQ(metaclass->isSeeded(), IFALSE);
    EXPECT_EQ(&metaclass->getClassKind(), row.kind);
    EXPECT_EQ(&metaclass->getReferenceScope(), row.scope);
    EXPECT_TRUE(metaclass->getComment().isEmpty());
  }
}

TEST(CorePackageTest, PropertiesMatchTheirTable) {
  IClass* declaredProperties = core().getIClass_DeclaredPropertiesIProperty()->getDeclaringClass();
  ASSERT_EQ(declaredProperties, core().getIClassIClass());
  for (const ClassRow& classRow : kClasses) {
    SCOPED_TRACE(classRow.name);
    IClass* owner = coreClass(classRow.name);
    ASSERT_NE(owner, nullptr);
    std::vector<const PropertyRow*> expected;
    for (const PropertyRow& row : kProperties) {
      if (IUString(row.owner) == owner->getName()) expected.push_back(&row);
    }
    ASSERT_EQ(owner->getDeclaredProperties().size(), expected.size());
    for (std::size_t position = 0; position < expected.size(); ++position) {
      const PropertyRow& row = *expected[position];
      IProperty* property = owner->getDeclaredProperties()[position];
      SCOPED_TRACE(row.name);
      EXPECT_EQ((core().*row.getter)(), property);
      EXPECT_EQ(property->getName(), IUString(row.name));
      EXPECT_EQ(property->getPropertyId(), row.id);
      ASSERT_NE(property->getType(), nullptr);
      EXPECT_EQ(property->getType()->getName(), IUString(row.type));
      EXPECT_EQ(property->getType(), core().getType(row.type));
      EXPECT_EQ(property->getMinOccurs(), row.minOccurs);
      EXPECT_EQ(property->getMaxOccurs(), row.maxOccurs);
      EXPECT_EQ(property->isContainment(), row.containment ? ITRUE : IFALSE);
      EXPECT_EQ(property->isContainer(), row.container ? ITRUE : IFALSE);
      EXPECT_EQ(property->isOrdered(), row.ordered ? ITRUE : IFALSE);
      EXPECT_EQ(property->isUnique(), row.unique ? ITRUE : IFALSE);
      EXPECT_EQ(&property->getReferenceScope(), row.scope);
      if (row.opposite == nullptr) {
        EXPECT_EQ(property->getOppositeProperty(), nullptr);
      } else {
        // Opposites also link to classes that come later in type-id order
        // (IClass.declaredProperties to IProperty.declaringClass, and so on).
        IProperty const* opposite = property->getOppositeProperty();
        if (opposite == nullptr) {
          ADD_FAILURE() << "no opposite property";
        } else {
          EXPECT_EQ(opposite->getDeclaringClass()->getName() + IUString(".") + opposite->getName(),
                    IUString(row.opposite));
        }
      }
      EXPECT_EQ(&property->getRedefinability(), &IRedefinability::FINAL_PROPERTY);
      EXPECT_EQ(property->getRedefinedProperty(), nullptr);
      EXPECT_FALSE(property->isRedefiningProperty());
      EXPECT_TRUE(property->getDefaultValueLiteral().isEmpty());
      EXPECT_TRUE(property->getComment().isEmpty());
      EXPECT_FALSE(property->isSensitive());
      EXPECT_EQ(property->getDeclaringClass(), owner);
      EXPECT_EQ(property->getQualifiedName(),
                IUString("com.veltrana.qvx.icore.") + owner->getName() + IUString(".") + IUString(row.name));
    }
  }
}

TEST(CorePackageTest, EnumerationsListTheirLiteralsInOrdinalOrder) {
  for (const EnumRow& row : kEnums) {
    SCOPED_TRACE(row.name);
    IType* type = core().getType(row.name);
    ASSERT_NE(type, nullptr);
    ASSERT_TRUE(type->isEnum());
    auto* enumeration = static_cast<IEnumeration*>(type);
    EXPECT_EQ((core().*row.getter)(), enumeration);
    EXPECT_EQ(enumeration->getTypeId(), row.typeId);
    EXPECT_FALSE(enumeration->isClass());
    EXPECT_EQ(enumeration->getPackage(), &core());
    EXPECT_EQ(enumeration->getDefaultLiteral(), nullptr);
    ASSERT_EQ(enumeration->getLiterals().size(), row.literals.size());
    for (std::size_t ordinal = 0; ordinal < row.literals.size(); ++ordinal) {
      IEnumerationLiteral* literal = enumeration->getLiterals()[ordinal];
      EXPECT_EQ(literal->getName(), IUString(row.literals[ordinal]));
      EXPECT_EQ(literal->getOrdinalValue(), static_cast<int>(ordinal));
      EXPECT_EQ(literal->getDeclaringEnumeration(), enumeration);
      EXPECT_EQ(literal->getQualifiedName(), IUString("com.veltrana.qvx.icore.") + IUString(row.name) +
                                                 IUString(".") + IUString(row.literals[ordinal]));
    }
  }
}

TEST(CorePackageTest, TwelvePrimitiveDatatypesWithIdsFrom1000) {
  IVector<IDatatype*> const& all = ICoreDatatypes::getAllPrimitiveDatatypes();
  ASSERT_EQ(all.size(), std::size(kPrimitives));
  for (std::size_t index = 0; index < all.size(); ++index) {
    const PrimitiveRow& row = kPrimitives[index];
    SCOPED_TRACE(row.name);
    IDatatype* datatype = all[index];
    EXPECT_EQ(datatype, *row.slot);
    EXPECT_EQ(datatype->getName(), IUString(row.name));
    EXPECT_EQ(datatype->getTypeId(), 1000 + static_cast<int>(index));
    EXPECT_TRUE(datatype->isPrimitive());
    EXPECT_FALSE(datatype->isEnum());
    EXPECT_FALSE(datatype->isClass());
    EXPECT_EQ(datatype->getPackage(), &core());
    EXPECT_EQ(datatype->getQualifiedName(), IUString("com.veltrana.qvx.icore.") + IUString(row.name));
    EXPECT_EQ(core().getType(row.name), datatype);
  }
}

TEST(CorePackageTest, AllPropertiesOfIPropertyAndIEnumerationInInheritedOrder) {
  const std::vector<std::string> propertyOrder = {
      "name",     "comment",   "type",           "declaringClass",    "defaultValueLiteral",
      "minOccurs", "maxOccurs", "oppositeProperty", "containment",     "container",
      "redefinability", "redefinedProperty", "referenceScope", "ordered", "unique"};
  EXPECT_EQ(namesOf(core().getIPropertyIClass()->getAllProperties(ITRUE)), propertyOrder);
  EXPECT_EQ(namesOf(core().getIPropertyIClass()->getAllProperties(IFALSE)), propertyOrder);
  const std::vector<std::string> enumerationOrder = {"name", "comment", "declaringPackage", "literals",
                                                     "defaultLiteral"};
  EXPECT_EQ(namesOf(core().getIEnumerationIClass()->getAllProperties(ITRUE)), enumerationOrder);
  const std::vector<std::string> classOrder = {"name",  "comment", "declaringPackage", "Abstract", "Final", "seeded",
                                               "declaredProperties", "superClass", "classKind", "referenceScope"};
  EXPECT_EQ(namesOf(core().getIClassIClass()->getAllProperties(ITRUE)), classOrder);
  // Every property id of a class is the position of the property in that list.
  for (const ClassRow& row : kClasses) {
    IVector<IProperty*> const& all = coreClass(row.name)->getAllProperties(ITRUE);
    for (std::size_t position = 0; position < all.size(); ++position) {
      EXPECT_EQ(all[position]->getPropertyId(), static_cast<int>(position)) << row.name;
    }
  }
}

TEST(CorePackageTest, PropertyLookUpIsCaseSensitive) {
  IClass* classMeta = core().getIClassIClass();
  EXPECT_EQ(classMeta->getProperty("Abstract"), core().getIClass_AbstractIProperty());
  EXPECT_EQ(classMeta->getProperty("abstract"), nullptr);
  EXPECT_EQ(classMeta->getProperty("Final"), core().getIClass_FinalIProperty());
  EXPECT_EQ(classMeta->getProperty("final"), nullptr);
  EXPECT_EQ(classMeta->getProperty("name"), core().getIModelElement_NameIProperty());
  EXPECT_EQ(classMeta->getDeclaredProperty("name"), nullptr);
}

TEST(CorePackageTest, LiteralsIsAContainmentButNotACollection) {
  IProperty* literals = core().getIEnumeration_LiteralsIProperty();
  EXPECT_TRUE(literals->isContainment());
  EXPECT_FALSE(literals->isCollection());
  EXPECT_TRUE(literals->isSingleValued());
  EXPECT_TRUE(core().getIClass_DeclaredPropertiesIProperty()->isCollection());
  EXPECT_TRUE(core().getIPackage_TypesIProperty()->isCollection());
  EXPECT_FALSE(core().getIClass_SuperClassIProperty()->isCollection());
}

TEST(CorePackageTest, EveryCoreObjectHasItsMetaclass) {
  IClass* classMeta = core().getIClassIClass();
  EXPECT_EQ(classMeta->iGetIClass(), classMeta);
  EXPECT_EQ(core().iGetIClass(), core().getIPackageIClass());
  for (IType* type : core().getTypes()) {
    SCOPED_TRACE(type->getName().toUtf8());
    EXPECT_EQ(type->iGetContainmentProperty(), core().getIPackage_TypesIProperty());
    EXPECT_EQ(type->iGetContainer(), &core());
    if (type->isClass()) {
      EXPECT_EQ(type->iGetIClass(), classMeta);
      for (IProperty* property : static_cast<IClass*>(type)->getDeclaredProperties()) {
        EXPECT_EQ(property->iGetIClass(), core().getIPropertyIClass());
        EXPECT_EQ(property->iGetContainmentProperty(), core().getIClass_DeclaredPropertiesIProperty());
      }
    } else if (type->isEnum()) {
      EXPECT_EQ(type->iGetIClass(), core().getIEnumerationIClass());
      for (IEnumerationLiteral* literal : static_cast<IEnumeration*>(type)->getLiterals()) {
        EXPECT_EQ(literal->iGetIClass(), core().getIEnumerationLiteralIClass());
        EXPECT_EQ(literal->iGetContainmentProperty(), core().getIEnumeration_LiteralsIProperty());
        EXPECT_EQ(literal->iGetContainer(), type);
      }
    } else {
      EXPECT_EQ(type->iGetIClass(), core().getIDatatypeIClass());
    }
  }
}

TEST(CorePackageTest, FactoryCreatesTheConcreteMetaclassesOnly) {
  IcoreIFactory* factory = IcoreIFactory::iGetInstance();
  for (const ClassRow& row : kClasses) {
    SCOPED_TRACE(row.name);
    IClass* metaclass = coreClass(row.name);
    if (row.isAbstract) {
      EXPECT_EQ(messageOf<IllegalArgumentException>([&] { delete factory->create(*metaclass); }),
                qvxFormatMsg(73004, metaclass->getName()));
      EXPECT_EQ(messageOf<InstantiationException>([&] { delete metaclass->create(); }),
                qvxFormatMsg(73000, metaclass->getName()));
      continue;
    }
    std::unique_ptr<IObject> made(metaclass->create());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(static_cast<internal::IObjectInternal*>(made.get())->iGetIClass(), metaclass);
    EXPECT_FALSE(static_cast<internal::IObjectInternal*>(made.get())->iIsProxy());
  }
}

TEST(CorePackageTest, FactoryRefusesProxiesAndUnknownDatatypes) {
  IcoreIFactory* factory = IcoreIFactory::iGetInstance();
  for (const ClassRow& row : kClasses) {
    IIdentity const* identity = nullptr;
    EXPECT_EQ(messageOf<UnsupportedOperationException>(
                  [&] { delete factory->createProxy(*coreClass(row.name), identity); }),
              qvxGetMsg(73003))
        << row.name;
  }
  IEnumeration* kinds = core().getIClassKindIEnumeration();
  int value = 1;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { delete factory->datatypeToString(*kinds, &value); }),
            qvxFormatMsg(73002, kinds->getQualifiedName()));
}

TEST(CorePackageTest, MetamodelElementsAnswerReflectivelyThroughTheCoreProperties) {
  // Every core class can be read through its own metaclass's properties.
  for (const ClassRow& row : kClasses) {
    IClass* metaclass = coreClass(row.name);
    IObjectInfo& info = metaclass->iGetIObjectInfo();
    EXPECT_EQ(*static_cast<IUString const*>(info.get(*core().getIModelElement_NameIProperty(), IFALSE)),
              IUString(row.name));
    EXPECT_EQ(*static_cast<IBOOLEAN const*>(info.get(*core().getIClass_AbstractIProperty(), IFALSE)),
              row.isAbstract ? ITRUE : IFALSE);
    EXPECT_EQ(info.get(*core().getIType_DeclaringPackageIProperty(), IFALSE), static_cast<IObject const*>(&core()));
    EXPECT_EQ(info.get(*core().getIClass_ClassKindIProperty(), IFALSE), row.kind);
    EXPECT_EQ(info.get(*core().getIClass_DeclaredPropertiesIProperty(), IFALSE), &metaclass->getDeclaredProperties());
    EXPECT_EQ(info.getCardinality(*core().getIClass_DeclaredPropertiesIProperty()),
              static_cast<int>(metaclass->getDeclaredProperties().size()));
  }
}

// Answers hasItems, or reports the refusal as a failure and answers -1.
int hasItemsOf(internal::IObjectInternal* object, IProperty const& property) {
  try {
    return object->iGetIObjectInfo().hasItems(property);
  } catch (IllegalArgumentException& e) {
    ADD_FAILURE() << "hasItems refused: " << e.getMessage().toUtf8();
    return -1;
  }
}

TEST(CorePackageTest, MultiValuedMetamodelPropertiesAnswerHasItems) {
  // The metamodel classes answer for their own multi-valued properties; everything
  // else is refused with 73005, as IModelElement does.
  IProperty* declared = core().getIClass_DeclaredPropertiesIProperty();
  EXPECT_EQ(hasItemsOf(core().getIClassIClass(), *declared), ITRUE);
  EXPECT_EQ(hasItemsOf(core().getIObjectIClass(), *declared), IFALSE);
  EXPECT_EQ(hasItemsOf(&core(), *core().getIPackage_TypesIProperty()), ITRUE);
  EXPECT_EQ(messageOf<IllegalArgumentException>(
                [] { core().iGetIObjectInfo().hasItems(*core().getIPackage_VersionIProperty()); }),
            qvxFormatMsg(73005, "version", "icore"));
}

}  // namespace
