#include "icore/IDatatype.h"

#include "icore/IcoreIPackage.h"

namespace com::veltrana::qvx::icore {

IDatatype::IDatatype() {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) iSetIClass(core->getIDatatypeIClass());
}

IDatatype::~IDatatype() = default;

}  // namespace com::veltrana::qvx::icore
