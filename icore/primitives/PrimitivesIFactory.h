// The factory of the primitives package: creates boxed primitive objects. It makes no
// proxies (a boxed primitive has no identity) and converts no data types (the package
// declares none).
#pragma once

#include "icore/IFactory.h"

namespace com::veltrana::qvx::icore::primitives {

class IBlob;
class IBoolean;
class IByte;
class ICharacter;
class IDate;
class IDouble;
class IFloat;
class IInteger;
class ILong;
class IShort;
class IString;

class QVX_API PrimitivesIFactory : public IFactory {
 public:
  // The process-wide factory; the package attaches itself when it is built.
  static PrimitivesIFactory* iGetInstance();

  // Each returns a new ordinary instance with the initial value; the caller owns it.
  IBlob* createIBlob();
  IBoolean* createIBoolean();
  IByte* createIByte();
  ICharacter* createICharacter();
  IDate* createIDate();
  IDouble* createIDouble();
  IFloat* createIFloat();
  IInteger* createIInteger();
  ILong* createILong();
  IShort* createIShort();
  IString* createIString();

  // IllegalArgumentException: 73011 for a class outside the package, 73002 for a type
  // id the factory does not handle.
  IObject* create(IClass const& objectClass) override;
  // Never makes a proxy; throws, checking in this order: 73011 class outside the
  // package, 75007 null identity, 75009 class not identifiable, 75008 abstract class,
  // 73002 class the factory cannot instantiate, 75010 otherwise. Ownership of
  // `identity` stays with the caller when this throws.
  IObject* createProxy(IClass const& objectClass, IIdentity const*& identity) override;
  // Both throw IllegalArgumentException (73002): the package declares no data types.
  void* datatypeFromString(IDatatype const& datatype, IUString const& text) override;
  IUString* datatypeToString(IDatatype const& datatype, void const* value) override;

 private:
  PrimitivesIFactory() = default;
  ~PrimitivesIFactory() override;

  // The package this factory belongs to, building it if needed; null only while the
  // package is being built.
  IPackage const* ownPackage();
  // Throws 73011 unless `objectClass` is one of the package's types.
  void checkInPackage(IClass const& objectClass);
};

}  // namespace com::veltrana::qvx::icore::primitives
