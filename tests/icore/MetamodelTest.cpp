// Classes, properties, packages, data types and the value enumerations of the metamodel,
// on small packages built in the tests: inheritance and redefinition, the caches that
// are never invalidated, multiplicity rules, qualified names and reflective access.
#include "icore/IClass.h"

#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IFactory.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "tests/icore/TestModel.h"
#include "tests/support/AssertionCatcher.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using exception::IllegalArgumentException;
using exception::InstantiationException;
using testmodel::messageOf;
using testmodel::TestPackage;

IcoreIPackage& core() { return *IcoreIPackage::iGetInstance(); }

// Builds classes and properties the way generated package code does.
class Builder {
 public:
  explicit Builder(const char* name = "shapes", const char* prefix = "org.sample") {
    package.setName(name);
    package.setNsPrefix(prefix);
  }

  IClass* addClass(const char* name, IClass* superClass = nullptr) {
    IClass* made = package.createIClass(nextTypeId_++);
    made->setSuperClass(superClass);
    package.initIClass(made, name, IFALSE, IClassKind::FIRST_CLASS, IReferenceScope::EXTERNAL, IFALSE, IFALSE, "");
    return made;
  }

  // Ids continue the numbering inherited from the super classes.
  IProperty* addProperty(IClass* owner, const char* name, int maxOccurs = 1, const char* redefines = "") {
    int id = 0;
    for (IClass const* ancestor = owner; ancestor != nullptr; ancestor = ancestor->getSuperClass()) {
      id += static_cast<int>(ancestor->getDeclaredProperties().size());
    }
    IProperty* made = package.createIProperty(owner, id);
    package.initIProperty(made, ICoreDatatypes::I_STRING, name, "", 0, maxOccurs, nullptr, IFALSE, IFALSE, IFALSE,
                          IFALSE, IFALSE, IFALSE, redefines, IRedefinability::REDEFINABLE_PROPERTY,
                          IReferenceScope::NONE, "", IFALSE);
    return made;
  }

  TestPackage package;

 private:
  int nextTypeId_ = 0;
};

std::vector<IProperty*> listOf(IVector<IProperty*> const& properties) {
  return std::vector<IProperty*>(properties.begin(), properties.end());
}

// ---------------------------------------------------------------------------------
// Classes: super types, all properties, redefinitions

TEST(IClassTest, RootClassListsItsDeclaredPropertiesAndIsOnlyItsOwnType) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* other = b.addClass("Other");
  IProperty* area = b.addProperty(shape, "area");
  IProperty* name = b.addProperty(shape, "label");
  EXPECT_EQ(listOf(shape->getAllProperties(ITRUE)), (std::vector<IProperty*>{area, name}));
  EXPECT_EQ(listOf(shape->getAllProperties(IFALSE)), (std::vector<IProperty*>{area, name}));
  EXPECT_TRUE(shape->isTypeOf(*shape));
  EXPECT_FALSE(shape->isTypeOf(*other));
  EXPECT_FALSE(other->isTypeOf(*shape));
}

TEST(IClassTest, InheritedPropertiesComeRootFirstAndTypeTestsFollowTheChain) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* polygon = b.addClass("Polygon", shape);
  IClass* square = b.addClass("Square", polygon);
  IProperty* a = b.addProperty(shape, "a");
  IProperty* bb = b.addProperty(shape, "b");
  IProperty* c = b.addProperty(polygon, "c");
  IProperty* d = b.addProperty(square, "d");
  EXPECT_EQ(listOf(square->getAllProperties(ITRUE)), (std::vector<IProperty*>{a, bb, c, d}));
  EXPECT_EQ(listOf(polygon->getAllProperties(ITRUE)), (std::vector<IProperty*>{a, bb, c}));
  EXPECT_EQ(d->getPropertyId(), 3);
  EXPECT_TRUE(square->isTypeOf(*shape));
  EXPECT_TRUE(square->isTypeOf(*polygon));
  EXPECT_TRUE(square->isTypeOf(*square));
  EXPECT_FALSE(shape->isTypeOf(*square));
  EXPECT_FALSE(polygon->isTypeOf(*square));
  EXPECT_EQ(square->getProperty("a"), a);
  EXPECT_EQ(square->getDeclaredProperty("a"), nullptr);
  EXPECT_EQ(square->getProperty("missing"), nullptr);
  EXPECT_TRUE(square->hasProperty(*a));
  EXPECT_FALSE(shape->hasProperty(*d));
}

