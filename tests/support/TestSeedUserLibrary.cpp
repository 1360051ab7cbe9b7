// A package library whose load-time hook uses the seed registry, as the library of a
// package with seed objects does when it installs its seed loader. The lock-order test
// loads it on one thread while another thread is inside a seed lookup.
#include "icore/runtime/PackageRegistration.h"
#include "icore/runtime/SeedRegistry.h"

namespace {

using com::veltrana::qvx::icore::runtime::PackageRegistration;
using com::veltrana::qvx::icore::runtime::SeedRegistry;

[[maybe_unused]] const bool gBuiltAtLoad =
    PackageRegistration::buildPackagesOnLoad([] { delete SeedRegistry::getInstance()->getAllRegisteredObjects(); });

}  // namespace
