// The one object class of the test package. An object keeps a value slot per property
// id, typed by the property's type, and serves the reflective protocol of
// IObjectInternal from the slots, with values passed as IObjectInternal.h describes.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <variant>
#include <vector>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IEnumeration.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/internal/CollectionAccess.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/QvxAssert.h"
#include "platform/WkDate.h"
#include "tests/support/TestPackage.h"

namespace com::example::test::shapes {

using icore::ICoreDatatypes;
using icore::IEnumerationLiteral;
using icore::IObject;
using icore::IProperty;
using icore::internal::IObjectInternal;

namespace {

std::atomic<int> gLiveObjects{0};

// No value (an unset blob, a container property), a primitive, a single object or
// literal, or the collection of a multi-valued property.
using Value = std::variant<std::monostate, IUString, std::int32_t, std::int16_t, std::int64_t, char, char16_t, float,
                           double, WkDate, std::vector<char>, void*, IVector<IObject*>, IVector<IEnumerationLiteral*>,
                           IVector<IUString*>, IVector<double*>>;

// Collections start without storage: deep test chains hold many objects.
template <typename T>
Value emptyCollection() {
  return Value(std::in_place_type<IVector<T*>>, 0, 8, 64);
}

Value initialValue(IProperty const& property) {
  icore::IType const* type = property.getType();
  const bool many = property.isCollection();
  if (property.isContainer()) return {};
  if (type->isClass()) return many ? emptyCollection<IObject>() : Value(static_cast<void*>(nullptr));
  if (type->isEnum() && many) return emptyCollection<IEnumerationLiteral>();
  if (type->isEnum()) return const_cast<IEnumerationLiteral*>(static_cast<icore::IEnumeration const*>(type)->getDefaultLiteral());
  if (type->getTypeId() == ICoreDatatypes::STRING_TYPE_ID) return many ? emptyCollection<IUString>() : IUString();
  if (type->getTypeId() == ICoreDatatypes::DOUBLE_TYPE_ID) return many ? emptyCollection<double>() : Value(0.0);
  QVX_ASSERT(!many);  // the package has no other multi-valued primitives
  switch (type->getTypeId()) {
    case ICoreDatatypes::INTEGER_TYPE_ID:
    case ICoreDatatypes::BOOLEAN_TYPE_ID: return std::int32_t{0};
    case ICoreDatatypes::SHORT_TYPE_ID: return std::int16_t{0};
    case ICoreDatatypes::LONG_TYPE_ID: return std::int64_t{0};
    case ICoreDatatypes::BYTE_TYPE_ID: return char{0};
    case ICoreDatatypes::CHARACTER_TYPE_ID: return char16_t{0};
    case ICoreDatatypes::FLOAT_TYPE_ID: return 0.0f;
    case ICoreDatatypes::DATE_TYPE_ID: return WkDate();
    default: return {};  // a blob starts without a value
  }
}

class TestObject final : public IObjectInternal {
 public:
  TestObject(icore::IClass* objectClass, icore::IIdentity const* proxyIdentity) : identity_(proxyIdentity) {
    ++gLiveObjects;
    iSetIClass(objectClass);
    IVector<IProperty*> const& properties = objectClass->getAllProperties(ITRUE);
    slots_.reserve(properties.size());
    for (IProperty const* property : properties) slots_.push_back(initialValue(*property));
    if (proxyIdentity != nullptr) iSetProxy();
  }
  ~TestObject() override;

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override {
    checkPropertyAccess(property);
    if (!property.isCollection()) throwNotMultiValued(property);
    return icore::internal::CollectionAccess::size(property, iGet(property, nullptr, IFALSE)) > 0 ? ITRUE : IFALSE;
  }
  icore::IIdentity const* iGetIdentity() const override {
    return iGetIClass()->isIdentifiableClass() ? identity_.get() : IObjectInternal::iGetIdentity();
  }
  void iSetIdentity(icore::IIdentity const*& identity) override {
    if (!iGetIClass()->isIdentifiableClass()) return IObjectInternal::iSetIdentity(identity);
    performChecksBeforeSet();
    identity_.reset(identity);
  }
  using IObjectInternal::iSetIdentity;

 private:
  // Moves the objects this one contains to `out` and forgets them.
  void releaseContained(std::vector<IObject*>& out);

