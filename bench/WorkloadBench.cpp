// Building and deleting the bench-size catalog, catalog(10, 1000, 10, 2): about
// 140,000 objects with generated identities, strings, dates, sample values and
// cross-references. Reports the time per build, objects per second, and the memory
// the finished graph holds per object, counted by the replaced operator new (live
// bytes, allocations) and, as a cross-check that includes malloc'd memory, by
// mallinfo2.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstddef>
#include <memory>

#include "bench/BenchSupport.h"
#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogWorkload.h"

namespace {

using com::example::catalog::buildCatalog;
using com::example::catalog::Catalog;
using com::example::catalog::kBenchCatalog;
using com::example::catalog::kSmallCatalog;

std::unique_ptr<Catalog> buildBenchCatalog() { return std::unique_ptr<Catalog>(buildCatalog(kBenchCatalog)); }

// Loads the package and its seeds, so that the first measured build does not pay for them.
void warmUp() { std::unique_ptr<Catalog>(buildCatalog(kSmallCatalog)).reset(); }

void buildBenchSizeCatalog(benchmark::State& state) {
  warmUp();
  std::size_t objects = 0;
  double bytesPerObject = 0.0;
  double allocationsPerObject = 0.0;
  double liveAllocationsPerObject = 0.0;
  double heapBytesPerObject = 0.0;
  for (auto _ : state) {
    // mallinfo2 consolidates the allocator's free lists, which takes time of its own.
    state.PauseTiming();
    const auto heapBefore = mallinfo2().uordblks;
    const auto before = qvx_bench::allocationSnapshot();
    state.ResumeTiming();
    auto catalog = buildBenchCatalog();
    state.PauseTiming();
    const auto after = qvx_bench::allocationSnapshot();
    const auto heapAfter = mallinfo2().uordblks;
    // Every build makes the same graph, so the figures of the last one stand for all.
    objects = qvx_bench::countContainedObjects(catalog.get());
    const auto perObject = [objects](double total) { return total / static_cast<double>(objects); };
    bytesPerObject = perObject(static_cast<double>(after.liveBytes - before.liveBytes));
    allocationsPerObject = perObject(static_cast<double>(after.allocations - before.allocations));
    // Blocks still live after the build belong to the graph; the rest were temporaries.
    liveAllocationsPerObject = perObject(static_cast<double>((after.allocations - before.allocations) -
                                                             (after.releases - before.releases)));
    heapBytesPerObject = perObject(static_cast<double>(heapAfter) - static_cast<double>(heapBefore));
    catalog.reset();
    state.ResumeTiming();
  }
  state.counters["objects"] = static_cast<double>(objects);
  state.counters["objects/s"] =
      benchmark::Counter(static_cast<double>(objects), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["bytes/object"] = bytesPerObject;
  state.counters["heap_bytes/object"] = heapBytesPerObject;
  state.counters["allocs/object"] = allocationsPerObject;
  state.counters["live_allocs/object"] = liveAllocationsPerObject;
}
BENCHMARK(buildBenchSizeCatalog)->Name("Workload/build/bench_catalog")->Unit(benchmark::kMillisecond)->Iterations(5);

void deleteBenchSizeCatalog(benchmark::State& state) {
  warmUp();
  std::size_t objects = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto catalog = buildBenchCatalog();
    objects = qvx_bench::countContainedObjects(catalog.get());
    state.ResumeTiming();
    catalog.reset();
  }
  state.counters["objects/s"] =
      benchmark::Counter(static_cast<double>(objects), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(deleteBenchSizeCatalog)->Name("Workload/delete/bench_catalog")->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