TEST(IClassTest, RedefinedPropertiesArePrunedOnlyWithoutTheFlag) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* polygon = b.addClass("Polygon", shape);
  IProperty* x = b.addProperty(shape, "x");
  IProperty* a = b.addProperty(shape, "a");
  IProperty* xAgain = b.addProperty(polygon, "x", 1, "x");
  IProperty* c = b.addProperty(polygon, "c");
  EXPECT_EQ(listOf(polygon->getAllProperties(ITRUE)), (std::vector<IProperty*>{x, a, xAgain, c}));
  EXPECT_EQ(listOf(polygon->getAllProperties(IFALSE)), (std::vector<IProperty*>{a, xAgain, c}));
  // The shared name finds the property nearest the root; the declared look-up the own one.
  EXPECT_EQ(polygon->getProperty("x"), x);
  EXPECT_EQ(polygon->getDeclaredProperty("x"), xAgain);
  EXPECT_EQ(xAgain->getRedefinedProperty(), x);
  EXPECT_EQ(xAgain->getRootProperty(), x);
  EXPECT_TRUE(xAgain->isRedefiningProperty());
  EXPECT_EQ(x->getRootProperty(), x);
  EXPECT_FALSE(x->isRedefiningProperty());
}

TEST(IClassTest, RedefinitionByAnotherNameResolvesAcrossTwoLevels) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* polygon = b.addClass("Polygon", shape);
  IClass* square = b.addClass("Square", polygon);
  IProperty* size = b.addProperty(shape, "size", -1);
  IProperty* sides = b.addProperty(polygon, "sides", 4, "size");
  IProperty* edge = b.addProperty(square, "edge", 1, "sides");
  EXPECT_EQ(edge->getRedefinedProperty(), sides);
  EXPECT_EQ(edge->getRootProperty(), size);
  EXPECT_EQ(listOf(square->getAllProperties(IFALSE)), (std::vector<IProperty*>{edge}));
  EXPECT_EQ(listOf(square->getAllProperties(ITRUE)), (std::vector<IProperty*>{size, sides, edge}));
  // A redefinition of an unbounded property stays a collection whatever it narrows to.
  EXPECT_TRUE(edge->isCollection());
  EXPECT_TRUE(sides->isCollection());
}

TEST(IClassTest, CachedAnswersAreNeverInvalidated) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* polygon = b.addClass("Polygon", shape);
  IClass* elsewhere = b.addClass("Elsewhere");
  IProperty* a = b.addProperty(polygon, "a");
  IVector<IProperty*> const& first = polygon->getAllProperties(ITRUE);
  ASSERT_EQ(polygon->getAllProperties(IFALSE).size(), 1u);
  ASSERT_TRUE(polygon->isTypeOf(*shape));
  const IUString qualified = polygon->getQualifiedName();

  IProperty* late = b.addProperty(polygon, "late");
  b.addProperty(shape, "inheritedLate");
  polygon->setSuperClass(elsewhere);
  polygon->setName("Renamed");

  EXPECT_EQ(&polygon->getAllProperties(ITRUE), &first);
  EXPECT_EQ(listOf(polygon->getAllProperties(ITRUE)), (std::vector<IProperty*>{a}));
  EXPECT_EQ(listOf(polygon->getAllProperties(IFALSE)), (std::vector<IProperty*>{a}));
  EXPECT_EQ(polygon->getProperty("late"), nullptr);
  EXPECT_EQ(polygon->getDeclaredProperty("late"), late);
  EXPECT_TRUE(polygon->isTypeOf(*shape));
  EXPECT_FALSE(polygon->isTypeOf(*elsewhere));
  EXPECT_EQ(polygon->getQualifiedName(), qualified);
  EXPECT_EQ(qualified, IUString("org.sample.shapes.Polygon"));
}

