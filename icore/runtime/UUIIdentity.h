// A UUID identity: the identity every generated id has. Its text is the canonical
// 36-character form (8-4-4-4-12 lowercase hexadecimal digits); its qualified form is
// "uuidV1:<text>". UUIDExternalizer makes and reads these identities.
#pragma once

#include <cstddef>
#include <string>

#include "icore/IIdentity.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

// Holds the 16 bytes of the UUID itself: identities are made for every identifiable
// object, so the value lives inline (one allocation of 32 bytes per identity) instead
// of in the UUID library's larger object. Immutable, so concurrent reads are safe.
class QVX_API UUIIdentity : public IIdentity {
 public:
  static constexpr std::size_t kByteCount = 16;
  static constexpr std::size_t kTextLength = 36;

  // Whether the identity also keeps the bytes it was made from (getRawBytes), as it does
  // for an identity decoded from the compact text form.
  enum class RawBytes { kDiscard, kKeep };

  // The UUID whose kByteCount bytes, in RFC 4122 order, are `bytes`: time_low from bytes
  // 0-3, time_mid from 4-5, time_hi_and_version from 6-7 (each big-endian),
  // clock_seq_hi_and_reserved 8, clock_seq_low 9, node 10-15.
  explicit UUIIdentity(const unsigned char* bytes, RawBytes rawBytes = RawBytes::kDiscard);
  UUIIdentity(const UUIIdentity&) = delete;
  ~UUIIdentity() override;

  // True when `other` has the same externalizer and the same canonical text.
  IBOOLEAN operator==(IIdentity const& other) const override;
  IdentityExternalizer* getIdentityExternalizer() const override;

  // The canonical text: 36 characters, lowercase, exactly as the UUID library writes it.
  IUString getCanonicalText() const;
  // Appends the canonical text (36 ASCII bytes, so also UTF-8) to `utf8Out`; allocates
  // only when `utf8Out` has to grow.
  void appendCanonicalText(std::string& utf8Out) const;
  // Reads a canonical text strictly: exactly kTextLength characters, hyphens at offsets
  // 8, 13, 18 and 23, hexadecimal digits of either case elsewhere. Blanks, signs, "0x"
  // prefixes and short fields, which a scanf-based reader lets through, are refused.
  // Writes the kByteCount bytes in RFC 4122 order to `bytes` and returns true, or returns
  // false (with `bytes` unspecified). Neither form allocates.
  static bool parseCanonicalText(const char16_t* text, std::size_t length, unsigned char* bytes);
  static bool parseCanonicalText(const char* text, std::size_t length, unsigned char* bytes);
  // Writes the kByteCount bytes of the UUID, in RFC 4122 order, to `out`.
  void getBytes(unsigned char* out) const;
  // The kByteCount bytes this identity was decoded from, or null when it was made
  // another way (generated, parsed from the canonical text).
  const unsigned char* getRawBytes() const;

 private:
  unsigned char bytes_[kByteCount];
  bool keepsRawBytes_;
};

}  // namespace com::veltrana::qvx::icore::runtime
