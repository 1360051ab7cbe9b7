// The reflective graph comparison on the workload catalog: two catalogs built the same
// way are equal but for their generated identities, and a single changed value deep in
// the tree, or a retargeted foreign key, is reported with its path.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogWorkload.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "icore/ObjectGraphComparator.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using com::example::catalog::buildCatalog;
using com::example::catalog::Catalog;
using com::example::catalog::kSmallCatalog;
using com::veltrana::qvx::icore::ObjectGraphComparator;

std::unique_ptr<Catalog> build() {
  catalog_test::useTestEncryptionKey();
  return std::unique_ptr<Catalog>(buildCatalog(kSmallCatalog));
}

ObjectGraphComparator::Options ignoringIdentities() {
  ObjectGraphComparator::Options options;
  options.ignoreIdentities = true;
  return options;
}

TEST(CatalogComparisonTest, TwoBuildsDifferOnlyInTheirGeneratedIdentities) {
  auto left = build();
  auto right = build();
  auto result = ObjectGraphComparator::compare(left.get(), right.get(), ignoringIdentities());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  auto strict = ObjectGraphComparator::compare(left.get(), right.get());
  EXPECT_FALSE(strict.equal);
  EXPECT_EQ(strict.difference.toUtf8().rfind("catalog: identity ", 0), 0u) << strict.difference.toUtf8();
  EXPECT_TRUE(ObjectGraphComparator::compare(left.get(), left.get()).equal);
}

TEST(CatalogComparisonTest, ChangedColumnLengthIsNamedByItsPath) {
  auto left = build();
  auto right = build();
  right->getSchemas()[1]->getTables()[3]->getColumns()[2]->setLength(99);
  auto result = ObjectGraphComparator::compare(left.get(), right.get(), ignoringIdentities());
  EXPECT_FALSE(result.equal);
  EXPECT_EQ(result.difference.toUtf8(), "catalog/schemas[1]/tables[3]/columns[2].length: 24 != 99");
}

TEST(CatalogComparisonTest, EncryptedPasswordsCompareInClearWithoutShowingThem) {
  auto left = build();
  auto right = build();
  // Each encryption gives another text for the same password.
  auto* password = catalog_test::pkg()->getCatalog_ConnectionPasswordIProperty();
  ASSERT_NE(*static_cast<IUString const*>(catalog_test::infoOf(left.get()).get(*password, ITRUE)),
            *static_cast<IUString const*>(catalog_test::infoOf(right.get()).get(*password, ITRUE)));
  right->setConnectionPassword(IUString("other"));
  auto result = ObjectGraphComparator::compare(left.get(), right.get(), ignoringIdentities());
  EXPECT_EQ(result.difference.toUtf8(), "catalog.connectionPassword: a sensitive value != another");
  right->setConnectionPassword(std::nullopt);
  result = ObjectGraphComparator::compare(left.get(), right.get(), ignoringIdentities());
  EXPECT_EQ(result.difference.toUtf8(), "catalog.connectionPassword: a sensitive value != null");
}

TEST(CatalogComparisonTest, RetargetedForeignKeyIsFound) {
  auto left = build();
  auto right = build();
  auto* foreignKey = right->getSchemas()[0]->getTables()[4]->getForeignKeys()[0];
  auto* oldTarget = foreignKey->getTargetTable();
  auto* newTarget = right->getSchemas()[0]->getTables()[0] == oldTarget ? right->getSchemas()[0]->getTables()[1]
                                                                         : right->getSchemas()[0]->getTables()[0];
  foreignKey->setTargetTable(newTarget);
  auto result = ObjectGraphComparator::compare(left.get(), right.get(), ignoringIdentities());
  EXPECT_FALSE(result.equal);
  // The target in the left graph, by its place: tables are numbered within their schema.
  auto* leftTarget = left->getSchemas()[0]->getTables()[4]->getForeignKeys()[0]->getTargetTable();
  std::string leftPlace;
  for (std::size_t s = 0; s < left->getSchemas().size(); ++s) {
    for (std::size_t t = 0; t < left->getSchemas()[s]->getTables().size(); ++t) {
      if (left->getSchemas()[s]->getTables()[t] == leftTarget) {
        leftPlace = "catalog/schemas[" + std::to_string(s) + "]/tables[" + std::to_string(t) + "]";
      }
    }
  }
  const std::string rightPlace =
      newTarget == right->getSchemas()[0]->getTables()[0] ? "catalog/schemas[0]/tables[0]" : "catalog/schemas[0]/tables[1]";
  EXPECT_EQ(result.difference.toUtf8(), "catalog/schemas[0]/tables[4]/foreignKeys[0].targetTable: refers to " +
                                            leftPlace + " != refers to " + rightPlace);
}

}  // namespace
