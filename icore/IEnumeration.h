// An enumeration: a data type whose values are its literals, in ordinal order of
// creation. The enumeration owns its literals; a literal is found by walking them.
#pragma once

#include "icore/IDatatype.h"
#include "platform/IVector.h"

namespace com::veltrana::qvx::icore {

class IEnumerationLiteral;

class QVX_API IEnumeration : public IDatatype {
 public:
  IEnumeration();
  ~IEnumeration() override;

  IVector<IEnumerationLiteral*>& getLiterals() { return literals_; }
  IVector<IEnumerationLiteral*> const& getLiterals() const { return literals_; }
  IEnumerationLiteral* getDefaultLiteral() { return defaultLiteral_; }
  IEnumerationLiteral const* getDefaultLiteral() const { return defaultLiteral_; }
  void setDefaultLiteral(IEnumerationLiteral* literal) { defaultLiteral_ = literal; }
  IBOOLEAN isEnum() const override { return ITRUE; }

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override;

 private:
  IVector<IEnumerationLiteral*> literals_;
  IEnumerationLiteral* defaultLiteral_ = nullptr;
};

}  // namespace com::veltrana::qvx::icore
