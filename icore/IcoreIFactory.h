// The factory of the core package: makes metamodel objects for the core classes and
// converts the core data types and the core enumerations (IClassKind, IRedefinability,
// IReferenceScope) to text and back. Metamodel objects have no proxies.
#pragma once

#include "icore/IFactory.h"

namespace com::veltrana::qvx::icore {

class QVX_API IcoreIFactory : public IFactory {
 public:
  static IcoreIFactory* iGetInstance();

  // IllegalArgumentException (73004) for a class the core package does not instantiate.
  IObject* create(IClass const& objectClass) override;
  // Always UnsupportedOperationException (73003).
  IObject* createProxy(IClass const& objectClass, IIdentity const*& identity) override;
  // A new value of a core primitive data type, owned by the caller; for a core
  // enumeration, its literal named `text` (owned by the enumeration; null when none
  // has that name). IllegalArgumentException (73002) for any other data type.
  void* datatypeFromString(IDatatype const& datatype, IUString const& text) override;
  // The text of a core primitive value, or the name of the literal `value` of a core
  // enumeration (null for a null value), as a new string owned by the caller.
  // IllegalArgumentException (73002) for any other data type.
  IUString* datatypeToString(IDatatype const& datatype, void const* value) override;

 private:
  IcoreIFactory() = default;
  ~IcoreIFactory() override;

  bool isOwnEnumeration(IDatatype const& datatype) const;
};

}  // namespace com::veltrana::qvx::icore
