// The UUID identity: 16 bytes in RFC 4122 order. ACE makes and parses UUIDs in
// UUIDExternalizer.cpp; this class needs nothing of it.
#include "icore/runtime/UUIIdentity.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

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

namespace {

constexpr bool isHyphenOffset(std::size_t offset) { return offset == 8 || offset == 13 || offset == 18 || offset == 23; }

// Writes the canonical text of `bytes`, lowercase 8-4-4-4-12, to out[0, kTextLength).
template <typename Char>
void formatCanonical(const unsigned char* bytes, Char* out) {
  static constexpr char kHexDigits[] = "0123456789abcdef";
  std::size_t length = 0;
  for (std::size_t index = 0; index < UUIIdentity::kByteCount; ++index) {
    if (isHyphenOffset(length)) out[length++] = static_cast<Char>('-');
    out[length++] = static_cast<Char>(kHexDigits[bytes[index] >> 4]);
    out[length++] = static_cast<Char>(kHexDigits[bytes[index] & 0x0F]);
  }
}

// The value of a hexadecimal digit of either case, or -1.
template <typename Char>
int hexValue(Char unit) {
  const auto code = static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<Char>>(unit));
  if (code >= '0' && code <= '9') return static_cast<int>(code - '0');
  if (code >= 'a' && code <= 'f') return static_cast<int>(code - 'a' + 10);
  if (code >= 'A' && code <= 'F') return static_cast<int>(code - 'A' + 10);
  return -1;
}

template <typename Char>
bool parseCanonical(const Char* text, std::size_t length, unsigned char* bytes) {
  if (text == nullptr || length != UUIIdentity::kTextLength) return false;
  std::size_t byteIndex = 0;
  std::size_t offset = 0;
  while (offset < UUIIdentity::kTextLength) {
    if (isHyphenOffset(offset)) {
      if (text[offset++] != static_cast<Char>('-')) return false;
      continue;
    }
    const int high = hexValue(text[offset]);
    const int low = hexValue(text[offset + 1]);
    if (high < 0 || low < 0) return false;
    bytes[byteIndex++] = static_cast<unsigned char>((high << 4) | low);
    offset += 2;
  }
  return true;
}

}  // namespace

// Formatted here rather than by ACE's to_string, which costs about 580 ns an id (it
// allocates and goes through snprintf); the text is the same, lowercase 8-4-4-4-12.
IUString UUIIdentity::getCanonicalText() const {
  char16_t text[kTextLength];
  formatCanonical(bytes_, text);
  return IUString(text, kTextLength);
}

void UUIIdentity::appendCanonicalText(std::string& utf8Out) const {
  const std::size_t start = utf8Out.size();
  utf8Out.resize(start + kTextLength);
  formatCanonical(bytes_, &utf8Out[start]);
}

bool UUIIdentity::parseCanonicalText(const char16_t* text, std::size_t length, unsigned char* bytes) {
  return parseCanonical(text, length, bytes);
}

bool UUIIdentity::parseCanonicalText(const char* text, std::size_t length, unsigned char* bytes) {
  return parseCanonical(text, length, bytes);
}

void UUIIdentity::getBytes(unsigned char* out) const { std::memcpy(out, bytes_, kByteCount); }

const unsigned char* UUIIdentity::getRawBytes() const { return keepsRawBytes_ ? bytes_ : nullptr; }

}  // namespace com::veltrana::qvx::icore::runtime
