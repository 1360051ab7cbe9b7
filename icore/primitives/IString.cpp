#include "icore/primitives/IString.h"

namespace com::veltrana::qvx::icore::primitives {

IString::IString() = default;

IString::~IString() = default;

}  // namespace com::veltrana::qvx::icore::primitives
