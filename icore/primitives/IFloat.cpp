#include "icore/primitives/IFloat.h"

namespace com::veltrana::qvx::icore::primitives {

IFloat::IFloat() = default;

IFloat::~IFloat() = default;

}  // namespace com::veltrana::qvx::icore::primitives
