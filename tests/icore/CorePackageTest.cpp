// The core package against its tables, written out once here: every class, property,
// enumeration and primitive data type of "com.veltrana.qvx.icore" (read through the
// core properties themselves), the inherited property orders, and the core factory's
// refusals.
#include "icore/IcoreIPackage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IcoreIFactory.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/internal/PackageTables.h"
#include "tests/support/MetamodelText.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using qvx_test::describe;
using qvx_test::messageOf;

IcoreIPackage& core() { return *IcoreIPackage::iGetInstance(); }

// Types in type-id order: the classes 0-9, the enumerations 10-12 with their literals,
// the primitive data types 1000-1011.
const std::vector<std::string> kClasses = {
    "IClass : IType SECOND_CLASS EXTERNAL",
    "IDatatype : IType SECOND_CLASS EXTERNAL final",
    "IEnumeration : IDatatype SECOND_CLASS EXTERNAL",
    "IEnumerationLiteral : IModelElement SECOND_CLASS EXTERNAL",
    "IModelElement : - ANY_CLASS DEFERRED abstract final",
    "IObject : - ANY_CLASS DEFERRED abstract final",
    "IPackage : IModelElement FIRST_CLASS EXTERNAL",
    "IProperty : ITypedElement SECOND_CLASS EXTERNAL",
    "IType : IModelElement SECOND_CLASS EXTERNAL abstract final",
    "ITypedElement : IModelElement ANY_CLASS DEFERRED abstract final"};
const std::vector<std::string> kEnums = {
    "IClassKind FIRST_CLASS SECOND_CLASS VALUE_CLASS ANNOTATION_CLASS ANY_CLASS UNSET",
    "IRedefinability FINAL_PROPERTY ABSTRACT_PROPERTY REDEFINABLE_PROPERTY",
    "IReferenceScope INTERNAL EXTERNAL DEFERRED NONE UNSET"};
const std::vector<std::string> kPrimitives = {"IByte",  "IBlob",    "IBoolean", "ICharacter", "IDate",   "IDouble",
                                              "IFloat", "IInteger", "ILong",    "IShort",     "IString", "IIdentity"};

// The declared properties, by class in type-id order, each class's in id order.
const std::vector<std::string> kProperties = {
    "IClass.Abstract#3 IBoolean[1..1] - NONE",
    "IClass.Final#4 IBoolean[1..1] - NONE",
    "IClass.seeded#5 IBoolean[1..1] - NONE",
    "IClass.declaredProperties#6 IProperty[0..-1] CO INTERNAL <-> IProperty.declaringClass",
    "IClass.superClass#7 IClass[0..1] - DEFERRED",
    "IClass.classKind#8 IClassKind[0..1] - NONE",
    "IClass.referenceScope#9 IReferenceScope[0..1] - NONE",
    "IEnumeration.literals#3 IEnumerationLiteral[1..1] CO INTERNAL <-> IEnumerationLiteral.declaringEnumeration",
    "IEnumeration.defaultLiteral#4 IEnumerationLiteral[0..1] - DEFERRED",
    "IEnumerationLiteral.declaringEnumeration#2 IEnumeration[1..1] K INTERNAL <-> IEnumeration.literals",
    "IEnumerationLiteral.ordinalValue#3 IInteger[1..1] - NONE",
    "IModelElement.name#0 IString[1..1] - NONE",
    "IModelElement.comment#1 IString[1..1] - NONE",
    "IPackage.types#2 IType[0..-1] CO INTERNAL <-> IType.declaringPackage",
    "IPackage.version#3 IString[1..1] - NONE",
    "IProperty.declaringClass#3 IClass[1..1] K INTERNAL <-> IClass.declaredProperties",
    "IProperty.defaultValueLiteral#4 IString[1..1] - NONE",
    "IProperty.minOccurs#5 IInteger[1..1] - NONE",
    "IProperty.maxOccurs#6 IInteger[1..1] - NONE",
    "IProperty.oppositeProperty#7 IProperty[0..1] - DEFERRED",
    "IProperty.containment#8 IBoolean[1..1] - NONE",
    "IProperty.container#9 IBoolean[1..1] - NONE",
    "IProperty.redefinability#10 IRedefinability[0..1] - NONE",
    "IProperty.redefinedProperty#11 IProperty[0..1] - DEFERRED",
    "IProperty.referenceScope#12 IReferenceScope[0..1] - NONE",
    "IProperty.ordered#13 IBoolean[1..1] - NONE",
    "IProperty.unique#14 IBoolean[1..1] - NONE",
    "IType.declaringPackage#2 IPackage[1..1] K INTERNAL <-> IPackage.types",
    "ITypedElement.type#2 IType[1..1] - DEFERRED"};

