// The value enumeration of the kind of a class: first-class objects, objects owned by another, value objects without identity, annotations, or any. The numbers are written by the binary
// stream and the names by the XML document, so neither may change.
#pragma once

#include "icore/internal/IEnumInternal.h"

namespace com::veltrana::qvx::icore {

class QVX_API IClassKind : public internal::IEnumValue {
 public:
  static IClassKind const FIRST_CLASS;
  static IClassKind const SECOND_CLASS;
  static IClassKind const VALUE_CLASS;
  static IClassKind const ANNOTATION_CLASS;
  static IClassKind const ANY_CLASS;
  static IClassKind const UNSET;

  static constexpr int nFIRST_CLASS = 0;
  static constexpr int nSECOND_CLASS = 1;
  static constexpr int nVALUE_CLASS = 2;
  static constexpr int nANNOTATION_CLASS = 3;
  static constexpr int nANY_CLASS = 4;
  static constexpr int nUNSET = 5;

  // The constant with this value or name (exact, case-sensitive), or null.
  static IClassKind const* get(int value);
  static IClassKind const* valueOf(IUString const& name);

  IClassKind(const IClassKind&) = default;

 private:
  IClassKind(int value, const char* name) : IEnumValue(value, name) {}
  ~IClassKind() override;
};

}  // namespace com::veltrana::qvx::icore
