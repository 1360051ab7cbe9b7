// qvx: look into, convert and compare model files, and tour the library with a demo.
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "tools/qvx/Commands.h"
#include "tools/qvx/ErrorText.h"
#include "tools/qvx/ToolError.h"
#include "tools/qvx/ToolRuntime.h"

namespace {

char const* const kUsage =
    "usage: qvx COMMAND [ARGS] (qvx COMMAND --help for each)\n"
    "  demo       build the sample catalog, write and read it in both forms, compare\n"
    "  dump       decode a binary stream (.qvx) without needing its packages\n"
    "  convert    convert between binary stream (.qvx) and XML document (.xml)\n"
    "  diff       compare the models of two files, one difference per line\n"
    "  packages   list the registered and mapped packages\n"
    "  describe   show a package or class as a readable metamodel\n"
    "exit status: 0 success, 1 differences found or a check failed, 2 usage or input error\n";

}  // namespace

int main(int argc, char** argv) {
  using namespace qvx_tool;
  std::map<std::string, int (*)(Words const&)> const commands{
      {"demo", &runDemo},         {"dump", &runDump},         {"convert", &runConvert},
      {"diff", &runDiff},         {"packages", &runPackages}, {"describe", &runDescribe}};
  if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "help") == 0) {
    std::fputs(kUsage, argc < 2 ? stderr : stdout);
    return argc < 2 ? kExitUsage : kExitSuccess;
  }
  auto command = commands.find(argv[1]);
  if (command == commands.end()) {
    std::fprintf(stderr, "qvx: unknown command \"%s\" (qvx --help lists them)\n", argv[1]);
    return kExitUsage;
  }
  try {
    ToolRuntime::start(argv[0]);
    int status = command->second(Words(argv + 2, argv + argc));
    std::fflush(stdout);
    return status;
  } catch (ToolError const& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "qvx %s: %s\n", argv[1], error.what());
    return error.status();
  } catch (...) {
    std::fflush(stdout);
    std::fprintf(stderr, "qvx %s: %s\n", argv[1], currentExceptionText().c_str());
    return kExitUsage;
  }
}
