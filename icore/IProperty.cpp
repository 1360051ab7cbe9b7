#include "icore/IProperty.h"

#include "icore/IClass.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

IProperty::IProperty() : redefinability_(&IRedefinability::FINAL_PROPERTY), referenceScope_(&IReferenceScope::UNSET) {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) {
    iSetIClass(core->getIPropertyIClass());
    iSetContainmentProperty(core->getIClass_DeclaredPropertiesIProperty());
  }
}

IProperty::~IProperty() = default;

IClass* IProperty::getDeclaringClass() { return static_cast<IClass*>(iGetContainer()); }

IClass const* IProperty::getDeclaringClass() const { return static_cast<IClass const*>(iGetContainer()); }

void IProperty::setDeclaringClass(IClass* declaringClass) { iSetContainer(declaringClass); }

IRedefinability const& IProperty::getRedefinability() const {
  QVX_ASSERT(redefinability_ != nullptr);
  return *redefinability_;
}

IReferenceScope const& IProperty::getReferenceScope() const {
  QVX_ASSERT(referenceScope_ != nullptr);
  return *referenceScope_;
}

IProperty* IProperty::getRedefinedProperty() {
  if (IProperty* known = redefinedProperty_.load(std::memory_order_acquire)) return known;
  if (redefinedPropertyName_.isEmpty()) return nullptr;
  IClass* owner = getDeclaringClass();
  if (owner == nullptr || owner->getSuperClass() == nullptr) return nullptr;
  IProperty* found = owner->getSuperClass()->getProperty(redefinedPropertyName_);
  redefinedProperty_.store(found, std::memory_order_release);
  return found;
}

IProperty const* IProperty::getRedefinedProperty() const {
  return const_cast<IProperty*>(this)->getRedefinedProperty();
}

IProperty const* IProperty::getRootProperty() const {
  if (IProperty const* known = rootProperty_.load(std::memory_order_acquire)) return known;
  IProperty const* root = this;
  // Bounded by the depth of the class tree; a cycle of redefinitions would be a
  // modelling error, so the walk stops after as many steps as there can be classes.
  for (int step = 0; step < 4096; ++step) {
    IProperty const* next = root->getRedefinedProperty();
    if (next == nullptr || next == root) break;
    root = next;
  }
  rootProperty_.store(root, std::memory_order_release);
  return root;
}

IBOOLEAN IProperty::isCollection() const {
  if (getRootProperty()->getMaxOccurs() == -1) return ITRUE;
  return maxOccurs_ > 1 ? ITRUE : IFALSE;
}

IBOOLEAN IProperty::isEnum() const {
  QVX_ASSERT(getType() != nullptr);
  return getType() != nullptr ? getType()->isEnum() : IFALSE;
}

IBOOLEAN IProperty::isPrimitive() const {
  QVX_ASSERT(getType() != nullptr);
  return getType() != nullptr ? getType()->isPrimitive() : IFALSE;
}

IUString IProperty::getNamespace() const {
  IClass const* owner = getDeclaringClass();
  return owner != nullptr ? owner->getQualifiedName() : IUString();
}

void const* IProperty::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  switch (property.getPropertyId()) {
    case 3: return static_cast<IObject const*>(getDeclaringClass());
    case 4: return &defaultValueLiteral_;
    case 5: return &minOccurs_;
    case 6: return &maxOccurs_;
    case 7: return static_cast<IObject const*>(oppositeProperty_);
    case 8: return &containment_;
    case 9: return &container_;
    case 10: return IcoreIPackage::iGetInstance()->literalOf(*redefinability_);
    case 11: return static_cast<IObject const*>(getRedefinedProperty());
    case 12: return IcoreIPackage::iGetInstance()->literalOf(*referenceScope_);
    case 13: return &ordered_;
    case 14: return &unique_;
    default: return ITypedElement::iGet(property, index, flag);
  }
}

void IProperty::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  auto asProperty = [value] { return static_cast<IProperty*>(static_cast<IObject*>(value)); };
  switch (property.getPropertyId()) {
    case 3: setDeclaringClass(static_cast<IClass*>(static_cast<IObject*>(value))); return;
    case 4: setDefaultValueLiteral(*static_cast<IUString*>(value)); return;
    case 5: setMinOccurs(*static_cast<int*>(value)); return;
    case 6: setMaxOccurs(*static_cast<int*>(value)); return;
    case 7: setOppositeProperty(asProperty()); return;
    case 8: setContainment(*static_cast<IBOOLEAN*>(value)); return;
    case 9: setContainer(*static_cast<IBOOLEAN*>(value)); return;
    case 10: redefinability_ = enumerationValue(IcoreIPackage::iGetInstance()->redefinabilityOf(value), property); return;
    case 11: setRedefinedProperty(asProperty()); return;
    case 12: referenceScope_ = enumerationValue(IcoreIPackage::iGetInstance()->referenceScopeOf(value), property); return;
    case 13: setOrdered(*static_cast<IBOOLEAN*>(value)); return;
    case 14: setUnique(*static_cast<IBOOLEAN*>(value)); return;
    default: ITypedElement::iSet(property, value, index, flag); return;
  }
}

}  // namespace com::veltrana::qvx::icore
