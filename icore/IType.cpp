#include "icore/IType.h"

#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"

namespace com::veltrana::qvx::icore {

IType::IType() {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) {
    iSetContainmentProperty(core->getIPackage_TypesIProperty());
  }
}

IType::~IType() = default;

IPackage* IType::getPackage() { return static_cast<IPackage*>(iGetContainer()); }

IPackage const* IType::getPackage() const { return static_cast<IPackage const*>(iGetContainer()); }

void IType::setPackage(IPackage* package) { iSetContainer(package); }

IUString IType::getNamespace() const {
  IPackage const* package = getPackage();
  return package != nullptr ? package->getQualifiedName() : IUString();
}

void const* IType::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  if (property.getPropertyId() == 2) return static_cast<IObject const*>(getPackage());
  return IModelElement::iGet(property, index, flag);
}

void IType::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  if (property.getPropertyId() == 2) {
    setPackage(static_cast<IPackage*>(static_cast<IObject*>(value)));
    return;
  }
  IModelElement::iSet(property, value, index, flag);
}

}  // namespace com::veltrana::qvx::icore
