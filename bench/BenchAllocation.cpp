// Replaces the global operator new and delete of the benchmark executable, so that
// the figures of memory per object cover every allocation the library and the
// catalog package make (the executable's definitions take precedence over the C++
// runtime's for the shared libraries too). Only counts, the live bytes and their peak
// are kept, per thread, which costs a few instructions per allocation and no locking.
#include <malloc.h>

#include <cstdlib>
#include <new>

#include "bench/BenchSupport.h"

namespace {

thread_local qvx_bench::AllocationSnapshot tAllocations;

void* allocate(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) return nullptr;
  ++tAllocations.allocations;
  tAllocations.liveBytes += static_cast<std::int64_t>(malloc_usable_size(block));
  if (tAllocations.liveBytes > tAllocations.peakLiveBytes) tAllocations.peakLiveBytes = tAllocations.liveBytes;
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  ++tAllocations.releases;
  tAllocations.liveBytes -= static_cast<std::int64_t>(malloc_usable_size(block));
  std::free(block);
}

void* allocateOrThrow(std::size_t size) {
  void* block = allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

namespace qvx_bench {

AllocationSnapshot allocationSnapshot() { return tAllocations; }

void resetAllocationPeak() { tAllocations.peakLiveBytes = tAllocations.liveBytes; }

}  // namespace qvx_bench

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, std::nothrow_t const&) noexcept { release(block); }
void operator delete[](void* block, std::nothrow_t const&) noexcept { release(block); }
