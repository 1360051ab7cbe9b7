#include "examples/catalog/Column.h"

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/Table.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

Column::Column()
    : NamedElement(package()->getColumnIClass()) {}

Column::~Column() { sampleValues_.deleteValues(); }

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
  return dataTypeLiteral();
}

IEnumerationLiteral* Column::dataTypeLiteral() const { return package()->getLiteral(static_cast<DataType>(dataType_)); }

void Column::storeDataType(IEnumerationLiteral const* dataType) {
  dataType_ = static_cast<std::uint8_t>(support::ordinalOrDefault(dataType, *package()->getDataTypeIEnumeration(),
                                                                  static_cast<int>(DataType::VARCHAR)));
}

void Column::setDataType(IEnumerationLiteral* dataType) {
  checkNotProxy();
  storeDataType(dataType);
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

std::optional<IUString> Column::getDefaultValue() const {
  checkNotProxy();
  return defaultValue_.toOptional();
}

void Column::setDefaultValue(std::optional<IUString> defaultValue) {
  checkNotProxy();
  defaultValue_.assign(std::move(defaultValue));
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

std::optional<WkDate> Column::getCreated() const {
  checkNotProxy();
  return hasCreated_ ? std::optional<WkDate>(created_) : std::nullopt;
}

void Column::setCreated(std::optional<WkDate> created) {
  checkNotProxy();
  support::assignFlagged(created_, hasCreated_, created ? &*created : nullptr);
}

std::optional<char16_t> Column::getInitial() const {
  checkNotProxy();
  return hasInitial_ ? std::optional<char16_t>(initial_) : std::nullopt;
}

void Column::setInitial(std::optional<char16_t> initial) {
  checkNotProxy();
  support::assignFlagged(initial_, hasInitial_, initial ? &*initial : nullptr);
}

IVector<std::int32_t*> const& Column::getSampleValues() const {
  checkNotProxy();
  return sampleValues_;
}

void Column::addSampleValue(std::int32_t value) {
  checkNotProxy();
  sampleValues_.appendValue(value);
}

void Column::clearSampleValues() {
  checkNotProxy();
  sampleValues_.deleteValues();
}

DataTypeDef* Column::getType() const {
  checkNotProxy();
  return type_;
}

void Column::setType(DataTypeDef* type) {
  checkNotProxy();
  type_ = type;
}

void const* Column::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* Column::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kTablePropertyId: return support::asReflective(getTable());
    case kDataTypePropertyId: return dataTypeLiteral();
    case kLengthPropertyId: return &length_;
    case kPrecisionPropertyId: return &precision_;
    case kScalePropertyId: return &scale_;
    case kNullablePropertyId: return &nullable_;
    case kDefaultValuePropertyId: return support::valueOrNull(defaultValue_);
    case kSelectivityPropertyId: return &selectivity_;
    case kWeightPropertyId: return &weight_;
    case kCreatedPropertyId: return hasCreated_ ? &created_ : nullptr;
    case kInitialPropertyId: return hasInitial_ ? &initial_ : nullptr;
    case kSampleValuesPropertyId: return &sampleValues_;
    case kTypePropertyId: return support::asReflective(type_);
    default: return NamedElement::getValue(property, length);
  }
}

void Column::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void Column::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kTablePropertyId: setTable(support::referenceValue<Table>(property, value)); return;
    case kDataTypePropertyId: storeDataType(static_cast<IEnumerationLiteral*>(value)); return;
    case kLengthPropertyId: support::assignOrDefault(length_, value, std::int32_t{0}); return;
    case kPrecisionPropertyId: support::assignOrDefault(precision_, value, std::int16_t{0}); return;
    case kScalePropertyId: support::assignOrDefault(scale_, value, char{0}); return;
    case kNullablePropertyId: support::assignOrDefault(nullable_, value, IBOOLEAN{ITRUE}); return;
    case kDefaultValuePropertyId: support::assignOptional(defaultValue_, value); return;
    case kSelectivityPropertyId: support::assignOrDefault(selectivity_, value, 0.0); return;
    case kWeightPropertyId: support::assignOrDefault(weight_, value, 0.0F); return;
    case kCreatedPropertyId: support::assignFlagged(created_, hasCreated_, value); return;
    case kInitialPropertyId: support::assignFlagged(initial_, hasInitial_, value); return;
    case kSampleValuesPropertyId: throwCollectionSet(property);
    case kTypePropertyId: type_ = support::referenceValue<DataTypeDef>(property, value); return;
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
