// qvx demo: the catalog workload written and read back in both forms, with a table of
// what each step cost and whether the graph came back equal.
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogWorkload.h"
#include "icore/ObjectGraphComparator.h"
#include "tools/qvx/Arguments.h"
#include "tools/qvx/Commands.h"
#include "tools/qvx/GraphSize.h"
#include "tools/qvx/ModelFile.h"
#include "tools/qvx/Progress.h"
#include "tools/qvx/ToolError.h"
#include "tools/qvx/ToolRuntime.h"

namespace qvx_tool {

namespace icore = com::veltrana::qvx::icore;
namespace catalog = com::example::catalog;

namespace {

char const* const kDemoUsage =
    "qvx demo [--size small|bench] [--out DIR]\n"
    "  Builds the sample catalog, writes it as a binary stream (catalog.qvx) and as an XML\n"
    "  document (catalog.xml), reads both back and compares each with the original.\n"
    "  The files stay in DIR (default: a new temporary directory) for the other commands.\n";

catalog::CatalogWorkloadSize sizeNamed(std::string const& name) {
  if (name == "small") return catalog::kSmallCatalog;
  if (name == "bench") return catalog::kBenchCatalog;
  throw ToolError(kExitUsage, "--size takes small or bench, not \"" + name + "\"");
}

std::string outputDirectory(Arguments const& arguments) {
  if (arguments.has("out")) {
    std::string directory = arguments.value("out", "");
    if (mkdir(directory.c_str(), 0755) != 0 && errno != EEXIST) {
      throw ToolError(kExitUsage, directory + ": cannot create the directory");
    }
    return directory;
  }
  char pattern[] = "/tmp/qvx-demo-XXXXXX";
  if (mkdtemp(pattern) == nullptr) throw ToolError(kExitUsage, "cannot create a temporary directory");
  return pattern;
}

long fileSize(std::string const& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<long>(status.st_size) : -1;
}

double secondsOf(char const* name, std::function<void()> const& step) {
  Progress progress(name);
  auto start = std::chrono::steady_clock::now();
  step();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void printRow(char const* step, std::size_t objects, long bytes, double seconds, std::string const& result) {
  std::string byteText = bytes < 0 ? "" : std::to_string(bytes);
  double rate = seconds > 0 ? static_cast<double>(objects) / seconds : 0;
  std::printf("%-14s %9zu %11s %10.1f %12.0f  %s\n", step, objects, byteText.c_str(), seconds * 1000, rate,
              result.c_str());
}

std::string comparisonText(IVector<icore::IObject*> const& original, IVector<icore::IObject*> const& copy,
                           FileFormat format) {
  icore::ObjectGraphComparator::Options options;
  // A document carries doubles, floats and dates as text: compare those as written.
  options.valuesAsWritten = format == FileFormat::kXml;
  icore::ObjectGraphComparator::ComparisonResult result =
      icore::ObjectGraphComparator::compare(original, copy, options);
  return result.equal ? "equal" : "differs: " + result.difference.toUtf8();
}

// Writes `roots` in `format`, reads the file back and prints a row for each step;
// returns whether the copy is equal.
bool roundTrip(IVector<icore::IObject*> const& roots, std::size_t objects, std::string const& path,
               FileFormat format, char const* name) {
  double writeSeconds = secondsOf("writing", [&] { ModelFile::save(roots, path, format); });
  printRow((std::string("write ") + name).c_str(), objects, fileSize(path), writeSeconds, path);
  LoadedModel copy;
  double readSeconds = secondsOf("reading", [&] { ModelFile::load(path, copy); });
  std::string result;
  {
    Progress progress("comparing");
    result = comparisonText(roots, copy.roots(), format);
  }
  printRow((std::string("read ") + name).c_str(), GraphSize::count(copy.roots()), fileSize(path), readSeconds,
           result);
  return result == "equal";
}

}  // namespace

int runDemo(Words const& words) {
  Arguments arguments(words, {"size", "out"}, {});
  if (arguments.answeredHelp(kDemoUsage)) return kExitSuccess;
  arguments.expectPositional(0, kDemoUsage);
  catalog::CatalogWorkloadSize size = sizeNamed(arguments.value("size", "small"));
  std::string directory = outputDirectory(arguments);
  if (ToolRuntime::useDemoKeyUnlessConfigured()) {
    std::puts("encryption key: none configured, using the demo's own fixed key "
              "(set QVX_ENCRYPTION_KEY_FILE to use yours)");
  }
  std::printf("workload: catalog(%d, %d, %d, %d) in %s\n\n", size.schemas, size.tablesPerSchema,
              size.columnsPerTable, size.foreignKeysPerTable, directory.c_str());
  std::printf("%-14s %9s %11s %10s %12s  %s\n", "step", "objects", "bytes", "time ms", "objects/s", "result");

  std::unique_ptr<catalog::Catalog> original;
  double buildSeconds = secondsOf("building", [&] { original.reset(catalog::buildCatalog(size)); });
  IVector<icore::IObject*> roots;
  roots.append(original.get());
  std::size_t objects = GraphSize::count(roots);
  printRow("build", objects, -1, buildSeconds, "");

  bool binaryEqual = roundTrip(roots, objects, directory + "/catalog.qvx", FileFormat::kBinary, "binary");
  bool xmlEqual = roundTrip(roots, objects, directory + "/catalog.xml", FileFormat::kXml, "xml");
  std::puts("(the XML copy is compared by doubles, floats and dates as the document writes them)");
  std::printf("\nTry next:\n  qvx dump %s/catalog.qvx | head -40\n  qvx diff %s/catalog.qvx %s/catalog.xml\n",
              directory.c_str(), directory.c_str(), directory.c_str());
  return binaryEqual && xmlEqual ? kExitSuccess : kExitDifferent;
}

}  // namespace qvx_tool
