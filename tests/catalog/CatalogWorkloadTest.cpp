// The workload catalog(S, T, C, F): object counts found by walking the containment tree
// reflectively, spot values, foreign-key targets from an independent implementation of
// the generator, identities, freeing the graph, and two builds compared reflectively.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "icore/runtime/SeedRegistry.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using namespace catalog_test;               // NOLINT: test file
using namespace com::example::catalog;      // NOLINT: test file
using namespace com::veltrana::qvx::icore;  // NOLINT: test file

std::unique_ptr<Catalog> build(int schemas, int tables, int columns, int foreignKeys) {
  useTestEncryptionKey();
  return std::unique_ptr<Catalog>(buildCatalog(schemas, tables, columns, foreignKeys));
}

// Counts the objects of the containment tree below `object` by class name and their
// generated identities, checking each child's back-pointers on the way.
void walk(IObject* object, std::map<std::string, int>& counts, std::set<std::string>& identities) {
  IObjectInfo& info = infoOf(object);
  ++counts[info.getIClass()->getName().toUtf8()];
  if (info.getIClass()->isIdentifiableClass()) {
    identities.insert(QVXRuntime::getInstance()->identityToString(info.getIdentity()).toUtf8());
  }
  for (IProperty* property : info.getIClass()->getAllProperties(IFALSE)) {
    if (!property->isContainment()) continue;
    void* value = const_cast<void*>(info.get(*property, IFALSE));
    IVector<IObject*> children;
    if (property->isCollection()) children = *static_cast<IVector<IObject*>*>(value);
    else if (value != nullptr) children.append(static_cast<IObject*>(value));
    for (IObject* child : children) {
      EXPECT_EQ(infoOf(child).getContainer(), object);
      EXPECT_EQ(infoOf(child).getContainmentProperty(), property);
      walk(child, counts, identities);
    }
  }
}

TEST(CatalogWorkloadTest, SmallCatalogHasTheObjectCountsOfItsSizesAndDistinctIdentities) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 1);
  std::map<std::string, int> counts;
  std::set<std::string> identities;
  walk(catalog.get(), counts, identities);
  EXPECT_EQ(counts, (std::map<std::string, int>{{"Catalog", 1}, {"Schema", 2}, {"Table", 18}, {"View", 2},
                                                {"Column", 100}, {"ForeignKey", 20}, {"Position", 20}}));
  EXPECT_EQ(identities.size(), 143U);  // every identifiable object has its own
  EXPECT_EQ(identities.begin()->rfind("uuidV1:", 0), 0U);
  // The data types are the seed registry's own objects, in ordinal order.
  ASSERT_EQ(catalog->getDataTypes().size(), 10U);
  for (int ordinal = 0; ordinal < 10; ++ordinal) {
    const IUString seedId = CatalogSeeds::getDataTypeSeedId(static_cast<DataType>(ordinal));
    EXPECT_EQ(QVXRuntime::getInstance()->getSeedRegistry().getObjectById(seedId),
              static_cast<IObject*>(catalog->getDataTypes()[static_cast<std::size_t>(ordinal)]));
  }
}

