// The metamodel of the catalog package as the interchange formats see it: registration,
// type ids, inherited property numbering, multiplicities and flags, the redefinition of
// Table.kind by View.kind, and the enumerations.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "examples/catalog/CatalogIFactory.h"
#include "examples/catalog/CatalogIPackage.h"
#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using catalog_test::pkg;
using com::example::catalog::CatalogIFactory;
using com::example::catalog::CatalogIPackage;
using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IClassKind;
using com::veltrana::qvx::icore::IEnumeration;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::IRedefinability;
using com::veltrana::qvx::icore::IReferenceScope;
using com::veltrana::qvx::icore::IType;
using com::veltrana::qvx::icore::QVXRuntime;

std::vector<std::string> namesOf(IVector<IProperty*> const& properties) {
  std::vector<std::string> names;
  for (IProperty const* property : properties) {
    names.push_back(property->getDeclaringClass()->getName().toUtf8() + "." + property->getName().toUtf8());
  }
  return names;
}

std::vector<IClass*> allClasses() {
  std::vector<IClass*> classes;
  for (IType* type : pkg()->getTypes()) {
    if (type->isClass()) classes.push_back(static_cast<IClass*>(type));
  }
  return classes;
}

TEST(CatalogMetamodelTest, PackageIsRegisteredWithItsNamesVersionAndFactory) {
  CatalogIPackage* package = pkg();
  ASSERT_NE(package, nullptr);
  EXPECT_EQ(QVXRuntime::getInstance()->getIPackageForName("com.example.catalog"), package);
  EXPECT_EQ(package->getQualifiedName(), IUString("com.example.catalog"));
  EXPECT_EQ(package->getVersion(), IUString("1.2.0"));
  EXPECT_EQ(package->getXMLPackageNsPrefix(), IUString("cat"));
  EXPECT_EQ(package->getFactory(), CatalogIFactory::iGetInstance());
  EXPECT_EQ(CatalogIFactory::iGetInstance()->getPackage(), package);
  EXPECT_EQ(package->getTableIClass()->getQualifiedName(), IUString("com.example.catalog.Table"));
}

TEST(CatalogMetamodelTest, TypesAreNumberedInTheirOrderWithEnumerationsLast) {
  const char* const expected[] = {"NamedElement", "Catalog", "Schema",   "Table",     "Column",  "ForeignKey",
                                  "Position",     "DataTypeDef", "View", "DataType", "TableKind", "RefRule"};
  IVector<IType*> const& types = pkg()->getTypes();
  ASSERT_EQ(types.size(), std::size(expected));
  for (std::size_t id = 0; id < types.size(); ++id) {
    EXPECT_EQ(types[id]->getTypeId(), static_cast<int>(id));
    EXPECT_EQ(types[id]->getName().toUtf8(), expected[id]);
    EXPECT_EQ(types[id]->isEnum() != IFALSE, id >= 9) << expected[id];
    EXPECT_EQ(types[id]->getPackage(), pkg());
  }
}

TEST(CatalogMetamodelTest, ClassesHaveTheirSuperClassKindScopeAndFlags) {
  CatalogIPackage* p = pkg();
  EXPECT_EQ(p->getNamedElementIClass()->getSuperClass(), nullptr);
  EXPECT_EQ(p->getPositionIClass()->getSuperClass(), nullptr);
  EXPECT_EQ(p->getViewIClass()->getSuperClass(), p->getTableIClass());
  for (IClass* named : {p->getCatalogIClass(), p->getSchemaIClass(), p->getTableIClass(), p->getColumnIClass(),
                        p->getForeignKeyIClass(), p->getDataTypeDefIClass()}) {
    EXPECT_EQ(named->getSuperClass(), p->getNamedElementIClass()) << named->getName().toUtf8();
  }
  for (IClass* objectClass : allClasses()) {
    const bool isPosition = objectClass == p->getPositionIClass();
    EXPECT_EQ(objectClass->isIdentifiableClass() != IFALSE, !isPosition) << objectClass->getName().toUtf8();
    EXPECT_EQ(objectClass->isValueClass() != IFALSE, isPosition) << objectClass->getName().toUtf8();
    EXPECT_EQ(objectClass->isAbstract() != IFALSE, objectClass == p->getNamedElementIClass());
    EXPECT_EQ(objectClass->isSeeded() != IFALSE, objectClass == p->getDataTypeDefIClass());
    EXPECT_FALSE(objectClass->isFinal());
  }
  EXPECT_EQ(&p->getCatalogIClass()->getClassKind(), &IClassKind::FIRST_CLASS);
  EXPECT_EQ(&p->getDataTypeDefIClass()->getClassKind(), &IClassKind::FIRST_CLASS);
  EXPECT_EQ(&p->getColumnIClass()->getClassKind(), &IClassKind::SECOND_CLASS);
  EXPECT_EQ(&p->getPositionIClass()->getReferenceScope(), &IReferenceScope::NONE);
  EXPECT_EQ(&p->getViewIClass()->getReferenceScope(), &IReferenceScope::EXTERNAL);
}

