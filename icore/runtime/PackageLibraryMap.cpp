#include "icore/runtime/PackageLibraryMap.h"

#include <fstream>
#include <string>
#include <string_view>

#include "icore/runtime/PackageRegistration.h"
#include "platform/WkSystem.h"

namespace com::veltrana::qvx::icore::runtime {

namespace {

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(" \t\r");
  return text.substr(first, last - first + 1);
}

// The library as the loader should get it: beside the map file when it is there.
IUString locateLibrary(std::string const& directory, std::string_view library) {
  if (library.find('/') != std::string_view::npos) return IUString::fromUtf8(library);
  const std::string besideMap = directory + "/" + std::string(library);
  if (wkAccess(IUString::fromUtf8(besideMap + PackageRegistration::LIBRARY_SUFFIX))) {
    return IUString::fromUtf8(besideMap);
  }
  return IUString::fromUtf8(library);
}

void readMapFile(std::string const& directory, std::vector<PackageLibraryMap::Entry>& entries,
                 std::vector<IUString>& problems) {
  const std::string path = directory + "/" + PackageRegistration::PACKAGE_LIBRARY_MAP_FILE;
  std::ifstream file(path);
  if (!file) return;  // a listed directory need not hold a map
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    std::string_view content = line;
    content = trimmed(content.substr(0, content.find('#')));
    if (content.empty()) continue;
    const std::size_t equals = content.find('=');
    const std::string_view name = trimmed(content.substr(0, equals));
    const std::string_view library = equals == std::string_view::npos ? std::string_view() : trimmed(content.substr(equals + 1));
    if (name.empty() || library.empty()) {
      problems.push_back(IUString::format("%s:%d: expected \"package.name = library\", found \"%s\"", path, number,
                                          std::string(content)));
      continue;
    }
    entries.push_back({IUString::fromUtf8(name), locateLibrary(directory, library), IUString::fromUtf8(path), number});
  }
}

}  // namespace

std::vector<IUString> PackageLibraryMap::mapDirectories() {
  const std::string list = wkGetEnv(PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR).toUtf8();
  std::vector<IUString> directories;
  std::size_t start = 0;
  while (start <= list.size()) {
    std::size_t end = list.find_first_of(":;", start);
    if (end == std::string::npos) end = list.size();
    const std::string_view directory = trimmed(std::string_view(list).substr(start, end - start));
    if (!directory.empty()) directories.push_back(IUString::fromUtf8(directory));
    start = end + 1;
  }
  return directories;
}

std::vector<PackageLibraryMap::Entry> PackageLibraryMap::readEntries(std::vector<IUString>& problems) {
  std::vector<Entry> entries;
  for (IUString const& directory : mapDirectories()) readMapFile(directory.toUtf8(), entries, problems);
  return entries;
}

IUString PackageLibraryMap::resolve(IUString const& packageName, IUString& error) {
  if (mapDirectories().empty()) {
    error = IUString::format("%s names no directory with a %s file", PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR,
                             PackageRegistration::PACKAGE_LIBRARY_MAP_FILE);
    return IUString();
  }
  std::vector<IUString> problems;
  for (Entry const& entry : readEntries(problems)) {
    if (entry.packageName == packageName) return entry.library;
  }
  error = IUString::format("no %s file in %s=%s has an entry for it", PackageRegistration::PACKAGE_LIBRARY_MAP_FILE,
                           PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR,
                           wkGetEnv(PackageRegistration::PACKAGE_LIBRARY_MAP_PATH_VAR));
  return IUString();
}

}  // namespace com::veltrana::qvx::icore::runtime
