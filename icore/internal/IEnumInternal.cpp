#include "icore/internal/IEnumInternal.h"

namespace com::veltrana::qvx::icore::internal {

IEnumInternal::~IEnumInternal() = default;

IEnumValue::~IEnumValue() = default;

}  // namespace com::veltrana::qvx::icore::internal