  std::vector<Value> slots_;  // by property id
  std::unique_ptr<icore::IIdentity const> identity_;
};

TestObject::~TestObject() {
  --gLiveObjects;
  // Contained objects are freed from a work list rather than by nested destructors.
  std::vector<IObject*> owned;
  releaseContained(owned);
  while (!owned.empty()) {
    IObject* next = owned.back();
    owned.pop_back();
    if (auto* nested = dynamic_cast<TestObject*>(next)) nested->releaseContained(owned);
    delete next;
  }
  for (Value& slot : slots_) {
    if (auto* texts = std::get_if<IVector<IUString*>>(&slot)) for (IUString* text : *texts) delete text;
    if (auto* numbers = std::get_if<IVector<double*>>(&slot)) for (double* number : *numbers) delete number;
  }
}

void TestObject::releaseContained(std::vector<IObject*>& out) {
  for (IProperty const* property : iGetIClass()->getAllProperties(ITRUE)) {
    if (!property->isContainment()) continue;
    Value& slot = slots_[static_cast<std::size_t>(property->getPropertyId())];
    if (auto* many = std::get_if<IVector<IObject*>>(&slot)) {
      for (IObject* child : *many) out.push_back(child);
      many->clear();
    } else {
      out.push_back(static_cast<IObject*>(std::get<void*>(slot)));
      slot = static_cast<void*>(nullptr);
    }
  }
  out.erase(std::remove(out.begin(), out.end(), nullptr), out.end());
}

void const* TestObject::iGet(IProperty const& property, unsigned int* index, IBOOLEAN) const {
  checkPropertyAccess(property);
  Value const& slot = slots_[static_cast<std::size_t>(property.getPropertyId())];
  if (index != nullptr) *index = 0;
  if (property.isContainer()) {
    return iGetContainmentProperty() == property.getOppositeProperty() ? static_cast<IObject const*>(iGetContainer())
                                                                       : nullptr;
  }
  if (auto const* bytes = std::get_if<std::vector<char>>(&slot)) {
    if (index != nullptr) *index = static_cast<unsigned int>(bytes->size());
    return bytes->data();
  }
  if (auto const* object = std::get_if<void*>(&slot)) return *object;
  return std::visit([](auto const& held) -> void const* {
    if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) return nullptr;
    else return &held;
  }, slot);
}

void TestObject::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN) {
  checkPropertyAccess(property);
  Value& slot = slots_[static_cast<std::size_t>(property.getPropertyId())];
  if (property.isCollection()) throwCollectionSet(property);
  // Only objects may be cast: the sanitizer build checks the dynamic type of the cast.
  auto* object = property.getType()->isClass() ? static_cast<IObjectInternal*>(static_cast<IObject*>(value)) : nullptr;
  if (property.isContainer()) return iSetContainer(object, object != nullptr ? property.getOppositeProperty() : nullptr);
  if (property.isContainment()) {
    // The replaced object is detached and belongs to the caller.
    auto* replaced = static_cast<IObjectInternal*>(static_cast<IObject*>(std::get<void*>(slot)));
    if (replaced != nullptr && replaced != object) replaced->iSetContainer(nullptr, nullptr);
    if (object != nullptr) object->iSetContainer(this, &property);
  }
  if (std::holds_alternative<void*>(slot)) {
    slot = value;
  } else if (value == nullptr) {
    slot = initialValue(property);
  } else if (property.getType()->getTypeId() == ICoreDatatypes::BLOB_TYPE_ID) {
    // A blob arrives as its bytes, with the byte count in `index`.
    slot.emplace<std::vector<char>>(static_cast<char const*>(value), static_cast<char const*>(value) + index);
  } else {
    std::visit([value](auto& held) {
      using Held = std::decay_t<decltype(held)>;
      if constexpr (std::is_arithmetic_v<Held> || std::is_same_v<Held, IUString> || std::is_same_v<Held, WkDate>) {
        held = *static_cast<Held const*>(value);
      }
    }, slot);
  }
}

}  // namespace

int liveObjectCount() { return gLiveObjects.load(); }

IObject* newObject(icore::IClass* objectClass, icore::IIdentity const* proxyIdentity) {
  return new TestObject(objectClass, proxyIdentity);
}

}  // namespace com::example::test::shapes
