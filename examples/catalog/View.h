// A view: a table defined by a query. It redefines Table.kind with the default VIEW;
// both properties read and write the one kind value.
#pragma once

#include <optional>

#include "examples/catalog/Table.h"

namespace com::example::catalog {

class QVX_CATALOG_API View : public Table {
 public:
  static constexpr int kQueryPropertyId = 10;
  static constexpr int kViewKindPropertyId = 11;

  View();
  ~View() override;

  std::optional<IUString> getQuery() const;
  void setQuery(std::optional<IUString> query);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  IEnumerationLiteral* getDefaultKind() const override;
  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  HeapOptional<IUString> query_;
};

}  // namespace com::example::catalog
