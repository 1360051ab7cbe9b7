// Seed files: the seed registry reads the catalog package's seed file, found through the
// resource resolver, and references in documents find its objects.
#include <gtest/gtest.h>

#include <sstream>

#include "icore/QVXMsgCatalog.h"
#include "icore/runtime/SeedRegistry.h"
#include "io/ResourceResolver.h"
#include "tests/io/XMLDocumentSupport.h"

namespace {

using namespace xml_test;  // NOLINT: test file
using icore::IObject;
using icore::QVXRuntime;
using icore::runtime::SeedRegistry;

IUString catalogLibrary(IUString const& packageName, IUString& error) {
  if (packageName == IUString("com.example.catalog")) return IUString(QVX_TEST_CATALOG_LIBRARY_STEM);
  error = IUString("unknown package ") + packageName;
  return IUString();
}

// The folder that holds the catalog library and its seed file.
IUString catalogFolder(IUString const&) { return IUString(QVX_TEST_CATALOG_FOLDER); }

IUString nowhere(IUString const&) { return IUString(); }

// Loads the catalog package and points the resource resolver at its seed file; both
// resolvers and the registry are put back afterwards.
class SeedFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    QVXRuntime::registerPackageLibraryResolver(&catalogLibrary);
    IUString error;
    ASSERT_EQ(QVXRuntime::loadPackageLibrary("com.example.catalog", error), ISTATUS_SUCCESS) << error.toUtf8();
    io::ResourceResolver::registerQVXResourceResolver(&catalogFolder);
  }
  void TearDown() override {
    SeedRegistry::getInstance()->removeObjectsByType(*dataTypeDef());
    io::ResourceResolver::registerQVXResourceResolver(previousResources_);
    QVXRuntime::registerPackageLibraryResolver(previousLibraries_);
  }

  static icore::IClass* dataTypeDef() {
    icore::IPackage* catalog = QVXRuntime::getInstance()->getIPackageForName("com.example.catalog");
    return static_cast<icore::IClass*>(catalog->getType("DataTypeDef"));
  }
  static std::string text(IObject* object, const char* name) {
    icore::IObjectInfo* info = QVXRuntime::getInstance()->getIObjectInfo(object);
    return static_cast<IUString const*>(info->get(*info->getIClass()->getProperty(name), ITRUE))->toUtf8();
  }
  static int number(IObject* object, const char* name) {
    icore::IObjectInfo* info = QVXRuntime::getInstance()->getIObjectInfo(object);
    return *static_cast<int const*>(info->get(*info->getIClass()->getProperty(name), ITRUE));
  }

 private:
  io::ResourceResolver::Resolver previousResources_ = io::ResourceResolver::getQVXResourceResolver();
  QVXRuntime::PackageLibraryResolver previousLibraries_ = QVXRuntime::getPackageLibraryResolver();
};

TEST_F(SeedFileTest, TheCatalogSeedFileLoadsOnFirstLookupWithAllItsObjects) {
  SeedRegistry* registry = SeedRegistry::getInstance();
  IObject* varchar = registry->getObjectById("com.example.catalog:types.VARCHAR");
  ASSERT_NE(varchar, nullptr);
  EXPECT_EQ(text(varchar, "sqlName"), "VARCHAR");
  EXPECT_EQ(number(varchar, "maxLength"), 65535);
  std::unique_ptr<IVector<IObject*>> all(registry->getObjectsByType(*dataTypeDef()));
  ASSERT_NE(all, nullptr);
  EXPECT_EQ(all->size(), 10u) << "one read registers the whole file";
  IObject* blob = registry->getObjectById("com.example.catalog:types.BLOB");
  ASSERT_NE(blob, nullptr);
  EXPECT_EQ(number(blob, "maxLength"), 0) << "a default value left out of the file";
  EXPECT_EQ(registry->getObjectById("com.example.catalog:types.VARCHAR"), varchar) << "not read twice";
  EXPECT_EQ(registry->getObjectById("com.example.catalog:types.NOSUCH"), nullptr);
}

TEST_F(SeedFileTest, ReferencesToSeedIdsFindTheRegisteredSeeds) {
  const std::string body =
      "<cat:Schema ozl:id=\"stringIdentity:s\" name=\"s\">\n"
      "  <tables><Table ozl:id=\"stringIdentity:t\" xsi:type=\"cat:Table\" name=\"t\">\n"
      "    <columns><Column ozl:id=\"stringIdentity:c\" xsi:type=\"cat:Column\" name=\"c\" "
      "type=\"smd:com.example.catalog:types.INTEGER\"/></columns>\n"
      "  </Table></tables>\n"
      "</cat:Schema>\n";
  const std::string root =
      "<ozl:OZL xmlns:ozl=\"http://www.veltrana.com/qvx/OZL\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "serializationSpecVersion=\"14.0\" xmlns:cat=\"http://com.example.catalog/1\" versioncat=\"1.2.0\">\n";
  Read result;
  read(result, document(body, root));
  ASSERT_EQ(result.objects->size(), 1u);
  IObject* schema = result[0];
  icore::IObjectInfo* info = QVXRuntime::getInstance()->getIObjectInfo(schema);
  auto const* tables = static_cast<IVector<IObject*> const*>(info->get(*info->getIClass()->getProperty("tables"), IFALSE));
  icore::IObjectInfo* tableInfo = QVXRuntime::getInstance()->getIObjectInfo((*tables)[0]);
  auto const* columns =
      static_cast<IVector<IObject*> const*>(tableInfo->get(*tableInfo->getIClass()->getProperty("columns"), IFALSE));
  icore::IObjectInfo* columnInfo = QVXRuntime::getInstance()->getIObjectInfo((*columns)[0]);
  auto const* type = static_cast<IObject const*>(columnInfo->get(*columnInfo->getIClass()->getProperty("type"), IFALSE));
  EXPECT_EQ(type, SeedRegistry::getInstance()->getObjectById("com.example.catalog:types.INTEGER"));
  EXPECT_EQ(QVXRuntime::getInstance()->getIObjectInfo(type)->isProxy(), IFALSE);
}

TEST_F(SeedFileTest, ASeedFileThatCannotBeFoundIsAnIOException) {
  io::ResourceResolver::registerQVXResourceResolver(&nowhere);
  const IUString message =
      qvx_test::messageOf<IOException>([] { SeedRegistry::getInstance()->getObjectById("no.such:file.x"); });
  EXPECT_EQ(message, icore::qvxFormatMsg(76004, IUString("no.such.file.seed.xml")));
}

}  // namespace
