// Loads the shared library that holds a package's generated code, so that a package
// not yet registered can be brought in on demand. The host registers a resolver that
// maps a package name to a library name (conventionally from "packagelibrary.map"
// files found through QVX_PACKAGELIBMAP_FILES_PATH); loading the library runs its static
// initialisers, which build and register its packages. Libraries stay loaded for the
// life of the process. Loads are serialised; the resolver is registered once at start-up.
// No exception leaves a load: a package library builds its packages through
// buildPackagesOnLoad, which hands a failure back to the load as its error text.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

class WkMutex;

namespace com::veltrana::qvx::icore::runtime {

class QVX_API PackageRegistration {
 public:
  typedef IUString (*Resolver)(IUString const& packageName, IUString& error);

  // The names a host's resolver conventionally uses.
  static char const* const PACKAGE_LIBRARY_MAP_FILE;      // "packagelibrary.map"
  static char const* const PACKAGE_LIBRARY_MAP_PATH_VAR;  // "QVX_PACKAGELIBMAP_FILES_PATH"
  static char const* const RESOURCE_PATH_VAR;             // "QVX_CPP_RESOURCE_PATH"
  static char const* const DYNAMIC_PLUGIN_DIRECTORY;      // "/plugins/dynamic"
  // The suffix appended to a library name before it is loaded.
  static char const* const LIBRARY_SUFFIX;                // ".so"

  static void registerPackageLibraryResolver(Resolver resolver) { m_resolvePackageLibraryName = resolver; }
  static Resolver getPackageLibraryResolver() { return m_resolvePackageLibraryName; }
  // Resolves and loads the library of `packageName`; on failure `error` says why
  // (76005 no resolver, 76012 resolver error, 76013 empty name, or the loader's text).
  static ISTATUS loadPackageLibrary(IUString const& packageName, IUString& error);

  // For the load-time hook of a package library (generated code): runs `build`, which
  // builds the library's packages, without letting an exception out of the library's
  // static initialisation, where it would end the process. When loadPackageLibrary is
  // loading the library, that load fails with the exception's text (message 76014),
  // and every later load of the same library runs `build` again, so a package whose
  // build failed (a name already taken, say) is built once the cause is gone. Returns
  // whether `build` succeeded. A library linked into the program rather than loaded
  // has no load to report to; its packages build again on first use.
  static bool buildPackagesOnLoad(void (*build)()) noexcept;

 private:
  static ISTATUS loadExternalModule(IUString const& libraryName, IUString& error);

  static Resolver m_resolvePackageLibraryName;
  static WkMutex* pLoadLibraryMutex;
};

}  // namespace com::veltrana::qvx::icore::runtime
