// The default UTF-8 and in-place forms of an externalizer, made from its string forms.
#include "icore/runtime/IdentityExternalizer.h"

#include "platform/WkUString.h"

namespace com::veltrana::qvx::icore::runtime {

IdentityExternalizer::~IdentityExternalizer() = default;

void IdentityExternalizer::appendText(IIdentity const* identity, std::string& utf8Out) {
  const IUString text = toString(identity);
  WkUString::appendUtf16AsUtf8(utf8Out, text.data(), text.length());
}

IIdentity* IdentityExternalizer::fromText(const char16_t* text, std::size_t length) {
  return fromString(IUString(text, length));
}

}  // namespace com::veltrana::qvx::icore::runtime
