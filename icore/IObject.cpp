#include "icore/IObject.h"

namespace com::veltrana::qvx::icore {

IObject::~IObject() = default;

IBOOLEAN IObject::operator==(IObject const& other) const { return this == &other ? ITRUE : IFALSE; }

}  // namespace com::veltrana::qvx::icore