TEST(IClassTest, NewClassDefaultsAndReferability) {
  Builder b;
  IClass* fresh = b.package.createIClass(7);
  EXPECT_EQ(fresh->getTypeId(), 7);
  EXPECT_EQ(fresh->iGetIClass(), core().getIClassIClass());
  EXPECT_EQ(&fresh->getClassKind(), &IClassKind::UNSET);
  EXPECT_EQ(&fresh->getReferenceScope(), &IReferenceScope::UNSET);
  EXPECT_FALSE(fresh->isAbstract());
  EXPECT_FALSE(fresh->isFinal());
  EXPECT_FALSE(fresh->isSeeded());
  EXPECT_EQ(fresh->getSuperClass(), nullptr);
  EXPECT_TRUE(fresh->isClass());
  EXPECT_FALSE(fresh->isEnum());
  EXPECT_FALSE(fresh->isPrimitive());
  EXPECT_FALSE(fresh->isIdentifiableClass());
  EXPECT_FALSE(fresh->isInternallyReferable());

  fresh->setReferenceScope(IReferenceScope::INTERNAL);
  fresh->setClassKind(IClassKind::FIRST_CLASS);
  EXPECT_TRUE(fresh->isInternallyReferable());
  EXPECT_FALSE(fresh->isIdentifiableClass());
  EXPECT_TRUE(fresh->isFirstClass());
  EXPECT_FALSE(fresh->isSecondClass());

  fresh->setReferenceScope(IReferenceScope::EXTERNAL);
  fresh->setClassKind(IClassKind::VALUE_CLASS);
  EXPECT_TRUE(fresh->isInternallyReferable());
  EXPECT_TRUE(fresh->isIdentifiableClass());
  EXPECT_TRUE(fresh->isValueClass());

  fresh->setReferenceScope(IReferenceScope::DEFERRED);
  fresh->setClassKind(IClassKind::SECOND_CLASS);
  EXPECT_FALSE(fresh->isInternallyReferable());
  EXPECT_TRUE(fresh->isSecondClass());
}

TEST(IClassTest, CreateGoesThroughThePackageFactory) {
  testmodel::TestModel& model = testmodel::TestModel::get();
  std::unique_ptr<IObject> made(model.node->create());
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(static_cast<internal::IObjectInternal*>(made.get())->iGetIClass(), model.node);

  Builder b;
  IClass* abstractClass = b.addClass("Abstraction");
  abstractClass->setAbstract(ITRUE);
  EXPECT_EQ(messageOf<InstantiationException>([&] { delete abstractClass->create(); }),
            qvxFormatMsg(73000, "Abstraction"));
}

TEST(IClassTest, CreateWithoutPackageOrFactoryIsAnAssertionFailure) {
  AssertionCatcher catcher;
  Builder b;
  IClass* homeless = b.package.createIClass(0);
  homeless->setName("Homeless");
  IIdentity const* identity = nullptr;
  EXPECT_THROW(homeless->create(), AssertionFailure);
  EXPECT_THROW(homeless->createProxy(identity), AssertionFailure);
  IClass* noFactory = b.addClass("NoFactory");
  EXPECT_THROW(noFactory->create(), AssertionFailure);
}

// ---------------------------------------------------------------------------------
// Properties

TEST(IPropertyTest, NewPropertyDefaults) {
  IProperty property;
  EXPECT_EQ(property.getMinOccurs(), INT_MIN);
  EXPECT_EQ(property.getMaxOccurs(), INT_MIN);
  EXPECT_FALSE(property.isCollection());
  EXPECT_TRUE(property.isSingleValued());
  EXPECT_EQ(property.getPropertyId(), -1);
  EXPECT_EQ(&property.getRedefinability(), &IRedefinability::FINAL_PROPERTY);
  EXPECT_EQ(&property.getReferenceScope(), &IReferenceScope::UNSET);
  EXPECT_EQ(property.getType(), nullptr);
  EXPECT_EQ(property.getOppositeProperty(), nullptr);
  EXPECT_EQ(property.getRedefinedProperty(), nullptr);
  EXPECT_EQ(property.getRootProperty(), &property);
  EXPECT_FALSE(property.isContainment() || property.isContainer() || property.isOrdered() || property.isUnique() ||
               property.isSensitive() || property.getXMLPropertyAsElement());
  EXPECT_EQ(property.iGetIClass(), core().getIPropertyIClass());
  EXPECT_EQ(property.iGetContainmentProperty(), core().getIClass_DeclaredPropertiesIProperty());
}

