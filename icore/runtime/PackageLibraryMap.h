// A ready package-library resolver for hosts: it reads "packagelibrary.map" files from
// the directories named by QVX_PACKAGELIBMAP_FILES_PATH and maps a package's qualified
// name to the library that holds its generated code. Register it once at start-up:
//
//   PackageRegistration::registerPackageLibraryResolver(&PackageLibraryMap::resolve);
//
// Map file format, one entry per line:
//
//   # comment (from "#" to the end of the line)
//   com.example.catalog = libqvx_catalog
//
// Blanks around names are ignored, as are empty lines. The library name is given
// without the ".so" that the loader appends; a name without "/" is looked for beside
// the map file first and otherwise left to the system loader's search. The directory
// list is separated by ":" or ";" and searched in order; the first entry for a package
// wins. Files are read on every call, so a changed map needs no restart; calls happen
// only for packages not yet registered.
#pragma once

#include <vector>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class QVX_API PackageLibraryMap {
 public:
  struct Entry {
    IUString packageName;
    IUString library;  // as the loader gets it: resolved beside the map file when found there
    IUString mapFile;
    int line = 0;
  };

  // The resolver function: the library of `packageName`, or an empty name with the
  // reason in `error` (no directories configured, or no entry for the package).
  static IUString resolve(IUString const& packageName, IUString& error);

  // Every entry of every map file, in search order, duplicates included. Lines that are
  // not "name = library" are reported in `problems`, one "file:line: text" each.
  static std::vector<Entry> readEntries(std::vector<IUString>& problems);

  // The directories named by QVX_PACKAGELIBMAP_FILES_PATH, in order.
  static std::vector<IUString> mapDirectories();
};

}  // namespace com::veltrana::qvx::icore::runtime
