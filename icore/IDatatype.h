// A data type: the twelve primitive types of the core package, and the base of
// enumerations.
#pragma once

#include "icore/IType.h"

namespace com::veltrana::qvx::icore {

class QVX_API IDatatype : public IType {
 public:
  IDatatype();
  ~IDatatype() override;

  IBOOLEAN isPrimitive() const override { return primitive_; }
  void setPrimitive(IBOOLEAN value) { primitive_ = value; }

 private:
  IBOOLEAN primitive_ = IFALSE;
};

}  // namespace com::veltrana::qvx::icore
