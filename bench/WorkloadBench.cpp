// Building and deleting the bench-size catalog, catalog(10, 1000, 10, 2): about
// 140,000 objects with generated identities, strings, dates, sample values and
// cross-references. Reports the time per build, objects per second, and the memory
// the finished graph holds per object, counted by the replaced operator new (live
// bytes, allocations) and, as a cross-check that includes malloc'd memory, by
// mallinfo2.
//
// The peer is the same graph as plain C++ structs (PlainCatalog.h), built in the same
// iterations: build_vs_plain is our build's time over the plain build's, and
// delete_vs_build our delete's time over our build's. Both ratios use the thread's CPU
// time, which other processes on a busy machine disturb less than the wall clock.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <time.h>

#include <cstddef>
#include <memory>

#include "bench/BenchSupport.h"
#include "bench/PlainCatalog.h"
#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogWorkload.h"

namespace {

using com::example::catalog::buildCatalog;
using com::example::catalog::Catalog;
using com::example::catalog::kBenchCatalog;
using com::example::catalog::kSmallCatalog;

std::unique_ptr<Catalog> buildBenchCatalog() { return std::unique_ptr<Catalog>(buildCatalog(kBenchCatalog)); }

std::unique_ptr<qvx_bench::PlainCatalog> buildPlainBenchCatalog() {
  return qvx_bench::buildPlainCatalog(kBenchCatalog.schemas, kBenchCatalog.tablesPerSchema,
                                      kBenchCatalog.columnsPerTable, kBenchCatalog.foreignKeysPerTable);
}

// Loads the package and its seeds, so that the first measured build does not pay for them.
void warmUp() { std::unique_ptr<Catalog>(buildCatalog(kSmallCatalog)).reset(); }

double threadCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Runs `work` and returns the thread CPU time it took.
template <typename Work>
double cpuSecondsOf(Work&& work) {
  const double start = threadCpuSeconds();
  work();
  return threadCpuSeconds() - start;
}

void buildBenchSizeCatalog(benchmark::State& state) {
  warmUp();
  std::size_t objects = 0;
  double bytesPerObject = 0.0;
  double allocationsPerObject = 0.0;
  double liveAllocationsPerObject = 0.0;
  double heapBytesPerObject = 0.0;
  double plainSeconds = 0.0;
  double ourSeconds = 0.0;
  bool plainFirst = true;
  // The peer's build, timed; its graph is deleted untimed.
  const auto timePlainBuild = [&plainSeconds] {
    std::unique_ptr<qvx_bench::PlainCatalog> plain;
    plainSeconds += cpuSecondsOf([&plain] { plain = buildPlainBenchCatalog(); });
  };
  for (auto _ : state) {
    // mallinfo2 consolidates the allocator's free lists, which takes time of its own.
    state.PauseTiming();
    // Whichever build runs first finds the heap the other one left; taking turns keeps
    // that from favouring either.
    if (plainFirst) timePlainBuild();
    const auto heapBefore = mallinfo2().uordblks;
    const auto before = qvx_bench::allocationSnapshot();
    state.ResumeTiming();
    std::unique_ptr<Catalog> catalog;
    ourSeconds += cpuSecondsOf([&catalog] { catalog = buildBenchCatalog(); });
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
    if (!plainFirst) timePlainBuild();
    plainFirst = !plainFirst;
    state.ResumeTiming();
  }
  state.counters["objects"] = static_cast<double>(objects);
  state.counters["objects/s"] =
      benchmark::Counter(static_cast<double>(objects), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["bytes/object"] = bytesPerObject;
  state.counters["heap_bytes/object"] = heapBytesPerObject;
  state.counters["allocs/object"] = allocationsPerObject;
  state.counters["live_allocs/object"] = liveAllocationsPerObject;
  state.counters["build_vs_plain"] = ourSeconds / plainSeconds;
}
BENCHMARK(buildBenchSizeCatalog)->Name("Workload/build/bench_catalog")->Unit(benchmark::kMillisecond)->Iterations(10);

void deleteBenchSizeCatalog(benchmark::State& state) {
  warmUp();
  std::size_t objects = 0;
  double buildSeconds = 0.0;
  double deleteSeconds = 0.0;
  for (auto _ : state) {
    state.PauseTiming();
    std::unique_ptr<Catalog> catalog;
    buildSeconds += cpuSecondsOf([&catalog] { catalog = buildBenchCatalog(); });
    objects = qvx_bench::countContainedObjects(catalog.get());
    state.ResumeTiming();
    deleteSeconds += cpuSecondsOf([&catalog] { catalog.reset(); });
  }
  state.counters["objects/s"] =
      benchmark::Counter(static_cast<double>(objects), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["delete_vs_build"] = deleteSeconds / buildSeconds;
}
// The peer alone, for its absolute time and memory.
void buildPlainBenchSizeCatalog(benchmark::State& state) {
  std::size_t objects = 0;
  double bytesPerObject = 0.0;
  for (auto _ : state) {
    const auto before = qvx_bench::allocationSnapshot();
    auto plain = buildPlainBenchCatalog();
    state.PauseTiming();
    objects = plain->objectCount();
    bytesPerObject =
        static_cast<double>(qvx_bench::allocationSnapshot().liveBytes - before.liveBytes) / static_cast<double>(objects);
    plain.reset();
    state.ResumeTiming();
  }
  state.counters["objects/s"] =
      benchmark::Counter(static_cast<double>(objects), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["bytes/object"] = bytesPerObject;
}
BENCHMARK(buildPlainBenchSizeCatalog)->Name("Workload/build/plain_catalog")->Unit(benchmark::kMillisecond)->Iterations(5);

BENCHMARK(deleteBenchSizeCatalog)->Name("Workload/delete/bench_catalog")->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
