#include "icore/ITypedElement.h"

#include "icore/IProperty.h"
#include "icore/IType.h"

namespace com::veltrana::qvx::icore {

ITypedElement::ITypedElement() = default;

ITypedElement::~ITypedElement() = default;

void const* ITypedElement::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  if (property.getPropertyId() == 2) return static_cast<IObject const*>(type_);
  return IModelElement::iGet(property, index, flag);
}

void ITypedElement::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  if (property.getPropertyId() == 2) {
    setType(static_cast<IType*>(static_cast<IObject*>(value)));
    return;
  }
  IModelElement::iSet(property, value, index, flag);
}

}  // namespace com::veltrana::qvx::icore
