// The seeded DataTypeDef objects: the seed file that ships beside the library holds
// exactly the objects made in code. (The workload test checks that the seed registry
// hands out the seeds that the package's loader makes.)
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "tests/catalog/CatalogTestSupport.h"

namespace {

using catalog_test::infoOf;
using com::example::catalog::CatalogSeeds;
using com::example::catalog::DataTypeDef;

std::string attribute(xercesc::DOMElement const* element, const char16_t* name) {
  return IUString(element->getAttribute(name)).toUtf8();
}

TEST(CatalogSeedsTest, SeedFileBesideTheLibraryHoldsTheObjectsMadeInCode) {
  std::ifstream in(QVX_CATALOG_SEED_FILE, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  EXPECT_EQ(text.str().rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Veltrana proprietary -->\n", 0), 0U)
      << "at " << QVX_CATALOG_SEED_FILE;
  xercesc::XercesDOMParser parser;
  parser.setDoNamespaces(true);
  parser.setLoadExternalDTD(false);
  parser.parse(QVX_CATALOG_SEED_FILE);
  ASSERT_EQ(parser.getErrorCount(), 0U);
  xercesc::DOMElement const* root = parser.getDocument()->getDocumentElement();
  EXPECT_EQ(IUString(root->getTagName()), IUString("ozl:OZL"));
  EXPECT_EQ(attribute(root, u"serializationSpecVersion"), "14.0");
  EXPECT_EQ(attribute(root, u"xmlns:cat"), "http://com.example.catalog/1");
  EXPECT_EQ(attribute(root, u"versioncat"), "1.2.0");
  IVector<DataTypeDef*> seeds = CatalogSeeds::createDataTypeSeeds();
  xercesc::DOMNodeList const* elements = root->getElementsByTagNameNS(u"http://com.example.catalog/1", u"DataTypeDef");
  ASSERT_EQ(elements->getLength(), seeds.size());
  std::string names;
  for (XMLSize_t i = 0; i < elements->getLength(); ++i) {
    auto const* element = static_cast<xercesc::DOMElement const*>(elements->item(i));
    DataTypeDef* seed = seeds[i];
    const std::string name = seed->getSqlName().toUtf8();
    names += name + (seed->getMaxLength() != 0 ? "(" + std::to_string(seed->getMaxLength()) + ") " : " ");
    EXPECT_EQ(infoOf(seed).getIdentityString().toUtf8(), "com.example.catalog:types." + name);
    EXPECT_EQ(attribute(element, u"ozl:id"), "smd:com.example.catalog:types." + name);
    EXPECT_EQ(attribute(element, u"name") + "/" + attribute(element, u"sqlName"), seed->getName().toUtf8() + "/" + name);
    // maxLength is left out where it equals its default "0".
    const std::string maxLength = attribute(element, u"maxLength");
    EXPECT_EQ(maxLength.empty() ? 0 : std::stoi(maxLength), seed->getMaxLength());
    delete seed;
  }
  EXPECT_EQ(names, "VARCHAR(65535) CHAR(65535) INTEGER BIGINT DECIMAL DOUBLE DATE TIMESTAMP BOOLEAN BLOB ");
}

}  // namespace
