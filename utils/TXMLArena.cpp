#include "utils/TXMLArena.h"

#include <cstring>

namespace com::veltrana::qvx::utils {

TXMLArena::~TXMLArena() = default;

std::string_view TXMLArena::copy(std::string_view text) {
  // Not a null view: callers tell an empty value from an absent one by data().
  if (text.empty()) return std::string_view("", 0);
  char* block = static_cast<char*>(allocate(text.size()));
  std::memcpy(block, text.data(), text.size());
  return std::string_view(block, text.size());
}

void TXMLArena::reset() {
  blocks_.clear();
  cursor_ = nullptr;
  end_ = nullptr;
  reservedBytes_ = 0;
}

void* TXMLArena::allocateSlow(std::size_t rounded) {
  if (rounded > kPageSize / 4) {
    // Kept behind the current page, which stays open for small requests.
    blocks_.emplace_back(new char[rounded]);
    reservedBytes_ += rounded;
    return blocks_.back().get();
  }
  blocks_.emplace_back(new char[kPageSize]);
  reservedBytes_ += kPageSize;
  cursor_ = blocks_.back().get();
  end_ = cursor_ + kPageSize;
  char* block = cursor_;
  cursor_ += rounded;
  return block;
}

}  // namespace com::veltrana::qvx::utils
