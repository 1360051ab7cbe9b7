#include "utils/TXMLNode.h"

#include <new>

#include "utils/TXMLNodeRecord.h"

namespace com::veltrana::qvx::utils {

using detail::TXMLAttributeRecord;

TXMLNode TXMLNode::addChild(TXMLName name) { return TXMLNode(model_, model_->newNode(name, record_)); }

TXMLNode TXMLNode::addChild(std::string_view name) { return addChild(model_->internName(name)); }

void TXMLNode::setAttribute(TXMLName name, std::string_view value) {
  // Elements carry a handful of attributes, so a walk by name address beats any index.
  for (TXMLAttributeRecord* attribute = record_->firstAttribute; attribute != nullptr; attribute = attribute->next) {
    if (attribute->name == name) {
      attribute->value = model_->arena_.copy(value);
      return;
    }
  }
  auto* attribute = new (model_->arena_.allocate(sizeof(TXMLAttributeRecord)))
      TXMLAttributeRecord{name, nullptr, model_->arena_.copy(value)};
  if (record_->lastAttribute == nullptr) {
    record_->firstAttribute = attribute;
  } else {
    record_->lastAttribute->next = attribute;
  }
  record_->lastAttribute = attribute;
}

void TXMLNode::setAttribute(std::string_view name, std::string_view value) {
  setAttribute(model_->internName(name), value);
}

void TXMLNode::setNodeValue(std::string_view value) { record_->text = model_->arena_.copy(value); }

std::string_view TXMLNode::getNodeName() const { return record_->name->text; }

std::string_view TXMLNode::getNodeValue() const { return record_->text; }

std::string_view TXMLNode::getAttribute(std::string_view name) const {
  for (TXMLAttributeRecord const* attribute = record_->firstAttribute; attribute != nullptr;
       attribute = attribute->next) {
    if (attribute->name->text == name) return attribute->value;
  }
  return std::string_view();
}

TXMLNode TXMLNode::getParent() const { return TXMLNode(model_, record_->parent); }

TXMLNode TXMLNode::getFirstChild() const { return TXMLNode(model_, record_->firstChild); }

TXMLNode TXMLNode::getNextSibling() const { return TXMLNode(model_, record_->nextSibling); }

}  // namespace com::veltrana::qvx::utils
