// The abstract writer of model-object graphs, and the option bits that every writer
// takes: the XML serializer derives from it, and the binary output stream takes the
// same option word in writeObject / writeObjects.
#pragma once

#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::veltrana::qvx::io {

class QVX_API Serializer {
 public:
  static constexpr int SKIP_ANNOTATIONS = 1;
  static constexpr int SKIP_REFERENCE = 2;
  static constexpr int SERIALIZE_SEEDED_OBJECTS = 4;
  static constexpr int ALLOW_DUPLICATE_PROXYOBJECTS = 8;
  static constexpr int SKIP_IDENTITY_GENERATION = 0x10;

  virtual ~Serializer();

  virtual void serialize(const IVector<icore::IObject*>& objects) = 0;
  virtual void serialize(const IVector<icore::IObject*>& objects, int options) = 0;
};

}  // namespace com::veltrana::qvx::io
