#include "icore/IEnumerationLiteral.h"

#include "icore/IEnumeration.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"

namespace com::veltrana::qvx::icore {

IEnumerationLiteral::IEnumerationLiteral() {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) {
    iSetIClass(core->getIEnumerationLiteralIClass());
    iSetContainmentProperty(core->getIEnumeration_LiteralsIProperty());
  }
}

IEnumerationLiteral::~IEnumerationLiteral() = default;

IEnumeration* IEnumerationLiteral::getDeclaringEnumeration() { return static_cast<IEnumeration*>(iGetContainer()); }

IEnumeration const* IEnumerationLiteral::getDeclaringEnumeration() const {
  return static_cast<IEnumeration const*>(iGetContainer());
}

void IEnumerationLiteral::setDeclaringEnumeration(IEnumeration* enumeration) { iSetContainer(enumeration); }

IUString IEnumerationLiteral::getNamespace() const {
  IEnumeration const* owner = getDeclaringEnumeration();
  return owner != nullptr ? owner->getQualifiedName() : IUString();
}

void const* IEnumerationLiteral::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  switch (property.getPropertyId()) {
    case 2: return static_cast<IObject const*>(getDeclaringEnumeration());
    case 3: return &ordinalValue_;
    default: return IModelElement::iGet(property, index, flag);
  }
}

void IEnumerationLiteral::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  switch (property.getPropertyId()) {
    case 2: setDeclaringEnumeration(static_cast<IEnumeration*>(static_cast<IObject*>(value))); return;
    case 3: setOrdinalValue(*static_cast<int*>(value)); return;
    default: IModelElement::iSet(property, value, index, flag); return;
  }
}

}  // namespace com::veltrana::qvx::icore
