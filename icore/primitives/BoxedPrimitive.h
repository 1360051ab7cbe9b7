// The reflective plumbing shared by the eleven boxed primitives: class set-up, the
// single "value" property, and iGet / iSet / iHasItems under the object-storage
// contract (membership 73005, proxy 75004, then the property id). Each boxed class is
// a thin CRTP subclass that names its class id and, where its storage is not a plain
// value, supplies its own storage hooks.
#pragma once

#include <cstring>
#include <type_traits>

#include "icore/IClass.h"
#include "icore/IProperty.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/QvxAssert.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::primitives {

namespace detail {
// The class of the boxed primitive with this class id, from the package singleton.
QVX_API IClass* primitiveIClass(int classId);
// The "value" property of that class: element 0 of getAllProperties(true), looked up
// on first use and cached for the process.
QVX_API IProperty* valueIProperty(int classId);
}  // namespace detail

// `Derived` declares `static constexpr int kClassId`. `T` is the stored value member.
// For a plain value the defaults here are the whole class: getValue / setValue, and
// at the reflective interface a pointer to the member (iSet copies the pointed-to
// value). A class with other storage (IBlob, IDate) hides getValue / setValue with its
// own and defines the hooks reflectiveValue and assignReflective, which iGet and iSet
// reach statically, so the defaults are never instantiated for it.
template <typename Derived, typename T>
class QVX_API BoxedPrimitive : public internal::IObjectInternal {
 public:
  using ValueParam = std::conditional_t<std::is_scalar_v<T>, T, T const&>;
  static constexpr int kValuePropertyId = 0;

  class Properties {
   public:
    static IProperty* getValueIProperty() { return detail::valueIProperty(Derived::kClassId); }
  };

  ~BoxedPrimitive() override = default;

  // Both throw UnresolvedProxyException (75004) on a proxy.
  T const& getValue() const {
    checkNotProxy();
    return value_;
  }
  void setValue(ValueParam value) {
    checkNotProxy();
    value_ = value;
  }

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN) const override {
    checkPropertyAccess(property);
    if (property.getPropertyId() != kValuePropertyId) throwUnknownGet(property);
    return self().reflectiveValue(index);
  }

  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN) override {
    checkPropertyAccess(property);
    if (property.getPropertyId() != kValuePropertyId) throwUnknownSet(property);
    self().assignReflective(value, index);
  }

  // No boxed primitive has a multi-valued property: 73005, or 75004 on a proxy.
  IBOOLEAN iHasItems(IProperty const& property) override {
    checkPropertyAccess(property);
    throwNotMultiValued(property);
  }

 protected:
  BoxedPrimitive() : value_() { iSetIClass(detail::primitiveIClass(Derived::kClassId)); }
  BoxedPrimitive(const BoxedPrimitive&) = default;
  BoxedPrimitive& operator=(const BoxedPrimitive&) = default;

  void const* reflectiveValue(unsigned int*) const { return &getValue(); }

  void assignReflective(void* value, unsigned int) {
    QVX_ASSERT(value != nullptr);
    if (value == nullptr) return;
    if constexpr (std::is_trivially_copyable_v<T>) {
      // Copied bytewise: a character may arrive as a char16_t, a boolean as any 32-bit
      // int, and reading those through a T lvalue would break aliasing rules.
      T copied;
      std::memcpy(&copied, value, sizeof copied);
      self().setValue(copied);
    } else {
      self().setValue(*static_cast<T const*>(value));
    }
  }

  T value_;

 private:
  Derived const& self() const { return static_cast<Derived const&>(*this); }
  Derived& self() { return static_cast<Derived&>(*this); }
};

}  // namespace com::veltrana::qvx::icore::primitives
