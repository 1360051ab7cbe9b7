#include "io/XMLSerializerIdTable.h"

#include <cstring>

#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::io {

namespace {

constexpr std::size_t kInitialSlots = 64;  // a power of two, as every later size

}  // namespace

XMLSerializerIdTable::XMLSerializerIdTable() : slots_(kInitialSlots, Slot{nullptr, 0, 0, nullptr}) {}

XMLSerializerIdTable::~XMLSerializerIdTable() = default;

// FNV-1a: ids differ mostly in their last characters (UUID node and clock), which
// every byte of this hash reaches.
std::uint32_t XMLSerializerIdTable::hashOf(std::string_view key) {
  std::uint32_t hash = 2166136261U;
  for (char c : key) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 16777619U;
  }
  return hash;
}

// The slot holding `key`, or the free slot where it would go.
std::size_t XMLSerializerIdTable::slotIndex(std::string_view key, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t index = hash & mask;; index = (index + 1) & mask) {
    Slot const& slot = slots_[index];
    if (slot.object == nullptr) return index;
    if (slot.hash == hash && slot.length == key.size() && std::memcmp(slot.key, key.data(), key.size()) == 0) {
      return index;
    }
  }
}

icore::IObject* XMLSerializerIdTable::find(std::string_view key) const {
  return slots_[slotIndex(key, hashOf(key))].object;
}

void XMLSerializerIdTable::insert(std::string_view key, icore::IObject* object) {
  QVX_ASSERT(object != nullptr);
  // At most three quarters full, so that probe runs stay short.
  if ((count_ + 1) * 4 > slots_.size() * 3) grow();
  const std::uint32_t hash = hashOf(key);
  Slot& slot = slots_[slotIndex(key, hash)];
  QVX_ASSERT(slot.object == nullptr);
  const std::string_view stored = keys_.copy(key);
  slot = Slot{stored.data(), static_cast<std::uint32_t>(stored.size()), hash, object};
  ++count_;
}

void XMLSerializerIdTable::grow() {
  std::vector<Slot> old(slots_.size() * 2, Slot{nullptr, 0, 0, nullptr});
  old.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (Slot const& slot : old) {
    if (slot.object == nullptr) continue;
    std::size_t index = slot.hash & mask;
    while (slots_[index].object != nullptr) index = (index + 1) & mask;
    slots_[index] = slot;
  }
}

std::size_t XMLSerializerIdTable::getMemoryBytes() const {
  return slots_.capacity() * sizeof(Slot) + keys_.getReservedBytes();
}

}  // namespace com::veltrana::qvx::io
