// The root interface of every model object: metamodel elements, boxed primitives and
// instances of generated classes alike. Equality is address identity, never a
// comparison of values.
#pragma once

#include "platform/IStatus.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class QVX_API IObject {
 public:
  IObject() = default;
  IObject(const IObject&) = default;
  IObject& operator=(const IObject&) = default;
  virtual ~IObject();

  // True exactly when `other` is this very object.
  virtual IBOOLEAN operator==(IObject const& other) const;
};

}  // namespace com::veltrana::qvx::icore
