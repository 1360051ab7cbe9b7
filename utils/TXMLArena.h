// Bump-pointer storage for the XML writing layer: the in-memory tree of TXMLDOMModel
// and the serializer's tables keep their many small records and strings here, in
// pages of kPageSize bytes, and free them all at once.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {

// Owns every block it hands out until it is destroyed or reset; blocks are never freed
// one by one. A request larger than a quarter page gets a block of its own, so big
// strings waste no page tail. Not synchronised.
class QVX_API TXMLArena {
 public:
  static constexpr std::size_t kPageSize = 64 * 1024;
  static constexpr std::size_t kAlignment = alignof(std::max_align_t) < 8 ? alignof(std::max_align_t) : 8;

  TXMLArena() = default;
  TXMLArena(const TXMLArena&) = delete;
  TXMLArena& operator=(const TXMLArena&) = delete;
  ~TXMLArena();

  // `size` bytes aligned to kAlignment, uninitialised.
  void* allocate(std::size_t size) {
    const std::size_t rounded = (size + kAlignment - 1) & ~(kAlignment - 1);
    if (rounded <= static_cast<std::size_t>(end_ - cursor_)) {
      char* block = cursor_;
      cursor_ += rounded;
      return block;
    }
    return allocateSlow(rounded);
  }

  // A copy of `text` that lives as long as the arena (not zero-terminated); never a
  // view with a null data pointer, also when `text` is empty.
  std::string_view copy(std::string_view text);

  // Frees every block.
  void reset();
  // The bytes taken from the system for blocks, for memory accounting.
  std::size_t getReservedBytes() const { return reservedBytes_; }

 private:
  void* allocateSlow(std::size_t rounded);

  std::vector<std::unique_ptr<char[]>> blocks_;
  char* cursor_ = nullptr;
  char* end_ = nullptr;
  std::size_t reservedBytes_ = 0;
};

}  // namespace com::veltrana::qvx::utils
