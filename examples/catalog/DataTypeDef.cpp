#include "examples/catalog/DataTypeDef.h"

#include "examples/catalog/CatalogSupport.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

DataTypeDef::DataTypeDef() : NamedElement(package()->getDataTypeDefIClass()) {}

DataTypeDef::~DataTypeDef() = default;

IUString const& DataTypeDef::getSqlName() const {
  checkNotProxy();
  return sqlName_;
}

void DataTypeDef::setSqlName(IUString sqlName) {
  checkNotProxy();
  sqlName_ = std::move(sqlName);
}

std::int32_t DataTypeDef::getMaxLength() const {
  checkNotProxy();
  return maxLength_;
}

void DataTypeDef::setMaxLength(std::int32_t maxLength) {
  checkNotProxy();
  maxLength_ = maxLength;
}

void const* DataTypeDef::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* DataTypeDef::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kSqlNamePropertyId: return &sqlName_;
    case kMaxLengthPropertyId: return &maxLength_;
    default: return NamedElement::getValue(property, length);
  }
}

void DataTypeDef::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void DataTypeDef::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kSqlNamePropertyId: support::assignOrDefault(sqlName_, value, IUString()); return;
    case kMaxLengthPropertyId: support::assignOrDefault(maxLength_, value, std::int32_t{0}); return;
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
