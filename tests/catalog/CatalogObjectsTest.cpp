// Objects of the catalog package seen through the reflective facade the way the
// serializers use it: every kind of property value, the storage contract's errors,
// containment with its back-pointers and ownership, the two ends of Table.columns /
// Column.table, the encrypted password, and the factory.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogIFactory.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "examples/catalog/View.h"
#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "platform/WkDate.h"
#include "tests/catalog/CatalogTestSupport.h"
#include "tests/support/AssertionCatcher.h"

namespace {

using catalog_test::infoOf;
using catalog_test::pkg;
using com::example::catalog::Catalog;
using com::example::catalog::CatalogIFactory;
using com::example::catalog::Column;
using com::example::catalog::DataType;
using com::example::catalog::DataTypeDef;
using com::example::catalog::ForeignKey;
using com::example::catalog::Position;
using com::example::catalog::RefRule;
using com::example::catalog::Schema;
using com::example::catalog::Table;
using com::example::catalog::TableKind;
using com::example::catalog::View;
using com::veltrana::qvx::icore::ICoreDatatypes;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::icore::qvxGetMsg;
using com::veltrana::qvx::icore::exception::IdentityException;
using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::icore::exception::InstantiationException;

template <typename T>
T const& valueOf(void const* reflective) {
  return *static_cast<T const*>(reflective);
}

template <typename T>
IVector<T*>& collectionOf(IObjectInfo& info, IProperty const& property) {
  return *static_cast<IVector<T*>*>(const_cast<void*>(info.get(property, IFALSE)));
}

TEST(CatalogObjectsTest, FreshColumnHoldsTheDefaultsOfItsProperties) {
  Column column;
  IObjectInfo& info = infoOf(&column);
  auto* p = pkg();
  EXPECT_EQ(info.get(*p->getColumn_DataTypeIProperty(), IFALSE), p->getLiteral(DataType::VARCHAR));
  EXPECT_EQ(valueOf<std::int32_t>(info.get(*p->getColumn_LengthIProperty(), ITRUE)), 0);
  EXPECT_EQ(valueOf<IBOOLEAN>(info.get(*p->getColumn_NullableIProperty(), ITRUE)), ITRUE);
  EXPECT_EQ(valueOf<double>(info.get(*p->getColumn_SelectivityIProperty(), ITRUE)), 0.0);
  // Optional values without a default are absent, yet count as one.
  EXPECT_EQ(info.get(*p->getColumn_DefaultValueIProperty(), ITRUE), nullptr);
  EXPECT_EQ(info.get(*p->getColumn_CreatedIProperty(), ITRUE), nullptr);
  EXPECT_EQ(info.get(*p->getColumn_InitialIProperty(), ITRUE), nullptr);
  EXPECT_EQ(info.get(*p->getNamedElement_DescriptionIProperty(), ITRUE), nullptr);
  EXPECT_EQ(info.getCardinality(*p->getColumn_DefaultValueIProperty()), 1);
  EXPECT_EQ(info.getCardinality(*p->getColumn_TypeIProperty()), 0);
  EXPECT_EQ(info.getCardinality(*p->getColumn_SampleValuesIProperty()), 0);
  Catalog catalog;
  EXPECT_EQ(valueOf<IUString>(infoOf(&catalog).get(*p->getCatalog_VersionIProperty(), ITRUE)), IUString("1.0"));
}

TEST(CatalogObjectsTest, PrimitiveValuesOfEveryTypeTravelThroughTheFacade) {
  auto* p = pkg();
  Column column;
  IObjectInfo& info = infoOf(&column);
  IUString name("col_x");
  std::int32_t length = 64;
  std::int16_t precision = -12;
  char scale = 7;
  IBOOLEAN nullable = IFALSE;
  double selectivity = 0.125;
  float weight = 2.5F;
  WkDate created = WkDate::fromTime(1700000000);
  char16_t initial = u'\u00e9';
  info.set(*p->getNamedElement_NameIProperty(), &name, 0, ITRUE);
  info.set(*p->getColumn_LengthIProperty(), &length, 0, ITRUE);
  info.set(*p->getColumn_PrecisionIProperty(), &precision, 0, ITRUE);
  info.set(*p->getColumn_ScaleIProperty(), &scale, 0, ITRUE);
  info.set(*p->getColumn_NullableIProperty(), &nullable, 0, ITRUE);
  info.set(*p->getColumn_SelectivityIProperty(), &selectivity, 0, ITRUE);
  info.set(*p->getColumn_WeightIProperty(), &weight, 0, ITRUE);
  info.set(*p->getColumn_CreatedIProperty(), &created, 0, ITRUE);
  info.set(*p->getColumn_InitialIProperty(), &initial, 0, ITRUE);

  EXPECT_EQ(column.getName(), name);
  EXPECT_EQ(column.getLength(), 64);
  EXPECT_EQ(column.getPrecision(), -12);
  EXPECT_EQ(column.getScale(), 7);
  EXPECT_FALSE(column.isNullable());
  EXPECT_EQ(column.getSelectivity(), 0.125);
  EXPECT_EQ(column.getWeight(), 2.5F);
  EXPECT_EQ(column.getCreated(), created);
  EXPECT_EQ(column.getInitial(), u'\u00e9');

  column.setDefaultValue(IUString("n/a"));
  EXPECT_EQ(valueOf<IUString>(info.get(*p->getColumn_DefaultValueIProperty(), ITRUE)), IUString("n/a"));
  info.set(*p->getColumn_DefaultValueIProperty(), nullptr, 0, ITRUE);
  EXPECT_FALSE(column.getDefaultValue().has_value());
  // A null value puts a property with a default back to its default.
  info.set(*p->getColumn_NullableIProperty(), nullptr, 0, ITRUE);
  EXPECT_TRUE(column.isNullable());

  Table table;
  std::int64_t rowCount = 5000000000LL;
  infoOf(&table).set(*p->getTable_RowCountIProperty(), &rowCount, 0, ITRUE);
  EXPECT_EQ(table.getRowCount(), 5000000000LL);
}

TEST(CatalogObjectsTest, BlobPassesItsLengthBesideTheBytes) {
  Table table;
  IObjectInfo& info = infoOf(&table);
  IProperty const& thumbnail = *pkg()->getTable_ThumbnailIProperty();
  unsigned int length = 99;
  EXPECT_EQ(info.get(thumbnail, &length, ITRUE), nullptr);
  EXPECT_EQ(length, 0U);

  char bytes[] = {1, 2, 0, static_cast<char>(0xff)};
  info.set(thumbnail, bytes, sizeof bytes, ITRUE);
  bytes[0] = 9;  // the object keeps its own copy
  auto const* stored = static_cast<char const*>(info.get(thumbnail, &length, ITRUE));
  ASSERT_EQ(length, 4U);
  EXPECT_EQ(std::vector<char>(stored, stored + length), (std::vector<char>{1, 2, 0, static_cast<char>(0xff)}));

  // An empty blob is a value, distinct from no blob.
  table.setThumbnail(std::vector<char>());
  EXPECT_NE(info.get(thumbnail, &length, ITRUE), nullptr);
  EXPECT_EQ(length, 0U);
}

TEST(CatalogObjectsTest, EnumerationValuesAreLiteralsAndNullRestoresTheDefault) {
  auto* p = pkg();
  Column column;
  IObjectInfo& info = infoOf(&column);
  info.set(*p->getColumn_DataTypeIProperty(), p->getLiteral(DataType::DECIMAL), 0, IFALSE);
  EXPECT_EQ(column.getDataType(), p->getLiteral(DataType::DECIMAL));
  info.set(*p->getColumn_DataTypeIProperty(), nullptr, 0, IFALSE);
  EXPECT_EQ(column.getDataType(), p->getLiteral(DataType::VARCHAR));
}

TEST(CatalogObjectsTest, ViewKindAndTableKindShareOneValueWithTheViewDefault) {
  auto* p = pkg();
  View view;
  Table table;
  IObjectInfo& info = infoOf(&view);
  EXPECT_EQ(table.getKind(), p->getLiteral(TableKind::TABLE));
  EXPECT_EQ(view.getKind(), p->getLiteral(TableKind::VIEW));
  EXPECT_EQ(info.get(*p->getTable_KindIProperty(), IFALSE), p->getLiteral(TableKind::VIEW));
  EXPECT_EQ(info.get(*p->getView_KindIProperty(), IFALSE), p->getLiteral(TableKind::VIEW));

  info.set(*p->getTable_KindIProperty(), p->getLiteral(TableKind::EXTERNAL), 0, IFALSE);
  EXPECT_EQ(info.get(*p->getView_KindIProperty(), IFALSE), p->getLiteral(TableKind::EXTERNAL));
  info.set(*p->getView_KindIProperty(), nullptr, 0, IFALSE);
  EXPECT_EQ(view.getKind(), p->getLiteral(TableKind::VIEW));
  // The view's own property is not one of a plain table's.
  EXPECT_THROW(infoOf(&table).get(*p->getView_KindIProperty(), IFALSE), IllegalArgumentException);
}

TEST(CatalogObjectsTest, MultiValuedEnumerationsAndPrimitivesAreTheOwnersCollections) {
  auto* p = pkg();
  ForeignKey foreignKey;
  IObjectInfo& keyInfo = infoOf(&foreignKey);
  IProperty const& rules = *p->getForeignKey_RulesIProperty();
  EXPECT_FALSE(keyInfo.hasItems(rules));
  collectionOf<IEnumerationLiteral>(keyInfo, rules).append(p->getLiteral(RefRule::SET_NULL));
  foreignKey.addRule(p->getLiteral(RefRule::CASCADE));
  EXPECT_TRUE(keyInfo.hasItems(rules));
  EXPECT_EQ(keyInfo.getCardinality(rules), 2);
  EXPECT_EQ(foreignKey.getRules()[0], p->getLiteral(RefRule::SET_NULL));
  EXPECT_EQ(&collectionOf<IEnumerationLiteral>(keyInfo, rules), &foreignKey.getRules());

  Table table;
  IObjectInfo& tableInfo = infoOf(&table);
  IProperty const& tags = *p->getTable_TagsIProperty();
  // Values put into the collection belong to the table, which frees them.
  collectionOf<IUString>(tableInfo, tags).append(new IUString("hot"));
  table.addTag("cold");
  EXPECT_EQ(tableInfo.getCardinality(tags), 2);
  EXPECT_TRUE(table.removeTag("hot"));
  EXPECT_FALSE(table.removeTag("hot"));
  ASSERT_EQ(table.getTags().size(), 1U);
  EXPECT_EQ(*table.getTags()[0], IUString("cold"));

  Column column;
  column.addSampleValue(4);
  collectionOf<std::int32_t>(infoOf(&column), *p->getColumn_SampleValuesIProperty()).append(new std::int32_t(8));
  ASSERT_EQ(column.getSampleValues().size(), 2U);
  EXPECT_EQ(*column.getSampleValues()[1], 8);
}

TEST(CatalogObjectsTest, StorageContractErrorsCarryTheirMessages) {
  auto* p = pkg();
  Table table;
  IObjectInfo& info = infoOf(&table);
  IProperty const& foreign = *p->getColumn_LengthIProperty();
  const IUString notReadable = qvxFormatMsg(73005, foreign.getName(), IUString("com.example.catalog.Table"));
  std::int32_t value = 1;
  EXPECT_THROW_MSG(info.get(foreign, IFALSE), IllegalArgumentException, notReadable);
  EXPECT_THROW_MSG(info.set(foreign, &value, 0, ITRUE), IllegalArgumentException, notReadable);
  EXPECT_THROW_MSG(info.hasItems(foreign), IllegalArgumentException, notReadable);
  // A property of the core package is no property of a catalog object either.
  EXPECT_THROW(info.get(*IcoreIPackage::iGetInstance()->getIModelElement_NameIProperty(), IFALSE),
               IllegalArgumentException);

  IProperty const& columns = *p->getTable_ColumnsIProperty();
  IVector<IObject*> replacement;
  EXPECT_THROW_MSG(info.set(columns, &replacement, 0, IFALSE), IllegalArgumentException,
                   qvxFormatMsg(73010, columns.getName(), IUString("Table")));
  EXPECT_THROW_MSG(infoOf(&table).hasItems(*p->getTable_RowCountIProperty()), IllegalArgumentException,
                   qvxFormatMsg(73005, IUString("rowCount"), IUString("com.example.catalog.Table")));
  Position position;
  EXPECT_THROW(infoOf(&position).hasItems(*p->getPosition_XIProperty()), IllegalArgumentException);
}

TEST(CatalogObjectsTest, ReferencesAreTheObjectsThemselves) {
  auto* p = pkg();
  Table target;
  DataTypeDef type;
  Column column;
  ForeignKey foreignKey;
  IObjectInfo& keyInfo = infoOf(&foreignKey);
  IProperty const& targetTable = *p->getForeignKey_TargetTableIProperty();
  keyInfo.set(targetTable, static_cast<IObject*>(&target), 0, IFALSE);
  EXPECT_EQ(foreignKey.getTargetTable(), &target);
  EXPECT_EQ(keyInfo.get(targetTable, IFALSE), static_cast<IObject*>(&target));
  EXPECT_EQ(keyInfo.getCardinality(targetTable), 1);
  // A reference is not containment: the target keeps its (absent) container.
  EXPECT_EQ(infoOf(&target).getContainer(), nullptr);

  infoOf(&column).set(*p->getColumn_TypeIProperty(), static_cast<IObject*>(&type), 0, IFALSE);
  EXPECT_EQ(column.getType(), &type);

  collectionOf<IObject>(keyInfo, *p->getForeignKey_ColumnsIProperty()).append(&column);
  ASSERT_EQ(foreignKey.getColumns().size(), 1U);
  EXPECT_EQ(foreignKey.getColumns()[0], &column);
  EXPECT_TRUE(foreignKey.getColumns().contains(&column));

  // An object of the wrong class is a programming error; the value stays unset.
  AssertionCatcher catcher;
  EXPECT_THROW(keyInfo.set(targetTable, static_cast<IObject*>(&column), 0, IFALSE), AssertionFailure);
}

TEST(CatalogObjectsTest, ContainmentSetsBackPointersAndMovesChildren) {
  auto* p = pkg();
  auto first = std::make_unique<Catalog>();
  auto second = std::make_unique<Catalog>();
  auto* schema = new Schema();
  first->addSchema(schema);
  EXPECT_EQ(infoOf(schema).getContainer(), first.get());
  EXPECT_EQ(infoOf(schema).getContainmentProperty(), p->getCatalog_SchemasIProperty());
  first->addSchema(schema);  // already there: no second entry
  EXPECT_EQ(first->getSchemas().size(), 1U);

  second->addSchema(schema);
  EXPECT_EQ(first->getSchemas().size(), 0U);
  EXPECT_EQ(second->getSchemas()[0], schema);
  EXPECT_EQ(infoOf(schema).getContainer(), second.get());

  EXPECT_TRUE(second->removeSchema(schema));
  EXPECT_EQ(infoOf(schema).getContainer(), nullptr);
  EXPECT_FALSE(second->removeSchema(schema));
  delete schema;  // released to us

  Table table;
  IObjectInfo& info = infoOf(&table);
  IProperty const& layout = *p->getTable_LayoutIProperty();
  auto* position = new Position(3, 4);
  info.set(layout, static_cast<IObject*>(position), 0, IFALSE);
  EXPECT_EQ(table.getLayout(), position);
  EXPECT_EQ(infoOf(position).getContainer(), &table);
  EXPECT_EQ(infoOf(position).getContainmentProperty(), &layout);
  EXPECT_EQ(info.getCardinality(layout), 1);

  // Replacing a single contained value releases the old one to the caller.
  std::unique_ptr<Position> released(position);
  table.setLayout(new Position(5, 6));
  EXPECT_EQ(infoOf(released.get()).getContainer(), nullptr);
  EXPECT_EQ(table.getLayout()->getX(), 5);

  // A contained value moved to another container leaves the first one.
  Table other;
  other.setLayout(table.getLayout());
  EXPECT_EQ(table.getLayout(), nullptr);
  EXPECT_EQ(infoOf(other.getLayout()).getContainer(), &other);
}

TEST(CatalogObjectsTest, ColumnsAndTheirTableStayInStepFromEitherEnd) {
  auto* p = pkg();
  Table first;
  Table second;
  auto* column = new Column();
  first.addColumn(column);
  EXPECT_EQ(column->getTable(), &first);
  EXPECT_EQ(infoOf(column).get(*p->getColumn_TableIProperty(), IFALSE), static_cast<IObject*>(&first));
  EXPECT_EQ(infoOf(column).getContainmentProperty(), p->getTable_ColumnsIProperty());

  column->setTable(&second);
  EXPECT_TRUE(first.getColumns().isEmpty());
  ASSERT_EQ(second.getColumns().size(), 1U);
  EXPECT_EQ(second.getColumns()[0], column);

  // Through the facade, as a reader sets the container property.
  infoOf(column).set(*p->getColumn_TableIProperty(), static_cast<IObject*>(&first), 0, IFALSE);
  EXPECT_TRUE(second.getColumns().isEmpty());
  EXPECT_EQ(first.getColumns()[0], column);
  first.addColumn(column);
  column->setTable(&first);
  EXPECT_EQ(first.getColumns().size(), 1U);

  // A column appended to the collection by generic code, with its container set as a
  // reader does, knows its table too.
  auto* appended = new Column();
  collectionOf<IObject>(infoOf(&second), *p->getTable_ColumnsIProperty()).append(appended);
  appended->iSetContainer(&second, p->getTable_ColumnsIProperty());
  EXPECT_EQ(appended->getTable(), &second);

  column->setTable(nullptr);
  EXPECT_TRUE(first.getColumns().isEmpty());
  EXPECT_EQ(column->getTable(), nullptr);
  std::unique_ptr<Column> owned(column);
  EXPECT_FALSE(first.removeColumn(column));
  EXPECT_TRUE(second.removeColumn(appended));
  EXPECT_EQ(appended->getTable(), nullptr);
  delete appended;
}

TEST(CatalogObjectsTest, PasswordIsKeptEncryptedAndReadBackInClearText) {
  catalog_test::useTestEncryptionKey();
  auto* p = pkg();
  IProperty const& password = *p->getCatalog_ConnectionPasswordIProperty();
  Catalog catalog;
  EXPECT_FALSE(catalog.getConnectionPassword().has_value());
  EXPECT_EQ(infoOf(&catalog).get(password, ITRUE), nullptr);

  catalog.setConnectionPassword(IUString("s3cret"));
  EXPECT_EQ(catalog.getConnectionPassword(), IUString("s3cret"));
  const IUString stored = valueOf<IUString>(infoOf(&catalog).get(password, ITRUE));
  EXPECT_NE(stored, IUString("s3cret"));
  EXPECT_EQ(stored.find(IUString("s3cret")), IUString::npos);
  EXPECT_TRUE(stored.startsWith(IUString(WkEncryption::kVersionTag)));

  // A reader copies the reflective value; the copy decrypts to the same clear text.
  Catalog copy;
  IUString transported = stored;
  infoOf(&copy).set(password, &transported, 0, ITRUE);
  EXPECT_EQ(valueOf<IUString>(infoOf(&copy).get(password, ITRUE)), stored);
  EXPECT_EQ(copy.getConnectionPassword(), IUString("s3cret"));

  catalog.setConnectionPassword(std::nullopt);
  EXPECT_EQ(infoOf(&catalog).get(password, ITRUE), nullptr);
}

TEST(CatalogObjectsTest, IdentityIsSetOnceAndValueObjectsHaveNone) {
  Schema schema;
  EXPECT_EQ(infoOf(&schema).getIdentityString(), IUString());
  infoOf(&schema).setIdentityString("sales");
  EXPECT_EQ(infoOf(&schema).getIdentityString(), IUString("sales"));
  EXPECT_THROW_MSG(infoOf(&schema).setIdentityString("again"), IdentityException, qvxGetMsg(74002));
  EXPECT_EQ(infoOf(&schema).getIdentityString(), IUString("sales"));

  DataTypeDef seed;
  infoOf(&seed).setIdentityString("com.example.catalog:types.DATE");
  EXPECT_EQ(catalog_test::icore::QVXRuntime::getInstance()->identityToString(infoOf(&seed).getIdentity()),
            IUString("smd:com.example.catalog:types.DATE"));

  Position position;
  EXPECT_THROW(infoOf(&position).getIdentity(), IdentityException);
  EXPECT_THROW(catalog_test::icore::QVXRuntime::getInstance()->assignUUID(&position), IdentityException);
}

TEST(CatalogObjectsTest, FactoryMakesEveryConcreteClassAndRefusesOthers) {
  auto* p = pkg();
  CatalogIFactory* factory = CatalogIFactory::iGetInstance();
  for (auto* objectClass : {p->getCatalogIClass(), p->getSchemaIClass(), p->getTableIClass(), p->getColumnIClass(),
                            p->getForeignKeyIClass(), p->getPositionIClass(), p->getDataTypeDefIClass(),
                            p->getViewIClass()}) {
    std::unique_ptr<IObject> made(objectClass->create());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(infoOf(made.get()).getIClass(), objectClass);
    EXPECT_FALSE(infoOf(made.get()).isProxy());
  }
  EXPECT_THROW_MSG(factory->create(*p->getNamedElementIClass()), InstantiationException,
                   qvxFormatMsg(73000, IUString("NamedElement")));
  auto* foreignClass = IcoreIPackage::iGetInstance()->getIPackageIClass();
  EXPECT_THROW_MSG(factory->create(*foreignClass), IllegalArgumentException,
                   qvxFormatMsg(73011, IUString("catalog"), foreignClass->getQualifiedName()));
}

TEST(CatalogObjectsTest, FactoryConvertsEnumerationValuesByLiteralName) {
  auto* p = pkg();
  CatalogIFactory* factory = CatalogIFactory::iGetInstance();
  std::unique_ptr<IUString> text(factory->datatypeToString(*p->getRefRuleIEnumeration(),
                                                           p->getLiteral(RefRule::SET_NULL)));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(*text, IUString("SET_NULL"));
  EXPECT_EQ(factory->datatypeFromString(*p->getTableKindIEnumeration(), "EXTERNAL"),
            p->getLiteral(TableKind::EXTERNAL));
  EXPECT_EQ(factory->datatypeFromString(*p->getTableKindIEnumeration(), "external"), nullptr);
  EXPECT_EQ(factory->datatypeToString(*p->getDataTypeIEnumeration(), nullptr), nullptr);
  EXPECT_THROW_MSG(factory->datatypeToString(*ICoreDatatypes::I_STRING, nullptr), IllegalArgumentException,
                   qvxFormatMsg(73002, ICoreDatatypes::I_STRING->getQualifiedName()));
  EXPECT_THROW(factory->datatypeFromString(*ICoreDatatypes::I_INTEGER, "1"), IllegalArgumentException);
}

}  // namespace
