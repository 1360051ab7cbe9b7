// The factory of the core package: makes metamodel objects for the core classes and
// converts the core data types to text. Metamodel objects have no proxies.
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
  void* datatypeFromString(IDatatype const& datatype, IUString const& text) override;
  // IllegalArgumentException (73002) for a data type that is not a core primitive.
  IUString* datatypeToString(IDatatype const& datatype, void const* value) override;

 private:
  IcoreIFactory() = default;
  ~IcoreIFactory() override;
};

}  // namespace com::veltrana::qvx::icore
