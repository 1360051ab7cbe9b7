// The text externalizers' shared behaviour, instantiated for string and seed identities.
#include "icore/runtime/TextExternalizer.h"

#include "icore/runtime/SeedIdentity.h"
#include "icore/runtime/StringIdentity.h"
#include "platform/WkUString.h"

namespace com::veltrana::qvx::icore::runtime {

template <typename Readable, typename Made>
TextExternalizer<Readable, Made>::TextExternalizer(const char* externalizerId) : externalizerId_(externalizerId) {}

template <typename Readable, typename Made>
TextExternalizer<Readable, Made>::~TextExternalizer() = default;

template <typename Readable, typename Made>
IUString TextExternalizer<Readable, Made>::toString(IIdentity const* identity) {
  const auto* textIdentity = dynamic_cast<const Readable*>(identity);
  return textIdentity != nullptr ? textIdentity->getIdString() : IUString();
}

template <typename Readable, typename Made>
void TextExternalizer<Readable, Made>::appendText(IIdentity const* identity, std::string& utf8Out) {
  const auto* textIdentity = dynamic_cast<const Readable*>(identity);
  if (textIdentity == nullptr) return;
  IUString const& text = textIdentity->getIdString();
  WkUString::appendUtf16AsUtf8(utf8Out, text.data(), text.length());
}

template <typename Readable, typename Made>
IIdentity* TextExternalizer<Readable, Made>::fromString(IUString const& text) {
  return new Made(text);
}

template <typename Readable, typename Made>
IUString const& TextExternalizer<Readable, Made>::getExternalizerId() const {
  return externalizerId_;
}

// The string externalizer writes any text identity (so also a seed identity); the seed
// externalizer only seed identities.
template class TextExternalizer<StringId, StringIdentity>;
template class TextExternalizer<SeedIdentity, SeedIdentity>;

}  // namespace com::veltrana::qvx::icore::runtime
