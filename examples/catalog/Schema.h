// A schema of a catalog: an optional owner and the tables (and views) it contains.
#pragma once

#include <optional>

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/NamedElement.h"
#include "platform/IVector.h"

namespace com::example::catalog {

class Table;

class QVX_CATALOG_API Schema : public NamedElement {
 public:
  static constexpr int kOwnerPropertyId = 2;
  static constexpr int kTablesPropertyId = 3;

  Schema();
  // Destroys the tables, which the schema contains.
  ~Schema() override;

  std::optional<IUString> const& getOwner() const;
  void setOwner(std::optional<IUString> owner);

  support::ObjectList<Table> getTables() const;
  // The schema takes ownership; a table contained elsewhere is moved here.
  void addTable(Table* table);
  // The table then belongs to the caller; false when the schema does not contain it.
  bool removeTable(Table* table);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  std::optional<IUString> owner_;
  IVector<IObject*> tables_{support::kCollectionCapacity};
};

}  // namespace com::example::catalog
