#include "examples/catalog/Table.h"

#include "examples/catalog/Column.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Position.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"

namespace com::example::catalog {

Table::Table() : Table(package()->getTableIClass()) {}

Table::Table(IClass* objectClass) : NamedElement(objectClass) {}

Table::~Table() {
  columns_.deleteValues();
  foreignKeys_.deleteValues();
  tags_.deleteValues();
  delete layout_;
}

IEnumerationLiteral* Table::getDefaultKind() const { return package()->getLiteral(TableKind::TABLE); }

IEnumerationLiteral* Table::getKind() const {
  checkNotProxy();
  return kind_ != nullptr ? kind_ : getDefaultKind();
}

void Table::setKind(IEnumerationLiteral* kind) {
  checkNotProxy();
  kind_ = kind;
}

std::int64_t Table::getRowCount() const {
  checkNotProxy();
  return rowCount_;
}

void Table::setRowCount(std::int64_t rowCount) {
  checkNotProxy();
  rowCount_ = rowCount;
}

support::ObjectList<Column> Table::getColumns() const {
  checkNotProxy();
  return support::ObjectList<Column>(columns_);
}

void Table::addColumn(Column* column) {
  checkNotProxy();
  support::appendContained(*this, *package()->getTable_ColumnsIProperty(), columns_, column);
}

bool Table::removeColumn(Column* column) {
  checkNotProxy();
  return support::removeContained(columns_, column);
}

support::ObjectList<Column> Table::getPrimaryKey() const {
  checkNotProxy();
  return support::ObjectList<Column>(primaryKey_);
}

void Table::addPrimaryKeyColumn(Column* column) {
  checkNotProxy();
  support::appendUnique(primaryKey_, column);
}

bool Table::removePrimaryKeyColumn(Column* column) {
  checkNotProxy();
  return primaryKey_.removeElement(column);
}

support::ObjectList<ForeignKey> Table::getForeignKeys() const {
  checkNotProxy();
  return support::ObjectList<ForeignKey>(foreignKeys_);
}

void Table::addForeignKey(ForeignKey* foreignKey) {
  checkNotProxy();
  support::appendContained(*this, *package()->getTable_ForeignKeysIProperty(), foreignKeys_, foreignKey);
}

bool Table::removeForeignKey(ForeignKey* foreignKey) {
  checkNotProxy();
  return support::removeContained(foreignKeys_, foreignKey);
}

IVector<IUString*> const& Table::getTags() const {
  checkNotProxy();
  return tags_;
}

void Table::addTag(IUString tag) {
  checkNotProxy();
  tags_.append(new IUString(std::move(tag)));
}

bool Table::removeTag(IUString const& tag) {
  checkNotProxy();
  for (std::size_t index = 0; index < tags_.size(); ++index) {
    if (*tags_[index] != tag) continue;
    delete tags_[index];
    tags_.removeAt(index);
    return true;
  }
  return false;
}

Position* Table::getLayout() const {
  checkNotProxy();
  return layout_;
}

void Table::setLayout(Position* layout) {
  checkNotProxy();
  support::setContained(*this, *package()->getTable_LayoutIProperty(), layout_, layout);
}

std::optional<std::vector<char>> Table::getThumbnail() const {
  checkNotProxy();
  return thumbnail_.toOptional();
}

void Table::setThumbnail(std::optional<std::vector<char>> thumbnail) {
  checkNotProxy();
  thumbnail_.assign(std::move(thumbnail));
}

void const* Table::iGet(IProperty const& property, unsigned int* length, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getValue(property, length);
}

void const* Table::getValue(IProperty const& property, unsigned int* length) const {
  switch (property.getPropertyId()) {
    case kKindPropertyId: return kind_ != nullptr ? kind_ : getDefaultKind();
    case kRowCountPropertyId: return &rowCount_;
    case kColumnsPropertyId: return &columns_;
    case kPrimaryKeyPropertyId: return &primaryKey_;
    case kForeignKeysPropertyId: return &foreignKeys_;
    case kTagsPropertyId: return &tags_;
    case kLayoutPropertyId: return support::asReflective(layout_);
    case kThumbnailPropertyId: {
      static const char kNoBytes = 0;  // an empty blob is a value, not an unset one
      std::vector<char> const* bytes = thumbnail_.get();
      if (length != nullptr) *length = bytes != nullptr ? static_cast<unsigned int>(bytes->size()) : 0;
      if (bytes == nullptr) return nullptr;
      return bytes->empty() ? &kNoBytes : bytes->data();
    }
    default: return NamedElement::getValue(property, length);
  }
}

void Table::iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN) {
  checkPropertyAccess(property);
  setValue(property, value, length);
}

void Table::setValue(IProperty const& property, void* value, unsigned int length) {
  switch (property.getPropertyId()) {
    case kKindPropertyId: kind_ = static_cast<IEnumerationLiteral*>(value); return;
    case kRowCountPropertyId: support::assignOrDefault(rowCount_, value, std::int64_t{0}); return;
    case kColumnsPropertyId:
    case kPrimaryKeyPropertyId:
    case kForeignKeysPropertyId:
    case kTagsPropertyId: throwCollectionSet(property);
    case kLayoutPropertyId:
      support::setContained(*this, property, layout_, support::referenceValue<Position>(property, value));
      return;
    case kThumbnailPropertyId:
      if (value == nullptr) {
        thumbnail_.reset();
      } else {
        const char* bytes = static_cast<const char*>(value);
        thumbnail_.assign(std::vector<char>(bytes, bytes + length));
      }
      return;
    default: NamedElement::setValue(property, value, length); return;
  }
}

}  // namespace com::example::catalog
