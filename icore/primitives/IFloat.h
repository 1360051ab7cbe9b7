// A boxed float (0.0 initially), so that the value can stand where a model
// object is expected. Everything but the class id comes from BoxedPrimitive:
// getValue / setValue, iGet / iSet of the "value" property, Properties.
#pragma once

#include "icore/primitives/BoxedPrimitive.h"
#include "icore/primitives/PrimitivesIPackage.h"

namespace com::veltrana::qvx::icore::primitives {

class QVX_API IFloat : public BoxedPrimitive<IFloat, float> {
 public:
  static constexpr int kClassId = PrimitivesIPackage::kIFloatClassId;

  IFloat();
  ~IFloat() override;
};

}  // namespace com::veltrana::qvx::icore::primitives
