// Shared pieces of the qvx_bench benchmarks: the encryption key the workload needs,
// the bench-size catalogs that several benchmarks read, an object count by walking
// containment reflectively, and the allocation counters kept by the global operator
// new / delete that this executable replaces (BenchAllocation.cpp).
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace com::veltrana::qvx::icore {
class IObject;
}
namespace com::example::catalog {
class Catalog;
}

namespace qvx_bench {

// What the calling thread has allocated through operator new so far: the number of
// allocations and of releases, and the usable bytes of the blocks still live (malloc_usable_size, so the
// figure is what the allocator hands out, without its per-chunk header). Counted per
// thread: every benchmark here runs on one thread.
struct AllocationSnapshot {
  std::uint64_t allocations = 0;
  std::uint64_t releases = 0;
  std::int64_t liveBytes = 0;
  // The most live bytes seen since the last resetAllocationPeak() on this thread.
  std::int64_t peakLiveBytes = 0;
};
AllocationSnapshot allocationSnapshot();
// Starts a new peak at the bytes live now, to measure what one operation adds at most.
void resetAllocationPeak();

// Installs a fixed key for the default encryption provider; the workload's
// connection password is encrypted as it is set.
void useBenchEncryptionKey();

// Two catalogs of the bench size (CatalogWorkload.h), built on first use and kept for
// the rest of the run. Benchmarks only read them.
com::example::catalog::Catalog const& sharedBenchCatalog(int which);
// Deletes the shared catalogs while the library's singletons are certainly alive.
void releaseSharedBenchCatalogs();
// The objects of the containment tree below `root`, `root` included.
std::size_t countContainedObjects(com::veltrana::qvx::icore::IObject const* root);

// The best time of `measured` divided by the best time of `peer`, over interleaved
// rounds of the same number of calls each. Taking the best round of each, measured
// side by side, keeps the ratio steady on a machine whose load varies, which two
// separately timed benchmarks are not.
template <typename Measured, typename Peer>
double bestTimeRatio(Measured&& measured, Peer&& peer) {
  constexpr int kRounds = 51;
  constexpr int kCallsPerRound = 20000;
  using Clock = std::chrono::steady_clock;
  auto timeOf = [](auto& operation) {
    const Clock::time_point start = Clock::now();
    for (int call = 0; call < kCallsPerRound; ++call) operation();
    return std::chrono::duration<double>(Clock::now() - start).count();
  };
  double bestMeasured = std::numeric_limits<double>::max();
  double bestPeer = std::numeric_limits<double>::max();
  for (int round = 0; round < kRounds; ++round) {
    bestMeasured = std::min(bestMeasured, timeOf(measured));
    bestPeer = std::min(bestPeer, timeOf(peer));
  }
  return bestMeasured / bestPeer;
}

}  // namespace qvx_bench
