// The metamodel of the catalog package as the interchange formats see it: registration,
// type ids, every class with its properties in their inherited numbering, the settings
// of the properties that matter most, the enumerations, and View.kind redefining
// Table.kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "icore/ICoreDatatypes.h"
#include "tests/catalog/CatalogTestSupport.h"
#include "tests/support/MetamodelText.h"

namespace {

using catalog_test::pkg;
using namespace com::veltrana::qvx::icore;  // NOLINT: test file

// The classes in type-id order (0-8), each with its declared properties in id order.
const std::vector<std::string> kClasses = {
    "NamedElement : - SECOND_CLASS EXTERNAL abstract | name description",
    "Catalog : NamedElement FIRST_CLASS EXTERNAL | version created schemas dataTypes connectionPassword",
    "Schema : NamedElement SECOND_CLASS EXTERNAL | owner tables",
    "Table : NamedElement SECOND_CLASS EXTERNAL | kind rowCount columns primaryKey foreignKeys tags layout thumbnail",
    "Column : NamedElement SECOND_CLASS EXTERNAL | table dataType length precision scale nullable defaultValue "
    "selectivity weight created initial sampleValues type",
    "ForeignKey : NamedElement SECOND_CLASS EXTERNAL | targetTable columns rules",
    "Position : - VALUE_CLASS NONE | x y",
    "DataTypeDef : NamedElement FIRST_CLASS EXTERNAL seeded | sqlName maxLength",
    "View : Table SECOND_CLASS EXTERNAL | query kind"};

// The properties whose settings the interchange formats depend on most.
const std::vector<std::string> kProperties = {
    "NamedElement.description#1 IString[0..1] Xdocumentation NONE",
    "Catalog.schemas#4 Schema[0..-1] CO INTERNAL",
    "Catalog.dataTypes#5 DataTypeDef[0..-1] O DEFERRED",
    "Catalog.connectionPassword#6 IString[0..1] S NONE",
    "Table.kind#2 TableKind[0..1] - NONE =TABLE REDEFINABLE_PROPERTY",
    "Table.columns#4 Column[0..-1] COU INTERNAL <-> Column.table",
    "Table.layout#8 Position[0..1] C DEFERRED",
    "Column.table#2 Table[1..1] K INTERNAL <-> Table.columns",
    "Column.nullable#7 IBoolean[0..1] - NONE =true",
    "View.kind#11 TableKind[0..1] - NONE =VIEW redefines Table.kind"};

// The enumerations (type ids 9-11) with their literals; the first is the default.
const std::vector<std::string> kEnums = {"DataType VARCHAR CHAR INTEGER BIGINT DECIMAL DOUBLE DATE TIMESTAMP BOOLEAN BLOB",
                                         "TableKind TABLE VIEW EXTERNAL", "RefRule CASCADE RESTRICT SET_NULL NO_ACTION"};

TEST(CatalogMetamodelTest, IsRegisteredWithItsNamesVersionAndFactoryAndItsTypesMatchTheTables) {
  EXPECT_EQ(QVXRuntime::getInstance()->getIPackageForName("com.example.catalog"), pkg());
  EXPECT_EQ(pkg()->getVersion(), IUString("1.2.0"));
  EXPECT_EQ(pkg()->getXMLPackageNsPrefix(), IUString("cat"));
  EXPECT_EQ(pkg()->getFactory(), com::example::catalog::CatalogIFactory::iGetInstance());
  EXPECT_EQ(pkg()->getFactory()->getPackage(), pkg());
  std::vector<std::string> classes, enums;
  for (std::size_t typeId = 0; typeId < pkg()->getTypes().size(); ++typeId) {
    IType* type = pkg()->getTypes()[typeId];
    ASSERT_EQ(type->getTypeId(), static_cast<int>(typeId));
    if (type->isEnum()) {
      auto* enumeration = static_cast<IEnumeration*>(type);
      std::string text = type->getName().toUtf8();
      for (IEnumerationLiteral* literal : enumeration->getLiterals()) text += " " + literal->getName().toUtf8();
      enums.push_back(text);
      EXPECT_EQ(enumeration->getDefaultLiteral(), enumeration->getLiterals()[0]);
      continue;
    }
    auto* objectClass = static_cast<IClass*>(type);
    std::string text = qvx_test::describe(*objectClass) + " |";
    for (IProperty* property : objectClass->getDeclaredProperties()) {
      text += " " + property->getName().toUtf8();
      EXPECT_EQ(property->isCollection() != IFALSE, property->getMaxOccurs() == -1) << text;
    }
    classes.push_back(text);
    // Ids continue the inherited numbering without gaps.
    IVector<IProperty*> const& all = objectClass->getAllProperties(ITRUE);
    for (std::size_t id = 0; id < all.size(); ++id) EXPECT_EQ(all[id]->getPropertyId(), static_cast<int>(id));
  }
  EXPECT_THAT(classes, testing::ElementsAreArray(kClasses));
  EXPECT_THAT(enums, testing::ElementsAreArray(kEnums));
  for (std::string const& expected : kProperties) {
    const std::size_t dot = expected.find('.');
    IClass* owner = static_cast<IClass*>(pkg()->getType(expected.substr(0, dot).c_str()));
    EXPECT_EQ(qvx_test::describe(*owner->getDeclaredProperty(expected.substr(dot + 1, expected.find('#') - dot - 1).c_str())),
              expected);
  }
  EXPECT_EQ(pkg()->getLiteral(com::example::catalog::RefRule::NO_ACTION)->getQualifiedName(),
            IUString("com.example.catalog.RefRule.NO_ACTION"));
}

TEST(CatalogMetamodelTest, ViewKindReplacesTableKindOnlyWhenRedefinedPropertiesArePruned) {
  IClass* view = pkg()->getViewIClass();
  const std::string kept = qvx_test::namesOf(view->getAllProperties(ITRUE));
  EXPECT_EQ(kept, "NamedElement.name NamedElement.description Table.kind Table.rowCount Table.columns "
                  "Table.primaryKey Table.foreignKeys Table.tags Table.layout Table.thumbnail View.query View.kind ");
  std::string pruned = kept;
  pruned.erase(pruned.find("Table.kind "), 11);
  EXPECT_EQ(qvx_test::namesOf(view->getAllProperties(IFALSE)), pruned);
  EXPECT_EQ(pkg()->getView_KindIProperty()->getRootProperty(), pkg()->getTable_KindIProperty());
  EXPECT_EQ(view->getProperty("kind"), pkg()->getTable_KindIProperty());
  EXPECT_EQ(pkg()->getTableIClass()->getAllProperties(IFALSE).size(), 10U);  // a table keeps its kind
}

}  // namespace

