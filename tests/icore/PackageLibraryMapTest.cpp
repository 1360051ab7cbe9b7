// The ready package-library resolver: map files found through
// QVX_PACKAGELIBMAP_FILES_PATH, their format and search order, its errors, and loading
// the catalog package through the map file that ships beside its library.
#include "icore/runtime/PackageLibraryMap.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "icore/QVXRuntime.h"
#include "icore/runtime/PackageRegistration.h"

namespace {

using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::runtime::PackageLibraryMap;
using com::veltrana::qvx::icore::runtime::PackageRegistration;

// A scratch directory with a map file, removed with the object.
class MapDirectory {
 public:
  explicit MapDirectory(const std::string& content) {
    char pattern[] = "/tmp/qvx-map-XXXXXX";
    path_ = mkdtemp(pattern);
    std::ofstream(file()) << content;
  }
  ~MapDirectory() {
    std::remove(file().c_str());
    std::remove((path_ + "/libbeside.so").c_str());
    rmdir(path_.c_str());
  }
  MapDirectory(const MapDirectory&) = delete;
  MapDirectory& operator=(const MapDirectory&) = delete;

  std::string file() const { return path_ + "/packagelibrary.map"; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

class PackageLibraryMapTest : public ::testing::Test {
 protected:
  void TearDown() override {
    if (hadPath_) {
      setenv("QVX_PACKAGELIBMAP_FILES_PATH", oldPath_.c_str(), 1);
    } else {
      unsetenv("QVX_PACKAGELIBMAP_FILES_PATH");
    }
  }
  static void searchIn(const std::string& directories) { setenv("QVX_PACKAGELIBMAP_FILES_PATH", directories.c_str(), 1); }

  const char* old_ = getenv("QVX_PACKAGELIBMAP_FILES_PATH");
  bool hadPath_ = old_ != nullptr;
  std::string oldPath_ = old_ != nullptr ? old_ : "";
};

TEST_F(PackageLibraryMapTest, ReadsEntriesWithCommentsBlanksAndFirstEntryWinning) {
  MapDirectory first(
      "# the first map\n"
      "\n"
      "  a.b.c =  libabc   # trailing comment\n"
      "beside = libbeside\n"
      "missing-equals\n"
      " = nameless\n");
  MapDirectory second("a.b.c = /opt/other/libabc\nd.e = /opt/libde\n");
  std::ofstream(first.path() + "/libbeside.so") << "";
  searchIn(first.path() + ":" + "/nonexistent-qvx;" + second.path());

  std::vector<IUString> problems;
  const auto entries = PackageLibraryMap::readEntries(problems);
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(entries[0].packageName, IUString("a.b.c"));
  EXPECT_EQ(entries[0].library, IUString("libabc"));
  EXPECT_EQ(entries[0].line, 3);
  EXPECT_EQ(entries[1].library, IUString::fromUtf8(first.path() + "/libbeside"));
  ASSERT_EQ(problems.size(), 2u);
  EXPECT_EQ(problems[0], IUString::fromUtf8(first.file() + ":5: expected \"package.name = library\", found \"missing-equals\""));

  IUString error;
  EXPECT_EQ(PackageLibraryMap::resolve("a.b.c", error), IUString("libabc"));
  EXPECT_EQ(PackageLibraryMap::resolve("d.e", error), IUString("/opt/libde"));
  EXPECT_TRUE(error.isEmpty());
}

TEST_F(PackageLibraryMapTest, UnknownPackageOrNoDirectoriesFailWithTheReason) {
  MapDirectory directory("a.b = liba\n");
  searchIn(directory.path());
  IUString error;
  EXPECT_EQ(PackageLibraryMap::resolve("x.y", error), IUString());
  EXPECT_NE(error.find(IUString("has an entry for it")), IUString::npos) << error.toUtf8();

  searchIn("");
  error = IUString();
  EXPECT_EQ(PackageLibraryMap::resolve("a.b", error), IUString());
  EXPECT_NE(error.find(IUString("QVX_PACKAGELIBMAP_FILES_PATH")), IUString::npos) << error.toUtf8();
  // Through the loader the resolver's reason reaches the caller.
  PackageRegistration::registerPackageLibraryResolver(&PackageLibraryMap::resolve);
  error = IUString();
  EXPECT_EQ(PackageRegistration::loadPackageLibrary("a.b", error), ISTATUS_FAILURE);
  EXPECT_NE(error.find(IUString("QVX_PACKAGELIBMAP_FILES_PATH")), IUString::npos) << error.toUtf8();
  PackageRegistration::registerPackageLibraryResolver(nullptr);
}

TEST_F(PackageLibraryMapTest, CatalogLoadsThroughTheMapShippedBesideItsLibrary) {
  const std::string stem = QVX_TEST_CATALOG_LIBRARY_STEM;
  searchIn(stem.substr(0, stem.rfind('/')));
  PackageRegistration::registerPackageLibraryResolver(&PackageLibraryMap::resolve);
  IUString error;
  EXPECT_EQ(PackageLibraryMap::resolve("com.example.catalog", error), IUString::fromUtf8(stem));
  EXPECT_EQ(PackageRegistration::loadPackageLibrary("com.example.catalog", error), ISTATUS_SUCCESS) << error.toUtf8();
  EXPECT_NE(QVXRuntime::getInstance()->getIPackageForName("com.example.catalog"), nullptr);
  PackageRegistration::registerPackageLibraryResolver(nullptr);
}

}  // namespace
