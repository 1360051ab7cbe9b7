// Entry point of qvx_bench: Xerces is initialised for the whole run (the blob text
// form goes through its Base64), and the workload's encryption key is set before any
// benchmark builds a catalog. The micro-benchmarks run for 0.1 s each by default, which
// gives millions of iterations and keeps the whole run well under a minute;
// --benchmark_min_time on the command line still overrides it.
#include <benchmark/benchmark.h>

#include <vector>

#include <xercesc/util/PlatformUtils.hpp>

#include "bench/BenchSupport.h"

int main(int argc, char** argv) {
  xercesc::XMLPlatformUtils::Initialize();
  qvx_bench::useBenchEncryptionKey();
  char defaultMinTime[] = "--benchmark_min_time=0.1";
  std::vector<char*> arguments{argv[0], defaultMinTime};
  for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
  int argumentCount = static_cast<int>(arguments.size());
  benchmark::Initialize(&argumentCount, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments.data())) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  qvx_bench::releaseSharedBenchCatalogs();
  xercesc::XMLPlatformUtils::Terminate();
  return 0;
}
