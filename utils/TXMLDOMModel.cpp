#include "utils/TXMLDOMModel.h"

#include <new>

#include "utils/TXMLNode.h"
#include "utils/TXMLNodeRecord.h"

namespace com::veltrana::qvx::utils {

using detail::TXMLNameRecord;
using detail::TXMLNodeRecord;

TXMLDOMModel::TXMLDOMModel() = default;

TXMLDOMModel::~TXMLDOMModel() = default;

void TXMLDOMModel::createNewDOMTree() {
  root_ = nullptr;
  names_.clear();
  nameTexts_.clear();
  arena_.reset();
}

TXMLName TXMLDOMModel::internName(std::string_view name) {
  const auto found = names_.find(name);
  if (found != names_.end()) return found->second;
  auto* record = new (arena_.allocate(sizeof(TXMLNameRecord)))
      TXMLNameRecord{arena_.copy(name), static_cast<std::uint32_t>(nameTexts_.size())};
  names_.emplace(record->text, record);
  nameTexts_.push_back(record->text);
  return record;
}

std::string_view TXMLDOMModel::getNameText(TXMLName name) { return name->text; }

TXMLNode TXMLDOMModel::getRootNode() { return TXMLNode(this, root_); }

std::size_t TXMLDOMModel::getMemoryBytes() const {
  // A node of the name table is about four pointers besides its bucket slot.
  constexpr std::size_t kNameEntryBytes = 5 * sizeof(void*);
  return arena_.getReservedBytes() + names_.size() * kNameEntryBytes + nameTexts_.capacity() * sizeof(std::string_view);
}

TXMLNodeRecord* TXMLDOMModel::newNode(TXMLName name, TXMLNodeRecord* parent) {
  auto* node = new (arena_.allocate(sizeof(TXMLNodeRecord)))
      TXMLNodeRecord{name->index, 0, nullptr, parent, nullptr, nullptr, nullptr, nullptr, nullptr};
  if (parent == nullptr) return node;
  if (parent->lastChild == nullptr) {
    parent->firstChild = node;
  } else {
    parent->lastChild->nextSibling = node;
  }
  parent->lastChild = node;
  return node;
}

}  // namespace com::veltrana::qvx::utils
