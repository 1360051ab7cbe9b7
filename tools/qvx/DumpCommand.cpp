// qvx dump FILE: the records of a binary stream as text or JSON, decoded from the
// stream alone.
#include <cstdio>
#include <fstream>

#include "tools/qvx/Arguments.h"
#include "tools/qvx/Commands.h"
#include "tools/qvx/JsonDumpSink.h"
#include "tools/qvx/ModelFile.h"
#include "tools/qvx/Progress.h"
#include "tools/qvx/StreamDump.h"
#include "tools/qvx/TextDumpSink.h"
#include "tools/qvx/ToolError.h"

namespace qvx_tool {

namespace {

char const* const kDumpUsage =
    "qvx dump FILE [--json] [--depth N] [--max-objects N]\n"
    "  Decodes a binary stream without needing its packages: the header, each class\n"
    "  descriptor, each object with its property values (references as handles, proxies\n"
    "  and seeds) and the top-level items, each with its byte offset. --depth N prints\n"
    "  objects nested at most N deep (0: top-level objects only); --max-objects N stops\n"
    "  after N objects. A truncated or corrupt stream is dumped up to the fault, which is\n"
    "  named with its byte offset (exit status 1).\n";

}  // namespace

int runDump(Words const& words) {
  Arguments arguments(words, {"depth", "max-objects"}, {"json"});
  if (arguments.answeredHelp(kDumpUsage)) return kExitSuccess;
  arguments.expectPositional(1, kDumpUsage);
  std::string const& path = arguments.positional()[0];
  if (ModelFile::formatOfContent(path) != FileFormat::kBinary) {
    throw ToolError(kExitUsage, path + ": not a binary stream (dump decodes .qvx files; the first byte is not 1)");
  }
  StreamDump::Limits limits;
  limits.maxDepth = arguments.number("depth", limits.maxDepth);
  limits.maxObjects = arguments.number("max-objects", limits.maxObjects);

  std::ifstream input(path, std::ios::binary);
  TextDumpSink text(stdout);
  JsonDumpSink json(stdout);
  DumpSink& sink = arguments.has("json") ? static_cast<DumpSink&>(json) : text;
  StreamDump dump(input, sink, limits);
  bool clean = false;
  {
    Progress progress("decoding " + path);
    clean = dump.run();
  }
  if (clean) return kExitSuccess;
  throw ToolError(kExitDifferent, path + ": byte offset " + std::to_string(dump.faultOffset()) + ": " +
                                      dump.faultMessage());
}

}  // namespace qvx_tool
