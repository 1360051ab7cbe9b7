// qvx convert IN OUT: reads a model file in either form and writes it in the form that
// OUT's extension or --to names.
#include <cstdio>

#include "tools/qvx/Arguments.h"
#include "tools/qvx/Commands.h"
#include "tools/qvx/ModelFile.h"
#include "tools/qvx/ToolError.h"

namespace qvx_tool {

namespace {

char const* const kConvertUsage =
    "qvx convert IN OUT [--to binary|xml]\n"
    "  Reads IN (binary stream or XML document, told by its content) and writes its\n"
    "  objects to OUT, in the form --to names or else OUT's extension (.qvx or .xml).\n";

}  // namespace

int runConvert(Words const& words) {
  Arguments arguments(words, {"to"}, {});
  if (arguments.answeredHelp(kConvertUsage)) return kExitSuccess;
  arguments.expectPositional(2, kConvertUsage);
  std::string const& input = arguments.positional()[0];
  std::string const& output = arguments.positional()[1];
  FileFormat format =
      arguments.has("to") ? ModelFile::formatOfWord(arguments.value("to", "")) : ModelFile::formatOfName(output);
  LoadedModel model;
  ModelFile::load(input, model);
  if (model.roots().size() == 0) throw ToolError(kExitUsage, input + ": holds no objects to convert");
  ModelFile::save(model.roots(), output, format);
  return kExitSuccess;
}

}  // namespace qvx_tool