TEST(IPropertyTest, CollectionFollowsTheRootsBoundThenItsOwn) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* polygon = b.addClass("Polygon", shape);
  struct Case {
    int maxOccurs;
    bool collection;
  };
  const Case cases[] = {{-1, true}, {0, false}, {1, false}, {2, true}, {INT_MIN, false}};
  for (const Case& c : cases) {
    IProperty* property = b.addProperty(shape, "p", c.maxOccurs);
    EXPECT_EQ(property->isCollection(), c.collection ? ITRUE : IFALSE) << c.maxOccurs;
    EXPECT_EQ(property->isSingleValued(), c.collection ? IFALSE : ITRUE) << c.maxOccurs;
  }
  IProperty* bounded = b.addProperty(shape, "bounded", 1);
  IProperty* unbounded = b.addProperty(shape, "unbounded", -1);
  IProperty* narrowed = b.addProperty(polygon, "narrowed", 1, "unbounded");
  IProperty* widened = b.addProperty(polygon, "widened", 3, "bounded");
  IProperty* kept = b.addProperty(polygon, "kept", 1, "bounded");
  EXPECT_EQ(narrowed->getRootProperty(), unbounded);
  EXPECT_TRUE(narrowed->isCollection());
  EXPECT_TRUE(widened->isCollection());
  EXPECT_FALSE(kept->isCollection());
  EXPECT_EQ(kept->getRootProperty(), bounded);
}

TEST(IPropertyTest, UnresolvableRedefinitionIsNullButStillRedefining) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IClass* polygon = b.addClass("Polygon", shape);
  IProperty* dangling = b.addProperty(polygon, "dangling", 1, "nothingOfThatName");
  EXPECT_EQ(dangling->getRedefinedProperty(), nullptr);
  EXPECT_TRUE(dangling->isRedefiningProperty());
  EXPECT_EQ(dangling->getRootProperty(), dangling);
  // A redefinition in a root class has no super class to look in.
  IProperty* rootRedefinition = b.addProperty(shape, "top", 1, "anything");
  EXPECT_EQ(rootRedefinition->getRedefinedProperty(), nullptr);
  IProperty loose;
  loose.setRedefinedPropertyName("x");
  EXPECT_EQ(loose.getRedefinedProperty(), nullptr);
}

TEST(IPropertyTest, InitWithNullOppositeKeepsTheExistingOne) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IProperty* first = b.addProperty(shape, "first");
  IProperty* second = b.addProperty(shape, "second");
  first->setOppositeProperty(second);
  b.package.initIProperty(first, ICoreDatatypes::I_INTEGER, "first", "7", 2, 5, nullptr, ITRUE, ITRUE, IFALSE, ITRUE,
                          ITRUE, IFALSE, "", IRedefinability::ABSTRACT_PROPERTY, IReferenceScope::DEFERRED, "note",
                          ITRUE);
  EXPECT_EQ(first->getOppositeProperty(), second);
  EXPECT_EQ(first->getType(), ICoreDatatypes::I_INTEGER);
  EXPECT_EQ(first->getDefaultValueLiteral(), IUString("7"));
  EXPECT_EQ(first->getMinOccurs(), 2);
  EXPECT_EQ(first->getMaxOccurs(), 5);
  // The six flags: ignored, containment, container, ignored, unique, ordered.
  EXPECT_TRUE(first->isContainment());
  EXPECT_FALSE(first->isContainer());
  EXPECT_TRUE(first->isUnique());
  EXPECT_FALSE(first->isOrdered());
  EXPECT_EQ(&first->getRedefinability(), &IRedefinability::ABSTRACT_PROPERTY);
  EXPECT_EQ(&first->getReferenceScope(), &IReferenceScope::DEFERRED);
  EXPECT_EQ(first->getComment(), IUString("note"));
  EXPECT_TRUE(first->isSensitive());
  b.package.initIProperty(first, ICoreDatatypes::I_INTEGER, "first", "", 0, 1, shape->getDeclaredProperty("first"),
                          IFALSE, IFALSE, IFALSE, IFALSE, IFALSE, ITRUE, "", IRedefinability::FINAL_PROPERTY,
                          IReferenceScope::NONE, "", IFALSE);
  EXPECT_EQ(first->getOppositeProperty(), first);
  EXPECT_TRUE(first->isOrdered());
}

// ---------------------------------------------------------------------------------
// Names

