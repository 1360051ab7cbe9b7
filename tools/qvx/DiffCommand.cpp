// qvx diff A B: every difference between the models of two files, one path per line.
#include <cstdio>

#include "icore/ObjectGraphComparator.h"
#include "tools/qvx/Arguments.h"
#include "tools/qvx/Commands.h"
#include "tools/qvx/ModelFile.h"
#include "tools/qvx/Progress.h"
#include "tools/qvx/ToolError.h"
#include "tools/qvx/ToolRuntime.h"

namespace qvx_tool {

namespace icore = com::veltrana::qvx::icore;

namespace {

char const* const kDiffUsage =
    "qvx diff A B [--ignore-identities] [--exact]\n"
    "  Loads two model files (either form, mixed) and prints every difference as a path\n"
    "  from the root; prints nothing and exits 0 when they are equal, exits 1 otherwise.\n"
    "  When either file is an XML document, doubles, floats and dates are compared as the\n"
    "  document writes them (doubles to 15 digits); --exact compares them bit for bit.\n"
    "  Encrypted values that differ are compared in clear; with no key configured\n"
    "  (QVX_ENCRYPTION_KEY_FILE), the demo's key is used, so demo files compare.\n";

bool eitherIsXml(std::vector<std::string> const& files) {
  return ModelFile::formatOfContent(files[0]) == FileFormat::kXml ||
         ModelFile::formatOfContent(files[1]) == FileFormat::kXml;
}

}  // namespace

int runDiff(Words const& words) {
  Arguments arguments(words, {}, {"ignore-identities", "exact"});
  if (arguments.answeredHelp(kDiffUsage)) return kExitSuccess;
  arguments.expectPositional(2, kDiffUsage);
  ToolRuntime::useDemoKeyUnlessConfigured();
  LoadedModel left;
  ModelFile::load(arguments.positional()[0], left);
  LoadedModel right;
  ModelFile::load(arguments.positional()[1], right);

  icore::ObjectGraphComparator::Options options;
  options.ignoreIdentities = arguments.has("ignore-identities");
  options.reportAllDifferences = true;
  options.valuesAsWritten = !arguments.has("exact") && eitherIsXml(arguments.positional());
  icore::ObjectGraphComparator::ComparisonResult result;
  {
    Progress progress("comparing");
    result = icore::ObjectGraphComparator::compare(left.roots(), right.roots(), options);
  }
  for (std::size_t i = 0; i < result.differences.size(); ++i) std::puts(result.differences[i].toUtf8().c_str());
  return result.equal ? kExitSuccess : kExitDifferent;
}

}  // namespace qvx_tool
