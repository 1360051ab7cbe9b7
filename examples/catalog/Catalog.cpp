#include "examples/catalog/Catalog.h"

#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/Schema.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

Catalog::Catalog() : NamedElement(package()->getCatalogIClass()) {}

Catalog::~Catalog() { schemas_.deleteValues(); }

IUString const& Catalog::getVersion() const {
  checkNotProxy();
  return version_;
}

void Catalog::setVersion(IUString version) {
  checkNotProxy();
  version_ = std::move(version);
}

WkDate const& Catalog::getCreated() const {
  checkNotProxy();
  return created_;
}

void Catalog::setCreated(WkDate const& created) {
  checkNotProxy();
  created_ = created;
}

support::ObjectList<Schema> Catalog::getSchemas() const {
  checkNotProxy();
  return support::ObjectList<Schema>(schemas_);
}

void Catalog::addSchema(Schema* schema) {
  checkNotProxy();
  support::appendContained(*this, *package()->getCatalog_SchemasIProperty(), schemas_, schema);
}

bool Catalog::removeSchema(Schema* schema) {
  checkNotProxy();
  return support::removeContained(schemas_, schema);
}

support::ObjectList<DataTypeDef> Catalog::getDataTypes() const {
  checkNotProxy();
  return support::ObjectList<DataTypeDef>(dataTypes_);
}

void Catalog::addDataType(DataTypeDef* dataType) {
  checkNotProxy();
  if (dataType != nullptr) dataTypes_.append(dataType);
}

bool Catalog::removeDataType(DataTypeDef* dataType) {
  checkNotProxy();
  return dataTypes_.removeElement(dataType);
}

std::optional<IUString> Catalog::getConnectionPassword() const {
  checkNotProxy();
  if (!encryptedPassword_.has_value()) return std::nullopt;
  // decrypt() does not change the object; the base only offers it as a non-const service.
  return const_cast<Catalog*>(this)->decrypt(*encryptedPassword_, package()->getCatalog_ConnectionPasswordIProperty(),
                                             this);
}

void Catalog::setConnectionPassword(std::optional<IUString> clearText) {
  checkNotProxy();
  if (!clearText.has_value()) {
    encryptedPassword_.reset();
    return;
  }
  encryptedPassword_ = encrypt(std::move(*clearText), package()->getCatalog_ConnectionPasswordIProperty(), this);
}

void const* Catalog::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* Catalog::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kVersionPropertyId: return &version_;
    case kCreatedPropertyId: return &created_;
    case kSchemasPropertyId: return &schemas_;
    case kDataTypesPropertyId: return &dataTypes_;
    case kConnectionPasswordPropertyId: return support::valueOrNull(encryptedPassword_);
    default: return NamedElement::getValue(property, length);
  }
}

void Catalog::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void Catalog::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kVersionPropertyId: support::assignOrDefault(version_, value, IUString("1.0")); return;
    case kCreatedPropertyId: support::assignOrDefault(created_, value, WkDate()); return;
    case kSchemasPropertyId:
    case kDataTypesPropertyId: throwCollectionSet(property);
    // The value is the encrypted text, as iGet gives it: it is stored unchanged.
    case kConnectionPasswordPropertyId: support::assignOptional(encryptedPassword_, value); return;
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
