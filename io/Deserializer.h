// The abstract reader of model-object graphs, and the option bits that every reader
// takes. The caller owns the vector a reader returns and the objects in it.
#pragma once

#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::veltrana::qvx::io {

class QVX_API Deserializer {
 public:
  static constexpr int IGNORE_UNKNOWN_ANNOTATIONS = 1;
  static constexpr int FAIL_ON_UNRESOLVED_REFERENCES = 2;

  virtual ~Deserializer();

  // Caller owns the result and the objects in it.
  virtual IVector<icore::IObject*>* deserialize() = 0;
  virtual IVector<icore::IObject*>* deserialize(int options) = 0;
};

}  // namespace com::veltrana::qvx::io
