#include "icore/primitives/IDouble.h"

namespace com::veltrana::qvx::icore::primitives {

IDouble::IDouble() = default;

IDouble::~IDouble() = default;

}  // namespace com::veltrana::qvx::icore::primitives
