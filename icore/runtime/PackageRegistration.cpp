#include "icore/runtime/PackageRegistration.h"

#include <exception>
#include <map>
#include <mutex>

#include "icore/QVXMsgCatalog.h"
#include "icore/exception/EncryptionFailureException.h"
#include "icore/exception/EncryptionProviderExistsException.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/NoSuchIPropertyException.h"
#include "icore/exception/SeedException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "io/exception/IOException.h"
#include "platform/DynLoadLib.h"
#include "platform/IVectorException.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore::runtime {

namespace {

typedef void (*PackageBuild)();

// What the load-time hooks of the library being loaded on this thread report. Hooks
// run inside the loader's call on the loading thread, so the record is per thread; a
// library that loads another from its hook stacks a record of its own.
struct LoadRecord {
  PackageBuild failedBuild = nullptr;
  IUString failure;
};
thread_local LoadRecord* tCurrentLoad = nullptr;

// The builds of loaded libraries that failed, by library file, to be run again on the
// next load of that file. Guarded by the load-library lock.
std::map<IUString, PackageBuild>& failedBuilds() {
  static auto* builds = new std::map<IUString, PackageBuild>();  // lives for the process
  return *builds;
}

// The text of the exception being handled, tried against each of the library's
// exception classes in turn (they have no common base).
template <typename First, typename... Rest>
IUString messageOfCurrentException() {
  try {
    throw;
  } catch (First& thrown) {
    return thrown.getMessage();
  } catch (...) {
    if constexpr (sizeof...(Rest) > 0) return messageOfCurrentException<Rest...>();
    throw;
  }
}

IUString currentExceptionText() {
  try {
    return messageOfCurrentException<
        exception::IllegalArgumentException, exception::InstantiationException, exception::IdentityException,
        exception::UnresolvedProxyException, exception::UnsupportedOperationException,
        exception::NoSuchIPropertyException, exception::SeedException, exception::EncryptionFailureException,
        exception::EncryptionProviderExistsException, io::exception::IOException, IVectorException>();
  } catch (std::exception const& thrown) {
    return IUString(thrown.what());
  } catch (...) {
    return IUString("an exception of an unknown type");
  }
}

// Runs `build`; on an exception, its text.
bool runBuild(PackageBuild build, IUString& failure) {
  try {
    build();
    return true;
  } catch (...) {
    failure = currentExceptionText();
    return false;
  }
}

// Loads `file` with `record` as this thread's load record, so that its hooks report
// there; on failure `error` is the loader's text.
bool loadRecordingHooks(IUString const& file, LoadRecord& record, IUString& error) {
  LoadRecord* const outerLoad = tCurrentLoad;
  tCurrentLoad = &record;
  DynLoadLib library;
  const bool loaded = library.load(file) == ISTATUS_SUCCESS;
  tCurrentLoad = outerLoad;
  if (!loaded) error = library.getError();
  return loaded;
}

// A library that was loaded before runs no hooks again, so a build of it that failed
// then is run again here. True when nothing is left failed; else `failure` says why.
bool rerunFailedBuild(IUString const& file, IUString& failure) {
  std::map<IUString, PackageBuild>& pending = failedBuilds();
  auto earlier = pending.find(file);
  if (earlier == pending.end()) return true;
  if (!runBuild(earlier->second, failure)) return false;
  pending.erase(earlier);
  return true;
}

}  // namespace

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
  LoadRecord record;
  if (!loadRecordingHooks(file, record, error)) return ISTATUS_FAILURE;
  if (record.failedBuild != nullptr) {
    failedBuilds()[file] = record.failedBuild;
  } else if (rerunFailedBuild(file, record.failure)) {
    return ISTATUS_SUCCESS;
  }
  error = qvxFormatMsg(76014, file, record.failure);
  return ISTATUS_FAILURE;
}

bool PackageRegistration::buildPackagesOnLoad(void (*build)()) noexcept {
  IUString failure;
  if (runBuild(build, failure)) return true;
  if (tCurrentLoad != nullptr && tCurrentLoad->failedBuild == nullptr) {
    tCurrentLoad->failedBuild = build;
    tCurrentLoad->failure = failure;
  }
  return false;
}

}  // namespace com::veltrana::qvx::icore::runtime
