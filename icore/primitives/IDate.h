// A boxed date: an owned WkDate, so that a date can stand where a model object is
// expected. A new IDate holds the epoch (WkDate's default). At the reflective
// interface the value is the WkDate pointer itself; iSet copies the date it is given,
// like every reflective set, so that a generic copy `b.set(p, a.get(p))` leaves each
// object with a date of its own. setValue alone takes ownership of its argument.
#pragma once

#include <memory>

#include "icore/primitives/BoxedPrimitive.h"
#include "icore/primitives/PrimitivesIPackage.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::icore::primitives {

class QVX_API IDate : public BoxedPrimitive<IDate, std::unique_ptr<WkDate const>> {
 public:
  static constexpr int kClassId = PrimitivesIPackage::kIDateClassId;

  IDate();
  ~IDate() override;

  // The date (owned by this object; null after setValue(nullptr)). 75004 on a proxy.
  WkDate const* getValue() const;
  // Frees the date held so far and takes ownership of `date` (may be null); no copy
  // is made. 75004 on a proxy.
  void setValue(WkDate const* date);

 private:
  friend class BoxedPrimitive<IDate, std::unique_ptr<WkDate const>>;
  void const* reflectiveValue(unsigned int* length) const;
  void assignReflective(void* value, unsigned int length);
};

}  // namespace com::veltrana::qvx::icore::primitives
