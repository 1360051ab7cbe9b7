// The externalizer of UUID identities, registered as "uuidV1", and the generator of
// every new identity: version-1 (time-based) UUIDs of the RFC 4122 variant.
#pragma once

#include <memory>

#include "icore/runtime/IdentityExternalizer.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class UUIIdentity;

// A process-wide singleton, created on first use and never destroyed before exit. All
// operations may be called from any thread.
class QVX_API UUIDExternalizer : public IdentityExternalizer {
 public:
  static UUIDExternalizer* getInstance();

  // The canonical text of a UUIIdentity, else empty.
  IUString toString(IIdentity const* identity) override;
  // Reads a UUIIdentity; the form is chosen by the length of `text` in code units:
  //  - 23 or more: the canonical text, read by UUIIdentity::parseCanonicalText:
  //    exactly 36 characters, hyphens at offsets 8, 13, 18 and 23 and hexadecimal
  //    digits (either case) elsewhere; anything else (a blank, a sign, "0x", a hyphen out
  //    of place) is not a UUID and yields null, as no identity.
  //  - exactly 22: the compact form, the 16 bytes in RFC 4122 order in the URL-safe
  //    Base64 alphabet (A-Z a-z 0-9 - _) without padding. A character outside the
  //    alphabet, or non-zero bits after the 16th byte, is an assertion failure and
  //    yields null. The identity keeps the decoded bytes (UUIIdentity::getRawBytes).
  //  - fewer than 22: null.
  // Caller owns the result.
  IIdentity* fromString(IUString const& text) override;
  // fromString of `length` code units in place; neither reading allocates more than the
  // identity itself, nor takes a lock.
  IIdentity* fromText(const char16_t* text, std::size_t length) override;
  // The canonical text as UTF-8 (36 bytes) of a UUIIdentity, else nothing.
  void appendText(IIdentity const* identity, std::string& utf8Out) override;
  // "uuidV1"
  IUString const& getExternalizerId() const override;

  // A new, unique version-1 UUID identity. Caller owns the result.
  UUIIdentity* generateNewId();
  // The bytes of a new, unique version-1 UUID (UUIIdentity::kByteCount of them, RFC
  // 4122 order), for an identity made in place; false when no UUID can be made.
  bool generateNewBytes(unsigned char* bytes);

 private:
  struct Generator;

  UUIDExternalizer();
  ~UUIDExternalizer() override;
  // Makes the instance and registers the fork handlers that keep forked children from
  // repeating their parent's UUIDs.
  static UUIDExternalizer* create();
  static void drawNewNodeInForkedChild();

  const IUString externalizerId_;
  const std::unique_ptr<Generator> generator_;
};

}  // namespace com::veltrana::qvx::icore::runtime
