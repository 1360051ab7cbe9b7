// One object whose record is being read: where the reader stands in the complete
// property list of its class descriptor. In skip mode there is no object: the record's
// values are read and dropped.
#pragma once

#include <cstddef>

#include "io/ClassDescriptor.h"

namespace com::veltrana::qvx::icore {
class IObject;
}

namespace com::veltrana::qvx::io::input {

class Context {
 public:
  // `binding` is null in skip mode; `descriptor` is null for a record without data
  // (a proxy, whose annotations may still be pending).
  Context(icore::IObject* object, ClassDescriptor const* descriptor, ClassDescriptor::Binding const* binding)
      : object_(object),
        descriptor_(descriptor),
        binding_(binding),
        propertyCount_(descriptor != nullptr ? descriptor->getAllPropsInfo().size() : 0) {}

  bool isComplete() const { return !genericAnnotationsPending_ && position_ == propertyCount_; }

  icore::IObject* getObject() const { return object_; }
  ClassDescriptor const* getDescriptor() const { return descriptor_; }
  ClassDescriptor::Binding const* getBinding() const { return binding_; }
  bool isSkipped() const { return binding_ == nullptr; }

  // The index of the next data entry, which the caller then reads.
  std::size_t takeNextPosition() { return position_++; }

  // Modeled annotations are being read; the generic ones follow before the data.
  bool isGenericAnnotationsPending() const { return genericAnnotationsPending_; }
  void setGenericAnnotationsPending(bool pending) { genericAnnotationsPending_ = pending; }

 private:
  icore::IObject* object_;
  ClassDescriptor const* descriptor_;
  ClassDescriptor::Binding const* binding_;
  std::size_t propertyCount_;
  std::size_t position_ = 0;
  bool genericAnnotationsPending_ = false;
};

}  // namespace com::veltrana::qvx::io::input
