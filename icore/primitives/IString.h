// A boxed string (empty initially), so that the value can stand where a model
// object is expected. Everything but the class id comes from BoxedPrimitive:
// getValue / setValue, iGet / iSet of the "value" property, Properties.
#pragma once

#include "icore/primitives/BoxedPrimitive.h"
#include "icore/primitives/PrimitivesIPackage.h"
#include "platform/IUString.h"

namespace com::veltrana::qvx::icore::primitives {

class QVX_API IString : public BoxedPrimitive<IString, IUString> {
 public:
  static constexpr int kClassId = PrimitivesIPackage::kIStringClassId;

  IString();
  ~IString() override;
};

}  // namespace com::veltrana::qvx::icore::primitives
