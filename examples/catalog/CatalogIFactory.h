// The factory of the catalog package: makes objects and proxies of its classes and
// converts the values of its enumerations to and from text.
#pragma once

#include "examples/catalog/CatalogExport.h"
#include "icore/IFactory.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IDatatype;
using com::veltrana::qvx::icore::IFactory;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;

class QVX_CATALOG_API CatalogIFactory : public IFactory {
 public:
  static CatalogIFactory* iGetInstance();

  // A new object of `objectClass`; the caller owns it. IllegalArgumentException (73011)
  // for a class of another package, InstantiationException (73000) for NamedElement.
  IObject* create(IClass const& objectClass) override;
  // A new proxy of `objectClass` that stands for `identity`; the caller owns it, and it
  // owns the identity. Checked in this order: a class of another package
  // (IllegalArgumentException 73011), no identity (IllegalArgumentException 75007), a
  // class that is not identifiable (InstantiationException 75009), an abstract class
  // (InstantiationException 75008). On a failure the caller keeps the identity.
  IObject* createProxy(IClass const& objectClass, IIdentity const*& identity) override;
  // The literal of one of the package's enumerations named `text`, or null when it has
  // none. The enumeration owns the literal: the caller must not free it.
  // IllegalArgumentException (73002) for any other data type.
  void* datatypeFromString(IDatatype const& datatype, IUString const& text) override;
  // The name of the literal `value` (an IEnumerationLiteral of one of the package's
  // enumerations) as a new string owned by the caller; null for a null value.
  // IllegalArgumentException (73002) for any other data type.
  IUString* datatypeToString(IDatatype const& datatype, void const* value) override;

 private:
  CatalogIFactory() = default;
  ~CatalogIFactory() override;

  void checkOwnClass(IClass const& objectClass) const;
  void checkOwnEnumeration(IDatatype const& datatype) const;
};

}  // namespace com::example::catalog
