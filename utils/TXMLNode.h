// A handle to one element of a TXMLDOMModel tree, the way the serializer builds its
// document: add child elements, set attributes (kept in the order first set), set the
// text. Names and values are UTF-8; the model copies them.
#pragma once

#include <string_view>

#include "platform/QvxExport.h"
#include "utils/TXMLDOMModel.h"

namespace com::veltrana::qvx::utils {

// A value type of two pointers; copies denote the same element. A default-constructed
// handle is null and may only be tested with isNull. Valid as long as its model's tree.
class QVX_API TXMLNode {
 public:
  TXMLNode() = default;

  bool isNull() const { return record_ == nullptr; }

  // Appends a new, empty element after the existing children and returns it.
  TXMLNode addChild(TXMLName name);
  TXMLNode addChild(std::string_view name);
  // Sets the attribute: a new name goes after the attributes already set, a name set
  // before keeps its place and gets the new value. Returns the model's copy of the
  // value, which lives as long as the model's storage (until createNewDOMTree).
  std::string_view setAttribute(TXMLName name, std::string_view value);
  std::string_view setAttribute(std::string_view name, std::string_view value);
  // Sets the text content, written before any child elements.
  void setNodeValue(std::string_view value);

  // Reading back, for callers that check what they built.
  std::string_view getNodeName() const;
  std::string_view getNodeValue() const;
  // The value of attribute `name`, or null (a default string_view) when it is not set.
  std::string_view getAttribute(std::string_view name) const;
  TXMLNode getParent() const;
  TXMLNode getFirstChild() const;
  TXMLNode getNextSibling() const;

 private:
  friend class TXMLDOMModel;
  TXMLNode(TXMLDOMModel* model, detail::TXMLNodeRecord* record) : model_(model), record_(record) {}

  TXMLDOMModel* model_ = nullptr;
  detail::TXMLNodeRecord* record_ = nullptr;
};

}  // namespace com::veltrana::qvx::utils
