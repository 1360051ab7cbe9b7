// The abstract reader of model objects from a stream of the framework's own format.
#pragma once

#include "platform/IStatus.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::veltrana::qvx::io {

class QVX_API QVXInputStream {
 public:
  static constexpr int SKIP_ANNOTATIONS = 1;

  virtual ~QVXInputStream();

  // The next item as one object, or null. The caller owns what it returns.
  virtual icore::IObject* readObject() = 0;
  virtual icore::IObject* readObject(int options) = 0;
  // The next item as a list of objects. The caller owns the list and its objects.
  virtual IVector<icore::IObject*>* readObjects() = 0;
  virtual IVector<icore::IObject*>* readObjects(int options) = 0;
  virtual IBOOLEAN hasNextObject() = 0;
};

}  // namespace com::veltrana::qvx::io