TEST(CorePackageTest, IsRegisteredUnderItsQualifiedNameWithItsFactory) {
  EXPECT_EQ(core().getQualifiedName(), IUString("com.veltrana.qvx.icore"));
  EXPECT_EQ(QVXRuntime::getInstance()->getIPackageForName("com.veltrana.qvx.icore"), &core());
  EXPECT_EQ(core().getFactory(), IcoreIFactory::iGetInstance());
  EXPECT_EQ(IcoreIFactory::iGetInstance()->getPackage(), &core());
}

TEST(CorePackageTest, TypesClassesPropertiesAndEnumerationsMatchTheTables) {
  std::vector<std::string> classes, properties, enums, primitives;
  std::string ids;
  for (IType* type : core().getTypes()) {
    ids += std::to_string(type->getTypeId()) + " ";
    if (type->isClass()) {
      auto* metaclass = static_cast<IClass*>(type);
      classes.push_back(describe(*metaclass));
      for (IProperty* property : metaclass->getDeclaredProperties()) properties.push_back(describe(*property));
      // Every property id is the property's position among all the class's properties.
      IVector<IProperty*> const& all = metaclass->getAllProperties(ITRUE);
      for (std::size_t id = 0; id < all.size(); ++id) EXPECT_EQ(all[id]->getPropertyId(), static_cast<int>(id));
    } else if (type->isEnum()) {
      IVector<IEnumerationLiteral*> const& literals = static_cast<IEnumeration*>(type)->getLiterals();
      std::string text = type->getName().toUtf8();
      for (std::size_t ordinal = 0; ordinal < literals.size(); ++ordinal) {
        EXPECT_EQ(literals[ordinal]->getOrdinalValue(), static_cast<int>(ordinal));
        text += " " + literals[ordinal]->getName().toUtf8();
      }
      enums.push_back(text);
    } else {
      primitives.push_back(type->getName().toUtf8());
    }
  }
  EXPECT_THAT(classes, testing::ElementsAreArray(kClasses));
  EXPECT_THAT(properties, testing::ElementsAreArray(kProperties));
  EXPECT_THAT(enums, testing::ElementsAreArray(kEnums));
  EXPECT_EQ(primitives, kPrimitives);
  EXPECT_EQ(ids, "0 1 2 3 4 5 6 7 8 9 10 11 12 1000 1001 1002 1003 1004 1005 1006 1007 1008 1009 1010 1011 ");
}

TEST(CorePackageTest, AllPropertiesOfIPropertyAndIEnumerationInInheritedOrder) {
  auto names = [](IClass* metaclass) {
    std::string list;
    for (IProperty const* property : metaclass->getAllProperties(IFALSE)) list += property->getName().toUtf8() + " ";
    return list;
  };
  EXPECT_EQ(names(core().getIPropertyIClass()),
            "name comment type declaringClass defaultValueLiteral minOccurs maxOccurs oppositeProperty containment "
            "container redefinability redefinedProperty referenceScope ordered unique ");
  EXPECT_EQ(names(core().getIEnumerationIClass()), "name comment declaringPackage literals defaultLiteral ");
  // "literals" is a containment with an upper bound of one, so not a collection.
  EXPECT_FALSE(core().getIEnumeration_LiteralsIProperty()->isCollection());
}

TEST(CorePackageTest, FactoryMakesConcreteMetaclassesAndRefusesTheRest) {
  IcoreIFactory* factory = IcoreIFactory::iGetInstance();
  for (std::size_t typeId = 0; typeId < kClasses.size(); ++typeId) {
    auto* metaclass = static_cast<IClass*>(core().getTypes()[typeId]);
    IIdentity const* identity = nullptr;
    EXPECT_EQ(messageOf<exception::UnsupportedOperationException>([&] { delete factory->createProxy(*metaclass, identity); }),
              qvxGetMsg(73003));
    if (metaclass->isAbstract()) {
      EXPECT_EQ(messageOf<exception::IllegalArgumentException>([&] { delete factory->create(*metaclass); }),
                qvxFormatMsg(73004, metaclass->getName()));
      continue;
    }
    std::unique_ptr<IObject> made(factory->create(*metaclass));
    EXPECT_EQ(static_cast<internal::IObjectInternal*>(made.get())->iGetIClass(), metaclass);
  }
  int value = 1;
  IEnumeration* kinds = core().getIClassKindIEnumeration();
  EXPECT_EQ(messageOf<exception::IllegalArgumentException>([&] { delete factory->datatypeToString(*kinds, &value); }),
            qvxFormatMsg(73002, kinds->getQualifiedName()));
}

// A build that throws must not leave the holder answering null for ever after: the
// "being built" state is the thread's own and ends with the failed build.
TEST(CorePackageTest, PackageInstanceBuildsAgainAfterAFailedBuild) {
  struct Package {};
  internal::PackageInstance<Package> holder;
  EXPECT_THROW(holder.get([]() -> Package* { throw std::runtime_error("build failed"); }), std::runtime_error);
  static Package built;
  EXPECT_EQ(holder.get([] { return &built; }), &built);
}

}  // namespace
