// The UUID identity: 16 bytes in RFC 4122 order. ACE makes and parses UUIDs in
// UUIDExternalizer.cpp; this class needs nothing of it.
#include "icore/runtime/UUIIdentity.h"

#include <cstring>

#include "icore/runtime/UUIDExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

UUIIdentity::UUIIdentity(const unsigned char* bytes, RawBytes rawBytes)
    : keepsRawBytes_(rawBytes == RawBytes::kKeep) {
  std::memcpy(bytes_, bytes, kByteCount);
}

UUIIdentity::~UUIIdentity() = default;

IBOOLEAN UUIIdentity::operator==(IIdentity const& other) const {
  try {
    if (getIdentityExternalizer() != other.getIdentityExternalizer()) {
      return IFALSE;
    }
    const auto* otherUuid = dynamic_cast<const UUIIdentity*>(&other);
    if (otherUuid == nullptr) {
      return IFALSE;
    }
    // The canonical text spells out exactly the 16 bytes (hexadecimal, one case), so two
    // texts are equal exactly when the bytes are.
    return std::memcmp(bytes_, otherUuid->bytes_, kByteCount) == 0 ? ITRUE : IFALSE;
  } catch (...) {
    return IFALSE;
  }
}

IdentityExternalizer* UUIIdentity::getIdentityExternalizer() const { return UUIDExternalizer::getInstance(); }

// Formatted here rather than by ACE's to_string, which costs about 580 ns an id (it
// allocates and goes through snprintf); the text is the same, lowercase 8-4-4-4-12.
IUString UUIIdentity::getCanonicalText() const {
  static constexpr char kHexDigits[] = "0123456789abcdef";
  const unsigned char* bytes = bytes_;
  char16_t text[kTextLength];
  std::size_t length = 0;
  for (std::size_t index = 0; index < kByteCount; ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) text[length++] = u'-';
    text[length++] = static_cast<char16_t>(kHexDigits[bytes[index] >> 4]);
    text[length++] = static_cast<char16_t>(kHexDigits[bytes[index] & 0x0F]);
  }
  return IUString(text, length);
}

void UUIIdentity::getBytes(unsigned char* out) const { std::memcpy(out, bytes_, kByteCount); }

const unsigned char* UUIIdentity::getRawBytes() const { return keepsRawBytes_ ? bytes_ : nullptr; }

}  // namespace com::veltrana::qvx::icore::runtime
