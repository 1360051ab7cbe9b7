// Classes, properties and packages of the metamodel, on a small package built from
// tables in the tests: inheritance and redefinition, the caches that are never
// invalidated, multiplicity rules, qualified names and reflective errors.
#include "icore/IClass.h"

#include <gtest/gtest.h>

#include <climits>
#include <iterator>
#include <string>
#include <vector>

#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IPackage.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "tests/support/AssertionCatcher.h"
#include "tests/support/MetamodelText.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using internal::kNoType;
using qvx_test::messageOf;

// Shape { x, a, size 0..*, bounded }; Polygon : Shape { x redefines x, sides 0..4
// redefines size, widened 0..3 and kept redefine bounded, dangling redefines nothing
// that exists }; Square : Polygon { edge redefines sides }; enumeration Kind { ROUND }.
enum TypeId { kShape, kPolygon, kSquare, kKind };

constexpr internal::ClassRow kClasses[] = {
    {kShape, "Shape", kNoType, false, false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
    {kPolygon, "Polygon", kShape, false, false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
    {kSquare, "Square", kPolygon, false, false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
};

constexpr internal::PropertyRow property(int owner, int id, const char* name, int maxOccurs,
                                         const char* redefines = nullptr) {
  return {owner,   id,      name, ICoreDatatypes::STRING_TYPE_ID, 0, maxOccurs, 0, kNoType, 0, nullptr,
          &IReferenceScope::NONE, redefines, &IRedefinability::REDEFINABLE_PROPERTY, nullptr};
}

constexpr internal::PropertyRow kProperties[] = {
    property(kShape, 0, "x", 1), property(kShape, 1, "a", 1), property(kShape, 2, "size", -1),
    property(kShape, 3, "bounded", 1), property(kPolygon, 4, "x", 1, "x"), property(kPolygon, 5, "sides", 4, "size"),
    property(kPolygon, 6, "widened", 3, "bounded"), property(kPolygon, 7, "kept", 1, "bounded"),
    property(kPolygon, 8, "dangling", 1, "nothing"), property(kSquare, 9, "edge", 1, "sides")};

constexpr const char* kKindLiterals[] = {"ROUND"};
constexpr internal::EnumRow kEnums[] = {{kKind, "Kind", kKindLiterals, 1, -1}};
constexpr internal::PackageTables kTables = {kClasses, std::size(kClasses), kProperties, std::size(kProperties),
                                             kEnums, std::size(kEnums)};

class SamplePackage : public IPackage {
 public:
  explicit SamplePackage(const char* prefix = "org.sample") {
    createContents(kTables);
    setName("shapes");
    setNsPrefix(prefix);
    initializeContents(kTables);
  }
  using IPackage::classById;
  using IPackage::createIProperty;
  using IPackage::enumerationById;
  using IPackage::propertyById;
};

IcoreIPackage& core() { return *IcoreIPackage::iGetInstance(); }

TEST(IClassTest, AllPropertiesComeRootFirstAndRedefinedOnesArePrunedOnlyOnRequest) {
  SamplePackage package;
  IClass* square = package.classById(kSquare);
  EXPECT_EQ(qvx_test::namesOf(square->getAllProperties(ITRUE)), "Shape.x Shape.a Shape.size Shape.bounded Polygon.x "
            "Polygon.sides Polygon.widened Polygon.kept Polygon.dangling Square.edge ");
  EXPECT_EQ(qvx_test::namesOf(square->getAllProperties(IFALSE)),
            "Shape.a Polygon.x Polygon.widened Polygon.kept Polygon.dangling Square.edge ");
  EXPECT_EQ(qvx_test::namesOf(package.classById(kPolygon)->getAllProperties(IFALSE)),
            "Shape.a Polygon.x Polygon.sides Polygon.widened Polygon.kept Polygon.dangling ");
  // A shared name finds the property nearest the root; the declared look-up its own.
  EXPECT_EQ(square->getProperty("x"), package.propertyById(kShape, 0));
  EXPECT_EQ(package.classById(kPolygon)->getDeclaredProperty("x"), package.propertyById(kPolygon, 4));
  EXPECT_EQ(square->getDeclaredProperty("x"), nullptr);
  EXPECT_TRUE(square->isTypeOf(*package.classById(kShape)));
  EXPECT_FALSE(package.classById(kShape)->isTypeOf(*square));
  EXPECT_TRUE(square->hasProperty(*package.propertyById(kShape, 1)));
  EXPECT_FALSE(package.classById(kPolygon)->hasProperty(*package.propertyById(kSquare, 9)));
}

TEST(IPropertyTest, RedefinitionsResolveByNameAndCollectionFollowsTheRootsBound) {
  SamplePackage package;
  IProperty* edge = package.propertyById(kSquare, 9);
  IProperty* dangling = package.propertyById(kPolygon, 8);
  EXPECT_EQ(edge->getRedefinedProperty(), package.propertyById(kPolygon, 5));
  EXPECT_EQ(edge->getRootProperty(), package.propertyById(kShape, 2));
  EXPECT_EQ(dangling->getRedefinedProperty(), nullptr);
  EXPECT_TRUE(dangling->isRedefiningProperty());
  EXPECT_EQ(dangling->getRootProperty(), dangling);
  // A redefinition of an unbounded property stays a collection whatever bound it has.
  EXPECT_TRUE(edge->isCollection());
  EXPECT_TRUE(package.propertyById(kPolygon, 6)->isCollection());  // widened to 3
  EXPECT_FALSE(package.propertyById(kPolygon, 7)->isCollection());  // kept at 1
  for (auto [maxOccurs, collection] : {std::pair{-1, true}, {0, false}, {1, false}, {2, true}, {INT_MIN, false}}) {
    IProperty loose;
    loose.setMaxOccurs(maxOccurs);
    EXPECT_EQ(loose.isCollection() != IFALSE, collection) << maxOccurs;
  }
}

TEST(IClassTest, CachedAnswersAreNeverInvalidated) {
  SamplePackage package;
  IClass* polygon = package.classById(kPolygon);
  auto listOf = [](IVector<IProperty*> const& list) { return std::vector<IProperty*>(list.begin(), list.end()); };
  IVector<IProperty*> const& all = polygon->getAllProperties(ITRUE);
  const std::vector<IProperty*> before = listOf(all);
  const std::vector<IProperty*> prunedBefore = listOf(polygon->getAllProperties(IFALSE));
  ASSERT_TRUE(polygon->isTypeOf(*package.classById(kShape)));
  const IUString qualified = polygon->getQualifiedName();

  package.createIProperty(polygon, 10)->setName("late");
  polygon->setSuperClass(nullptr);
  polygon->setName("Renamed");

  EXPECT_EQ(&polygon->getAllProperties(ITRUE), &all);
  EXPECT_EQ(listOf(all), before);
  EXPECT_EQ(listOf(polygon->getAllProperties(IFALSE)), prunedBefore);
  EXPECT_EQ(polygon->getProperty("late"), nullptr);
  EXPECT_TRUE(polygon->isTypeOf(*package.classById(kShape)));
  EXPECT_EQ(polygon->getQualifiedName(), qualified);
}

TEST(QualifiedNameTest, NamesJoinPrefixPackageTypeAndMember) {
  SamplePackage package;
  EXPECT_EQ(package.getQualifiedName(), IUString("org.sample.shapes"));
  EXPECT_EQ(package.classById(kSquare)->getQualifiedName(), IUString("org.sample.shapes.Square"));
  EXPECT_EQ(package.propertyById(kSquare, 9)->getNamespace(), IUString("org.sample.shapes.Square"));
  EXPECT_EQ(package.propertyById(kSquare, 9)->getQualifiedName(), IUString("org.sample.shapes.Square.edge"));
  EXPECT_EQ(package.enumerationById(kKind)->getLiterals()[0]->getQualifiedName(),
            IUString("org.sample.shapes.Kind.ROUND"));
  EXPECT_EQ(SamplePackage("").classById(kShape)->getQualifiedName(), IUString("shapes.Shape"));
  IProperty loose;
  loose.setName("loose");
  EXPECT_EQ(loose.getQualifiedName(), IUString("loose"));
  AssertionCatcher catcher;
  IDatatype nameless;
  EXPECT_THROW(nameless.getQualifiedName(), AssertionFailure);
}

TEST(MetamodelReflectionTest, ForeignAndCollectionPropertiesAreRefusedNamingTheElement) {
  SamplePackage package;
  struct Case {
    internal::IObjectInternal* element;
    IProperty* property;
    int number;  // 73005 for a get, 73006 and 73010 for a set
    const char* elementName;
  };
  const Case cases[] = {{package.classById(kSquare), core().getIClass_DeclaredPropertiesIProperty(), 73010, "Square"},
                        {package.classById(kSquare), core().getIProperty_UniqueIProperty(), 73005, "Square"},
                        {package.classById(kSquare), core().getIProperty_UniqueIProperty(), 73006, "Square"},
                        {&package, core().getIPackage_TypesIProperty(), 73010, "shapes"},
                        {&package, core().getIClass_FinalIProperty(), 73005, "shapes"},
                        {&package, core().getIClass_FinalIProperty(), 73006, "shapes"},
                        {package.enumerationById(kKind), core().getIEnumeration_LiteralsIProperty(), 73010, "Kind"},
                        {ICoreDatatypes::I_SHORT, core().getIEnumeration_LiteralsIProperty(), 73005, "IShort"}};
  IBOOLEAN value = ITRUE;
  for (const Case& c : cases) {
    auto action = [&] {
      if (c.number == 73005) c.element->iGet(*c.property, nullptr, IFALSE);
      else c.element->iSet(*c.property, &value, 0, IFALSE);
    };
    EXPECT_EQ(messageOf<exception::IllegalArgumentException>(action),
              qvxFormatMsg(c.number, c.property->getName(), IUString(c.elementName)));
  }
}

}  // namespace

namespace {

TEST(ValueEnumerationTest, LookUpByValueAndExactName) {
  EXPECT_EQ(IClassKind::get(5), &IClassKind::UNSET);
  EXPECT_EQ(IClassKind::get(6), nullptr);
  EXPECT_EQ(IReferenceScope::valueOf("EXTERNAL"), &IReferenceScope::EXTERNAL);
  EXPECT_EQ(IReferenceScope::valueOf("external"), nullptr);
  EXPECT_EQ(IRedefinability::get(IRedefinability::nREDEFINABLE_PROPERTY)->getName(), IUString("REDEFINABLE_PROPERTY"));
}

TEST(IClassTest, IdentifiableAndInternallyReferableFollowScopeAndKind) {
  struct Case {
    IClassKind const& kind;
    IReferenceScope const& scope;
    bool identifiable;
    bool internallyReferable;
  };
  const Case cases[] = {{IClassKind::FIRST_CLASS, IReferenceScope::EXTERNAL, true, false},
                        {IClassKind::FIRST_CLASS, IReferenceScope::INTERNAL, false, true},
                        {IClassKind::VALUE_CLASS, IReferenceScope::NONE, false, true},
                        {IClassKind::SECOND_CLASS, IReferenceScope::DEFERRED, false, false}};
  for (const Case& c : cases) {
    IClass subject;
    subject.setClassKind(c.kind);
    subject.setReferenceScope(c.scope);
    EXPECT_EQ(subject.isIdentifiableClass() != IFALSE, c.identifiable) << c.kind.getName().toUtf8();
    EXPECT_EQ(subject.isInternallyReferable() != IFALSE, c.internallyReferable) << c.scope.getName().toUtf8();
  }
}

}  // namespace
