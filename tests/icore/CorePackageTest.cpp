// The core package against its tables, written out once here: every class, property,
// enumeration and primitive data type of "com.veltrana.qvx.icore" (read through the
// core properties themselves), the inherited property orders, and the core factory's
// refusals.
#include "icore/IcoreIPackage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "icore/ICoreDatatypes.h"
#include "icore/IClassKind.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IcoreIFactory.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/internal/PackageTables.h"
#include "tests/support/MetamodelText.h"
#include "tests/support/TestPackageLoader.h"
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

TEST(CorePackageTest, IsRegisteredWithItsFactoryAndItsTypesMatchTheTables) {
  EXPECT_EQ(core().getQualifiedName(), IUString("com.veltrana.qvx.icore"));
  EXPECT_EQ(QVXRuntime::getInstance()->getIPackageForName("com.veltrana.qvx.icore"), &core());
  EXPECT_EQ(core().getFactory(), IcoreIFactory::iGetInstance());
  EXPECT_EQ(IcoreIFactory::iGetInstance()->getPackage(), &core());
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
  // The enumerations of other packages are their own factories' business.
  auto* lineStyle = static_cast<IEnumeration*>(shapes_test::loadShapesPackage()->getType("LineStyle"));
  ASSERT_NE(lineStyle, nullptr);
  void const* solid = lineStyle->getLiterals()[0];
  EXPECT_EQ(messageOf<exception::IllegalArgumentException>([&] { delete factory->datatypeToString(*lineStyle, solid); }),
            qvxFormatMsg(73002, lineStyle->getQualifiedName()));
  EXPECT_EQ(messageOf<exception::IllegalArgumentException>([&] { factory->datatypeFromString(*lineStyle, "SOLID"); }),
            qvxFormatMsg(73002, lineStyle->getQualifiedName()));
}

// Every metamodel object of the core package: the package, its types, the classes'
// properties and the enumerations' literals.
std::vector<IModelElement*> coreElements() {
  std::vector<IModelElement*> elements{&core()};
  for (IType* type : core().getTypes()) {
    elements.push_back(type);
    if (type->isClass()) {
      for (IProperty* property : static_cast<IClass*>(type)->getDeclaredProperties()) elements.push_back(property);
    } else if (type->isEnum()) {
      for (IEnumerationLiteral* literal : static_cast<IEnumeration*>(type)->getLiterals()) elements.push_back(literal);
    }
  }
  return elements;
}

// The name of the constant that the typed getter gives for an enumeration-valued
// property of a metamodel object.
std::string typedValueName(IModelElement const& element, IProperty const& property) {
  if (&property == core().getIClass_ClassKindIProperty()) {
    return static_cast<IClass const&>(element).getClassKind().getName().toUtf8();
  }
  if (&property == core().getIClass_ReferenceScopeIProperty()) {
    return static_cast<IClass const&>(element).getReferenceScope().getName().toUtf8();
  }
  if (&property == core().getIProperty_RedefinabilityIProperty()) {
    return static_cast<IProperty const&>(element).getRedefinability().getName().toUtf8();
  }
  if (&property == core().getIProperty_ReferenceScopeIProperty()) {
    return static_cast<IProperty const&>(element).getReferenceScope().getName().toUtf8();
  }
  return "(no typed getter for " + property.getName().toUtf8() + ")";
}

