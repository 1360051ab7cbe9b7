// The XML serializer's tables from an id string (UTF-8) to the object written under
// it: the written-objects table and the proxy identity table. Open addressing over one
// slot array, with the keys copied into an arena, so an entry costs its key's bytes
// and one slot, and no allocation of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "utils/TXMLArena.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::veltrana::qvx::io {

// Not synchronised; entries are never removed.
class XMLSerializerIdTable {
 public:
  XMLSerializerIdTable();
  XMLSerializerIdTable(const XMLSerializerIdTable&) = delete;
  XMLSerializerIdTable& operator=(const XMLSerializerIdTable&) = delete;
  ~XMLSerializerIdTable();

  // The object entered under `key`, or null.
  icore::IObject* find(std::string_view key) const;
  // Enters `object` under `key`, which must not be in the table yet; the key is copied.
  void insert(std::string_view key, icore::IObject* object);
  // The same without the copy, for a key kept elsewhere that outlives the table.
  void insertStored(std::string_view key, icore::IObject* object);

  bool isEmpty() const { return count_ == 0; }
  std::size_t getMemoryBytes() const;

 private:
  struct Slot {
    const char* key;
    std::uint32_t length;
    std::uint32_t hash;
    icore::IObject* object;  // null marks a free slot
  };

  static std::uint32_t hashOf(std::string_view key);
  std::size_t slotIndex(std::string_view key, std::uint32_t hash) const;
  void grow();

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
  utils::TXMLArena keys_;
};

}  // namespace com::veltrana::qvx::io
