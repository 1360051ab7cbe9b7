// The definition of one SQL data type: a seeded object, shared by every catalog and
// delivered in the package's seed file rather than created by applications. Its seed
// id is "com.example.catalog:types." followed by the DataType literal's name.
#pragma once

#include <cstdint>

#include "examples/catalog/NamedElement.h"

namespace com::example::catalog {

class QVX_CATALOG_API DataTypeDef : public NamedElement {
 public:
  static constexpr int kSqlNamePropertyId = 2;
  static constexpr int kMaxLengthPropertyId = 3;

  DataTypeDef();
  ~DataTypeDef() override;

  IUString const& getSqlName() const;
  void setSqlName(IUString sqlName);
  std::int32_t getMaxLength() const;
  void setMaxLength(std::int32_t maxLength);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  IUString sqlName_;
  std::int32_t maxLength_ = 0;
};

}  // namespace com::example::catalog
