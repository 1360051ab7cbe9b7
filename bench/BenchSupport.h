// Shared pieces of the qvx_bench benchmarks: the encryption key the workload needs,
// the bench-size catalogs that several benchmarks read, an object count by walking
// containment reflectively, and the allocation counters kept by the global operator
// new / delete that this executable replaces (BenchAllocation.cpp).
#pragma once

#include <cstddef>
#include <cstdint>

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
  // The highest liveBytes since the last resetPeakLiveBytes().
  std::int64_t peakLiveBytes = 0;
};
AllocationSnapshot allocationSnapshot();
void resetPeakLiveBytes();

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

}  // namespace qvx_bench