TEST(QualifiedNameTest, NamesJoinPrefixPackageTypeAndMember) {
  Builder b("shapes", "org.sample");
  IClass* shape = b.addClass("Shape");
  IProperty* area = b.addProperty(shape, "area");
  IEnumeration* kind = b.package.createIEnumeration(1);
  b.package.initIEnumeration(kind, "Kind", "");
  IEnumerationLiteral* round = b.package.addIEnumerationLiteral(kind, "ROUND", 0, "");
  EXPECT_EQ(b.package.getNamespace(), IUString("org.sample"));
  EXPECT_EQ(b.package.getQualifiedName(), IUString("org.sample.shapes"));
  EXPECT_EQ(shape->getNamespace(), IUString("org.sample.shapes"));
  EXPECT_EQ(shape->getQualifiedName(), IUString("org.sample.shapes.Shape"));
  EXPECT_EQ(area->getNamespace(), IUString("org.sample.shapes.Shape"));
  EXPECT_EQ(area->getQualifiedName(), IUString("org.sample.shapes.Shape.area"));
  EXPECT_EQ(round->getQualifiedName(), IUString("org.sample.shapes.Kind.ROUND"));

  Builder bare("bare", "");
  IClass* lone = bare.addClass("Lone");
  EXPECT_EQ(bare.package.getQualifiedName(), IUString("bare"));
  EXPECT_EQ(lone->getQualifiedName(), IUString("bare.Lone"));

  IProperty loose;
  loose.setName("loose");
  EXPECT_TRUE(loose.getNamespace().isEmpty());
  EXPECT_EQ(loose.getQualifiedName(), IUString("loose"));
  IDatatype floating;
  floating.setName("Floating");
  EXPECT_EQ(floating.getQualifiedName(), IUString("Floating"));
  IEnumerationLiteral orphan;
  orphan.setName("ORPHAN");
  EXPECT_EQ(orphan.getQualifiedName(), IUString("ORPHAN"));
}

TEST(QualifiedNameTest, EmptyNameIsAnAssertionFailure) {
  AssertionCatcher catcher;
  IDatatype nameless;
  EXPECT_THROW(nameless.getQualifiedName(), AssertionFailure);
}

// ---------------------------------------------------------------------------------
// Packages, data types and enumerations

TEST(IPackageTest, TypeLookUpIsExactAndFirstCreatedWins) {
  Builder b;
  EXPECT_EQ(b.package.getType("Shape"), nullptr);
  IClass* first = b.addClass("Shape");
  IClass* second = b.addClass("Shape");
  ASSERT_NE(first, second);
  EXPECT_EQ(b.package.getType("Shape"), first);
  EXPECT_EQ(b.package.getType("shape"), nullptr);
  EXPECT_EQ(b.package.getTypes().size(), 2u);
  EXPECT_EQ(first->getPackage(), &b.package);
  EXPECT_EQ(b.package.iGetIClass(), core().getIPackageIClass());
}

TEST(IEnumerationTest, NewEnumerationIsEmptyAndAnEnum) {
  Builder b;
  IEnumeration* kind = b.package.createIEnumeration(4);
  EXPECT_TRUE(kind->getLiterals().isEmpty());
  EXPECT_EQ(kind->getDefaultLiteral(), nullptr);
  EXPECT_TRUE(kind->isEnum());
  EXPECT_FALSE(kind->isClass());
  EXPECT_FALSE(kind->isPrimitive());
  EXPECT_EQ(kind->getTypeId(), 4);
  EXPECT_EQ(kind->iGetIClass(), core().getIEnumerationIClass());
  IEnumerationLiteral* first = b.package.addIEnumerationLiteral(kind, "FIRST", 10, "c");
  EXPECT_EQ(first->getDeclaringEnumeration(), kind);
  EXPECT_EQ(first->getOrdinalValue(), 10);
  EXPECT_EQ(first->getComment(), IUString("c"));
  EXPECT_EQ(first->iGetIClass(), core().getIEnumerationLiteralIClass());
  ASSERT_EQ(kind->getLiterals().size(), 1u);
}

TEST(IFactoryTest, BaseOperationsAreAssertionFailures) {
  AssertionCatcher catcher;
  IFactory base;
  IIdentity const* identity = nullptr;
  int value = 0;
  EXPECT_THROW(base.create(*core().getIClassIClass()), AssertionFailure);
  EXPECT_THROW(base.createProxy(*core().getIClassIClass(), identity), AssertionFailure);
  EXPECT_THROW(base.datatypeFromString(*ICoreDatatypes::I_INTEGER, "1"), AssertionFailure);
  EXPECT_THROW(base.datatypeToString(*ICoreDatatypes::I_INTEGER, &value), AssertionFailure);
  EXPECT_EQ(base.getPackage(), nullptr);
}

