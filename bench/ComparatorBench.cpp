// Deep comparison of two bench-size catalogs (about 140,000 objects each) with
// ObjectGraphComparator: two separate builds ignoring their generated identities, and
// one catalog against itself with identities compared by their qualified text.
#include <benchmark/benchmark.h>

#include <cstddef>

#include "bench/BenchSupport.h"
#include "examples/catalog/Catalog.h"
#include "icore/ObjectGraphComparator.h"

namespace {

using com::example::catalog::Catalog;
using com::veltrana::qvx::icore::ObjectGraphComparator;

void compareGraphs(benchmark::State& state, Catalog const& left, Catalog const& right,
                   ObjectGraphComparator::Options const& options) {
  const std::size_t objects = qvx_bench::countContainedObjects(&left);
  for (auto _ : state) {
    const auto result = ObjectGraphComparator::compare(&left, &right, options);
    if (!result.equal) {
      state.SkipWithError(("the catalogs differ: " + result.difference.toUtf8()).c_str());
      return;
    }
  }
  state.counters["objects"] = static_cast<double>(objects);
  state.counters["object_pairs/s"] =
      benchmark::Counter(static_cast<double>(objects), benchmark::Counter::kIsIterationInvariantRate);
}

void twoBuildsIgnoringIdentities(benchmark::State& state) {
  ObjectGraphComparator::Options options;
  options.ignoreIdentities = true;
  compareGraphs(state, qvx_bench::sharedBenchCatalog(0), qvx_bench::sharedBenchCatalog(1), options);
}
BENCHMARK(twoBuildsIgnoringIdentities)->Name("Comparator/two_bench_catalogs/ignore_identities")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

void oneBuildWithIdentities(benchmark::State& state) {
  Catalog const& catalog = qvx_bench::sharedBenchCatalog(0);
  compareGraphs(state, catalog, catalog, ObjectGraphComparator::Options());
}
BENCHMARK(oneBuildWithIdentities)->Name("Comparator/same_bench_catalog/with_identities")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

}  // namespace
