// The value enumeration of how references to objects of a class, or through a property, are resolved. The numbers are written by the binary
// stream and the names by the XML document, so neither may change.
#pragma once

#include "icore/internal/IEnumInternal.h"

namespace com::veltrana::qvx::icore {

class QVX_API IReferenceScope : public internal::IEnumValue {
 public:
  static IReferenceScope const INTERNAL;
  static IReferenceScope const EXTERNAL;
  static IReferenceScope const DEFERRED;
  static IReferenceScope const NONE;
  static IReferenceScope const UNSET;

  static constexpr int nINTERNAL = 0;
  static constexpr int nEXTERNAL = 1;
  static constexpr int nDEFERRED = 2;
  static constexpr int nNONE = 3;
  static constexpr int nUNSET = 4;

  // The constant with this value or name (exact, case-sensitive), or null.
  static IReferenceScope const* get(int value);
  static IReferenceScope const* valueOf(IUString const& name);

  IReferenceScope(const IReferenceScope&) = default;

 private:
  IReferenceScope(int value, const char* name) : IEnumValue(value, name) {}
  ~IReferenceScope() override;
};

}  // namespace com::veltrana::qvx::icore
