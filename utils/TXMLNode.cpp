#include "utils/TXMLNode.h"

#include <cstring>
#include <new>

#include "utils/TXMLNodeRecord.h"

namespace com::veltrana::qvx::utils {

using detail::TXMLAttributeRecord;

namespace {

TXMLAttributeRecord* newAttribute(TXMLArena& arena, std::uint32_t nameIndex, std::string_view value) {
  auto* attribute = new (arena.allocate(sizeof(TXMLAttributeRecord) + value.size()))
      TXMLAttributeRecord{nullptr, nameIndex, static_cast<std::uint32_t>(value.size())};
  if (!value.empty()) std::memcpy(attribute->value(), value.data(), value.size());
  return attribute;
}

}  // namespace

TXMLNode TXMLNode::addChild(TXMLName name) { return TXMLNode(model_, model_->newNode(name, record_)); }

TXMLNode TXMLNode::addChild(std::string_view name) { return addChild(model_->internName(name)); }

std::string_view TXMLNode::setAttribute(TXMLName name, std::string_view value) {
  TXMLAttributeRecord* made = newAttribute(model_->arena_, name->index, value);
  // Elements carry a handful of attributes, so a walk by name index beats any index.
  TXMLAttributeRecord** link = &record_->firstAttribute;
  for (TXMLAttributeRecord* attribute = *link; attribute != nullptr; attribute = *link) {
    if (attribute->nameIndex == name->index) {
      // The new record takes the old one's place in the list.
      made->next = attribute->next;
      *link = made;
      if (record_->lastAttribute == attribute) record_->lastAttribute = made;
      return std::string_view(made->value(), made->valueLength);
    }
    link = &attribute->next;
  }
  *link = made;
  record_->lastAttribute = made;
  return std::string_view(made->value(), made->valueLength);
}

std::string_view TXMLNode::setAttribute(std::string_view name, std::string_view value) {
  return setAttribute(model_->internName(name), value);
}

void TXMLNode::setNodeValue(std::string_view value) {
  const std::string_view stored = model_->arena_.copy(value);
  record_->text = stored.data();
  record_->textLength = static_cast<std::uint32_t>(stored.size());
}

std::string_view TXMLNode::getNodeName() const { return model_->nameText(record_->nameIndex); }

std::string_view TXMLNode::getNodeValue() const {
  return record_->text != nullptr ? std::string_view(record_->text, record_->textLength) : std::string_view();
}

std::string_view TXMLNode::getAttribute(std::string_view name) const {
  for (TXMLAttributeRecord const* attribute = record_->firstAttribute; attribute != nullptr;
       attribute = attribute->next) {
    if (model_->nameText(attribute->nameIndex) == name) {
      return std::string_view(attribute->value(), attribute->valueLength);
    }
  }
  return std::string_view();
}

TXMLNode TXMLNode::getParent() const { return TXMLNode(model_, record_->parent); }

TXMLNode TXMLNode::getFirstChild() const { return TXMLNode(model_, record_->firstChild); }

TXMLNode TXMLNode::getNextSibling() const { return TXMLNode(model_, record_->nextSibling); }

}  // namespace com::veltrana::qvx::utils
