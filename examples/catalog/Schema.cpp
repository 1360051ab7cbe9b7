#include "examples/catalog/Schema.h"

#include "examples/catalog/Table.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

Schema::Schema() : NamedElement(package()->getSchemaIClass()) {}

Schema::~Schema() { tables_.deleteValues(); }

std::optional<IUString> const& Schema::getOwner() const {
  checkNotProxy();
  return owner_;
}

void Schema::setOwner(std::optional<IUString> owner) {
  checkNotProxy();
  owner_ = std::move(owner);
}

support::ObjectList<Table> Schema::getTables() const {
  checkNotProxy();
  return support::ObjectList<Table>(tables_);
}

void Schema::addTable(Table* table) {
  checkNotProxy();
  support::appendContained(*this, *package()->getSchema_TablesIProperty(), tables_, table);
}

bool Schema::removeTable(Table* table) {
  checkNotProxy();
  return support::removeContained(tables_, table);
}

void const* Schema::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* Schema::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kOwnerPropertyId: return support::valueOrNull(owner_);
    case kTablesPropertyId: return &tables_;
    default: return NamedElement::getValue(property, length);
  }
}

void Schema::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void Schema::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kOwnerPropertyId: support::assignOptional(owner_, value); return;
    case kTablesPropertyId: throwCollectionSet(property);
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
