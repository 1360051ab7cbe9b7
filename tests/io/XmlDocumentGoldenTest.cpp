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

// `text` with every `from` replaced by `to`.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
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

// Blob ids rise across the process, so the one blob's id stands as @BLOB@ in the file;
// writing the graph again gives the same document with the next blob id.
TEST(XmlDocumentGoldenTest, FixedCatalogIsWrittenExactlyAsTheGoldenFileEachTime) {
  catalog_test::useTestEncryptionKey();
  FixedCatalog fixed = buildFixedCatalog();
  const std::string written = serializeToText({fixed.catalog.get()});
  const std::string blobId = attributeAfter(written, "thumbnail");
  ASSERT_EQ(blobId.rfind("ID_", 0), 0U) << written;
  if (std::getenv("QVX_WRITE_GOLDEN") != nullptr) {
    std::ofstream(goldenPath(), std::ios::binary) << replaced(written, blobId + "\"", "@BLOB@\"");
  }
  const std::string golden = readFile(goldenPath());
  ASSERT_FALSE(golden.empty()) << "missing " << goldenPath();
  EXPECT_EQ(written, replaced(golden, "@BLOB@", blobId));
  const std::string again = serializeToText({fixed.catalog.get()});
  EXPECT_EQ(again, replaced(golden, "@BLOB@", "ID_" + std::to_string(std::stoul(blobId.substr(3)) + 1)));
}

}  // namespace
