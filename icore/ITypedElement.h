// A model element that refers to a type: the base of properties.
#pragma once

#include "icore/IModelElement.h"

namespace com::veltrana::qvx::icore {

class IType;

class QVX_API ITypedElement : public IModelElement {
 public:
  ITypedElement();
  ~ITypedElement() override;

  IType* getType() { return type_; }
  IType const* getType() const { return type_; }
  void setType(IType* type) { type_ = type; }

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;

 private:
  IType* type_ = nullptr;
};

}  // namespace com::veltrana::qvx::icore
