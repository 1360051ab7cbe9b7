// A start tag as the SAX reader reports it: the element's qualified name as written and
// its attributes in document order. Everything is a view into the parser's buffers,
// valid only during the startElement call that delivered it; copy what must be kept.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "utils/TXMLAttribute.h"

namespace com::veltrana::qvx::utils {

class TXMLElement {
 public:
  TXMLElement() = default;
  TXMLElement(const TXMLElement&) = delete;
  TXMLElement& operator=(const TXMLElement&) = delete;

  std::u16string_view getQName() const { return qName_; }
  std::size_t getAttributeCount() const { return attributes_.size(); }
  const TXMLAttribute& getAttribute(std::size_t index) const { return attributes_[index]; }
  const std::vector<TXMLAttribute>& getAttributes() const { return attributes_; }

  // The attribute with this qualified name, or null.
  const TXMLAttribute* findAttribute(std::u16string_view qName) const {
    for (const TXMLAttribute& attribute : attributes_) {
      if (attribute.getName() == qName) return &attribute;
    }
    return nullptr;
  }

  // For the parser adapter: the element is refilled for every start tag, so the
  // attribute storage is allocated once per parse, not once per element.
  void reset(std::u16string_view qName) {
    qName_ = qName;
    attributes_.clear();
  }
  void addAttribute(std::u16string_view name, std::u16string_view value) { attributes_.emplace_back(name, value); }

 private:
  std::u16string_view qName_;
  std::vector<TXMLAttribute> attributes_;
};

}  // namespace com::veltrana::qvx::utils
