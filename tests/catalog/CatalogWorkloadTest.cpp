// The workload catalog(S, T, C, F): object counts found by walking the containment
// tree reflectively, spot values of each kind of object, foreign-key targets from an
// independent implementation of the generator, identities, and freeing the graph.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/CatalogWorkload.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "examples/catalog/View.h"
#include "icore/IClass.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/runtime/SeedRegistry.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using catalog_test::infoOf;
using catalog_test::pkg;
using com::example::catalog::buildCatalog;
using com::example::catalog::Catalog;
using com::example::catalog::CatalogSeeds;
using com::example::catalog::Column;
using com::example::catalog::DataType;
using com::example::catalog::DataTypeDef;
using com::example::catalog::ForeignKey;
using com::example::catalog::kSmallCatalog;
using com::example::catalog::RefRule;
using com::example::catalog::Schema;
using com::example::catalog::Table;
using com::example::catalog::TableKind;
using com::example::catalog::View;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;

std::unique_ptr<Catalog> build(int s, int t, int c, int f) {
  catalog_test::useTestEncryptionKey();
  return std::unique_ptr<Catalog>(buildCatalog(s, t, c, f));
}

// Counts the objects of the containment tree below `object` by class name, checking
// each child's back-pointers on the way.
void countContained(IObject* object, std::map<std::string, int>& counts) {
  auto& info = infoOf(object);
  ++counts[info.getIClass()->getName().toUtf8()];
  for (IProperty* property : info.getIClass()->getAllProperties(IFALSE)) {
    if (!property->isContainment()) continue;
    std::vector<IObject*> children;
    if (property->isCollection()) {
      for (IObject* child : *static_cast<IVector<IObject*> const*>(info.get(*property, IFALSE))) {
        children.push_back(child);
      }
    } else if (void const* child = info.get(*property, IFALSE)) {
      children.push_back(static_cast<IObject*>(const_cast<void*>(child)));
    }
    for (IObject* child : children) {
      EXPECT_EQ(infoOf(child).getContainer(), object);
      EXPECT_EQ(infoOf(child).getContainmentProperty(), property);
      countContained(child, counts);
    }
  }
}

std::vector<Table*> tablesInCreationOrder(Catalog const& catalog) {
  std::vector<Table*> tables;
  for (Schema* schema : catalog.getSchemas()) {
    for (Table* table : schema->getTables()) tables.push_back(table);
  }
  return tables;
}

TEST(CatalogWorkloadTest, SmallCatalogHasTheObjectCountsOfItsSizes) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 1);
  std::map<std::string, int> counts;
  countContained(catalog.get(), counts);
  EXPECT_EQ(counts, (std::map<std::string, int>{{"Catalog", 1}, {"Schema", 2}, {"Table", 18}, {"View", 2},
                                                {"Column", 100}, {"ForeignKey", 20}, {"Position", 20}}));
  EXPECT_EQ(catalog->getDataTypes().size(), 10U);
}

TEST(CatalogWorkloadTest, CatalogCarriesItsFixedValuesAndTheSeedsInOrdinalOrder) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 1);
  EXPECT_EQ(catalog->getName(), IUString("catalog"));
  EXPECT_EQ(catalog->getVersion(), IUString("1.0"));
  EXPECT_EQ(catalog->getCreated().format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/15/2024:10:30:00.000"));
  EXPECT_EQ(catalog->getConnectionPassword(), IUString("s3cret"));
  auto const* stored = static_cast<IUString const*>(
      infoOf(catalog.get()).get(*pkg()->getCatalog_ConnectionPasswordIProperty(), ITRUE));
  ASSERT_NE(stored, nullptr);
  EXPECT_NE(*stored, IUString("s3cret"));

  for (int ordinal = 0; ordinal < 10; ++ordinal) {
    DataTypeDef* seed = catalog->getDataTypes()[static_cast<std::size_t>(ordinal)];
    const auto dataType = static_cast<DataType>(ordinal);
    EXPECT_EQ(seed->getSqlName(), pkg()->getLiteral(dataType)->getName());
    EXPECT_EQ(infoOf(seed).getIdentityString(), CatalogSeeds::getDataTypeSeedId(dataType));
    // The very objects that the seed registry hands out for those ids.
    EXPECT_EQ(QVXRuntime::getInstance()->getSeedRegistry().getObjectById(CatalogSeeds::getDataTypeSeedId(dataType)),
              static_cast<IObject*>(seed));
  }
}

