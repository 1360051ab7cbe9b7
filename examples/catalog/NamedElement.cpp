#include "examples/catalog/NamedElement.h"

#include "examples/catalog/CatalogSupport.h"
#include "icore/IClass.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/internal/CollectionAccess.h"
#include "platform/QvxAssert.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::internal::CollectionAccess;

NamedElement::NamedElement(IClass* objectClass) { iSetIClass(objectClass); }

NamedElement::~NamedElement() = default;

CatalogIPackage* NamedElement::package() {
  CatalogIPackage* built = CatalogIPackage::iGetInstance();
  QVX_ASSERT(built != nullptr);
  return built;
}

IUString const& NamedElement::getName() const {
  checkNotProxy();
  return name_;
}

void NamedElement::setName(IUString name) {
  checkNotProxy();
  name_ = std::move(name);
}

std::optional<IUString> NamedElement::getDescription() const {
  checkNotProxy();
  return description_.toOptional();
}

void NamedElement::setDescription(std::optional<IUString> description) {
  checkNotProxy();
  description_.assign(std::move(description));
}

IBOOLEAN NamedElement::iHasItems(IProperty const& property) {
  void const* items = iGet(property, nullptr, IFALSE);  // checks the property first
  if (!property.isCollection()) throwNotMultiValued(property);
  return CollectionAccess::size(property, items) > 0 ? ITRUE : IFALSE;
}

void NamedElement::setValue(IProperty const& property, void* value, unsigned int) {
  switch (property.getPropertyId()) {
    case kNamePropertyId: support::assignOrDefault(name_, value, IUString()); return;
    case kDescriptionPropertyId: support::assignOptional(description_, value); return;
    default: throwUnknownSet(property);
  }
}

IIdentity const* NamedElement::iGetIdentity() const { return identity_.get(); }

void NamedElement::iSetIdentity(IIdentity const*& identity) {
  performChecksBeforeSet();
  identity_.adopt(identity);
}

IIdentity const* NamedElement::iSetUUIDIdentity(const unsigned char* bytes) {
  performChecksBeforeSet();
  return identity_.emplaceUUID(bytes);
}

void NamedElement::becomeProxy(IIdentity const*& identity) {
  identity_.adopt(identity);
  iSetProxy();
}

}  // namespace com::example::catalog
