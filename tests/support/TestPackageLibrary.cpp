// The load-time hook of the shared library qvx_test_package: like a generated package
// library, loading it builds the package, which registers itself with the runtime.
#include "icore/runtime/PackageRegistration.h"
#include "tests/support/TestPackage.h"

namespace {

[[maybe_unused]] const bool gRegisteredAtLoad = com::veltrana::qvx::icore::runtime::PackageRegistration::
    buildPackagesOnLoad([] { com::example::test::shapes::ShapesIPackage::iGetInstance(); });

}  // namespace

extern "C" QVX_API_EXPORT int qvxTestPackageLiveObjectCount() {
  return com::example::test::shapes::liveObjectCount();
}
