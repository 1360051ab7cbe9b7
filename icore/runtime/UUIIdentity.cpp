// The UUID identity over ACE's UUID value. This file and UUIDExternalizer.cpp are the
// only ones that see ACE's UUID types.
#include "icore/runtime/UUIIdentity.h"

#include <ace/UUID.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

#include "icore/runtime/UUIDExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

struct UUIIdentity::Impl {
  // Never asked for its text: ACE caches the text lazily in a mutable member that no
  // setter refreshes, which makes to_string() on a shared object both racy and, after
  // a change, stale. The text is formatted from the bytes instead.
  ACE_Utils::UUID value;
  std::optional<std::array<unsigned char, kByteCount>> rawBytes;
};

namespace {

std::uint16_t readBigEndian16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>((bytes[0] << 8) | bytes[1]);
}

std::uint32_t readBigEndian32(const unsigned char* bytes) {
  return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
         std::uint32_t{bytes[3]};
}

}  // namespace

UUIIdentity::UUIIdentity(const unsigned char* bytes, RawBytes rawBytes) : impl_(std::make_unique<Impl>()) {
  ACE_Utils::UUID& value = impl_->value;
  value.time_low(readBigEndian32(bytes));
  value.time_mid(readBigEndian16(bytes + 4));
  value.time_hi_and_version(readBigEndian16(bytes + 6));
  value.clock_seq_hi_and_reserved(bytes[8]);
  value.clock_seq_low(bytes[9]);
  std::memcpy(value.node().node_ID(), bytes + 10, ACE_Utils::UUID_Node::NODE_ID_SIZE);
  if (rawBytes == RawBytes::kKeep) {
    impl_->rawBytes.emplace();
    std::memcpy(impl_->rawBytes->data(), bytes, kByteCount);
  }
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
    // texts are equal exactly when the values are; ACE compares the bytes.
    return impl_->value == otherUuid->impl_->value ? ITRUE : IFALSE;
  } catch (...) {
    return IFALSE;
  }
}

IdentityExternalizer* UUIIdentity::getIdentityExternalizer() const { return UUIDExternalizer::getInstance(); }

// Formatted here rather than by ACE's to_string, which costs about 580 ns an id (it
// allocates and goes through snprintf); the text is the same, lowercase 8-4-4-4-12.
IUString UUIIdentity::getCanonicalText() const {
  static constexpr char kHexDigits[] = "0123456789abcdef";
  unsigned char bytes[kByteCount];
  getBytes(bytes);
  char16_t text[kTextLength];
  std::size_t length = 0;
  for (std::size_t index = 0; index < kByteCount; ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) text[length++] = u'-';
    text[length++] = static_cast<char16_t>(kHexDigits[bytes[index] >> 4]);
    text[length++] = static_cast<char16_t>(kHexDigits[bytes[index] & 0x0F]);
  }
  return IUString(text, length);
}

void UUIIdentity::getBytes(unsigned char* out) const {
  const ACE_Utils::UUID& value = impl_->value;
  const std::uint32_t timeLow = value.time_low();
  const std::uint16_t timeMid = value.time_mid();
  const std::uint16_t timeHigh = value.time_hi_and_version();
  out[0] = static_cast<unsigned char>(timeLow >> 24);
  out[1] = static_cast<unsigned char>(timeLow >> 16);
  out[2] = static_cast<unsigned char>(timeLow >> 8);
  out[3] = static_cast<unsigned char>(timeLow);
  out[4] = static_cast<unsigned char>(timeMid >> 8);
  out[5] = static_cast<unsigned char>(timeMid);
  out[6] = static_cast<unsigned char>(timeHigh >> 8);
  out[7] = static_cast<unsigned char>(timeHigh);
  out[8] = value.clock_seq_hi_and_reserved();
  out[9] = value.clock_seq_low();
  std::memcpy(out + 10, value.node().node_ID(), ACE_Utils::UUID_Node::NODE_ID_SIZE);
}

const unsigned char* UUIIdentity::getRawBytes() const {
  return impl_->rawBytes ? impl_->rawBytes->data() : nullptr;
}

}  // namespace com::veltrana::qvx::icore::runtime
