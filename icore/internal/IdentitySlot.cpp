#include "icore/internal/IdentitySlot.h"

#include <new>

#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::internal {

IdentitySlot::~IdentitySlot() {
  if (isInline()) {
    inline_.~UUIIdentity();
  } else {
    delete identity_;
  }
}

bool IdentitySlot::isInline() const { return identity_ == &inline_; }

void IdentitySlot::adopt(IIdentity const* identity) {
  QVX_ASSERT(identity_ == nullptr);
  identity_ = identity;
}

IIdentity const* IdentitySlot::emplaceUUID(const unsigned char* bytes) {
  QVX_ASSERT(identity_ == nullptr);
  identity_ = ::new (&inline_) runtime::UUIIdentity(bytes);
  return identity_;
}

}  // namespace com::veltrana::qvx::icore::internal
