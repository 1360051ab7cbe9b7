// The abstract writer of model objects to a stream of the framework's own format.
#pragma once

#include <cstdint>

#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::veltrana::qvx::io {

class QVX_API QVXOutputStream {
 public:
  static constexpr int SKIP_ANNOTATIONS = 1;

  virtual ~QVXOutputStream();

  // `object` may be null. Options are the Serializer option bits.
  virtual void writeObject(icore::IObject const* object) = 0;
  virtual void writeObject(icore::IObject const* object, int options) = 0;
  virtual void writeObjects(IVector<icore::IObject*> const* objects) = 0;
  virtual void writeObjects(IVector<icore::IObject*> const* objects, int options) = 0;
  // Closes the stream off with its end marker.
  virtual void markEnd() = 0;
};

}  // namespace com::veltrana::qvx::io