TEST(CatalogWorkloadTest, ObjectsCarryTheValuesDerivedFromTheirIndices) {
  std::unique_ptr<Catalog> catalog = build(2, 10, 5, 1);
  EXPECT_EQ(catalog->getCreated().format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/15/2024:10:30:00.000"));
  EXPECT_EQ(catalog->getConnectionPassword(), IUString("s3cret"));
  Schema* schema = catalog->getSchemas()[1];
  EXPECT_EQ(schema->getOwner(), IUString("owner_1"));
  EXPECT_EQ(static_cast<View*>(schema->getTables()[9])->getQuery(), IUString("SELECT * FROM table_1_8"));
  Table* even = schema->getTables()[4];
  EXPECT_EQ(even->getName(), IUString("table_1_4"));
  EXPECT_EQ(even->getDescription(), IUString("Table 4 of schema 1"));
  EXPECT_EQ(*even->getTags()[1], IUString("hot"));
  EXPECT_EQ(even->getRowCount(), 4 * 1000003);
  EXPECT_EQ(std::make_pair(even->getLayout()->getX(), even->getLayout()->getY()), std::make_pair(4, 1));
  EXPECT_FALSE(schema->getTables()[7]->getDescription().has_value() || schema->getTables()[7]->getThumbnail());
  EXPECT_EQ(static_cast<unsigned char>(schema->getTables()[0]->getThumbnail()->at(15)), 105);  // 16 bytes of 7 * i
  EXPECT_EQ(schema->getTables()[3]->getPrimaryKey().size(), 2U);  // a second column every third table
  EXPECT_EQ(schema->getTables()[4]->getPrimaryKey().size(), 1U);
  Column* col3 = schema->getTables()[1]->getColumns()[3];
  EXPECT_EQ(col3->getName(), IUString("col_3"));
  EXPECT_EQ(col3->getDataType(), pkg()->getLiteral(DataType::BIGINT));
  EXPECT_EQ(col3->getType(), catalog->getDataTypes()[3]);
  EXPECT_EQ(std::make_tuple(col3->getLength(), col3->getPrecision(), col3->getScale(), col3->isNullable()),
            std::make_tuple(32, std::int16_t{3}, char{3}, false));
  EXPECT_EQ(std::make_pair(col3->getSelectivity(), col3->getWeight()), std::make_pair(0.25, 1.5F));
  EXPECT_EQ(col3->getCreated()->format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/15/2024:10:30:03.000"));
  EXPECT_EQ(col3->getInitial(), u'd');
  EXPECT_EQ(*col3->getSampleValues()[2], 9);
  EXPECT_EQ(schema->getTables()[1]->getColumns()[1]->getDefaultValue(), IUString("none"));
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
  std::vector<Table*> tables;
  for (Schema* schema : catalog->getSchemas()) {
    for (Table* table : schema->getTables()) tables.push_back(table);
  }
  const std::vector<std::size_t> targets = expectedTargets(20, 40);
  std::size_t draw = 0;
  for (Table* table : tables) {
    ASSERT_EQ(table->getForeignKeys().size(), 2U);
    for (std::size_t f = 0; f < 2; ++f) {
      ForeignKey* foreignKey = table->getForeignKeys()[f];
      EXPECT_EQ(foreignKey->getTargetTable(), tables[targets[draw++]]);
      ASSERT_EQ(foreignKey->getColumns().size(), 1U);
      EXPECT_EQ(foreignKey->getColumns()[0], table->getColumns()[f + 1]);
    }
    EXPECT_EQ(table->getForeignKeys()[0]->getRules()[0], pkg()->getLiteral(RefRule::CASCADE));
    EXPECT_EQ(table->getForeignKeys()[1]->getRules()[1], pkg()->getLiteral(RefRule::NO_ACTION));
  }
  EXPECT_TRUE(build(-1, 3, 3, 1)->getSchemas().isEmpty());  // negative counts are taken as 0
}

ObjectGraphComparator::ComparisonResult compare(Catalog const* left, Catalog const* right) {
  ObjectGraphComparator::Options ignoreIdentities;
  ignoreIdentities.ignoreIdentities = true;
  return ObjectGraphComparator::compare(left, right, ignoreIdentities);
}

TEST(CatalogComparisonTest, TwoBuildsDifferOnlyInTheirGeneratedIdentities) {
  auto left = build(2, 10, 5, 1);
  auto right = build(2, 10, 5, 1);
  EXPECT_TRUE(compare(left.get(), right.get()).equal) << compare(left.get(), right.get()).difference.toUtf8();
  EXPECT_EQ(ObjectGraphComparator::compare(left.get(), right.get()).difference.toUtf8().rfind("catalog: identity ", 0), 0U);
  right->getSchemas()[1]->getTables()[3]->getColumns()[2]->setLength(99);
  EXPECT_EQ(compare(left.get(), right.get()).difference.toUtf8(), "catalog/schemas[1]/tables[3]/columns[2].length: 24 != 99");
}

TEST(CatalogComparisonTest, PasswordsCompareInClearWithoutBeingShown) {
  // Each encryption gives another text for the same password.
  auto left = build(2, 10, 5, 1);
  auto right = build(2, 10, 5, 1);
  EXPECT_TRUE(compare(left.get(), right.get()).equal);
  right->setConnectionPassword(IUString("other"));
  EXPECT_EQ(compare(left.get(), right.get()).difference.toUtf8(), "catalog.connectionPassword: a sensitive value != another");
  right->setConnectionPassword(std::nullopt);
  EXPECT_EQ(compare(left.get(), right.get()).difference.toUtf8(), "catalog.connectionPassword: a sensitive value != null");
}

}  // namespace