TEST(CatalogWorkloadTest, SchemasAndTablesFollowTheirIndices) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 1);
  Schema* schema = catalog->getSchemas()[1];
  EXPECT_EQ(schema->getName(), IUString("schema_1"));
  EXPECT_EQ(schema->getOwner(), IUString("owner_1"));
  ASSERT_EQ(schema->getTables().size(), 10U);

  Table* view = schema->getTables()[9];
  EXPECT_EQ(infoOf(view).getIClass(), pkg()->getViewIClass());
  EXPECT_EQ(static_cast<View*>(view)->getQuery(), IUString("SELECT * FROM table_1_8"));
  EXPECT_EQ(view->getKind(), pkg()->getLiteral(TableKind::VIEW));
  EXPECT_EQ(infoOf(schema->getTables()[8]).getIClass(), pkg()->getTableIClass());

  Table* even = schema->getTables()[4];
  EXPECT_EQ(even->getName(), IUString("table_1_4"));
  EXPECT_EQ(even->getDescription(), IUString("Table 4 of schema 1"));
  ASSERT_EQ(even->getTags().size(), 2U);
  EXPECT_EQ(*even->getTags()[0], IUString("tag4"));
  EXPECT_EQ(*even->getTags()[1], IUString("hot"));
  EXPECT_EQ(even->getRowCount(), 4 * 1000003);
  EXPECT_EQ(even->getLayout()->getX(), 4);
  EXPECT_EQ(even->getLayout()->getY(), 1);
  EXPECT_EQ(even->getKind(), pkg()->getLiteral(TableKind::TABLE));

  Table* odd = schema->getTables()[7];
  EXPECT_FALSE(odd->getDescription().has_value());
  EXPECT_TRUE(odd->getTags().isEmpty());
  EXPECT_FALSE(odd->getThumbnail().has_value());

  Table* first = schema->getTables()[0];
  ASSERT_TRUE(first->getThumbnail().has_value());
  ASSERT_EQ(first->getThumbnail()->size(), 16U);
  for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(static_cast<std::size_t>(static_cast<unsigned char>((*first->getThumbnail())[i])), i * 7);
  EXPECT_EQ(first->getRowCount(), 0);
}

TEST(CatalogWorkloadTest, ColumnsCarryValuesDerivedFromTheirIndex) {
  std::unique_ptr<Catalog> catalog = build(1, 2, 5, 1);
  Table* table = catalog->getSchemas()[0]->getTables()[1];
  ASSERT_EQ(table->getColumns().size(), 5U);
  for (Column* column : table->getColumns()) EXPECT_EQ(column->getTable(), table);

  Column* col3 = table->getColumns()[3];
  EXPECT_EQ(col3->getName(), IUString("col_3"));
  EXPECT_EQ(col3->getDataType(), pkg()->getLiteral(DataType::BIGINT));
  EXPECT_EQ(col3->getType(), catalog->getDataTypes()[3]);
  EXPECT_EQ(col3->getLength(), 32);
  EXPECT_EQ(col3->getPrecision(), 3);
  EXPECT_EQ(col3->getScale(), 3);
  EXPECT_FALSE(col3->isNullable());
  EXPECT_FALSE(col3->getDefaultValue().has_value());
  EXPECT_DOUBLE_EQ(col3->getSelectivity(), 0.25);
  EXPECT_FLOAT_EQ(col3->getWeight(), 1.5F);
  ASSERT_TRUE(col3->getCreated().has_value());
  EXPECT_EQ(col3->getCreated()->format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/15/2024:10:30:03.000"));
  EXPECT_EQ(col3->getInitial(), u'd');
  ASSERT_EQ(col3->getSampleValues().size(), 3U);
  EXPECT_EQ(*col3->getSampleValues()[0], 3);
  EXPECT_EQ(*col3->getSampleValues()[2], 9);

  Column* col1 = table->getColumns()[1];
  EXPECT_EQ(col1->getDefaultValue(), IUString("none"));
  EXPECT_TRUE(col1->isNullable());
  EXPECT_EQ(col1->getDataType(), pkg()->getLiteral(DataType::CHAR));
  Column* col0 = table->getColumns()[0];
  EXPECT_EQ(col0->getInitial(), u'a');
  EXPECT_EQ(*col0->getSampleValues()[1], 0);
  EXPECT_DOUBLE_EQ(col0->getSelectivity(), 1.0);
}

TEST(CatalogWorkloadTest, PrimaryKeysTakeASecondColumnEveryThirdTable) {
  std::unique_ptr<Catalog> catalog = build(1, 7, 5, 0);
  Schema* schema = catalog->getSchemas()[0];
  for (int t = 0; t < 7; ++t) {
    Table* table = schema->getTables()[static_cast<std::size_t>(t)];
    std::vector<Column*> expected{table->getColumns()[0]};
    if (t % 3 == 0) expected.push_back(table->getColumns()[1]);
    EXPECT_EQ(std::vector<Column*>(table->getPrimaryKey().begin(), table->getPrimaryKey().end()), expected)
        << "table " << t;
  }
  std::unique_ptr<Catalog> single = build(1, 1, 1, 0);
  EXPECT_EQ(single->getSchemas()[0]->getTables()[0]->getPrimaryKey().size(), 1U);
}

// The generator, written out again here so that the builder is checked against the
// definition rather than against itself.
std::vector<std::size_t> expectedTargets(std::uint64_t tableCount, std::size_t draws) {
  std::vector<std::size_t> targets;
  std::uint64_t x = 42;
  for (std::size_t i = 0; i < draws; ++i) {
    x = x * 6364136223846793005ULL + 1442695040888963407ULL;
    targets.push_back(static_cast<std::size_t>((x >> 33) % tableCount));
  }
  return targets;
}

TEST(CatalogWorkloadTest, ForeignKeysTargetTheTablesThatTheGeneratorDraws) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 2);
  const std::vector<Table*> tables = tablesInCreationOrder(*catalog);
  ASSERT_EQ(tables.size(), 20U);
  const std::vector<std::size_t> targets = expectedTargets(20, 40);
  std::set<Table*> distinctTargets;
  std::size_t draw = 0;
  for (Table* table : tables) {
    ASSERT_EQ(table->getForeignKeys().size(), 2U);
    for (std::size_t f = 0; f < 2; ++f) {
      ForeignKey* foreignKey = table->getForeignKeys()[f];
      EXPECT_EQ(foreignKey->getName(), IUString::format("fk_%d", static_cast<int>(f)));
      EXPECT_EQ(foreignKey->getTargetTable(), tables[targets[draw++]]);
      distinctTargets.insert(foreignKey->getTargetTable());
      ASSERT_EQ(foreignKey->getColumns().size(), 1U);
      EXPECT_EQ(foreignKey->getColumns()[0], table->getColumns()[f + 1]);
    }
    IVector<IEnumerationLiteral*> const& even = table->getForeignKeys()[0]->getRules();
    IVector<IEnumerationLiteral*> const& odd = table->getForeignKeys()[1]->getRules();
    ASSERT_EQ(even.size(), 1U);
    EXPECT_EQ(even[0], pkg()->getLiteral(RefRule::CASCADE));
    ASSERT_EQ(odd.size(), 2U);
    EXPECT_EQ(odd[0], pkg()->getLiteral(RefRule::RESTRICT));
    EXPECT_EQ(odd[1], pkg()->getLiteral(RefRule::NO_ACTION));
  }
  EXPECT_GT(distinctTargets.size(), 5U);
}

