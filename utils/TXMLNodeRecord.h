// The records of the XML writing layer's in-memory tree, private to utils/: interned
// names, elements and attributes, all kept in the TXMLDOMModel's arena. Elements link
// to their first and last child, next sibling and parent, so the tree is built by
// appending and written by one loop without recursion.
#pragma once

#include <cstdint>
#include <string_view>

namespace com::veltrana::qvx::utils::detail {

// An element or attribute name, stored once per document; records compare names by
// the address of this record.
struct TXMLNameRecord {
  std::string_view text;
};

struct TXMLAttributeRecord {
  TXMLNameRecord const* name;
  TXMLAttributeRecord* next;
  std::string_view value;
};

struct TXMLNodeRecord {
  TXMLNameRecord const* name;
  TXMLNodeRecord* parent;
  TXMLNodeRecord* firstChild;
  TXMLNodeRecord* lastChild;
  TXMLNodeRecord* nextSibling;
  TXMLAttributeRecord* firstAttribute;
  TXMLAttributeRecord* lastAttribute;
  std::string_view text;
};

}  // namespace com::veltrana::qvx::utils::detail
