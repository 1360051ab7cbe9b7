// A table of a schema: its kind and row count, the columns and foreign keys it
// contains, the primary key columns, free tags, a diagram position and a thumbnail
// image. Columns and their table are kept in step from either end: a column's table is
// the table that contains it.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/NamedElement.h"
#include "platform/IVector.h"

namespace com::example::catalog {

class Column;
class ForeignKey;
class Position;

class QVX_CATALOG_API Table : public NamedElement {
 public:
  static constexpr int kKindPropertyId = 2;
  static constexpr int kRowCountPropertyId = 3;
  static constexpr int kColumnsPropertyId = 4;
  static constexpr int kPrimaryKeyPropertyId = 5;
  static constexpr int kForeignKeysPropertyId = 6;
  static constexpr int kTagsPropertyId = 7;
  static constexpr int kLayoutPropertyId = 8;
  static constexpr int kThumbnailPropertyId = 9;

  Table();
  // Destroys the columns, foreign keys and layout, which the table contains.
  ~Table() override;

  // A literal of TableKind; setting null restores the default (TABLE, for a view VIEW).
  IEnumerationLiteral* getKind() const;
  void setKind(IEnumerationLiteral* kind);
  std::int64_t getRowCount() const;
  void setRowCount(std::int64_t rowCount);

  support::ObjectList<Column> getColumns() const;
  // The table takes ownership and becomes the column's table; a column of another
  // table moves here. A column that the table holds already stays where it is.
  void addColumn(Column* column);
  // The column then belongs to the caller and has no table; false when the table does
  // not contain it.
  bool removeColumn(Column* column);

  // Columns of this table; each is listed once.
  support::ObjectList<Column> getPrimaryKey() const;
  void addPrimaryKeyColumn(Column* column);
  bool removePrimaryKeyColumn(Column* column);

  support::ObjectList<ForeignKey> getForeignKeys() const;
  // The table takes ownership; a foreign key contained elsewhere is moved here.
  void addForeignKey(ForeignKey* foreignKey);
  // The foreign key then belongs to the caller.
  bool removeForeignKey(ForeignKey* foreignKey);

  IVector<IUString*> const& getTags() const;
  void addTag(IUString tag);
  // Removes the first tag equal to `tag`; false when there is none.
  bool removeTag(IUString const& tag);

  Position* getLayout() const;
  // The table takes ownership of `layout`; the previous layout is released to the
  // caller, not destroyed.
  void setLayout(Position* layout);

  std::optional<std::vector<char>> getThumbnail() const;
  void setThumbnail(std::optional<std::vector<char>> thumbnail);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  explicit Table(IClass* objectClass);

  // The kind of a table whose kind was never set.
  virtual IEnumerationLiteral* getDefaultKind() const;

  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  // Null until a kind is set: the default then applies.
  IEnumerationLiteral* kind_ = nullptr;
  std::int64_t rowCount_ = 0;
  IVector<IObject*> columns_{support::kCollectionCapacity};
  IVector<IObject*> primaryKey_{support::kCollectionCapacity};
  IVector<IObject*> foreignKeys_{support::kCollectionCapacity};
  IVector<IUString*> tags_{support::kCollectionCapacity};
  Position* layout_ = nullptr;
  HeapOptional<std::vector<char>> thumbnail_;
};

}  // namespace com::example::catalog
