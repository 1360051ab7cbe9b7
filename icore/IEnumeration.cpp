#include "icore/IEnumeration.h"

#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"

namespace com::veltrana::qvx::icore {

IEnumeration::IEnumeration() {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) iSetIClass(core->getIEnumerationIClass());
}

IEnumeration::~IEnumeration() {
  for (IEnumerationLiteral* literal : literals_) delete literal;
}

void const* IEnumeration::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  switch (property.getPropertyId()) {
    case 3: return &literals_;
    case 4: return static_cast<IObject const*>(defaultLiteral_);
    default: return IDatatype::iGet(property, index, flag);
  }
}

void IEnumeration::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  switch (property.getPropertyId()) {
    case 3: throwElementCollectionSet(property);
    case 4: setDefaultLiteral(static_cast<IEnumerationLiteral*>(static_cast<IObject*>(value))); return;
    default: IDatatype::iSet(property, value, index, flag); return;
  }
}

IBOOLEAN IEnumeration::iHasItems(IProperty const& property) {
  if (property.getPropertyId() == 3) return literals_.isEmpty() ? IFALSE : ITRUE;
  return IDatatype::iHasItems(property);
}

}  // namespace com::veltrana::qvx::icore
