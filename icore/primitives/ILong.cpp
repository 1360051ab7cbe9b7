#include "icore/primitives/ILong.h"

namespace com::veltrana::qvx::icore::primitives {

ILong::ILong() = default;

ILong::~ILong() = default;

}  // namespace com::veltrana::qvx::icore::primitives
