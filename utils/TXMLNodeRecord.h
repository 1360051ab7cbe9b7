// The records of the XML writing layer's in-memory tree, private to utils/: interned
// names, elements and attributes, all kept in the TXMLDOMModel's arena. Elements link
// to their first and last child, next sibling and parent, so the tree is built by
// appending and written by one loop without recursion. Records name their element or
// attribute by a 32-bit index into the model's name table, and an attribute's value
// follows its record in the arena, which keeps an attribute at 16 bytes plus its text.
#pragma once

#include <cstdint>
#include <string_view>

namespace com::veltrana::qvx::utils::detail {

// An element or attribute name, stored once per document.
struct TXMLNameRecord {
  std::string_view text;
  std::uint32_t index;
};

struct TXMLAttributeRecord {
  TXMLAttributeRecord* next;
  std::uint32_t nameIndex;
  std::uint32_t valueLength;

  const char* value() const { return reinterpret_cast<const char*>(this + 1); }
  char* value() { return reinterpret_cast<char*>(this + 1); }
};
static_assert(sizeof(TXMLAttributeRecord) == 16, "an attribute record is two words");

struct TXMLNodeRecord {
  std::uint32_t nameIndex;
  std::uint32_t textLength;
  const char* text;  // null when the element has no text
  TXMLNodeRecord* parent;
  TXMLNodeRecord* firstChild;
  TXMLNodeRecord* lastChild;
  TXMLNodeRecord* nextSibling;
  TXMLAttributeRecord* firstAttribute;
  TXMLAttributeRecord* lastAttribute;
};

}  // namespace com::veltrana::qvx::utils::detail
