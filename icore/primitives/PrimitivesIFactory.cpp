#include "icore/primitives/PrimitivesIFactory.h"

#include "icore/IClass.h"
#include "icore/IDatatype.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/primitives/IBlob.h"
#include "icore/primitives/IBoolean.h"
#include "icore/primitives/IByte.h"
#include "icore/primitives/ICharacter.h"
#include "icore/primitives/IDate.h"
#include "icore/primitives/IDouble.h"
#include "icore/primitives/IFloat.h"
#include "icore/primitives/IInteger.h"
#include "icore/primitives/ILong.h"
#include "icore/primitives/IShort.h"
#include "icore/primitives/IString.h"
#include "icore/primitives/PrimitivesIPackage.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::primitives {

using exception::IllegalArgumentException;
using exception::InstantiationException;

namespace {
// A class this factory can instantiate: its type id names one of the boxed primitives.
bool isInstantiable(IClass const& objectClass) {
  return objectClass.getTypeId() >= 0 && objectClass.getTypeId() < PrimitivesIPackage::kClassCount;
}
}  // namespace

PrimitivesIFactory* PrimitivesIFactory::iGetInstance() {
  static PrimitivesIFactory* instance = new PrimitivesIFactory();  // lives for the process
  return instance;
}

PrimitivesIFactory::~PrimitivesIFactory() = default;

IBlob* PrimitivesIFactory::createIBlob() { return new IBlob(); }
IBoolean* PrimitivesIFactory::createIBoolean() { return new IBoolean(); }
IByte* PrimitivesIFactory::createIByte() { return new IByte(); }
ICharacter* PrimitivesIFactory::createICharacter() { return new ICharacter(); }
IDate* PrimitivesIFactory::createIDate() { return new IDate(); }
IDouble* PrimitivesIFactory::createIDouble() { return new IDouble(); }
IFloat* PrimitivesIFactory::createIFloat() { return new IFloat(); }
IInteger* PrimitivesIFactory::createIInteger() { return new IInteger(); }
ILong* PrimitivesIFactory::createILong() { return new ILong(); }
IShort* PrimitivesIFactory::createIShort() { return new IShort(); }
IString* PrimitivesIFactory::createIString() { return new IString(); }

IPackage const* PrimitivesIFactory::ownPackage() {
  if (IPackage const* package = getPackage()) return package;
  return PrimitivesIPackage::iGetInstance();
}

void PrimitivesIFactory::checkInPackage(IClass const& objectClass) {
  IPackage const* package = ownPackage();
  QVX_ASSERT(package != nullptr);
  if (package != nullptr) {
    for (IType const* type : package->getTypes()) {
      if (type == &objectClass) return;
    }
  }
  throw IllegalArgumentException(
      qvxFormatMsg(73011, package != nullptr ? package->getName() : IUString(), objectClass.getQualifiedName()));
}

IObject* PrimitivesIFactory::create(IClass const& objectClass) {
  checkInPackage(objectClass);
  switch (objectClass.getTypeId()) {
    case PrimitivesIPackage::kIBlobClassId: return createIBlob();
    case PrimitivesIPackage::kIBooleanClassId: return createIBoolean();
    case PrimitivesIPackage::kIByteClassId: return createIByte();
    case PrimitivesIPackage::kICharacterClassId: return createICharacter();
    case PrimitivesIPackage::kIDateClassId: return createIDate();
    case PrimitivesIPackage::kIDoubleClassId: return createIDouble();
    case PrimitivesIPackage::kIFloatClassId: return createIFloat();
    case PrimitivesIPackage::kIIntegerClassId: return createIInteger();
    case PrimitivesIPackage::kILongClassId: return createILong();
    case PrimitivesIPackage::kIShortClassId: return createIShort();
    case PrimitivesIPackage::kIStringClassId: return createIString();
    default: break;
  }
  throw IllegalArgumentException(qvxFormatMsg(73002, objectClass.getQualifiedName()));
}

IObject* PrimitivesIFactory::createProxy(IClass const& objectClass, IIdentity const*& identity) {
  checkInPackage(objectClass);
  if (identity == nullptr) throw IllegalArgumentException(qvxGetMsg(75007));
  if (!objectClass.isIdentifiableClass()) {
    throw InstantiationException(qvxFormatMsg(75009, objectClass.getQualifiedName()));
  }
  if (objectClass.isAbstract()) throw InstantiationException(qvxGetMsg(75008));
  if (!isInstantiable(objectClass)) {
    throw IllegalArgumentException(qvxFormatMsg(73002, objectClass.getQualifiedName()));
  }
  throw InstantiationException(qvxFormatMsg(75010, objectClass.getQualifiedName()));
}

void* PrimitivesIFactory::datatypeFromString(IDatatype const& datatype, IUString const&) {
  throw IllegalArgumentException(qvxFormatMsg(73002, datatype.getQualifiedName()));
}

IUString* PrimitivesIFactory::datatypeToString(IDatatype const& datatype, void const*) {
  throw IllegalArgumentException(qvxFormatMsg(73002, datatype.getQualifiedName()));
}

}  // namespace com::veltrana::qvx::icore::primitives
