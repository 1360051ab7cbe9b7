#include "examples/catalog/View.h"

#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

View::View() : Table(package()->getViewIClass()) {}

View::~View() = default;

std::optional<IUString> View::getQuery() const {
  checkNotProxy();
  return query_.toOptional();
}

void View::setQuery(std::optional<IUString> query) {
  checkNotProxy();
  query_.assign(std::move(query));
}

IEnumerationLiteral* View::getDefaultKind() const { return package()->getLiteral(TableKind::VIEW); }

void const* View::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* View::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kQueryPropertyId: return support::valueOrNull(query_);
    case kViewKindPropertyId: return Table::getValue(*package()->getTable_KindIProperty(), length);
    default: return Table::getValue(property, length);
  }
}

void View::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void View::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kQueryPropertyId: support::assignOptional(query_, value); return;
    case kViewKindPropertyId: Table::setValue(*package()->getTable_KindIProperty(), value, length); return;
    default: Table::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