namespace {

// What the serializers will read from the class table of Column, one of each kind.
TEST(CatalogMetamodelTest, ClassTableGivesKindsDefaultsAndXmlNames) {
  using internal::ClassTable;
  using internal::PropertyKind;
  ClassTable const& table = pkg()->getColumnIClass()->getClassTable();
  ASSERT_EQ(table.entries().size(), pkg()->getColumnIClass()->getAllProperties(ITRUE).size());
  auto entryOf = [&table](IProperty const* property) {
    ClassTable::Entry const* entry = table.find(*property);
    EXPECT_NE(entry, nullptr) << property->getName().toUtf8();
    return entry != nullptr ? *entry : ClassTable::Entry();
  };
  const ClassTable::Entry description = entryOf(pkg()->getNamedElement_DescriptionIProperty());
  EXPECT_TRUE(description.xmlAsElement);
  EXPECT_EQ(description.xmlElementNameUtf8, "documentation");
  EXPECT_EQ(description.nameUtf8, "description");
  EXPECT_EQ(entryOf(pkg()->getColumn_DataTypeIProperty()).kind, PropertyKind::kEnumeration);
  EXPECT_EQ(entryOf(pkg()->getColumn_DataTypeIProperty()).defaultLiteral, IUString("VARCHAR"));
  EXPECT_EQ(entryOf(pkg()->getColumn_LengthIProperty()).primitiveTypeId, ICoreDatatypes::INTEGER_TYPE_ID);
  EXPECT_TRUE(entryOf(pkg()->getColumn_SampleValuesIProperty()).multiValued);
  EXPECT_EQ(entryOf(pkg()->getColumn_TypeIProperty()).kind, PropertyKind::kReference);
  EXPECT_EQ(entryOf(pkg()->getColumn_TableIProperty()).kind, PropertyKind::kReference);
  EXPECT_TRUE(entryOf(pkg()->getColumn_TableIProperty()).container);
  ClassTable const& tables = pkg()->getTableIClass()->getClassTable();
  EXPECT_EQ(tables.find(*pkg()->getTable_ColumnsIProperty())->kind, PropertyKind::kContainment);
  EXPECT_EQ(tables.find(*pkg()->getColumn_LengthIProperty()), nullptr);
}

}  // namespace
