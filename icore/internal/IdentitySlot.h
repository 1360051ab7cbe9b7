// Where an identifiable object keeps its identity. Generated classes embed one; users
// go through iGetIdentity / iSetIdentity instead.
#pragma once

#include "icore/runtime/UUIIdentity.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::internal {

// The identity of one object: none, a generated UUID kept inline, or an identity of
// any kind made elsewhere and owned through its pointer. Every identifiable object has
// one and most get a generated UUID, so keeping that one inline saves a heap block per
// object. Not copyable: a copy of the inline identity would be a second object with
// the same identity, and its address would still be the source's.
class QVX_API IdentitySlot {
 public:
  IdentitySlot() {}  // the inline identity exists only once emplaceUUID made it
  IdentitySlot(const IdentitySlot&) = delete;
  IdentitySlot& operator=(const IdentitySlot&) = delete;
  ~IdentitySlot();

  // The identity, or null.
  IIdentity const* get() const { return identity_; }
  // Takes ownership of `identity` (may be null). The slot must be empty.
  void adopt(IIdentity const* identity);
  // Makes the identity the UUID of `bytes` (UUIIdentity::kByteCount bytes, RFC 4122
  // order) in place, without allocating, and returns it. The slot must be empty.
  IIdentity const* emplaceUUID(const unsigned char* bytes);

 private:
  bool isInline() const;

  // Null, the address of inline_, or an owned identity elsewhere.
  IIdentity const* identity_ = nullptr;
  union {
    runtime::UUIIdentity inline_;
  };
};

}  // namespace com::veltrana::qvx::icore::internal
