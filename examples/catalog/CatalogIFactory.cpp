#include "examples/catalog/CatalogIFactory.h"

#include <memory>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogIPackage.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "examples/catalog/View.h"
#include "icore/IClass.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::icore::qvxGetMsg;
using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::icore::exception::InstantiationException;

CatalogIFactory* CatalogIFactory::iGetInstance() {
  static CatalogIFactory* instance = new CatalogIFactory();  // lives for the process
  return instance;
}

CatalogIFactory::~CatalogIFactory() = default;

void CatalogIFactory::checkOwnClass(IClass const& objectClass) const {
  IPackage const* package = getPackage();
  if (package != nullptr && objectClass.getPackage() == package) return;
  throw IllegalArgumentException(
      qvxFormatMsg(73011, package != nullptr ? package->getName() : IUString(), objectClass.getQualifiedName()));
}

void CatalogIFactory::checkOwnEnumeration(IDatatype const& datatype) const {
  if (datatype.isEnum() && datatype.getPackage() == getPackage()) return;
  throw IllegalArgumentException(qvxFormatMsg(73002, datatype.getQualifiedName()));
}

IObject* CatalogIFactory::create(IClass const& objectClass) {
  checkOwnClass(objectClass);
  if (objectClass.isAbstract()) throw InstantiationException(qvxFormatMsg(73000, objectClass.getName()));
  switch (objectClass.getTypeId()) {
    case 1: return new Catalog();
    case 2: return new Schema();
    case 3: return new Table();
    case 4: return new Column();
    case 5: return new ForeignKey();
    case 6: return new Position();
    case 7: return new DataTypeDef();
    case 8: return new View();
    default: throw IllegalArgumentException(qvxFormatMsg(73002, objectClass.getQualifiedName()));
  }
}

IObject* CatalogIFactory::createProxy(IClass const& objectClass, IIdentity const*& identity) {
  checkOwnClass(objectClass);
  if (identity == nullptr) throw IllegalArgumentException(qvxGetMsg(75007));
  if (!objectClass.isIdentifiableClass()) {
    throw InstantiationException(qvxFormatMsg(75009, objectClass.getQualifiedName()));
  }
  if (objectClass.isAbstract()) throw InstantiationException(qvxGetMsg(75008));
  // Every identifiable class of the package derives from NamedElement.
  std::unique_ptr<IObject> made(create(objectClass));
  static_cast<NamedElement*>(made.get())->becomeProxy(identity);
  return made.release();
}

void* CatalogIFactory::datatypeFromString(IDatatype const& datatype, IUString const& text) {
  checkOwnEnumeration(datatype);
  for (IEnumerationLiteral* literal : static_cast<IEnumeration const&>(datatype).getLiterals()) {
    if (literal->getName() == text) return literal;
  }
  return nullptr;
}

IUString* CatalogIFactory::datatypeToString(IDatatype const& datatype, void const* value) {
  checkOwnEnumeration(datatype);
  if (value == nullptr) return nullptr;
  return new IUString(static_cast<IEnumerationLiteral const*>(value)->getName());
}

}  // namespace com::example::catalog
