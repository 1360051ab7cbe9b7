// The XML document end to end: the small catalog written and read back compares equal
// to the original (values as the document writes them), identities and seeds included, and the graph read back writes the
// same document again but for the per-run "ID_" numbers.
#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <sstream>
#include <string>

#include "io/XMLDeserializer.h"
#include "tests/io/BinaryStreamTestSupport.h"
#include "tests/io/XmlWriteTestSupport.h"

namespace {

namespace catalog = com::example::catalog;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::ObjectGraphComparator;
using com::veltrana::qvx::io::XMLDeserializer;

// The result of one read, freed as the reader's contract says.
struct ReadBack {
  ~ReadBack() { XMLDeserializer::destroyDeserializedObjects(objects); }
  IVector<IObject*>* objects = nullptr;
};

void readDocument(const std::string& text, ReadBack& result) {
  std::istringstream in(text);
  XMLDeserializer reader(&in, nullptr);
  result.objects = reader.deserialize();
  EXPECT_TRUE(reader.takeUnreturnedObjects().empty());
}

ObjectGraphComparator::Options asWritten() {
  ObjectGraphComparator::Options options;
  options.valuesAsWritten = true;
  return options;
}

// "ID_" numbers come from object addresses and a process-wide blob counter.
std::string withoutRunIds(const std::string& document) {
  static const std::regex runId("ID_[0-9]+");
  return std::regex_replace(document, runId, "ID_#");
}

TEST(XmlRoundTripTest, TheSmallCatalogReadsBackEqualWithItsIdentitiesAndSeeds) {
  binary_test::prepareCatalog();
  std::unique_ptr<catalog::Catalog> built(catalog::buildCatalog(catalog::kSmallCatalog));
  const std::string document = xml_write_test::serializeToText({built.get()});

  ReadBack back;
  readDocument(document, back);
  ASSERT_NE(back.objects, nullptr);
  ASSERT_EQ(back.objects->size(), 1U);
  IObject* read = (*back.objects)[0];
  // The document writes doubles with 15 significant digits, so 1/3 comes back rounded;
  // compared as the document writes them, the graphs are equal.
  EXPECT_EQ(ObjectGraphComparator::compare(built.get(), read).difference.toUtf8(),
            "catalog/schemas[0]/tables[0]/columns[2].selectivity: 0.33333333333333331 != 0.33333333333333298");
  const auto result = ObjectGraphComparator::compare(built.get(), read, asWritten());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();

  catalog_test::expectCopyKeepsSeedsAndPassword(static_cast<catalog::Catalog*>(read));
  EXPECT_EQ(withoutRunIds(xml_write_test::serializeToText({read})), withoutRunIds(document));
}

TEST(XmlRoundTripTest, ADocumentReadTwiceGivesTwoEqualIndependentGraphs) {
  binary_test::prepareCatalog();
  std::unique_ptr<catalog::Catalog> built(catalog::buildCatalog(1, 3, 2, 1));
  const std::string document = xml_write_test::serializeToText({built.get()});
  ReadBack first;
  ReadBack second;
  readDocument(document, first);
  readDocument(document, second);
  ASSERT_NE(first.objects, nullptr);
  ASSERT_NE(second.objects, nullptr);
  ASSERT_NE((*first.objects)[0], (*second.objects)[0]);
  const auto result = ObjectGraphComparator::compare(*first.objects, *second.objects, asWritten());
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
}

}  // namespace
