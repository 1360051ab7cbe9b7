// The seeded DataTypeDef objects: made in code, handed to the seed registry by the
// loader callback, and written by hand in the seed file that ships beside the library,
// whose contents must match the objects made in code.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/DataTypeDef.h"
#include "icore/IClass.h"
#include "icore/runtime/SeedIdentity.h"
#include "icore/runtime/SeedRegistry.h"
#include "tests/catalog/CatalogTestSupport.h"

namespace {

using catalog_test::infoOf;
using catalog_test::pkg;
using com::example::catalog::CatalogSeeds;
using com::example::catalog::DataType;
using com::example::catalog::DataTypeDef;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::runtime::SeedIdentity;

void deleteAll(IVector<DataTypeDef*>& seeds) {
  for (DataTypeDef* seed : seeds) delete seed;
}

TEST(CatalogSeedsTest, TenDefinitionsWithSeedIdentitiesInOrdinalOrder) {
  IVector<DataTypeDef*> seeds = CatalogSeeds::createDataTypeSeeds();
  ASSERT_EQ(seeds.size(), 10U);
  const char* const names[] = {"VARCHAR", "CHAR", "INTEGER", "BIGINT", "DECIMAL",
                               "DOUBLE", "DATE", "TIMESTAMP", "BOOLEAN", "BLOB"};
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    DataTypeDef* seed = seeds[i];
    EXPECT_EQ(seed->getSqlName().toUtf8(), names[i]);
    EXPECT_EQ(seed->getName().toUtf8(), names[i]);
    EXPECT_EQ(seed->getMaxLength(), i < 2 ? 65535 : 0) << names[i];
    EXPECT_NE(dynamic_cast<SeedIdentity const*>(infoOf(seed).getIdentity()), nullptr);
    EXPECT_EQ(infoOf(seed).getIdentityString().toUtf8(), std::string("com.example.catalog:types.") + names[i]);
  }
  deleteAll(seeds);
}

TEST(CatalogSeedsTest, LoaderAnswersOnlyThePackagesSeedIds) {
  std::unique_ptr<IObject> loaded(CatalogSeeds::loadSeed("com.example.catalog:types.TIMESTAMP"));
  ASSERT_NE(loaded, nullptr);
  EXPECT_EQ(infoOf(loaded.get()).getIClass(), pkg()->getDataTypeDefIClass());
  EXPECT_EQ(static_cast<DataTypeDef*>(loaded.get())->getSqlName(), IUString("TIMESTAMP"));
  EXPECT_EQ(CatalogSeeds::loadSeed("com.example.catalog:types.NUMBER"), nullptr);
  EXPECT_EQ(CatalogSeeds::loadSeed("com.example.catalog:types."), nullptr);
  EXPECT_EQ(CatalogSeeds::loadSeed("com.example.other:types.VARCHAR"), nullptr);
}

TEST(CatalogSeedsTest, RegistryFindsTheSeedsThroughTheLoader) {
  DataTypeDef* date = CatalogSeeds::getDataTypeSeed(DataType::DATE);
  ASSERT_NE(date, nullptr);
  EXPECT_EQ(date->getSqlName(), IUString("DATE"));
  EXPECT_EQ(CatalogSeeds::getDataTypeSeed(DataType::DATE), date);
  EXPECT_EQ(QVXRuntime::getInstance()->getSeedRegistry().getObjectById("com.example.catalog:types.DATE"),
            static_cast<IObject*>(date));
  EXPECT_NE(CatalogSeeds::getDataTypeSeed(DataType::BLOB), date);
}

std::string readFile(const char* path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string attribute(xercesc::DOMElement const* element, const char16_t* name) {
  return IUString(element->getAttribute(name)).toUtf8();
}

TEST(CatalogSeedsTest, SeedFileBesideTheLibraryHoldsTheSameObjects) {
  const std::string text = readFile(QVX_CATALOG_SEED_FILE);
  ASSERT_FALSE(text.empty()) << "no seed file at " << QVX_CATALOG_SEED_FILE;
  EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Veltrana proprietary -->\n", 0), 0U);

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
  for (XMLSize_t i = 0; i < elements->getLength(); ++i) {
    auto const* element = static_cast<xercesc::DOMElement const*>(elements->item(i));
    DataTypeDef* seed = seeds[i];
    EXPECT_EQ(attribute(element, u"ozl:id"), "smd:" + infoOf(seed).getIdentityString().toUtf8());
    EXPECT_EQ(attribute(element, u"name"), seed->getName().toUtf8());
    EXPECT_EQ(attribute(element, u"sqlName"), seed->getSqlName().toUtf8());
    // maxLength is left out where it equals its default "0".
    const std::string maxLength = attribute(element, u"maxLength");
    EXPECT_EQ(maxLength.empty() ? 0 : std::stoi(maxLength), seed->getMaxLength());
  }
  deleteAll(seeds);
}

}  // namespace
