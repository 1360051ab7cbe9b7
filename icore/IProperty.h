// A structural feature of a class: type, multiplicity, containment, ordering and
// uniqueness, opposite, redefinition, default value literal and the two XML settings.
// A property is contained by its declaring class. Object storage indexes values by the
// property id, which continues the inherited numbering of the declaring class.
#pragma once

#include <atomic>
#include <climits>

#include "icore/ITypedElement.h"

namespace com::veltrana::qvx::icore {

class IClass;
class IRedefinability;
class IReferenceScope;

class QVX_API IProperty : public ITypedElement {
 public:
  // The value of minOccurs and maxOccurs before they are set.
  static constexpr int kUnsetBound = INT_MIN;

  IProperty();
  ~IProperty() override;

  IClass* getDeclaringClass();
  IClass const* getDeclaringClass() const;
  void setDeclaringClass(IClass* declaringClass);

  IUString const& getDefaultValueLiteral() const { return defaultValueLiteral_; }
  void setDefaultValueLiteral(IUString literal) { defaultValueLiteral_ = std::move(literal); }
  int const& getMinOccurs() const { return minOccurs_; }
  void setMinOccurs(int value) { minOccurs_ = value; }
  // -1 means unbounded.
  int const& getMaxOccurs() const { return maxOccurs_; }
  void setMaxOccurs(int value) { maxOccurs_ = value; }
  IProperty* getOppositeProperty() { return oppositeProperty_; }
  IProperty const* getOppositeProperty() const { return oppositeProperty_; }
  // Stores only this end; the opposite is not updated.
  void setOppositeProperty(IProperty* opposite) { oppositeProperty_ = opposite; }
  IBOOLEAN const& isContainment() const { return containment_; }
  void setContainment(IBOOLEAN value) { containment_ = value; }
  IBOOLEAN const& isContainer() const { return container_; }
  void setContainer(IBOOLEAN value) { container_ = value; }
  IRedefinability const& getRedefinability() const;
  void setRedefinability(IRedefinability const& value) { redefinability_ = &value; }
  IReferenceScope const& getReferenceScope() const;
  void setReferenceScope(IReferenceScope const& value) { referenceScope_ = &value; }
  IBOOLEAN const& isOrdered() const { return ordered_; }
  void setOrdered(IBOOLEAN value) { ordered_ = value; }
  IBOOLEAN const& isUnique() const { return unique_; }
  void setUnique(IBOOLEAN value) { unique_ = value; }
  IBOOLEAN isSensitive() const { return sensitive_; }
  void setSensitive(IBOOLEAN value) { sensitive_ = value; }
  int const& getPropertyId() const { return propertyId_; }
  void setPropertyId(int id) { propertyId_ = id; }

  IUString const& getXMLPropertyElementName() const { return xmlPropertyElementName_; }
  void setXMLPropertyElementName(IUString name) { xmlPropertyElementName_ = std::move(name); }
  IBOOLEAN getXMLPropertyAsElement() const { return xmlPropertyAsElement_; }
  void setXMLPropertyAsElement(IBOOLEAN value) { xmlPropertyAsElement_ = value; }

  IUString const& getRedefinedPropertyName() const { return redefinedPropertyName_; }
  void setRedefinedPropertyName(IUString name) { redefinedPropertyName_ = std::move(name); }
  // The super-class property that this one redefines, resolved by name on first use.
  IProperty* getRedefinedProperty();
  IProperty const* getRedefinedProperty() const;
  void setRedefinedProperty(IProperty* redefined) { redefinedProperty_.store(redefined); }
  // The end of the redefinition chain (this property when it redefines nothing).
  IProperty const* getRootProperty() const;
  IBOOLEAN isRedefiningProperty() const { return redefinedPropertyName_.isEmpty() ? IFALSE : ITRUE; }

  // Unbounded at the root of the redefinition chain, or more than one here.
  IBOOLEAN isCollection() const;
  IBOOLEAN isSingleValued() const { return isCollection() ? IFALSE : ITRUE; }
  IBOOLEAN isEnum() const;
  IBOOLEAN isPrimitive() const;

  IUString getNamespace() const override;

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;

 private:
  IUString xmlPropertyElementName_;
  IBOOLEAN xmlPropertyAsElement_ = IFALSE;
  IUString defaultValueLiteral_;
  int minOccurs_ = kUnsetBound;
  int maxOccurs_ = kUnsetBound;
  IProperty* oppositeProperty_ = nullptr;
  IBOOLEAN containment_ = IFALSE;
  IBOOLEAN container_ = IFALSE;
  IRedefinability const* redefinability_;
  // Lazily resolved caches; racing readers store the same value.
  mutable std::atomic<IProperty*> redefinedProperty_{nullptr};
  IReferenceScope const* referenceScope_;
  IBOOLEAN ordered_ = IFALSE;
  IBOOLEAN unique_ = IFALSE;
  IBOOLEAN sensitive_ = IFALSE;
  int propertyId_ = -1;
  IUString redefinedPropertyName_;
  mutable std::atomic<IProperty const*> rootProperty_{nullptr};
};

}  // namespace com::veltrana::qvx::icore
