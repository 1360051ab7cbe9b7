// The load-time hook of the shared library qvx_test_package: like a generated package
// library, loading it builds the package, which registers itself with the runtime.
#include "tests/support/TestPackage.h"

namespace {

struct RegisterOnLoad {
  RegisterOnLoad() { com::example::test::shapes::ShapesIPackage::iGetInstance(); }
};

const RegisterOnLoad gRegisterOnLoad;

}  // namespace

extern "C" QVX_API_EXPORT int qvxTestPackageLiveObjectCount() {
  return com::example::test::shapes::liveObjectCount();
}
