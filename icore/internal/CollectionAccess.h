// Generic operations on the collection that an object keeps for a multi-valued
// property. The collection's element type follows from the property's type:
// IVector<IObject*> for references, IVector<IEnumerationLiteral*> for enumerations,
// and IVector<T*> for primitives of value type T (IByte char, IBoolean IBOOLEAN,
// ICharacter char16_t, IDate WkDate, IDouble double, IFloat float, IInteger int32,
// ILong int64, IShort int16, IString IUString). Primitive values and contained objects
// belong to the collection's owner. Numbers and characters that the owner adds itself
// may live in the collection's own value blocks (IVector::appendValue); values appended
// from outside, this class's copies included, are separate allocations, because an
// owner may free those one by one. Code other than the owner never deletes a value of
// a collection.
#pragma once

#include <cstddef>

#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IProperty;
}

namespace com::veltrana::qvx::icore::internal {

class IObjectInternal;

class QVX_API CollectionAccess {
 public:
  // The element count of `collection` (0 for null).
  static std::size_t size(IProperty const& property, void const* collection);
  // Replaces the elements of `target` by those of `source`: owned values (primitive
  // values, contained objects) of `target` are freed, primitive values are copied,
  // object and literal pointers are shared.
  static void replaceWithCopy(IProperty const& property, void* target, void const* source);
  // Makes `newContainer` the container of every object in the containment collection
  // `source` and empties `source`, so the objects now belong to `newContainer`.
  static void adoptContained(IProperty const& property, IObjectInternal& newContainer, void* source);
  // Frees what the owner owns in `collection` (primitive values; contained objects when
  // the property is a containment) and empties it.
  static void destroyElements(IProperty const& property, void* collection);
};

}  // namespace com::veltrana::qvx::icore::internal
