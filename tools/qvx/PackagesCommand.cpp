// qvx packages: the packages registered in this process and those the package-library
// maps name, each with its version once loaded.
#include <cstdio>
#include <string>
#include <vector>

#include "icore/IPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/PackageLibraryMap.h"
#include "tools/qvx/Arguments.h"
#include "tools/qvx/Commands.h"
#include "tools/qvx/ToolError.h"
#include "tools/qvx/ToolRuntime.h"

namespace qvx_tool {

namespace icore = com::veltrana::qvx::icore;
namespace runtime = com::veltrana::qvx::icore::runtime;

namespace {

char const* const kPackagesUsage =
    "qvx packages\n"
    "  Lists the registered packages and those named by the packagelibrary.map files in\n"
    "  the directories of QVX_PACKAGELIBMAP_FILES_PATH, with their versions.\n";

// The version of a mapped package, loading its library when needed.
std::string versionOfMapped(IUString const& packageName) {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  if (runtime->getIPackageForName(packageName) == nullptr) {
    IUString error;
    if (icore::QVXRuntime::loadPackageLibrary(packageName, error) != ISTATUS_SUCCESS) {
      return "not loadable: " + error.toUtf8();
    }
  }
  icore::IPackage* package = runtime->getIPackageForName(packageName);
  return package == nullptr ? "not registered by its library" : "version " + package->getVersion().toUtf8();
}

}  // namespace

int runPackages(Words const& words) {
  Arguments arguments(words, {}, {});
  if (arguments.answeredHelp(kPackagesUsage)) return kExitSuccess;
  arguments.expectPositional(0, kPackagesUsage);

  std::vector<IUString> problems;
  std::vector<runtime::PackageLibraryMap::Entry> entries = runtime::PackageLibraryMap::readEntries(problems);
  std::printf("mapped packages (QVX_PACKAGELIBMAP_FILES_PATH=%s):\n", ToolRuntime::mapPath().c_str());
  if (entries.empty()) std::puts("  none");
  for (runtime::PackageLibraryMap::Entry const& entry : entries) {
    std::printf("  %s  %s\n    library %s (%s:%d)\n", entry.packageName.toUtf8().c_str(),
                versionOfMapped(entry.packageName).c_str(), entry.library.toUtf8().c_str(),
                entry.mapFile.toUtf8().c_str(), entry.line);
  }
  for (IUString const& problem : problems) std::printf("  problem: %s\n", problem.toUtf8().c_str());

  std::puts("registered packages:");
  IVector<icore::IPackage*> packages = icore::QVXRuntime::getInstance()->getAllIPackages();
  for (std::size_t i = 0; i < packages.size(); ++i) {
    std::printf("  %s  version %s\n", packages[i]->getQualifiedName().toUtf8().c_str(),
                packages[i]->getVersion().toUtf8().c_str());
  }
  return problems.empty() ? kExitSuccess : kExitDifferent;
}

}  // namespace qvx_tool