// One row per property as the package defines it; the ids continue the inherited
// numbering of each class.
struct ExpectedProperty {
  const char* owner;
  int id;
  const char* name;
  const char* type;
  int minOccurs;
  int maxOccurs;
  const char* defaultLiteral;
};

const ExpectedProperty kExpectedProperties[] = {
    {"NamedElement", 0, "name", "IString", 1, 1, ""},
    {"NamedElement", 1, "description", "IString", 0, 1, ""},
    {"Catalog", 2, "version", "IString", 1, 1, "1.0"},
    {"Catalog", 3, "created", "IDate", 1, 1, ""},
    {"Catalog", 4, "schemas", "Schema", 0, -1, ""},
    {"Catalog", 5, "dataTypes", "DataTypeDef", 0, -1, ""},
    {"Catalog", 6, "connectionPassword", "IString", 0, 1, ""},
    {"Schema", 2, "owner", "IString", 0, 1, ""},
    {"Schema", 3, "tables", "Table", 0, -1, ""},
    {"Table", 2, "kind", "TableKind", 0, 1, "TABLE"},
    {"Table", 3, "rowCount", "ILong", 0, 1, "0"},
    {"Table", 4, "columns", "Column", 0, -1, ""},
    {"Table", 5, "primaryKey", "Column", 0, -1, ""},
    {"Table", 6, "foreignKeys", "ForeignKey", 0, -1, ""},
    {"Table", 7, "tags", "IString", 0, -1, ""},
    {"Table", 8, "layout", "Position", 0, 1, ""},
    {"Table", 9, "thumbnail", "IBlob", 0, 1, ""},
    {"Column", 2, "table", "Table", 1, 1, ""},
    {"Column", 3, "dataType", "DataType", 0, 1, "VARCHAR"},
    {"Column", 4, "length", "IInteger", 0, 1, "0"},
    {"Column", 5, "precision", "IShort", 0, 1, "0"},
    {"Column", 6, "scale", "IByte", 0, 1, "0"},
    {"Column", 7, "nullable", "IBoolean", 0, 1, "true"},
    {"Column", 8, "defaultValue", "IString", 0, 1, ""},
    {"Column", 9, "selectivity", "IDouble", 0, 1, "0.0"},
    {"Column", 10, "weight", "IFloat", 0, 1, "0.0"},
    {"Column", 11, "created", "IDate", 0, 1, ""},
    {"Column", 12, "initial", "ICharacter", 0, 1, ""},
    {"Column", 13, "sampleValues", "IInteger", 0, -1, ""},
    {"Column", 14, "type", "DataTypeDef", 0, 1, ""},
    {"ForeignKey", 2, "targetTable", "Table", 0, 1, ""},
    {"ForeignKey", 3, "columns", "Column", 0, -1, ""},
    {"ForeignKey", 4, "rules", "RefRule", 0, -1, ""},
    {"Position", 0, "x", "IInteger", 1, 1, "0"},
    {"Position", 1, "y", "IInteger", 1, 1, "0"},
    {"DataTypeDef", 2, "sqlName", "IString", 1, 1, ""},
    {"DataTypeDef", 3, "maxLength", "IInteger", 0, 1, "0"},
    {"View", 10, "query", "IString", 0, 1, ""},
    {"View", 11, "kind", "TableKind", 0, 1, "VIEW"},
};