TEST(CatalogWorkloadTest, EveryIdentifiableObjectHasItsOwnGeneratedIdentity) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 1);
  std::set<std::string> identities;
  std::size_t identifiable = 0;
  auto record = [&](IObject* object) {
    ++identifiable;
    const std::string text =
        QVXRuntime::getInstance()->identityToString(infoOf(object).getIdentity()).toUtf8();
    EXPECT_EQ(text.rfind("uuidV1:", 0), 0U) << text;
    identities.insert(text);
  };
  record(catalog.get());
  for (Schema* schema : catalog->getSchemas()) {
    record(schema);
    for (Table* table : schema->getTables()) {
      record(table);
      for (Column* column : table->getColumns()) record(column);
      for (ForeignKey* foreignKey : table->getForeignKeys()) record(foreignKey);
    }
  }
  EXPECT_EQ(identifiable, 143U);
  EXPECT_EQ(identities.size(), identifiable);
}

TEST(CatalogWorkloadTest, DegenerateSizesStillBuild) {
  std::unique_ptr<Catalog> empty = build(0, 10, 5, 1);
  EXPECT_TRUE(empty->getSchemas().isEmpty());
  std::unique_ptr<Catalog> noColumns = build(1, 2, 0, 1);
  Table* table = noColumns->getSchemas()[0]->getTables()[0];
  EXPECT_TRUE(table->getPrimaryKey().isEmpty());
  ASSERT_EQ(table->getForeignKeys().size(), 1U);
  EXPECT_TRUE(table->getForeignKeys()[0]->getColumns().isEmpty());
  EXPECT_NE(table->getForeignKeys()[0]->getTargetTable(), nullptr);
  std::unique_ptr<Catalog> negative = build(-1, -1, -1, -1);
  EXPECT_TRUE(negative->getSchemas().isEmpty());
}

TEST(CatalogWorkloadTest, DeletingTheCatalogFreesTheWholeGraph) {
  // The sanitizer build's leak check is what sees a miss here; detaching a schema
  // first also checks that ownership moves to the caller.
  catalog_test::useTestEncryptionKey();
  std::unique_ptr<Catalog> catalog(buildCatalog(kSmallCatalog));
  std::unique_ptr<Schema> detached(catalog->getSchemas()[0]);
  ASSERT_TRUE(catalog->removeSchema(detached.get()));
  EXPECT_EQ(catalog->getSchemas().size(), 1U);
  catalog.reset();
  EXPECT_EQ(detached->getTables().size(), 10U);
}

}  // namespace
