// The per-class property table: what it says about each kind of property, how it finds
// properties (by id, despite a modelling error that reuses an id; by name; by XML
// element name), and that concurrent first users all get the one table.
#include "icore/internal/ClassTable.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IPackage.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/internal/PackageTables.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using internal::ClassTable;
using internal::kNoType;
using internal::PropertyKind;

// Base (abstract) { count, note as element "documentation", kind, tags 0..*, hidden
// (abstract property) }; Derived : Base { clash (reuses the id of note), items 0..*
// contained, link, owner (container), count (a second property of that name), far (an
// id beyond those a table keeps in itself) };
// Item { name, code (a high id) }; enumeration Kind { ROUND, SQUARE }.
enum TypeId { kBase, kDerived, kItem, kKind };

constexpr internal::ClassRow kClasses[] = {
    {kBase, "Base", kNoType, true, false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
    {kDerived, "Derived", kBase, false, false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
    {kItem, "Item", kNoType, false, false, false, &IClassKind::VALUE_CLASS, &IReferenceScope::NONE},
};

constexpr internal::PropertyRow row(int owner, int id, const char* name, int type, int maxOccurs, unsigned flags,
                                    const char* defaultLiteral = nullptr, IRedefinability const* redefinability = nullptr,
                                    const char* xmlElementName = nullptr) {
  return {owner,          id,      name,    type, 0, maxOccurs, flags, kNoType, 0, defaultLiteral, &IReferenceScope::NONE,
          nullptr, redefinability, xmlElementName};
}

constexpr internal::PropertyRow kProperties[] = {
    row(kBase, 0, "count", ICoreDatatypes::INTEGER_TYPE_ID, 1, 0, "7"),
    row(kBase, 1, "note", ICoreDatatypes::STRING_TYPE_ID, 1, internal::kXmlAsElement, "a b", nullptr, "documentation"),
    row(kBase, 2, "kind", kKind, 1, 0, "ROUND"),
    row(kBase, 3, "tags", ICoreDatatypes::STRING_TYPE_ID, -1, 0),
    row(kBase, 4, "hidden", ICoreDatatypes::DOUBLE_TYPE_ID, 1, 0, nullptr, &IRedefinability::ABSTRACT_PROPERTY),
    row(kDerived, 1, "clash", ICoreDatatypes::LONG_TYPE_ID, 1, 0),
    row(kDerived, 5, "items", kItem, -1, internal::kContainment),
    row(kDerived, 6, "link", kItem, 1, 0),
    row(kDerived, 7, "owner", kDerived, 1, internal::kContainer),
    row(kDerived, 8, "count", ICoreDatatypes::STRING_TYPE_ID, 1, 0),
    row(kDerived, 40, "far", ICoreDatatypes::INTEGER_TYPE_ID, 1, 0),
    row(kItem, 0, "name", ICoreDatatypes::STRING_TYPE_ID, 1, 0),
    row(kItem, 33, "code", ICoreDatatypes::INTEGER_TYPE_ID, 1, 0),
};

constexpr const char* kKindLiterals[] = {"ROUND", "SQUARE"};
constexpr internal::EnumRow kEnums[] = {{kKind, "Kind", kKindLiterals, 2, 0}};
constexpr internal::PackageTables kTables = {kClasses, std::size(kClasses), kProperties, std::size(kProperties),
                                             kEnums, std::size(kEnums)};

class TablePackage : public IPackage {
 public:
  TablePackage() {
    createContents(kTables);
    setName("tables");
    setNsPrefix("org.sample");
    initializeContents(kTables);
  }
  using IPackage::classById;
  using IPackage::propertyById;
};

// One line per entry: name, kind, flags, primitive type, default and XML names.
std::string describe(ClassTable::Entry const& entry) {
  static const char* const kKinds[] = {"primitive", "enumeration", "reference", "containment"};
  std::string text = entry.nameUtf8 + " " + kKinds[static_cast<int>(entry.kind)];
  if (entry.multiValued) text += " many";
  if (entry.abstractProperty) text += " abstract";
  if (entry.container) text += " container";
  if (entry.primitiveTypeId >= 0) text += " " + std::to_string(entry.primitiveTypeId);
  if (!entry.defaultLiteral.isEmpty()) text += " =" + entry.defaultLiteral.toUtf8();
  if (entry.xmlAsElement) text += " <" + entry.xmlElementNameUtf8 + ">";
  return text;
}

TEST(ClassTableTest, EntriesFollowAllPropertiesAndDescribeEachKind) {
  TablePackage package;
  ClassTable const& table = package.classById(kDerived)->getClassTable();
  const std::vector<std::string> expected = {
      "count primitive 1007 =7",    "note primitive 1010 =a b <documentation>", "kind enumeration =ROUND",
      "tags primitive many 1010",   "hidden primitive abstract 1005",           "clash primitive 1008",
      "items containment many",     "link reference",                           "owner reference container",
      "count primitive 1010",       "far primitive 1007"};
  std::vector<std::string> described;
  IVector<IProperty*> const& all = package.classById(kDerived)->getAllProperties(ITRUE);
  ASSERT_EQ(table.entries().size(), all.size());
  for (std::size_t index = 0; index < all.size(); ++index) {
    ClassTable::Entry const& entry = table.entries()[index];
    EXPECT_EQ(entry.property, all[index]);
    EXPECT_EQ(entry.type, all[index]->getType());
    EXPECT_EQ(entry.name, all[index]->getName());
    described.push_back(describe(entry));
  }
  EXPECT_EQ(described, expected);
  EXPECT_FALSE(table.isAbstract());
  EXPECT_TRUE(package.classById(kBase)->getClassTable().isAbstract());
}

TEST(ClassTableTest, FindsByIdDespiteAReusedIdAndRefusesForeignProperties) {
  TablePackage package;
  IClass const& derived = *package.classById(kDerived);
  ClassTable const& table = derived.getClassTable();
  for (ClassTable::Entry const& entry : table.entries()) {
    ASSERT_EQ(table.find(*entry.property), &entry) << entry.nameUtf8;
    EXPECT_TRUE(derived.hasProperty(*entry.property));
  }
  // Base.note and Derived.clash share id 1; each is still found as itself.
  EXPECT_EQ(table.find(*package.propertyById(kBase, 1))->nameUtf8, "note");
  EXPECT_EQ(table.find(*package.propertyById(kDerived, 1))->nameUtf8, "clash");
  // A property of another class, with an id the table holds, and one the base lacks.
  EXPECT_EQ(table.find(*package.propertyById(kItem, 0)), nullptr);
  EXPECT_FALSE(derived.hasProperty(*package.propertyById(kItem, 0)));
  EXPECT_EQ(package.classById(kBase)->getClassTable().find(*package.propertyById(kDerived, 5)), nullptr);
  EXPECT_EQ(package.classById(kBase)->getClassTable().find(*package.propertyById(kDerived, 1)), nullptr);
  EXPECT_FALSE(package.classById(kBase)->hasProperty(*package.propertyById(kDerived, 40)));
  // Item reuses no id, so its high id is found by the index alone.
  ClassTable const& items = package.classById(kItem)->getClassTable();
  EXPECT_EQ(items.find(*package.propertyById(kItem, 33))->nameUtf8, "code");
  EXPECT_EQ(items.find(*package.propertyById(kDerived, 40)), nullptr);
  EXPECT_EQ(items.find(*package.propertyById(kDerived, 6)), nullptr);
}

TEST(ClassTableTest, FindsByNameNearestTheRootAndByXmlElementName) {
  TablePackage package;
  ClassTable const& table = package.classById(kDerived)->getClassTable();
  EXPECT_EQ(table.findByName("count")->property, package.classById(kDerived)->getProperty("count"));
  EXPECT_EQ(table.findByName("count")->property, package.propertyById(kBase, 0));
  EXPECT_EQ(table.findByName("owner")->property, package.propertyById(kDerived, 7));
  EXPECT_EQ(table.findByName("missing"), nullptr);
  EXPECT_EQ(table.findByXmlElementName("documentation")->property, package.propertyById(kBase, 1));
  EXPECT_EQ(table.findByXmlElementName("note"), nullptr);  // the inner name is not the wrapper's
  EXPECT_EQ(table.findByXmlElementName(""), nullptr);      // attribute properties have none
}

TEST(ClassTableTest, ConcurrentFirstUsersShareOneTable) {
  for (int attempt = 0; attempt < 20; ++attempt) {
    TablePackage package;
    IClass const& derived = *package.classById(kDerived);
    constexpr int kThreads = 6;
    std::vector<ClassTable const*> seen(kThreads, nullptr);
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index) {
      threads.emplace_back([&derived, &seen, index] {
        ClassTable const& table = derived.getClassTable();
        seen[static_cast<std::size_t>(index)] = table.find(*table.entries().back().property) != nullptr ? &table : nullptr;
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (ClassTable const* table : seen) ASSERT_EQ(table, &derived.getClassTable());
  }
}

}  // namespace
