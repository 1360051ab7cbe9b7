#include "icore/primitives/IShort.h"

namespace com::veltrana::qvx::icore::primitives {

IShort::IShort() = default;

IShort::~IShort() = default;

}  // namespace com::veltrana::qvx::icore::primitives
