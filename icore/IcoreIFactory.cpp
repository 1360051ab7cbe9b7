#include "icore/IcoreIFactory.h"

#include <mutex>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnsupportedOperationException.h"

namespace com::veltrana::qvx::icore {

using exception::IllegalArgumentException;

IcoreIFactory* IcoreIFactory::iGetInstance() {
  static IcoreIFactory* instance = new IcoreIFactory();  // lives for the process
  return instance;
}

IcoreIFactory::~IcoreIFactory() = default;

IObject* IcoreIFactory::create(IClass const& objectClass) {
  IcoreIPackage* core = IcoreIPackage::iGetInstance();
  if (&objectClass == core->getIClassIClass()) return new IClass();
  if (&objectClass == core->getIDatatypeIClass()) return new IDatatype();
  if (&objectClass == core->getIEnumerationIClass()) return new IEnumeration();
  if (&objectClass == core->getIEnumerationLiteralIClass()) return new IEnumerationLiteral();
  if (&objectClass == core->getIPackageIClass()) return new IPackage();
  if (&objectClass == core->getIPropertyIClass()) return new IProperty();
  throw IllegalArgumentException(qvxGetMsg(73004));
}

IObject* IcoreIFactory::createProxy(IClass const&, IIdentity const*&) {
  throw exception::UnsupportedOperationException(qvxGetMsg(73003));
}

void* IcoreIFactory::datatypeFromString(IDatatype const& datatype, IUString const& text) {
  if (isOwnEnumeration(datatype)) {
    for (IEnumerationLiteral* literal : static_cast<IEnumeration const&>(datatype).getLiterals()) {
      if (literal->getName() == text) return literal;
    }
    return nullptr;
  }
  if (!datatype.isPrimitive()) throw IllegalArgumentException(qvxFormatMsg(73002, datatype.getQualifiedName()));
  unsigned int length = 0;
  return ICoreDatatypes::primitiveFromString(datatype, text, &length);
}

IUString* IcoreIFactory::datatypeToString(IDatatype const& datatype, void const* value) {
  if (isOwnEnumeration(datatype)) {
    return value != nullptr ? new IUString(static_cast<IEnumerationLiteral const*>(value)->getName()) : nullptr;
  }
  if (!datatype.isPrimitive()) throw IllegalArgumentException(qvxFormatMsg(73002, datatype.getQualifiedName()));
  return ICoreDatatypes::primitiveToString(datatype, value, 0);
}

bool IcoreIFactory::isOwnEnumeration(IDatatype const& datatype) const {
  return datatype.isEnum() && datatype.getPackage() == getPackage();
}

}  // namespace com::veltrana::qvx::icore
