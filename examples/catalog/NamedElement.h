// The abstract base of every identifiable catalog class: a name, an optional
// description, and the object's identity. It also carries the reflective contract of
// its subclasses: iGet / iSet / iHasItems check the property and the proxy state once
// here and then dispatch on the property id through getValue / setValue, which each
// class overrides for its own ids and passes on to its super class for the rest.
#pragma once

#include <memory>
#include <optional>

#include "examples/catalog/CatalogExport.h"
#include "examples/catalog/CatalogIPackage.h"
#include "icore/internal/HeapOptional.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/internal/IdentitySlot.h"

namespace com::veltrana::qvx::icore {
class IIdentity;
}

namespace com::example::catalog {

using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::internal::HeapOptional;
using com::veltrana::qvx::icore::internal::IdentitySlot;
using com::veltrana::qvx::icore::internal::IObjectInternal;

class CatalogIFactory;

class QVX_CATALOG_API NamedElement : public IObjectInternal {
 public:
  static constexpr int kNamePropertyId = 0;
  static constexpr int kDescriptionPropertyId = 1;

  NamedElement(const NamedElement&) = delete;
  NamedElement& operator=(const NamedElement&) = delete;
  ~NamedElement() override;

  // Typed accessors; each refuses a proxy (UnresolvedProxyException 75004).
  IUString const& getName() const;
  void setName(IUString name);
  std::optional<IUString> getDescription() const;
  void setDescription(std::optional<IUString> description);

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const final;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) final;
  IBOOLEAN iHasItems(IProperty const& property) final;
  IIdentity const* iGetIdentity() const override;
  // Takes ownership of `identity` once it is stored; IdentityException (74002) when
  // the object has an identity already.
  void iSetIdentity(IIdentity const*& identity) override;
  using IObjectInternal::iSetIdentity;
  // Makes the generated identity inline; IdentityException (74002) as iSetIdentity.
  IIdentity const* iSetUUIDIdentity(const unsigned char* bytes) override;

 protected:
  explicit NamedElement(IClass* objectClass);

  // The package singleton; it exists whenever catalog objects do.
  static CatalogIPackage* package();

  // The value of a property of this object's class (checked by iGet); a blob writes its
  // byte count to `length`. Overrides handle their class's own ids and pass the others
  // to their super class.
  virtual void const* getValue(IProperty const& property, unsigned int* length) const;
  // Sets a property of this object's class (checked by iSet); `length` is a blob's byte
  // count. Overrides handle their class's own ids and pass the others on.
  virtual void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  friend class CatalogIFactory;
  // Turns a fresh object into a proxy for `identity` (the object takes ownership).
  void becomeProxy(IIdentity const*& identity);

  IdentitySlot identity_;
  IUString name_;
  HeapOptional<IUString> description_;
};

}  // namespace com::example::catalog
