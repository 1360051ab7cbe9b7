// A foreign key of a table: the referenced table (anywhere in the catalog), the
// referencing columns and the referential actions.
#pragma once

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/NamedElement.h"
#include "platform/IVector.h"

namespace com::example::catalog {

class Column;
class Table;

class QVX_CATALOG_API ForeignKey : public NamedElement {
 public:
  static constexpr int kTargetTablePropertyId = 2;
  static constexpr int kColumnsPropertyId = 3;
  static constexpr int kRulesPropertyId = 4;

  ForeignKey();
  ~ForeignKey() override;

  Table* getTargetTable() const;
  void setTargetTable(Table* targetTable);

  support::ObjectList<Column> getColumns() const;
  void addColumn(Column* column);
  bool removeColumn(Column* column);

  // Literals of RefRule.
  IVector<IEnumerationLiteral*> const& getRules() const;
  void addRule(IEnumerationLiteral* rule);
  bool removeRule(IEnumerationLiteral* rule);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  Table* targetTable_ = nullptr;
  IVector<IObject*> columns_{support::kCollectionCapacity};
  IVector<IEnumerationLiteral*> rules_{support::kCollectionCapacity};
};

}  // namespace com::example::catalog
