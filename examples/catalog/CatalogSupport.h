// The mechanics that the catalog's object classes share: a typed view of a reference
// collection, the reflective form of optional and defaulted values, reference
// conversion, and the ownership moves of containment (adopting a child, releasing it,
// freeing what an object owns). Generated classes call these instead of repeating them.
#pragma once

#include <cstddef>
#include <iterator>
#include <optional>

#include "examples/catalog/CatalogExport.h"
#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IProperty.h"
#include "icore/internal/HeapOptional.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/IVector.h"

namespace com::veltrana::qvx::icore {
class IEnumeration;
class IEnumerationLiteral;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::example::catalog::support {

// The initial capacities of the collections that objects hold (a collection allocates
// nothing until its first element). Most hold one or two references or strings. A
// collection of numbers also takes its values' first block with this many slots, and
// four 32-bit values fill the smallest heap block together with the block's header,
// so starting it smaller would save nothing there and cost a regrowth early.
inline constexpr std::size_t kCollectionCapacity = 2;
inline constexpr std::size_t kNumberCollectionCapacity = 4;

using com::veltrana::qvx::icore::IEnumeration;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::internal::HeapOptional;
using com::veltrana::qvx::icore::internal::IObjectInternal;

// A read-only typed view of an object's reference collection whose elements are all
// of class T. It stays valid as long as the owning object.
template <typename T>
class ObjectList {
 public:
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T*;
    using difference_type = std::ptrdiff_t;
    using pointer = T* const*;
    using reference = T*;

    Iterator() = default;
    explicit Iterator(IObject* const* position) : position_(position) {}
    T* operator*() const { return static_cast<T*>(*position_); }
    Iterator& operator++() {
      ++position_;
      return *this;
    }
    Iterator operator++(int) {
      Iterator before = *this;
      ++position_;
      return before;
    }
    bool operator==(const Iterator& other) const { return position_ == other.position_; }
    bool operator!=(const Iterator& other) const { return position_ != other.position_; }

   private:
    IObject* const* position_ = nullptr;
  };

  explicit ObjectList(IVector<IObject*> const& items) : items_(&items) {}

  std::size_t size() const { return items_->size(); }
  bool isEmpty() const { return items_->isEmpty(); }
  // Bounds-checked like IVector (IVectorException).
  T* operator[](std::size_t index) const { return static_cast<T*>((*items_)[index]); }
  bool contains(T const* item) const { return items_->contains(const_cast<T*>(item)); }
  Iterator begin() const { return Iterator(items_->begin()); }
  Iterator end() const { return Iterator(items_->end()); }

 private:
  IVector<IObject*> const* items_;
};

// The reflective form of an optional value: a pointer to it, or null when unset.
template <typename T>
void const* valueOrNull(std::optional<T> const& value) {
  return value.has_value() ? &*value : nullptr;
}

template <typename T>
void const* valueOrNull(HeapOptional<T> const& value) {
  return value.get();
}

// Stores the value behind a reflective pointer; null unsets the value.
template <typename T>
void assignOptional(std::optional<T>& target, void const* value) {
  if (value == nullptr) {
    target.reset();
    return;
  }
  target = *static_cast<T const*>(value);
}
template <typename T>
void assignOptional(HeapOptional<T>& target, void const* value) {
  if (value == nullptr) {
    target.reset();
    return;
  }
  target.assign(*static_cast<T const*>(value));
}

// Stores the value behind a reflective pointer; null restores the property's default.
template <typename T>
void assignOrDefault(T& target, void const* value, T const& defaultValue) {
  target = value != nullptr ? *static_cast<T const*>(value) : defaultValue;
}

// Stores the value behind a reflective pointer in `target` and records in `isSet`
// whether there was one; null unsets the value (for values kept with a flag of their
// own rather than in a std::optional).
template <typename T>
void assignFlagged(T& target, bool& isSet, void const* value) {
  isSet = value != nullptr;
  target = isSet ? *static_cast<T const*>(value) : T();
}

// checkedReference for an object whose class is not the property's own type: a
// subclass is accepted, anything else is an assertion failure and taken as null.
QVX_CATALOG_API IObjectInternal* checkedSubclassReference(IProperty const& property, IObjectInternal& object);

// The reflective form of a reference: the object as an IObject.
inline void const* asReflective(IObject const* object) { return object; }

// The object behind a reflective reference value of `property`; null stays null. An
// object that is not of the property's type is an assertion failure and is taken as null.
// An object of exactly the property's class, the usual case, is taken without walking
// the class hierarchy.
inline IObjectInternal* checkedReference(IProperty const& property, void* value) {
  auto* object = static_cast<IObjectInternal*>(static_cast<IObject*>(value));
  if (object == nullptr || object->iGetIClass() == property.getType()) return object;
  return checkedSubclassReference(property, *object);
}
// The same, as the property's class T.
template <typename T>
T* referenceValue(IProperty const& property, void* value) {
  return static_cast<T*>(checkedReference(property, value));
}

// The ordinal of `literal` of `enumeration`, for a value kept as its ordinal; null gives
// `defaultOrdinal`. A literal of another enumeration is an assertion failure and is
// taken as null.
QVX_CATALOG_API int ordinalOrDefault(IEnumerationLiteral const* literal, IEnumeration const& enumeration,
                                     int defaultOrdinal);

// Takes `child` out of the containment property of its present container, if any;
// it then belongs to the caller.
QVX_CATALOG_API void detachFromContainer(IObjectInternal& child);
// Appends `child` to `owner`'s containment collection `items` of `property` and makes
// `owner` its container, first taking it out of any other container. A child already
// in the collection stays where it is.
QVX_CATALOG_API void appendContained(IObjectInternal& owner, IProperty const& property, IVector<IObject*>& items,
                                     IObjectInternal* child);
// Removes `child` from the containment collection `items`; it then belongs to the
// caller. False when it was not there.
QVX_CATALOG_API bool removeContained(IVector<IObject*>& items, IObjectInternal* child);
// Makes `child` the value of `owner`'s single-valued containment `property`, held in
// `slot`. The previous value is released to the caller, not destroyed.
template <typename T>
void setContained(IObjectInternal& owner, IProperty const& property, T*& slot, T* child) {
  if (slot == child) return;
  if (child != nullptr) detachFromContainer(*child);
  if (slot != nullptr) slot->iSetContainer(nullptr, nullptr);
  slot = child;
  if (child != nullptr) child->iSetContainer(&owner, &property);
}

// Appends `item` unless the collection holds it already (for unique references).
inline void appendUnique(IVector<IObject*>& items, IObject* item) {
  if (item != nullptr && !items.contains(item)) items.append(item);
}

}  // namespace com::example::catalog::support
