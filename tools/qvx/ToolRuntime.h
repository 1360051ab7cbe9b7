// What every qvx command needs from the runtime before it touches a model: packages
// that are not registered are found through the package-library maps, which default to
// the directory of the installed libraries (or of the catalog library in a build tree)
// when QVX_PACKAGELIBMAP_FILES_PATH is not set; seed files are looked for there too,
// unless QVX_CPP_RESOURCE_PATH is set.
#pragma once
#include <string>

namespace qvx_tool {

class ToolRuntime {
 public:
  // `argv0` is the program's own path, used to find the libraries installed beside it.
  static void start(char const* argv0);
  // The map directories in use, as the environment now names them.
  static std::string mapPath();
  // Installs a fixed demonstration key when neither the process nor the environment has
  // an encryption key; says whether it did.
  static bool useDemoKeyUnlessConfigured();
};

}  // namespace qvx_tool
