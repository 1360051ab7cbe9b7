// One collection of object records being read: the elements of a multi-valued
// reference property, or the modeled annotations of an object (read and dropped).
#pragma once

#include <cstddef>

namespace com::veltrana::qvx::icore {
class IObject;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io::input {

class ContextList {
 public:
  enum class ElementKind { kReference, kAnnotation };

  // `owner` and `property` are null when the elements are dropped.
  ContextList(ElementKind kind, icore::IObject* owner, icore::IProperty const* property, int count)
      : kind_(kind), owner_(owner), property_(property), count_(count) {}

  bool isComplete() const { return done_ == count_; }

  ElementKind getElementKind() const { return kind_; }
  icore::IObject* getOwner() const { return owner_; }
  icore::IProperty const* getProperty() const { return property_; }
  // The index of the next element, which the caller then reads.
  int takeNextIndex() { return done_++; }

 private:
  ElementKind kind_;
  icore::IObject* owner_;
  icore::IProperty const* property_;
  int count_;
  int done_ = 0;
};

}  // namespace com::veltrana::qvx::io::input