// ---------------------------------------------------------------------------------
// Value enumerations

template <typename E>
struct EnumCase {
  E const* constant;
  int value;
  const char* name;
};

template <typename E>
void checkValueEnumeration(std::vector<EnumCase<E>> const& cases) {
  for (const EnumCase<E>& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(E::get(c.value), c.constant);
    EXPECT_EQ(E::valueOf(c.name), c.constant);
    EXPECT_EQ(c.constant->getName(), IUString(c.name));
    EXPECT_EQ(c.constant->getOrdinalValue(), c.value);
    EXPECT_EQ(static_cast<int>(*c.constant), c.value);
    std::string lower = c.name;
    for (char& ch : lower) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    EXPECT_EQ(E::valueOf(IUString(lower.c_str())), nullptr);
  }
  EXPECT_EQ(E::get(static_cast<int>(cases.size())), nullptr);
  EXPECT_EQ(E::get(-1), nullptr);
  EXPECT_EQ(E::valueOf(""), nullptr);
}

TEST(ValueEnumerationTest, ConstantsMatchTheirValuesAndNames) {
  checkValueEnumeration<IClassKind>({{&IClassKind::FIRST_CLASS, IClassKind::nFIRST_CLASS, "FIRST_CLASS"},
                                     {&IClassKind::SECOND_CLASS, IClassKind::nSECOND_CLASS, "SECOND_CLASS"},
                                     {&IClassKind::VALUE_CLASS, IClassKind::nVALUE_CLASS, "VALUE_CLASS"},
                                     {&IClassKind::ANNOTATION_CLASS, IClassKind::nANNOTATION_CLASS, "ANNOTATION_CLASS"},
                                     {&IClassKind::ANY_CLASS, IClassKind::nANY_CLASS, "ANY_CLASS"},
                                     {&IClassKind::UNSET, IClassKind::nUNSET, "UNSET"}});
  checkValueEnumeration<IReferenceScope>({{&IReferenceScope::INTERNAL, IReferenceScope::nINTERNAL, "INTERNAL"},
                                          {&IReferenceScope::EXTERNAL, IReferenceScope::nEXTERNAL, "EXTERNAL"},
                                          {&IReferenceScope::DEFERRED, IReferenceScope::nDEFERRED, "DEFERRED"},
                                          {&IReferenceScope::NONE, IReferenceScope::nNONE, "NONE"},
                                          {&IReferenceScope::UNSET, IReferenceScope::nUNSET, "UNSET"}});
  checkValueEnumeration<IRedefinability>(
      {{&IRedefinability::FINAL_PROPERTY, IRedefinability::nFINAL_PROPERTY, "FINAL_PROPERTY"},
       {&IRedefinability::ABSTRACT_PROPERTY, IRedefinability::nABSTRACT_PROPERTY, "ABSTRACT_PROPERTY"},
       {&IRedefinability::REDEFINABLE_PROPERTY, IRedefinability::nREDEFINABLE_PROPERTY, "REDEFINABLE_PROPERTY"}});
  // The numbers are part of the stream formats. (Unary plus: the n-constants are
  // declared without a definition, so binding them to a reference does not link.)
  EXPECT_EQ(+IClassKind::nUNSET, 5);
  EXPECT_EQ(+IReferenceScope::nUNSET, 4);
  EXPECT_EQ(+IRedefinability::nREDEFINABLE_PROPERTY, 2);
}

// ---------------------------------------------------------------------------------
// Reflective access to metamodel elements