TEST(CatalogMetamodelTest, DeclaredPropertiesHaveTheirIdsTypesMultiplicitiesAndDefaults) {
  std::size_t seen = 0;
  for (IClass* objectClass : allClasses()) {
    for (IProperty const* property : objectClass->getDeclaredProperties()) {
      const std::string where = objectClass->getName().toUtf8() + "." + property->getName().toUtf8();
      const ExpectedProperty* row = nullptr;
      for (const ExpectedProperty& candidate : kExpectedProperties) {
        if (objectClass->getName() == IUString(candidate.owner) && property->getName() == IUString(candidate.name)) {
          row = &candidate;
        }
      }
      ASSERT_NE(row, nullptr) << "unexpected property " << where;
      ++seen;
      EXPECT_EQ(property->getPropertyId(), row->id) << where;
      EXPECT_EQ(property->getType()->getName().toUtf8(), row->type) << where;
      EXPECT_EQ(property->getMinOccurs(), row->minOccurs) << where;
      EXPECT_EQ(property->getMaxOccurs(), row->maxOccurs) << where;
      EXPECT_EQ(property->getDefaultValueLiteral().toUtf8(), row->defaultLiteral) << where;
    }
  }
  EXPECT_EQ(seen, std::size(kExpectedProperties));
}

TEST(CatalogMetamodelTest, EveryClassNumbersAllItsPropertiesWithoutGapsAfterItsSuperClass) {
  for (IClass* objectClass : allClasses()) {
    IVector<IProperty*> const& all = objectClass->getAllProperties(ITRUE);
    for (std::size_t index = 0; index < all.size(); ++index) {
      EXPECT_EQ(all[index]->getPropertyId(), static_cast<int>(index))
          << objectClass->getName().toUtf8() << " " << all[index]->getName().toUtf8();
      EXPECT_TRUE(objectClass->hasProperty(*all[index]));
    }
  }
  EXPECT_EQ(pkg()->getColumnIClass()->getAllProperties(ITRUE).size(), 15U);
  EXPECT_FALSE(pkg()->getColumnIClass()->hasProperty(*pkg()->getTable_RowCountIProperty()));
}

TEST(CatalogMetamodelTest, ViewKindRedefinesTableKind) {
  CatalogIPackage* p = pkg();
  IProperty* tableKind = p->getTable_KindIProperty();
  IProperty* viewKind = p->getView_KindIProperty();
  EXPECT_EQ(&tableKind->getRedefinability(), &IRedefinability::REDEFINABLE_PROPERTY);
  EXPECT_EQ(&viewKind->getRedefinability(), &IRedefinability::FINAL_PROPERTY);
  EXPECT_EQ(viewKind->getRedefinedPropertyName(), IUString("kind"));
  EXPECT_EQ(viewKind->getRedefinedProperty(), tableKind);
  EXPECT_EQ(viewKind->getRootProperty(), tableKind);

  const std::vector<std::string> kept = namesOf(p->getViewIClass()->getAllProperties(ITRUE));
  const std::vector<std::string> pruned = namesOf(p->getViewIClass()->getAllProperties(IFALSE));
  EXPECT_EQ(kept, (std::vector<std::string>{"NamedElement.name", "NamedElement.description", "Table.kind",
                                            "Table.rowCount", "Table.columns", "Table.primaryKey",
                                            "Table.foreignKeys", "Table.tags", "Table.layout", "Table.thumbnail",
                                            "View.query", "View.kind"}));
  std::vector<std::string> expectedPruned = kept;
  expectedPruned.erase(expectedPruned.begin() + 2);
  EXPECT_EQ(pruned, expectedPruned);
  // A table itself keeps its kind.
  EXPECT_EQ(p->getTableIClass()->getAllProperties(IFALSE).size(), 10U);
}

TEST(CatalogMetamodelTest, ExactlyTheUnboundedPropertiesAreCollections) {
  const std::set<std::string> collections = {"Catalog.schemas",   "Catalog.dataTypes",  "Schema.tables",
                                             "Table.columns",     "Table.primaryKey",   "Table.foreignKeys",
                                             "Table.tags",        "Column.sampleValues", "ForeignKey.columns",
                                             "ForeignKey.rules"};
  for (IClass* objectClass : allClasses()) {
    for (IProperty const* property : objectClass->getDeclaredProperties()) {
      const std::string name = objectClass->getName().toUtf8() + "." + property->getName().toUtf8();
      EXPECT_EQ(property->isCollection() != IFALSE, collections.count(name) == 1) << name;
    }
  }
}

