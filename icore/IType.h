// A named type that lives in a package and has a number within it: the common base
// of classes, data types and enumerations. The package is the type's container.
#pragma once

#include "icore/IModelElement.h"

namespace com::veltrana::qvx::icore {

class IPackage;

class QVX_API IType : public IModelElement {
 public:
  IType();
  ~IType() override;

  IPackage* getPackage();
  IPackage const* getPackage() const;
  void setPackage(IPackage* package);

  int getTypeId() const { return typeId_; }
  void setTypeId(int typeId) { typeId_ = typeId; }

  IUString getNamespace() const override;
  virtual IBOOLEAN isClass() const { return IFALSE; }
  virtual IBOOLEAN isEnum() const { return IFALSE; }
  virtual IBOOLEAN isPrimitive() const { return IFALSE; }

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;

 private:
  int typeId_ = -1;
};

}  // namespace com::veltrana::qvx::icore
