// One attribute of an element as the SAX reader reports it: views of its qualified name
// (prefix and colon included, as written) and of its value. The views point into the
// parser's buffers and are valid only during the startElement call that delivered them.
#pragma once

#include <string_view>

namespace com::veltrana::qvx::utils {

class TXMLAttribute {
 public:
  TXMLAttribute(std::u16string_view name, std::u16string_view value) : name_(name), value_(value) {}

  std::u16string_view getName() const { return name_; }
  std::u16string_view getValue() const { return value_; }

 private:
  std::u16string_view name_;
  std::u16string_view value_;
};

}  // namespace com::veltrana::qvx::utils
