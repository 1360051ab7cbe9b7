#include "icore/primitives/IInteger.h"

namespace com::veltrana::qvx::icore::primitives {

IInteger::IInteger() = default;

IInteger::~IInteger() = default;

}  // namespace com::veltrana::qvx::icore::primitives
