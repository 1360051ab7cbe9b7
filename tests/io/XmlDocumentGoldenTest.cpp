// The whole document of a small catalog whose identities are all fixed, compared byte
// for byte with tests/data/xml-write/fixed-catalog.xml. The graph has a bit of every
// property kind: escaped strings, an as-element description, defaults left out, a blob,
// a value-class layout, a view among tables, references across the tree, seeds and a
// table that is referenced but contained nowhere.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/io/XmlWriteTestSupport.h"

namespace {

using namespace xml_write_test;        // NOLINT: test file
using namespace com::example::catalog;  // NOLINT: test file

std::string goldenPath() {
  const char* data = std::getenv("QVX_TEST_DATA");
  return std::string(data != nullptr ? data : "tests/data") + "/xml-write/fixed-catalog.xml";
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

WkDate fixedDate(int second, int millisecond) {
  WkDate date;
  date.setDate(2024, 1, 15);
  date.setTime(10, 30, second, millisecond * 1000000);
  return date;
}

// The catalog of the golden file, and the table it references without containing it.
struct FixedCatalog {
  std::unique_ptr<Catalog> catalog;
  std::unique_ptr<Table> customers;
};

FixedCatalog buildFixedCatalog() {
  CatalogIPackage* package = CatalogIPackage::iGetInstance();
  FixedCatalog made{std::make_unique<Catalog>(), std::make_unique<Table>()};
  Catalog* root = made.catalog.get();
  identify(root, fixedUuid(1).c_str());
  root->setName("catalog");
  root->setCreated(fixedDate(0, 0));
  root->addDataType(CatalogSeeds::getDataTypeSeed(DataType::VARCHAR));
  root->addDataType(CatalogSeeds::getDataTypeSeed(DataType::INTEGER));

  auto* schema = new Schema();
  root->addSchema(schema);
  identify(schema, fixedUuid(2).c_str());
  schema->setName("sales");
  schema->setOwner(IUString("ann"));

  auto* orders = new Table();
  schema->addTable(orders);
  identify(orders, fixedUuid(3).c_str());
  orders->setName("orders");
  orders->setDescription(IUString("Orders & returns <2024>"));
  orders->setRowCount(42);
  orders->addTag("x y");
  orders->addTag("z");
  orders->setLayout(new Position(1, 2));
  orders->setThumbnail(std::vector<char>{1, 2, 3});

  auto* id = new Column();
  orders->addColumn(id);
  identify(id, fixedUuid(4).c_str());
  id->setName("id");
  id->setDataType(package->getLiteral(DataType::INTEGER));
  id->setNullable(false);
  id->setSelectivity(0.25);
  id->setWeight(1.5F);
  id->setCreated(fixedDate(7, 250));
  id->setInitial(u'\u00e9');
  id->setDefaultValue(IUString(""));
  id->addSampleValue(1);
  id->addSampleValue(-2);
  id->setType(CatalogSeeds::getDataTypeSeed(DataType::INTEGER));

  auto* name = new Column();
  orders->addColumn(name);
  identify(name, fixedUuid(5).c_str());
  name->setName("customer name");
  name->setLength(40);
  orders->addPrimaryKeyColumn(id);

  auto* foreignKey = new ForeignKey();
  orders->addForeignKey(foreignKey);
  identify(foreignKey, fixedUuid(6).c_str());
  foreignKey->setName("fk_customer");
  foreignKey->setTargetTable(made.customers.get());
  foreignKey->addColumn(name);
  foreignKey->addRule(package->getLiteral(RefRule::RESTRICT));
  foreignKey->addRule(package->getLiteral(RefRule::NO_ACTION));

  auto* recent = new View();
  schema->addTable(recent);
  identify(recent, fixedUuid(7).c_str());
  recent->setName("recent");
  recent->setQuery(IUString("SELECT * FROM orders"));

  identify(made.customers.get(), fixedUuid(8).c_str());
  made.customers->setName("customers");
  made.customers->setKind(package->getLiteral(TableKind::EXTERNAL));
  return made;
}

TEST(XmlDocumentGoldenTest, FixedCatalogIsWrittenExactlyAsTheGoldenFile) {
  catalog_test::useTestEncryptionKey();
  FixedCatalog fixed = buildFixedCatalog();
  std::string written = serializeToText({fixed.catalog.get()});

  // Blob ids rise across the process, so the one blob's id stands as @BLOB@ there.
  const std::string blobId = attributeAfter(written, "thumbnail");
  ASSERT_EQ(blobId.rfind("ID_", 0), 0U) << written;
  std::string golden = readFile(goldenPath());
  if (std::getenv("QVX_WRITE_GOLDEN") != nullptr) {
    std::string template_ = written;
    for (std::size_t at = template_.find(blobId + "\""); at != std::string::npos;
         at = template_.find(blobId + "\"", at)) {
      template_.replace(at, blobId.size(), "@BLOB@");
    }
    std::ofstream(goldenPath(), std::ios::binary) << template_;
    golden = template_;
  }
  ASSERT_FALSE(golden.empty()) << "missing " << goldenPath();
  for (std::size_t at = golden.find("@BLOB@"); at != std::string::npos; at = golden.find("@BLOB@", at)) {
    golden.replace(at, 6, blobId);
  }
  EXPECT_EQ(written, golden);
}

TEST(XmlDocumentGoldenTest, WritingTheSameGraphTwiceGivesTheSameDocumentButForTheBlobId) {
  catalog_test::useTestEncryptionKey();
  FixedCatalog fixed = buildFixedCatalog();
  const std::string first = serializeToText({fixed.catalog.get()});
  std::string second = serializeToText({fixed.catalog.get()});
  const std::string firstBlob = attributeAfter(first, "thumbnail");
  const std::string secondBlob = attributeAfter(second, "thumbnail");
  EXPECT_EQ(std::stoul(secondBlob.substr(3)), std::stoul(firstBlob.substr(3)) + 1);
  for (std::size_t at = second.find(secondBlob + "\""); at != std::string::npos; at = second.find(secondBlob + "\"", at)) {
    second.replace(at, secondBlob.size(), firstBlob);
  }
  EXPECT_EQ(first, second);
}

}  // namespace
