#include "icore/runtime/PackageRegistration.h"

#include <mutex>

#include "icore/QVXMsgCatalog.h"
#include "platform/DynLoadLib.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore::runtime {

char const* const PackageRegistration::PACKAGE_LIBRARY_MAP_FILE = "packagelibrary.map";
char const* const PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR = "QVX_PACKAGELIBMAP_FILES_PATH";
char const* const PackageRegistration::RESOURCE_PATH_VAR = "QVX_CPP_RESOURCE_PATH";
char const* const PackageRegistration::DYNAMIC_PLUGIN_DIRECTORY = "/plugins/dynamic";
char const* const PackageRegistration::LIBRARY_SUFFIX = ".so";

PackageRegistration::Resolver PackageRegistration::m_resolvePackageLibraryName = nullptr;
WkMutex* PackageRegistration::pLoadLibraryMutex = new WkMutex();  // lives for the process

ISTATUS PackageRegistration::loadPackageLibrary(IUString const& packageName, IUString& error) {
  Resolver resolver = m_resolvePackageLibraryName;
  if (resolver == nullptr) {
    error = qvxFormatMsg(76005, packageName);
    return ISTATUS_FAILURE;
  }
  IUString resolverError;
  const IUString libraryName = resolver(packageName, resolverError);
  if (!resolverError.isEmpty()) {
    error = qvxFormatMsg(76012, packageName, resolverError);
    return ISTATUS_FAILURE;
  }
  if (libraryName.isEmpty()) {
    error = qvxFormatMsg(76013, packageName);
    return ISTATUS_FAILURE;
  }
  return loadExternalModule(libraryName, error);
}

ISTATUS PackageRegistration::loadExternalModule(IUString const& libraryName, IUString& error) {
  const IUString file = libraryName + IUString(LIBRARY_SUFFIX);
  std::lock_guard<WkMutex> guard(*pLoadLibraryMutex);
  DynLoadLib library;
  if (library.load(file) != ISTATUS_SUCCESS) {
    error = library.getError();
    return ISTATUS_FAILURE;
  }
  return ISTATUS_SUCCESS;
}

}  // namespace com::veltrana::qvx::icore::runtime
