// A boxed boolean (a 32-bit IBOOLEAN; false initially), so that the value can stand where a model
// object is expected. Everything but the class id comes from BoxedPrimitive:
// getValue / setValue, iGet / iSet of the "value" property, Properties.
#pragma once

#include "icore/primitives/BoxedPrimitive.h"
#include "icore/primitives/PrimitivesIPackage.h"

namespace com::veltrana::qvx::icore::primitives {

class QVX_API IBoolean : public BoxedPrimitive<IBoolean, IBOOLEAN> {
 public:
  static constexpr int kClassId = PrimitivesIPackage::kIBooleanClassId;

  IBoolean();
  ~IBoolean() override;
};

}  // namespace com::veltrana::qvx::icore::primitives
