// A boxed blob: a byte buffer owned by the object and its length, so that binary data
// can stand where a model object is expected. At the reflective interface iGet returns
// the buffer and writes the length through its `unsigned int*`; iSet takes the bytes
// and their count as the `unsigned int` argument (and copies them).
#pragma once

#include <memory>

#include "icore/primitives/BoxedPrimitive.h"
#include "icore/primitives/PrimitivesIPackage.h"

namespace com::veltrana::qvx::icore::primitives {

class QVX_API IBlob : public BoxedPrimitive<IBlob, std::unique_ptr<char[]>> {
 public:
  static constexpr int kClassId = PrimitivesIPackage::kIBlobClassId;

  IBlob();
  ~IBlob() override;

  // Stores the buffer in `data` (owned by the blob; null until bytes are set) and
  // returns the length. UnresolvedProxyException (75004) on a proxy.
  unsigned int getValue(char const*& data) const;
  // Replaces the buffer with a copy of `length` bytes of `data`. Null `data` frees the
  // buffer but leaves the length as it was, so getValue then reports the old length
  // with a null buffer (deliberate; a caller that means "empty" passes a non-null
  // pointer with length 0). 75004 on a proxy.
  void setValue(char const* const data, unsigned int length);

 private:
  friend class BoxedPrimitive<IBlob, std::unique_ptr<char[]>>;
  void const* reflectiveValue(unsigned int* length) const;
  void assignReflective(void* value, unsigned int length);

  unsigned int length_ = 0;
};

}  // namespace com::veltrana::qvx::icore::primitives