TEST(CatalogMetamodelTest, ContainmentOppositesAndOtherFlags) {
  CatalogIPackage* p = pkg();
  for (IProperty* contained : {p->getCatalog_SchemasIProperty(), p->getSchema_TablesIProperty(),
                               p->getTable_ColumnsIProperty(), p->getTable_ForeignKeysIProperty()}) {
    EXPECT_TRUE(contained->isContainment()) << contained->getName().toUtf8();
    EXPECT_TRUE(contained->isOrdered()) << contained->getName().toUtf8();
    EXPECT_EQ(&contained->getReferenceScope(), &IReferenceScope::INTERNAL) << contained->getName().toUtf8();
  }
  EXPECT_TRUE(p->getTable_LayoutIProperty()->isContainment());
  EXPECT_EQ(&p->getTable_LayoutIProperty()->getReferenceScope(), &IReferenceScope::DEFERRED);
  EXPECT_FALSE(p->getCatalog_DataTypesIProperty()->isContainment());
  EXPECT_FALSE(p->getForeignKey_ColumnsIProperty()->isContainment());

  IProperty* columns = p->getTable_ColumnsIProperty();
  IProperty* table = p->getColumn_TableIProperty();
  EXPECT_TRUE(columns->isUnique());
  EXPECT_TRUE(p->getTable_PrimaryKeyIProperty()->isUnique());
  EXPECT_FALSE(p->getForeignKey_ColumnsIProperty()->isUnique());
  EXPECT_EQ(columns->getOppositeProperty(), table);
  EXPECT_EQ(table->getOppositeProperty(), columns);
  EXPECT_TRUE(table->isContainer());
  EXPECT_EQ(&table->getReferenceScope(), &IReferenceScope::INTERNAL);
  EXPECT_EQ(p->getSchema_TablesIProperty()->getOppositeProperty(), nullptr);

  EXPECT_TRUE(p->getCatalog_ConnectionPasswordIProperty()->isSensitive());
  EXPECT_FALSE(p->getNamedElement_NameIProperty()->isSensitive());
  EXPECT_EQ(&p->getColumn_LengthIProperty()->getReferenceScope(), &IReferenceScope::NONE);
  EXPECT_EQ(&p->getColumn_TypeIProperty()->getReferenceScope(), &IReferenceScope::DEFERRED);

  IProperty* description = p->getNamedElement_DescriptionIProperty();
  EXPECT_TRUE(description->getXMLPropertyAsElement());
  EXPECT_EQ(description->getXMLPropertyElementName(), IUString("documentation"));
  EXPECT_FALSE(p->getNamedElement_NameIProperty()->getXMLPropertyAsElement());
}

TEST(CatalogMetamodelTest, EnumerationsListTheirLiteralsInOrdinalOrderWithDefaults) {
  struct ExpectedEnumeration {
    IEnumeration* enumeration;
    std::vector<std::string> literals;
  };
  CatalogIPackage* p = pkg();
  const ExpectedEnumeration expected[] = {
      {p->getDataTypeIEnumeration(),
       {"VARCHAR", "CHAR", "INTEGER", "BIGINT", "DECIMAL", "DOUBLE", "DATE", "TIMESTAMP", "BOOLEAN", "BLOB"}},
      {p->getTableKindIEnumeration(), {"TABLE", "VIEW", "EXTERNAL"}},
      {p->getRefRuleIEnumeration(), {"CASCADE", "RESTRICT", "SET_NULL", "NO_ACTION"}},
  };
  for (const ExpectedEnumeration& row : expected) {
    IVector<IEnumerationLiteral*> const& literals = row.enumeration->getLiterals();
    ASSERT_EQ(literals.size(), row.literals.size());
    for (std::size_t ordinal = 0; ordinal < literals.size(); ++ordinal) {
      EXPECT_EQ(literals[ordinal]->getName().toUtf8(), row.literals[ordinal]);
      EXPECT_EQ(literals[ordinal]->getOrdinalValue(), static_cast<int>(ordinal));
    }
    EXPECT_EQ(row.enumeration->getDefaultLiteral(), literals[0]);
  }
  EXPECT_EQ(p->getLiteral(com::example::catalog::DataType::BLOB)->getQualifiedName(),
            IUString("com.example.catalog.DataType.BLOB"));
  EXPECT_EQ(p->getLiteral(com::example::catalog::RefRule::NO_ACTION)->getName(), IUString("NO_ACTION"));
}

}  // namespace
