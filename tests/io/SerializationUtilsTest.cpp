// Namespace URIs and major versions of packages, and finding resource files through the
// environment's directory lists or a host's resolver function.
#include "io/SerializationUtils.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "icore/QVXMsgCatalog.h"
#include "io/ResourceResolver.h"
#include "tests/support/TestPackageLoader.h"

namespace {

using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::io::ResourceResolver;
using com::veltrana::qvx::io::SerializationUtils;

TEST(SerializationUtilsTest, MajorVersionOfTwoThreeAndFourPartVersions) {
  EXPECT_EQ(SerializationUtils::getPackageMajorVersion("10.0"), IUString("10"));
  EXPECT_EQ(SerializationUtils::getPackageMajorVersion("14.0.0"), IUString("14"));
  EXPECT_EQ(SerializationUtils::getPackageMajorVersion("1.2.3.4"), IUString("2"));
  EXPECT_EQ(SerializationUtils::getPackageMajorVersion("9.6.1.0"), IUString("6"));
  EXPECT_EQ(SerializationUtils::getPackageMajorVersion("1.2.3.4.5"), IUString("1"));
}

TEST(SerializationUtilsTest, PackageUriAndBackToTheQualifiedName) {
  const IUString uri = SerializationUtils::getURI(shapes_test::loadShapesPackage());
  EXPECT_EQ(uri, IUString("http://com.example.test.shapes/") +
                     SerializationUtils::getPackageMajorVersion(shapes_test::loadShapesPackage()->getVersion()));
  EXPECT_EQ(SerializationUtils::getPackageNameFromURI(uri), IUString("com.example.test.shapes"));
  EXPECT_EQ(SerializationUtils::getPackageNameFromURI("https://a.b/1"), IUString());
  EXPECT_EQ(SerializationUtils::getPackageNameFromURI("http://"), IUString());
}

// Sets or clears an environment variable for one test and restores it afterwards.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const char* value) : name_(name) {
    const char* old = getenv(name);
    hadValue_ = old != nullptr;
    if (hadValue_) old_ = old;
    if (value != nullptr) setenv(name, value, 1); else unsetenv(name);
  }
  ~ScopedEnv() {
    if (hadValue_) setenv(name_, old_.c_str(), 1); else unsetenv(name_);
  }

 private:
  const char* name_;
  bool hadValue_ = false;
  std::string old_;
};

class ResourceLookupTest : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/qvx-resources-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    directory_ = pattern;
    std::ofstream(directory_ + "/schema.xsd") << "<schema/>";
  }
  void TearDown() override {
    std::remove((directory_ + "/schema.xsd").c_str());
    rmdir(directory_.c_str());
    ResourceResolver::registerQVXResourceResolver(nullptr);
  }
  std::string directory_;
  ScopedEnv noHome_{"VELTRANA_HOME", nullptr};
  ScopedEnv noResources_{"VELTRANA_RESOURCES", nullptr};
};

TEST_F(ResourceLookupTest, FindsAFileInTheListedDirectoriesInOrder) {
  ScopedEnv path("QVX_CPP_RESOURCE_PATH", ("/nonexistent-qvx;;" + directory_).c_str());
  IUString error;
  EXPECT_EQ(ResourceResolver::getResourcePath("schema.xsd", error), IUString::fromUtf8(directory_ + "/"));
  EXPECT_TRUE(error.isEmpty());

  IUString name("schema.xsd");
  std::unique_ptr<char[]> content(SerializationUtils::readSchemaFile(name, error));
  ASSERT_NE(content, nullptr);
  EXPECT_STREQ(content.get(), "<schema/>");
  EXPECT_EQ(name, IUString::fromUtf8(directory_ + "/schema.xsd"));
}

TEST_F(ResourceLookupTest, MissingFileNamesTheResourceAndTheSearchedSetting) {
  ScopedEnv path("QVX_CPP_RESOURCE_PATH", nullptr);
  IUString error;
  EXPECT_EQ(ResourceResolver::getResourcePath("absent.xsd", error), IUString());
  EXPECT_EQ(error, qvxFormatMsg(76004, IUString("absent.xsd")));

  ScopedEnv resources("VELTRANA_RESOURCES", directory_.c_str());
  error = IUString();
  EXPECT_EQ(ResourceResolver::getResourcePath("absent.xsd", error), IUString());
  EXPECT_EQ(error, qvxFormatMsg(76004, IUString("absent.xsd")) + IUString(" ") +
                       qvxFormatMsg(76006, IUString("VELTRANA_RESOURCES"), IUString::fromUtf8(directory_)));
  IUString name("absent.xsd");
  EXPECT_EQ(SerializationUtils::readSchemaFile(name, error), nullptr);
}

TEST_F(ResourceLookupTest, DirectoriesAndNamesWithANulUnitAreNoResources) {
  ScopedEnv path("QVX_CPP_RESOURCE_PATH", "/");
  IUString error;
  const std::string leaf = directory_.substr(1);  // a directory below "/"
  EXPECT_EQ(ResourceResolver::getResourcePath(IUString::fromUtf8(leaf), error), IUString());
  EXPECT_FALSE(error.isEmpty());
  const std::u16string withNul = IUString::fromUtf8(directory_).str() + u'\0' + u"x.seed.xml";
  error = IUString();
  EXPECT_EQ(ResourceResolver::getResourcePath(IUString(withNul), error), IUString());
  EXPECT_FALSE(error.isEmpty());
}

TEST_F(ResourceLookupTest, HomeDirectoryServesPluginsDynamic) {
  ScopedEnv path("QVX_CPP_RESOURCE_PATH", nullptr);
  ScopedEnv home("VELTRANA_HOME", "/nonexistent-qvx-home");
  IUString error;
  EXPECT_EQ(ResourceResolver::getResourcePath("schema.xsd", error), IUString());
  EXPECT_FALSE(error.isEmpty());
}

IUString resolveWithoutSlash(IUString const&) { return IUString("/some/where"); }

TEST_F(ResourceLookupTest, RegisteredResolverWinsAndGetsATrailingSlash) {
  ScopedEnv path("QVX_CPP_RESOURCE_PATH", directory_.c_str());
  ResourceResolver::registerQVXResourceResolver(resolveWithoutSlash);
  IUString error;
  EXPECT_EQ(ResourceResolver::getResourcePath("schema.xsd", error), IUString("/some/where/"));
}

}  // namespace
