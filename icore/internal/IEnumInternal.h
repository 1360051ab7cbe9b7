// The base of the metamodel's value enumerations (IClassKind, IReferenceScope,
// IRedefinability): constant objects with a name and an integer, compared by address.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::internal {

class QVX_API IEnumInternal {
 public:
  IEnumInternal() = default;
  IEnumInternal(const IEnumInternal&) = default;
  IEnumInternal& operator=(const IEnumInternal&) = default;
  virtual ~IEnumInternal();
};

// The shared state of one value-enumeration constant.
class QVX_API IEnumValue : public IEnumInternal {
 public:
  virtual int getOrdinalValue() const { return value_; }
  operator int() const { return value_; }  // NOLINT: enumeration constants read as ints
  IUString const& getName() const { return name_; }

 protected:
  IEnumValue(int value, const char* name) : value_(value), name_(name) {}
  ~IEnumValue() override;

  // Finds the constant of `table` whose value or name matches, in table order.
  template <typename E, int N>
  static E const* byValue(E const* const (&table)[N], int value) {
    for (E const* constant : table) {
      if (constant->value_ == value) return constant;
    }
    return nullptr;
  }
  template <typename E, int N>
  static E const* byName(E const* const (&table)[N], IUString const& name) {
    for (E const* constant : table) {
      if (constant->name_ == name) return constant;
    }
    return nullptr;
  }

 private:
  int value_;
  IUString name_;
};

}  // namespace com::veltrana::qvx::icore::internal
