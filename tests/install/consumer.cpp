// A program built against the installed library, as a user builds one: it finds the
// package with find_package(qvx), includes the installed headers and uses the runtime.
#include <cstdio>

#include "icore/IClass.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"

using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::QVXRuntime;

int main() {
  IcoreIPackage* core = IcoreIPackage::iGetInstance();
  const bool ok = QVXRuntime::getInstance()->getQVXVersion() == IUString("9.5.0") &&
                  QVXRuntime::getInstance()->isPackageRegistered("com.veltrana.qvx.icore") &&
                  core->getIClassIClass()->getAllProperties(ITRUE).size() == 10;
  std::puts(ok ? "consumer: ok" : "consumer: unexpected answers");
  return ok ? 0 : 1;
}
