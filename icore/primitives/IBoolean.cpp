#include "icore/primitives/IBoolean.h"

namespace com::veltrana::qvx::icore::primitives {

IBoolean::IBoolean() = default;

IBoolean::~IBoolean() = default;

}  // namespace com::veltrana::qvx::icore::primitives
