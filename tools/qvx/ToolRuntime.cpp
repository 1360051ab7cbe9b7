#include "tools/qvx/ToolRuntime.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>

#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/CatalogWorkload.h"
#include "io/ResourceResolver.h"
#include "icore/runtime/PackageLibraryMap.h"
#include "icore/runtime/PackageRegistration.h"
#include "platform/WkEncryption.h"

namespace qvx_tool {

namespace runtime = com::veltrana::qvx::icore::runtime;

namespace {

std::string directoryOf(std::string const& path) {
  std::string::size_type slash = path.rfind('/');
  return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

// The path without "..", links or repeated slashes, or as given when it does not exist.
std::string canonical(std::string const& path) {
  char resolved[PATH_MAX];
  return !path.empty() && realpath(path.c_str(), resolved) != nullptr ? std::string(resolved) : path;
}

std::string executableDirectory(char const* argv0) {
  char resolved[PATH_MAX];
  ssize_t length = readlink("/proc/self/exe", resolved, sizeof resolved - 1);
  if (length > 0) return directoryOf(std::string(resolved, static_cast<std::size_t>(length)));
  return directoryOf(argv0 == nullptr ? "" : argv0);
}

// The directory of the catalog library this program links: its map file lies beside it,
// in the build tree and when installed.
std::string catalogLibraryDirectory() {
  Dl_info info{};
  auto* build = static_cast<com::example::catalog::Catalog* (*)(int, int, int, int)>(
      &com::example::catalog::buildCatalog);
  if (dladdr(reinterpret_cast<void*>(build), &info) == 0 || info.dli_fname == nullptr) return "";
  return directoryOf(info.dli_fname);
}

// Sets `variable` to the library directories, separated by `separator`, unless it is set.
void defaultToLibraryDirectories(const char* variable, char separator, char const* argv0) {
  const char* configured = std::getenv(variable);
  if (configured != nullptr && *configured != '\0') return;
  std::string path = canonical(executableDirectory(argv0) + "/../" QVX_TOOL_RELATIVE_LIBDIR);
  std::string catalogDirectory = canonical(catalogLibraryDirectory());
  if (!catalogDirectory.empty() && catalogDirectory != path) path += separator + catalogDirectory;
  setenv(variable, path.c_str(), 1);
}

// The resource resolver: the first directory of QVX_CPP_RESOURCE_PATH (separated by
// ";") that holds `name`, or an empty name.
IUString resourceDirectory(IUString const& name) {
  const char* list = std::getenv(runtime::PackageRegistration::RESOURCE_PATH_VAR);
  std::string directories = list == nullptr ? "" : list;
  std::string::size_type start = 0;
  while (start <= directories.size()) {
    std::string::size_type end = std::min(directories.find(';', start), directories.size());
    std::string directory = directories.substr(start, end - start);
    if (!directory.empty() && access((directory + "/" + name.toUtf8()).c_str(), R_OK) == 0) {
      return IUString::fromUtf8(directory);
    }
    start = end + 1;
  }
  return IUString();
}

}  // namespace

// Package maps and seed files ship beside the package libraries. The catalog, which
// this program links for its demo, makes its seeds in code.
void ToolRuntime::start(char const* argv0) {
  defaultToLibraryDirectories(runtime::PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR, ':', argv0);
  defaultToLibraryDirectories(runtime::PackageRegistration::RESOURCE_PATH_VAR, ';', argv0);
  runtime::PackageRegistration::registerPackageLibraryResolver(&runtime::PackageLibraryMap::resolve);
  com::veltrana::qvx::io::ResourceResolver::registerQVXResourceResolver(&resourceDirectory);
  com::example::catalog::CatalogSeeds::registerSeedLoader();
}

std::string ToolRuntime::mapPath() {
  const char* path = std::getenv(runtime::PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR);
  return path == nullptr ? "" : path;
}

bool ToolRuntime::useDemoKeyUnlessConfigured() {
  const char* keyFile = std::getenv(WkEncryption::kKeyFileVariable);
  if (keyFile != nullptr && *keyFile != '\0') return false;
  // A visible, fixed key: the demo's files are samples, not secrets.
  unsigned char key[WkEncryption::kKeyLength];
  for (std::size_t i = 0; i < sizeof key; ++i) key[i] = static_cast<unsigned char>(0x40 + i);
  WkEncryption::setKey(key, sizeof key);
  return true;
}

}  // namespace qvx_tool