TEST(MetamodelReflectionTest, ClassPropertiesReadAndWriteByIdAndDeclaredPropertiesAreRefused) {
  Builder b;
  IClass* base = b.addClass("Base");
  IClass* target = b.addClass("Target");
  internal::IObjectInternal& object = *target;

  IUString newName("Renamed");
  object.iSet(*core().getIModelElement_NameIProperty(), &newName, 0, IFALSE);
  EXPECT_EQ(target->getName(), newName);
  IBOOLEAN yes = ITRUE;
  object.iSet(*core().getIClass_AbstractIProperty(), &yes, 0, IFALSE);
  object.iSet(*core().getIClass_SeededIProperty(), &yes, 0, IFALSE);
  EXPECT_TRUE(target->isAbstract());
  EXPECT_FALSE(target->isFinal());
  EXPECT_TRUE(target->isSeeded());
  object.iSet(*core().getIClass_SuperClassIProperty(), static_cast<IObject*>(base), 0, IFALSE);
  EXPECT_EQ(target->getSuperClass(), base);
  object.iSet(*core().getIClass_ClassKindIProperty(), const_cast<IClassKind*>(&IClassKind::VALUE_CLASS), 0, IFALSE);
  EXPECT_TRUE(target->isValueClass());
  object.iSet(*core().getIClass_ReferenceScopeIProperty(), const_cast<IReferenceScope*>(&IReferenceScope::INTERNAL),
              0, IFALSE);
  EXPECT_EQ(object.iGet(*core().getIClass_ReferenceScopeIProperty(), nullptr, IFALSE), &IReferenceScope::INTERNAL);
  EXPECT_EQ(object.iGet(*core().getIClass_SuperClassIProperty(), nullptr, IFALSE), static_cast<IObject*>(base));
  EXPECT_EQ(object.iGet(*core().getIType_DeclaringPackageIProperty(), nullptr, IFALSE),
            static_cast<IObject*>(&b.package));

  IProperty* declared = core().getIClass_DeclaredPropertiesIProperty();
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { object.iSet(*declared, &yes, 0, IFALSE); }),
            qvxFormatMsg(73010, "declaredProperties", "Renamed"));
  // A property id that IClass does not have (IProperty's "unique" is id 14).
  IProperty* unique = core().getIProperty_UniqueIProperty();
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { object.iGet(*unique, nullptr, IFALSE); }),
            qvxFormatMsg(73005, "unique", "Renamed"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { object.iSet(*unique, &yes, 0, IFALSE); }),
            qvxFormatMsg(73006, "unique", "Renamed"));
}

TEST(MetamodelReflectionTest, EveryPropertyIdOfIPropertyCanBeSet) {
  Builder b;
  IClass* shape = b.addClass("Shape");
  IProperty* subject = b.addProperty(shape, "subject");
  IProperty* other = b.addProperty(shape, "other");
  internal::IObjectInternal& object = *subject;
  IcoreIPackage& c = core();

  int five = 5;
  int minusOne = -1;
  IBOOLEAN yes = ITRUE;
  IUString literal("42");
  object.iSet(*c.getIProperty_MinOccursIProperty(), &five, 0, IFALSE);
  object.iSet(*c.getIProperty_MaxOccursIProperty(), &minusOne, 0, IFALSE);
  object.iSet(*c.getIProperty_ContainmentIProperty(), &yes, 0, IFALSE);
  object.iSet(*c.getIProperty_ContainerIProperty(), &yes, 0, IFALSE);
  object.iSet(*c.getIProperty_OrderedIProperty(), &yes, 0, IFALSE);
  object.iSet(*c.getIProperty_UniqueIProperty(), &yes, 0, IFALSE);
  object.iSet(*c.getIProperty_DefaultValueLiteralIProperty(), &literal, 0, IFALSE);
  object.iSet(*c.getIProperty_OppositePropertyIProperty(), static_cast<IObject*>(other), 0, IFALSE);
  object.iSet(*c.getIProperty_RedefinedPropertyIProperty(), static_cast<IObject*>(other), 0, IFALSE);
  object.iSet(*c.getIProperty_RedefinabilityIProperty(), const_cast<IRedefinability*>(&IRedefinability::ABSTRACT_PROPERTY),
              0, IFALSE);
  object.iSet(*c.getIProperty_ReferenceScopeIProperty(), const_cast<IReferenceScope*>(&IReferenceScope::EXTERNAL), 0,
              IFALSE);
  object.iSet(*c.getITypedElement_TypeIProperty(), static_cast<IObject*>(ICoreDatatypes::I_LONG), 0, IFALSE);
  EXPECT_EQ(subject->getMinOccurs(), 5);
  EXPECT_EQ(subject->getMaxOccurs(), -1);
  EXPECT_TRUE(subject->isContainment() && subject->isContainer() && subject->isOrdered() && subject->isUnique());
  EXPECT_EQ(subject->getDefaultValueLiteral(), literal);
  EXPECT_EQ(subject->getOppositeProperty(), other);
  EXPECT_EQ(subject->getRedefinedProperty(), other);
  EXPECT_EQ(&subject->getRedefinability(), &IRedefinability::ABSTRACT_PROPERTY);
  EXPECT_EQ(&subject->getReferenceScope(), &IReferenceScope::EXTERNAL);
  EXPECT_EQ(subject->getType(), ICoreDatatypes::I_LONG);

  // Every property of the IProperty metaclass reads back without an error.
  for (IProperty* property : c.getIPropertyIClass()->getAllProperties(ITRUE)) {
    EXPECT_NO_THROW(object.iGet(*property, nullptr, IFALSE)) << property->getName().toUtf8();
  }
  EXPECT_EQ(object.iGet(*c.getIProperty_DeclaringClassIProperty(), nullptr, IFALSE), static_cast<IObject*>(shape));

  // An id beyond IProperty's own (15): refused, naming the property and this property.
  IClass* wide = b.addClass("Wide");
  for (int filler = 0; filler < 15; ++filler) b.addProperty(wide, "filler");
  IProperty* fifteen = b.addProperty(wide, "fifteenth");
  ASSERT_EQ(fifteen->getPropertyId(), 15);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { object.iGet(*fifteen, nullptr, IFALSE); }),
            qvxFormatMsg(73005, "fifteenth", "subject"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { object.iSet(*fifteen, &five, 0, IFALSE); }),
            qvxFormatMsg(73006, "fifteenth", "subject"));
}

