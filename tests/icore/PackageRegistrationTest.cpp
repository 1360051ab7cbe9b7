// Loading package libraries on demand: the resolver's failures, and the libraries of the
// test package and of the catalog package, which this program does not link, becoming
// registered packages whose classes work through reflection.
#include "icore/runtime/PackageRegistration.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "icore/QVXMsgCatalog.h"
#include "tests/support/TestPackageAccess.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using runtime::PackageRegistration;

// Whether the library `stem` + ".so" is in the process, asked without loading it.
bool isResident(const std::string& stem) {
  void* handle = dlopen((stem + ".so").c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

// Names the real test library and reports an error at the same time.
IUString resolverWithError(IUString const&, IUString& error) {
  error = "map file unreadable";
  return IUString(QVX_TEST_PACKAGE_LIBRARY_STEM);
}

IUString resolverWithoutName(IUString const&, IUString&) { return IUString(); }

IUString resolverToMissingLibrary(IUString const&, IUString&) { return IUString("/nonexistent-qvx/libmissing"); }

// Names the library of the catalog package or of the test package.
IUString knownLibraries(IUString const& packageName, IUString& error) {
  if (packageName == IUString("com.example.catalog")) return IUString(QVX_TEST_CATALOG_LIBRARY_STEM);
  return shapes_test::shapesLibraryResolver(packageName, error);
}

// Each test installs resolvers through the runtime; the process's own comes back after.
class PackageRegistrationTest : public ::testing::Test {
 protected:
  void TearDown() override { PackageRegistration::registerPackageLibraryResolver(previous_); }

 private:
  PackageRegistration::Resolver previous_ = PackageRegistration::getPackageLibraryResolver();
};

TEST_F(PackageRegistrationTest, FailuresSayWhyInTheErrorText) {
  const bool residentBefore = isResident(QVX_TEST_PACKAGE_LIBRARY_STEM);
  using Resolver = PackageRegistration::Resolver;
  const struct { Resolver resolver; const char* package; IUString error; bool wholeText; } cases[] = {
      {nullptr, "com.example.absent", qvxFormatMsg(76005, IUString("com.example.absent")), true},
      {&resolverWithError, "com.example.test.shapes",
       qvxFormatMsg(76012, IUString("com.example.test.shapes"), IUString("map file unreadable")), true},
      {&resolverWithoutName, "com.example.nameless", qvxFormatMsg(76013, IUString("com.example.nameless")), true},
      // The loader's own text, which names the file with the suffix appended.
      {&resolverToMissingLibrary, "com.example.missing", IUString("/nonexistent-qvx/libmissing.so"), false},
  };
  for (const auto& entry : cases) {
    QVXRuntime::registerPackageLibraryResolver(entry.resolver);
    IUString error;
    EXPECT_EQ(QVXRuntime::loadPackageLibrary(entry.package, error), ISTATUS_FAILURE) << entry.package;
    const bool matches = entry.wholeText ? error == entry.error : error.find(entry.error) != IUString::npos;
    EXPECT_TRUE(matches) << entry.package << ": " << error.toUtf8();
  }
  // The resolver's error stops the load before its library name is used (a check only
  // when no earlier test of this process loaded that library).
  EXPECT_TRUE(residentBefore || !isResident(QVX_TEST_PACKAGE_LIBRARY_STEM));
}

TEST_F(PackageRegistrationTest, LoadingALibraryRegistersItsPackageOnceWithWorkingClasses) {
  // Each with a class that has a string property "name".
  const struct { const char *package, *stem, *version, *className; } cases[] = {
      {"com.example.test.shapes", QVX_TEST_PACKAGE_LIBRARY_STEM, "1.0.0", "Circle"},
      {"com.example.catalog", QVX_TEST_CATALOG_LIBRARY_STEM, "1.2.0", "Table"},
  };
  QVXRuntime::registerPackageLibraryResolver(&knownLibraries);
  QVXRuntime* theRuntime = QVXRuntime::getInstance();
  for (const auto& entry : cases) {
    SCOPED_TRACE(entry.package);
    EXPECT_TRUE(isResident(entry.stem) || theRuntime->isPackageRegistered(entry.package) == IFALSE);
    IUString error;
    ASSERT_EQ(QVXRuntime::loadPackageLibrary(entry.package, error), ISTATUS_SUCCESS) << error.toUtf8();
    ASSERT_EQ(QVXRuntime::loadPackageLibrary(entry.package, error), ISTATUS_SUCCESS) << error.toUtf8();
    EXPECT_TRUE(isResident(entry.stem));
    IPackage* package = theRuntime->getIPackageForName(entry.package);
    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->getVersion(), IUString(entry.version));
    const IVector<IPackage*> listed = theRuntime->getAllIPackages();
    EXPECT_EQ(std::count(listed.begin(), listed.end(), package), 1);

    // An object of the package made, written and read through reflection alone.
    auto* objectClass = static_cast<IClass*>(package->getType(entry.className));
    ASSERT_NE(objectClass, nullptr);
    std::unique_ptr<IObject> object(objectClass->create());
    shapes_test::put(object.get(), "name", IUString("orders"));
    EXPECT_EQ(shapes_test::valueOf<IUString>(object.get(), "name"), IUString("orders"));
  }
}

}  // namespace
