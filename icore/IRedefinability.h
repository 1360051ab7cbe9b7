// The value enumeration of whether subclasses may redefine a property. The numbers are written by the binary
// stream and the names by the XML document, so neither may change.
#pragma once

#include "icore/internal/IEnumInternal.h"

namespace com::veltrana::qvx::icore {

class QVX_API IRedefinability : public internal::IEnumValue {
 public:
  static IRedefinability const FINAL_PROPERTY;
  static IRedefinability const ABSTRACT_PROPERTY;
  static IRedefinability const REDEFINABLE_PROPERTY;

  static constexpr int nFINAL_PROPERTY = 0;
  static constexpr int nABSTRACT_PROPERTY = 1;
  static constexpr int nREDEFINABLE_PROPERTY = 2;

  // The constant with this value or name (exact, case-sensitive), or null.
  static IRedefinability const* get(int value);
  static IRedefinability const* valueOf(IUString const& name);

  IRedefinability(const IRedefinability&) = default;

 private:
  IRedefinability(int value, const char* name) : IEnumValue(value, name) {}
  ~IRedefinability() override;
};

}  // namespace com::veltrana::qvx::icore