TEST(MetamodelReflectionTest, PackagesEnumerationsLiteralsAndDatatypes) {
  Builder b;
  IcoreIPackage& c = core();
  internal::IObjectInternal& package = b.package;
  IUString version("2.1");
  package.iSet(*c.getIPackage_VersionIProperty(), &version, 0, IFALSE);
  EXPECT_EQ(b.package.getVersion(), version);
  EXPECT_EQ(package.iGet(*c.getIPackage_TypesIProperty(), nullptr, IFALSE), &b.package.getTypes());
  EXPECT_EQ(messageOf<IllegalArgumentException>(
                [&] { package.iSet(*c.getIPackage_TypesIProperty(), &version, 0, IFALSE); }),
            qvxFormatMsg(73010, "types", "shapes"));
  IProperty* id4 = c.getIClass_FinalIProperty();  // id 4, which a package does not have
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { package.iGet(*id4, nullptr, IFALSE); }),
            qvxFormatMsg(73005, "Final", "shapes"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { package.iSet(*id4, &version, 0, IFALSE); }),
            qvxFormatMsg(73006, "Final", "shapes"));

  IEnumeration* kind = b.package.createIEnumeration(0);
  b.package.initIEnumeration(kind, "Kind", "");
  IEnumerationLiteral* round = b.package.addIEnumerationLiteral(kind, "ROUND", 3, "");
  internal::IObjectInternal& enumeration = *kind;
  EXPECT_EQ(enumeration.iGet(*c.getIEnumeration_LiteralsIProperty(), nullptr, IFALSE), &kind->getLiterals());
  EXPECT_EQ(messageOf<IllegalArgumentException>(
                [&] { enumeration.iSet(*c.getIEnumeration_LiteralsIProperty(), &version, 0, IFALSE); }),
            qvxFormatMsg(73010, "literals", "Kind"));
  enumeration.iSet(*c.getIEnumeration_DefaultLiteralIProperty(), static_cast<IObject*>(round), 0, IFALSE);
  EXPECT_EQ(kind->getDefaultLiteral(), round);

  internal::IObjectInternal& literal = *round;
  int ordinal = 9;
  literal.iSet(*c.getIEnumerationLiteral_OrdinalValueIProperty(), &ordinal, 0, IFALSE);
  EXPECT_EQ(round->getOrdinalValue(), 9);
  EXPECT_EQ(literal.iGet(*c.getIEnumerationLiteral_DeclaringEnumerationIProperty(), nullptr, IFALSE),
            static_cast<IObject*>(kind));

  internal::IObjectInternal& datatype = *ICoreDatatypes::I_SHORT;
  EXPECT_EQ(*static_cast<IUString const*>(datatype.iGet(*c.getIModelElement_NameIProperty(), nullptr, IFALSE)),
            IUString("IShort"));
  EXPECT_EQ(messageOf<IllegalArgumentException>(
                [&] { datatype.iGet(*c.getIEnumeration_LiteralsIProperty(), nullptr, IFALSE); }),
            qvxFormatMsg(73005, "literals", "IShort"));
}

}  // namespace
