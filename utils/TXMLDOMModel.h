// The in-memory document of the XML writing layer: a compact element tree whose
// records, names and values (UTF-8) live in one arena. The serializer builds the whole
// document here and TXMLGenerate writes it out in one piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/QvxExport.h"
#include "utils/TXMLArena.h"

namespace com::veltrana::qvx::utils {

namespace detail {
struct TXMLNameRecord;
struct TXMLNodeRecord;
}  // namespace detail

// A name interned in one document model (TXMLDOMModel::internName). Valid until the
// model is reset by createNewDOMTree or destroyed.
using TXMLName = detail::TXMLNameRecord const*;

class TXMLNode;

// Owns every node, name and value of its tree; TXMLNode handles point into it and
// are valid until createNewDOMTree or destruction. Not synchronised: one thread builds
// and writes a document.
class QVX_API TXMLDOMModel {
 public:
  TXMLDOMModel();
  TXMLDOMModel(const TXMLDOMModel&) = delete;
  TXMLDOMModel& operator=(const TXMLDOMModel&) = delete;
  virtual ~TXMLDOMModel();

  // Starts an empty document: frees the tree, its values and the interned names.
  void createNewDOMTree();

  // The one record of `name` in this document. Interning once and passing the
  // result saves a look-up on every addChild / setAttribute.
  TXMLName internName(std::string_view name);
  // The text of an interned name.
  static std::string_view getNameText(TXMLName name);

  // The root element, a null node before addRootNode.
  TXMLNode getRootNode();

  // Bytes held for the tree (arena blocks and the name table's nodes, estimated).
  std::size_t getMemoryBytes() const;

 protected:
  detail::TXMLNodeRecord* root_ = nullptr;

 private:
  friend class TXMLNode;
  friend class TXMLGenerate;

  detail::TXMLNodeRecord* newNode(TXMLName name, detail::TXMLNodeRecord* parent);
  std::string_view nameText(std::uint32_t index) const { return nameTexts_[index]; }

  TXMLArena arena_;
  std::unordered_map<std::string_view, TXMLName> names_;
  std::vector<std::string_view> nameTexts_;  // by name index
};

}  // namespace com::veltrana::qvx::utils
