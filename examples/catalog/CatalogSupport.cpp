#include "examples/catalog/CatalogSupport.h"

#include "icore/IClass.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "platform/QvxAssert.h"

namespace com::example::catalog::support {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IType;

IObjectInternal* checkedSubclassReference(IProperty const& property, IObjectInternal& object) {
  IType const* type = property.getType();
  const bool fits = type != nullptr && type->isClass() && object.instanceOf(*static_cast<IClass const*>(type));
  QVX_ASSERT(fits);
  return fits ? &object : nullptr;
}

int ordinalOrDefault(IEnumerationLiteral const* literal, IEnumeration const& enumeration, int defaultOrdinal) {
  if (literal == nullptr) return defaultOrdinal;
  const bool fits = literal->getDeclaringEnumeration() == &enumeration;
  QVX_ASSERT(fits);
  return fits ? literal->getOrdinalValue() : defaultOrdinal;
}

void detachFromContainer(IObjectInternal& child) {
  IObjectInternal* container = child.iGetContainer();
  IProperty const* property = child.iGetContainmentProperty();
  if (container == nullptr || property == nullptr) {
    child.iSetContainer(nullptr, nullptr);
    return;
  }
  // The container is reached reflectively: it may be of any class that contains this one.
  if (property->isCollection()) {
    auto* items = static_cast<IVector<IObject*>*>(const_cast<void*>(container->iGet(*property, nullptr, IFALSE)));
    if (items != nullptr) items->removeElement(&child);
  } else if (container->iGet(*property, nullptr, IFALSE) == static_cast<IObject*>(&child)) {
    container->iSet(*property, nullptr, 0, IFALSE);
  }
  child.iSetContainer(nullptr, nullptr);
}

void appendContained(IObjectInternal& owner, IProperty const& property, IVector<IObject*>& items,
                     IObjectInternal* child) {
  if (child == nullptr) return;
  if (child->iGetContainer() == &owner && child->iGetContainmentProperty() == &property) return;
  detachFromContainer(*child);
  items.append(child);
  child->iSetContainer(&owner, &property);
}

bool removeContained(IVector<IObject*>& items, IObjectInternal* child) {
  if (child == nullptr || !items.removeElement(child)) return false;
  child->iSetContainer(nullptr, nullptr);
  return true;
}

}  // namespace com::example::catalog::support
