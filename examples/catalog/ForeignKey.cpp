#include "examples/catalog/ForeignKey.h"

#include "examples/catalog/Column.h"
#include "examples/catalog/Table.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

ForeignKey::ForeignKey() : NamedElement(package()->getForeignKeyIClass()) {}

ForeignKey::~ForeignKey() = default;

Table* ForeignKey::getTargetTable() const {
  checkNotProxy();
  return targetTable_;
}

void ForeignKey::setTargetTable(Table* targetTable) {
  checkNotProxy();
  targetTable_ = targetTable;
}

support::ObjectList<Column> ForeignKey::getColumns() const {
  checkNotProxy();
  return support::ObjectList<Column>(columns_);
}

void ForeignKey::addColumn(Column* column) {
  checkNotProxy();
  if (column != nullptr) columns_.append(column);
}

bool ForeignKey::removeColumn(Column* column) {
  checkNotProxy();
  return columns_.removeElement(column);
}

IVector<IEnumerationLiteral*> const& ForeignKey::getRules() const {
  checkNotProxy();
  return rules_;
}

void ForeignKey::addRule(IEnumerationLiteral* rule) {
  checkNotProxy();
  if (rule != nullptr) rules_.append(rule);
}

bool ForeignKey::removeRule(IEnumerationLiteral* rule) {
  checkNotProxy();
  return rules_.removeElement(rule);
}

void const* ForeignKey::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* ForeignKey::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kTargetTablePropertyId: return support::asReflective(targetTable_);
    case kColumnsPropertyId: return &columns_;
    case kRulesPropertyId: return &rules_;
    default: return NamedElement::getValue(property, length);
  }
}

void ForeignKey::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void ForeignKey::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kTargetTablePropertyId: targetTable_ = support::referenceValue<Table>(property, value); return;
    case kColumnsPropertyId:
    case kRulesPropertyId: throwCollectionSet(property);
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
