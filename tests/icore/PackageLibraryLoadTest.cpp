// Loading a package library whose package cannot be built: this program links the test
// package itself, so the package's name is taken when the library of the same package
// is loaded. In a process of its own, since it changes which packages are registered.
#include <gtest/gtest.h>

#include <string>

#include "icore/QVXMsgCatalog.h"
#include "tests/support/FreshProcess.h"
#include "tests/support/TestPackage.h"
#include "tests/support/TestPackageLoader.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using com::example::test::shapes::ShapesIPackage;

TEST(PackageLibraryLoadTest, LibraryWhosePackageNameIsTakenFailsWithTheReasonAndBuildsOnceTheNameIsFree) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    QVXRuntime* theRuntime = QVXRuntime::getInstance();
    IPackage* linked = ShapesIPackage::iGetInstance();
    const IUString name = linked->getQualifiedName();
    QVXRuntime::registerPackageLibraryResolver(&shapes_test::shapesLibraryResolver);
    const IUString file = IUString(QVX_TEST_PACKAGE_LIBRARY_STEM) + IUString(".so");
    const std::size_t listedBefore = theRuntime->getAllIPackages().size();
    // Twice: the second load, which runs no static initialiser, builds and fails again.
    for (const char* attempt : {"first load: ", "second load: "}) {
      IUString error;
      const ISTATUS status = QVXRuntime::loadPackageLibrary(name, error);
      checks.expect(status == ISTATUS_FAILURE, attempt + std::string("a load whose package failed succeeded"));
      checks.expect(error.find(qvxFormatMsg(73007, name)) != IUString::npos && error.find(file) != IUString::npos,
                    attempt + std::string("the error does not say which library failed and why: ") + error.toUtf8());
      checks.expect(theRuntime->getIPackageForName(name) == linked, attempt + std::string("the first package lost"));
      checks.expect(theRuntime->getAllIPackages().size() == listedBefore, attempt + std::string("a failed package is listed"));
    }
    theRuntime->deregisterPackage(linked);
    IUString error;
    checks.expect(QVXRuntime::loadPackageLibrary(name, error) == ISTATUS_SUCCESS,
                  "the load failed once the name was free: " + error.toUtf8());
    IPackage* loaded = theRuntime->getIPackageForName(name);
    checks.expect(loaded != nullptr && loaded != linked, "the library's own package is not registered");
  });
}

}  // namespace
