#include "icore/internal/CollectionAccess.h"

#include <cstdint>

#include "icore/ICoreDatatypes.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/IVector.h"
#include "platform/QvxAssert.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::icore::internal {

namespace {

// Calls `visit` with the collection cast to its element type, as the property's type
// decides. Returns false for a type that has no collection form (blobs, identities).
template <typename Void, typename Visit>
bool visitCollection(IProperty const& property, Void* collection, Visit&& visit) {
  IType const* type = property.getType();
  QVX_ASSERT(type != nullptr);
  if (type == nullptr || collection == nullptr) return false;
  auto as = [collection](auto* typed) {
    using Vector = std::remove_pointer_t<decltype(typed)>;
    using Cast = std::conditional_t<std::is_const_v<Void>, Vector const*, Vector*>;
    return static_cast<Cast>(collection);
  };
  if (type->isClass()) return visit(as(static_cast<IVector<IObject*>*>(nullptr))), true;
  if (type->isEnum()) return visit(as(static_cast<IVector<IEnumerationLiteral*>*>(nullptr))), true;
  switch (type->getTypeId()) {
    case ICoreDatatypes::BYTE_TYPE_ID: return visit(as(static_cast<IVector<char*>*>(nullptr))), true;
    case ICoreDatatypes::BOOLEAN_TYPE_ID: return visit(as(static_cast<IVector<IBOOLEAN*>*>(nullptr))), true;
    case ICoreDatatypes::CHARACTER_TYPE_ID: return visit(as(static_cast<IVector<char16_t*>*>(nullptr))), true;
    case ICoreDatatypes::DATE_TYPE_ID: return visit(as(static_cast<IVector<WkDate*>*>(nullptr))), true;
    case ICoreDatatypes::DOUBLE_TYPE_ID: return visit(as(static_cast<IVector<double*>*>(nullptr))), true;
    case ICoreDatatypes::FLOAT_TYPE_ID: return visit(as(static_cast<IVector<float*>*>(nullptr))), true;
    case ICoreDatatypes::INTEGER_TYPE_ID: return visit(as(static_cast<IVector<std::int32_t*>*>(nullptr))), true;
    case ICoreDatatypes::LONG_TYPE_ID: return visit(as(static_cast<IVector<std::int64_t*>*>(nullptr))), true;
    case ICoreDatatypes::SHORT_TYPE_ID: return visit(as(static_cast<IVector<std::int16_t*>*>(nullptr))), true;
    case ICoreDatatypes::STRING_TYPE_ID: return visit(as(static_cast<IVector<IUString*>*>(nullptr))), true;
    default:
      QVX_ASSERT_FAIL("multi-valued property of a type without a collection form");
      return false;
  }
}

template <typename T>
constexpr bool isOwnedValue = !std::is_same_v<T, IObject> && !std::is_same_v<T, IEnumerationLiteral>;

template <typename T>
void freeElements(IVector<T*>& items, bool ownsObjects) {
  if constexpr (isOwnedValue<T> || std::is_same_v<T, IObject>) {
    if (isOwnedValue<T> || ownsObjects) {
      items.deleteValues();
      return;
    }
  }
  (void)ownsObjects;
  items.clear();
}


}  // namespace

std::size_t CollectionAccess::size(IProperty const& property, void const* collection) {
  std::size_t count = 0;
  visitCollection(property, collection, [&count](auto const* items) { count = items->size(); });
  return count;
}

void CollectionAccess::replaceWithCopy(IProperty const& property, void* target, void const* source) {
  const bool ownsObjects = property.isContainment() != IFALSE;
  visitCollection(property, target, [&](auto* items) {
    using Vector = std::remove_pointer_t<decltype(items)>;
    using T = std::remove_pointer_t<typename Vector::value_type>;
    auto const* from = static_cast<Vector const*>(source);
    freeElements(*items, ownsObjects);
    items->ensureCapacity(from->size());
    for (T* value : *from) {
      if constexpr (isOwnedValue<T>) {
        items->append(value != nullptr ? new T(*value) : nullptr);
      } else {
        items->append(value);
      }
    }
  });
}

void CollectionAccess::adoptContained(IProperty const& property, IObjectInternal& newContainer, void* source) {
  QVX_ASSERT(property.getType() != nullptr && property.getType()->isClass());
  auto* items = static_cast<IVector<IObject*>*>(source);
  for (IObject* object : *items) {
    if (object != nullptr) static_cast<IObjectInternal*>(object)->iSetContainer(&newContainer, &property);
  }
  items->clear();
}

void CollectionAccess::destroyElements(IProperty const& property, void* collection) {
  const bool ownsObjects = property.isContainment() != IFALSE;
  visitCollection(property, collection, [ownsObjects](auto* items) { freeElements(*items, ownsObjects); });
}

}  // namespace com::veltrana::qvx::icore::internal
