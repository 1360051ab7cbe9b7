// The abstract base of every identifiable catalog class: a name, an optional
// description, and the object's identity. It also carries the reflective contract of
// its subclasses: each concrete class's iGet / iSet checks the property and the proxy
// state once and then dispatches on the property id through its own getValue /
// setValue, which handle the class's own ids and pass the rest to the super class's.
#pragma once

#include <memory>
#include <optional>

#include "examples/catalog/CatalogExport.h"
#include "examples/catalog/CatalogIPackage.h"
#include "icore/IProperty.h"
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

  // Each concrete class checks the property once and runs its own getValue / setValue
  // directly, so a reflective access makes one virtual call.
  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override = 0;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override = 0;
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
  // byte count to `length`. Each subclass hides these with its own, which handle the
  // class's own ids and pass the others to the super class's by a direct call.
  // Inline: every subclass's switch ends here for the name, the most read value.
  void const* getValue(IProperty const& property, unsigned int*) const {
    switch (property.getPropertyId()) {
      case kNamePropertyId: return &name_;
      case kDescriptionPropertyId: return description_.get();
      default: throwUnknownGet(property);
    }
  }
  // Sets a property of this object's class (checked by iSet); `length` is a blob's byte
  // count.
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  friend class CatalogIFactory;
  // Turns a fresh object into a proxy for `identity` (the object takes ownership).
  void becomeProxy(IIdentity const*& identity);

  IdentitySlot identity_;
  IUString name_;
  HeapOptional<IUString> description_;
};

}  // namespace com::example::catalog
