#include "io/XMLSerializerIdTable.h"

#include <cstring>

#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::io {

namespace {

constexpr std::size_t kInitialSlots = 64;  // a power of two, as every later size

}  // namespace

XMLSerializerIdTable::XMLSerializerIdTable() : slots_(kInitialSlots, Slot{nullptr, 0, 0, nullptr}) {}

XMLSerializerIdTable::~XMLSerializerIdTable() = default;

// Eight bytes at a time, each word mixed in by a multiply: ids are 40-odd bytes that
// share long prefixes ("uuidV1:", time fields), so every byte must reach the result,
// and a byte-at-a-time hash costs more than the probe it serves.
std::uint32_t XMLSerializerIdTable::hashOf(std::string_view key) {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ULL;
  std::uint64_t hash = key.size() * kMultiplier;
  const char* next = key.data();
  std::size_t remaining = key.size();
  for (; remaining >= 8; remaining -= 8, next += 8) {
    std::uint64_t word;
    std::memcpy(&word, next, sizeof word);
    hash = (hash ^ word) * kMultiplier;
    hash ^= hash >> 29;
  }
  std::uint64_t tail = 0;
  std::memcpy(&tail, next, remaining);
  hash = (hash ^ tail) * kMultiplier;
  hash ^= hash >> 32;
  return static_cast<std::uint32_t>(hash);
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
  insertStored(keys_.copy(key), object);
}

void XMLSerializerIdTable::insertStored(std::string_view key, icore::IObject* object) {
  QVX_ASSERT(object != nullptr);
  // At most 70 % full, and usually between 35 and 70 %: linear probing needs 1.5 to 6
  // probes to miss there (8.5 at three quarters), and most look-ups are misses.
  if ((count_ + 1) * 10 > slots_.size() * 7) grow();
  const std::uint32_t hash = hashOf(key);
  Slot& slot = slots_[slotIndex(key, hash)];
  QVX_ASSERT(slot.object == nullptr);
  slot = Slot{key.data(), static_cast<std::uint32_t>(key.size()), hash, object};
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