// Both serializers write an enumeration value as its literal's text through the
// factory of the enumeration's package and read it back the same way, so the core
// package's own objects must survive that like any others: walked reflectively, every
// enumeration-valued property reads as a literal of its core enumeration, whose text
// names the constant the typed getter gives, reads back as that literal and sets.
TEST(CorePackageTest, EnumerationValuesOfMetamodelObjectsConvertToTextAndBack) {
  IFactory* factory = core().getFactory();
  std::map<std::string, int> conversions;  // by property
  for (IModelElement* element : coreElements()) {
    IObjectInfo& info = element->iGetIObjectInfo();
    for (IProperty* property : info.getIClass()->getAllProperties(ITRUE)) {
      if (!property->isEnum()) continue;
      const std::string where = element->getQualifiedName().toUtf8() + " " + property->getName().toUtf8();
      auto const& enumeration = static_cast<IEnumeration const&>(*property->getType());
      ASSERT_EQ(enumeration.getPackage(), &core()) << where;
      void const* value = info.get(*property, IFALSE);
      IVector<IEnumerationLiteral*> const& literals = enumeration.getLiterals();
      ASSERT_NE(std::find(literals.begin(), literals.end(), value), literals.end()) << where << ": not a literal";

      std::unique_ptr<IUString> text(factory->datatypeToString(enumeration, value));
      ASSERT_NE(text, nullptr) << where;
      EXPECT_EQ(text->toUtf8(), typedValueName(*element, *property)) << where;
      void* back = factory->datatypeFromString(enumeration, *text);
      EXPECT_EQ(back, value) << where;
      info.set(*property, back, 0, IFALSE);
      EXPECT_EQ(info.get(*property, IFALSE), value) << where;
      EXPECT_EQ(text->toUtf8(), typedValueName(*element, *property)) << where << ": changed by the set";
      ++conversions[property->getDeclaringClass()->getName().toUtf8() + "." + property->getName().toUtf8()];
    }
  }
  const std::size_t classCount = 10;
  std::size_t propertyCount = 0;
  for (IType* type : core().getTypes()) {
    if (type->isClass()) propertyCount += static_cast<IClass*>(type)->getDeclaredProperties().size();
  }
  EXPECT_EQ(conversions, (std::map<std::string, int>{{"IClass.classKind", static_cast<int>(classCount)},
                                                      {"IClass.referenceScope", static_cast<int>(classCount)},
                                                      {"IProperty.redefinability", static_cast<int>(propertyCount)},
                                                      {"IProperty.referenceScope", static_cast<int>(propertyCount)}}));
  EXPECT_EQ(factory->datatypeFromString(*core().getIClassKindIEnumeration(), "first_class"), nullptr);
}

// A literal of another enumeration, or none, is no value for an enumeration-valued
// metamodel property; the value stays what it was.
TEST(CorePackageTest, EnumerationPropertiesOfMetamodelObjectsRefuseForeignLiterals) {
  std::unique_ptr<IObject> made(IcoreIFactory::iGetInstance()->create(*core().getIClassIClass()));
  auto& madeClass = static_cast<IClass&>(*made);
  IProperty const& kind = *core().getIClass_ClassKindIProperty();
  void* scopeLiteral = core().getIReferenceScopeIEnumeration()->getLiterals()[IReferenceScope::nEXTERNAL];
  void* kindLiteral = core().getIClassKindIEnumeration()->getLiterals()[IClassKind::nVALUE_CLASS];
  madeClass.iGetIObjectInfo().set(kind, kindLiteral, 0, IFALSE);
  EXPECT_EQ(&madeClass.getClassKind(), &IClassKind::VALUE_CLASS);
  for (void* wrong : {scopeLiteral, static_cast<void*>(nullptr)}) {
    EXPECT_EQ(messageOf<exception::IllegalArgumentException>([&] { madeClass.iGetIObjectInfo().set(kind, wrong, 0, IFALSE); }),
              qvxFormatMsg(73006, kind.getName(), madeClass.getName()));
    EXPECT_EQ(&madeClass.getClassKind(), &IClassKind::VALUE_CLASS);
  }
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

// A build that fails after its package registered must take the package out of the
// runtime as it deletes it: else the runtime keeps a dangling package, and the next
// build finds the name taken for ever.
TEST(CorePackageTest, PackageWhoseBuildFailsAfterRegisteringIsWithdrawnAndBuildsAgain) {
  QVXRuntime* theRuntime = QVXRuntime::getInstance();
  core();  // registered by the first package made, so before the count
  const std::size_t listedBefore = theRuntime->getAllIPackages().size();
  internal::PackageInstance<IPackage> holder;
  bool contentsFail = true;
  auto build = [&contentsFail, theRuntime]() -> IPackage* {
    internal::PackageUnderConstruction<IPackage> package(new IPackage());
    package->setName("flaky");
    package->setNsPrefix("com.example.test");
    theRuntime->registerPackage(package.get());
    if (contentsFail) throw std::runtime_error("contents failed");
    return package.release();
  };
  EXPECT_THROW(holder.get(build), std::runtime_error);
  EXPECT_EQ(theRuntime->isPackageRegistered("com.example.test.flaky"), IFALSE);
  EXPECT_EQ(theRuntime->getAllIPackages().size(), listedBefore);
  contentsFail = false;
  IPackage* built = holder.get(build);
  EXPECT_EQ(theRuntime->getIPackageForName("com.example.test.flaky"), built);
  delete built;  // the holder is this test's, so the package is too
  EXPECT_EQ(theRuntime->isPackageRegistered("com.example.test.flaky"), IFALSE);
}

}  // namespace
