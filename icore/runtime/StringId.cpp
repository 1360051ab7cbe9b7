// Equality of text identities, shared by string and seed identities.
#include "icore/runtime/StringId.h"

namespace com::veltrana::qvx::icore::runtime {

StringId::~StringId() = default;

IBOOLEAN StringId::operator==(IIdentity const& other) const {
  try {
    if (getIdentityExternalizer() != other.getIdentityExternalizer()) {
      return IFALSE;
    }
    const auto* otherId = dynamic_cast<const StringId*>(&other);
    if (otherId == nullptr) {
      return IFALSE;
    }
    return idString_ == otherId->idString_ ? ITRUE : IFALSE;
  } catch (...) {
    return IFALSE;
  }
}

}  // namespace com::veltrana::qvx::icore::runtime
