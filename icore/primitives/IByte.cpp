#include "icore/primitives/IByte.h"

namespace com::veltrana::qvx::icore::primitives {

IByte::IByte() = default;

IByte::~IByte() = default;

}  // namespace com::veltrana::qvx::icore::primitives
