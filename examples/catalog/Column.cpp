#include "examples/catalog/Column.h"

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/Table.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

Column::Column()
    : NamedElement(package()->getColumnIClass()), dataType_(package()->getLiteral(DataType::VARCHAR)) {}

Column::~Column() { support::deleteAll(sampleValues_); }

Table* Column::getTable() const {
  checkNotProxy();
  if (iGetContainmentProperty() != package()->getTable_ColumnsIProperty()) return nullptr;
  return static_cast<Table*>(const_cast<IObjectInternal*>(iGetContainer()));
}

void Column::setTable(Table* table) {
  checkNotProxy();
  if (table == nullptr) {
    support::detachFromContainer(*this);
    return;
  }
  table->addColumn(this);
}

IEnumerationLiteral* Column::getDataType() const {
  checkNotProxy();
  return dataType_;
}

void Column::setDataType(IEnumerationLiteral* dataType) {
  checkNotProxy();
  dataType_ = dataType != nullptr ? dataType : package()->getLiteral(DataType::VARCHAR);
}

std::int32_t Column::getLength() const {
  checkNotProxy();
  return length_;
}

void Column::setLength(std::int32_t length) {
  checkNotProxy();
  length_ = length;
}

std::int16_t Column::getPrecision() const {
  checkNotProxy();
  return precision_;
}

void Column::setPrecision(std::int16_t precision) {
  checkNotProxy();
  precision_ = precision;
}

char Column::getScale() const {
  checkNotProxy();
  return scale_;
}

void Column::setScale(char scale) {
  checkNotProxy();
  scale_ = scale;
}

bool Column::isNullable() const {
  checkNotProxy();
  return nullable_ != IFALSE;
}

void Column::setNullable(bool nullable) {
  checkNotProxy();
  nullable_ = nullable ? ITRUE : IFALSE;
}

std::optional<IUString> const& Column::getDefaultValue() const {
  checkNotProxy();
  return defaultValue_;
}

void Column::setDefaultValue(std::optional<IUString> defaultValue) {
  checkNotProxy();
  defaultValue_ = std::move(defaultValue);
}

double Column::getSelectivity() const {
  checkNotProxy();
  return selectivity_;
}

void Column::setSelectivity(double selectivity) {
  checkNotProxy();
  selectivity_ = selectivity;
}

float Column::getWeight() const {
  checkNotProxy();
  return weight_;
}

void Column::setWeight(float weight) {
  checkNotProxy();
  weight_ = weight;
}

std::optional<WkDate> const& Column::getCreated() const {
  checkNotProxy();
  return created_;
}

void Column::setCreated(std::optional<WkDate> created) {
  checkNotProxy();
  created_ = created;
}

std::optional<char16_t> const& Column::getInitial() const {
  checkNotProxy();
  return initial_;
}

void Column::setInitial(std::optional<char16_t> initial) {
  checkNotProxy();
  initial_ = initial;
}

IVector<std::int32_t*> const& Column::getSampleValues() const {
  checkNotProxy();
  return sampleValues_;
}

void Column::addSampleValue(std::int32_t value) {
  checkNotProxy();
  sampleValues_.append(new std::int32_t(value));
}

void Column::clearSampleValues() {
  checkNotProxy();
  support::deleteAll(sampleValues_);
}

DataTypeDef* Column::getType() const {
  checkNotProxy();
  return type_;
}

void Column::setType(DataTypeDef* type) {
  checkNotProxy();
  type_ = type;
}

void const* Column::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kTablePropertyId: return support::asReflective(getTable());
    case kDataTypePropertyId: return dataType_;
    case kLengthPropertyId: return &length_;
    case kPrecisionPropertyId: return &precision_;
    case kScalePropertyId: return &scale_;
    case kNullablePropertyId: return &nullable_;
    case kDefaultValuePropertyId: return support::valueOrNull(defaultValue_);
    case kSelectivityPropertyId: return &selectivity_;
    case kWeightPropertyId: return &weight_;
    case kCreatedPropertyId: return support::valueOrNull(created_);
    case kInitialPropertyId: return support::valueOrNull(initial_);
    case kSampleValuesPropertyId: return &sampleValues_;
    case kTypePropertyId: return support::asReflective(type_);
    default: return NamedElement::getValue(property, length);
  }
}

void Column::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kTablePropertyId: setTable(support::referenceValue<Table>(property, value)); return;
    case kDataTypePropertyId: setDataType(static_cast<IEnumerationLiteral*>(value)); return;
    case kLengthPropertyId: support::assignOrDefault(length_, value, std::int32_t{0}); return;
    case kPrecisionPropertyId: support::assignOrDefault(precision_, value, std::int16_t{0}); return;
    case kScalePropertyId: support::assignOrDefault(scale_, value, char{0}); return;
    case kNullablePropertyId: support::assignOrDefault(nullable_, value, IBOOLEAN{ITRUE}); return;
    case kDefaultValuePropertyId: support::assignOptional(defaultValue_, value); return;
    case kSelectivityPropertyId: support::assignOrDefault(selectivity_, value, 0.0); return;
    case kWeightPropertyId: support::assignOrDefault(weight_, value, 0.0F); return;
    case kCreatedPropertyId: support::assignOptional(created_, value); return;
    case kInitialPropertyId: support::assignOptional(initial_, value); return;
    case kSampleValuesPropertyId: throwCollectionSet(property);
    case kTypePropertyId: type_ = support::referenceValue<DataTypeDef>(property, value); return;
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
