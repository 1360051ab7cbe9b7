// The output side's map from a written object or class to its handle: open addressing
// with linear probing in one array, because the writer asks it once or twice per object
// and a node-based map costs a cache miss and an allocation per entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace com::veltrana::qvx::io {

class PointerHandleMap {
 public:
  // The handle of `key`, or -1.
  int find(void const* key) const {
    if (slots_.empty()) return -1;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = hash(key) & mask;; slot = (slot + 1) & mask) {
      if (slots_[slot].key == key) return slots_[slot].handle;
      if (slots_[slot].key == nullptr) return -1;
    }
  }

  // Enters `key` (not null) with `handle`; when it is there already, returns its handle
  // and changes nothing, else returns -1.
  int insert(void const* key, int handle) {
    if ((size_ + 1) * 2 > slots_.size()) grow();
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = hash(key) & mask;; slot = (slot + 1) & mask) {
      if (slots_[slot].key == key) return slots_[slot].handle;
      if (slots_[slot].key != nullptr) continue;
      slots_[slot] = {key, handle};
      ++size_;
      return -1;
    }
  }

 private:
  struct Slot {
    void const* key = nullptr;
    int handle = -1;
  };

  static std::size_t hash(void const* key) {
    auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(key));
    bits ^= bits >> 33;
    bits *= 0xff51afd7ed558ccdULL;
    bits ^= bits >> 33;
    return static_cast<std::size_t>(bits);
  }

  void grow() {
    std::vector<Slot> old(slots_.empty() ? 64 : slots_.size() * 2);
    old.swap(slots_);
    size_ = 0;
    for (Slot const& entry : old) {
      if (entry.key != nullptr) insert(entry.key, entry.handle);
    }
  }

  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace com::veltrana::qvx::io
