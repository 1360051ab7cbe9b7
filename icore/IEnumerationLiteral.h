// One value of an enumeration, with its ordinal value. Its container is the declaring
// enumeration, so its qualified name is the enumeration's, ".", and its own name.
#pragma once

#include "icore/IModelElement.h"

namespace com::veltrana::qvx::icore {

class IEnumeration;

class QVX_API IEnumerationLiteral : public IModelElement {
 public:
  IEnumerationLiteral();
  ~IEnumerationLiteral() override;

  int const& getOrdinalValue() const { return ordinalValue_; }
  void setOrdinalValue(int value) { ordinalValue_ = value; }
  IEnumeration* getDeclaringEnumeration();
  IEnumeration const* getDeclaringEnumeration() const;
  void setDeclaringEnumeration(IEnumeration* enumeration);

  IUString getNamespace() const override;
  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;

 private:
  int ordinalValue_ = 0;
};

}  // namespace com::veltrana::qvx::icore
