// A column of a table: its SQL data type (as a DataType literal and as the shared
// DataTypeDef seed), size and scale, nullability, an optional default value, optimiser
// statistics and sample values. The column's table is the table that contains it, so
// setting either end of Table.columns / Column.table updates the other.
#pragma once

#include <cstdint>
#include <optional>

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/NamedElement.h"
#include "platform/IVector.h"
#include "platform/WkDate.h"

namespace com::example::catalog {

class DataTypeDef;
class Table;

class QVX_CATALOG_API Column : public NamedElement {
 public:
  static constexpr int kTablePropertyId = 2;
  static constexpr int kDataTypePropertyId = 3;
  static constexpr int kLengthPropertyId = 4;
  static constexpr int kPrecisionPropertyId = 5;
  static constexpr int kScalePropertyId = 6;
  static constexpr int kNullablePropertyId = 7;
  static constexpr int kDefaultValuePropertyId = 8;
  static constexpr int kSelectivityPropertyId = 9;
  static constexpr int kWeightPropertyId = 10;
  static constexpr int kCreatedPropertyId = 11;
  static constexpr int kInitialPropertyId = 12;
  static constexpr int kSampleValuesPropertyId = 13;
  static constexpr int kTypePropertyId = 14;

  Column();
  ~Column() override;

  // The table that contains the column, or null.
  Table* getTable() const;
  // Moves the column into `table`'s columns, out of its previous table's; null takes it
  // out of its table, and it then belongs to the caller.
  void setTable(Table* table);

  // A literal of DataType; setting null restores the default, VARCHAR.
  IEnumerationLiteral* getDataType() const;
  void setDataType(IEnumerationLiteral* dataType);
  std::int32_t getLength() const;
  void setLength(std::int32_t length);
  std::int16_t getPrecision() const;
  void setPrecision(std::int16_t precision);
  char getScale() const;
  void setScale(char scale);
  bool isNullable() const;
  void setNullable(bool nullable);
  std::optional<IUString> getDefaultValue() const;
  void setDefaultValue(std::optional<IUString> defaultValue);
  double getSelectivity() const;
  void setSelectivity(double selectivity);
  float getWeight() const;
  void setWeight(float weight);
  std::optional<WkDate> getCreated() const;
  void setCreated(std::optional<WkDate> created);
  std::optional<char16_t> getInitial() const;
  void setInitial(std::optional<char16_t> initial);

  IVector<std::int32_t*> const& getSampleValues() const;
  void addSampleValue(std::int32_t value);
  void clearSampleValues();

  DataTypeDef* getType() const;
  void setType(DataTypeDef* type);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  IEnumerationLiteral* dataTypeLiteral() const;
  void storeDataType(IEnumerationLiteral const* dataType);

  // Largest alignment first, so that the members leave no padding between them: a
  // column is the most numerous object of a catalog. The two optional values keep
  // their flags in the last bytes instead of a padded std::optional each, and the data
  // type is kept as its DataType ordinal rather than a pointer to the literal.
  DataTypeDef* type_ = nullptr;
  double selectivity_ = 0.0;
  HeapOptional<IUString> defaultValue_;
  IVector<std::int32_t*> sampleValues_{support::kNumberCollectionCapacity};
  WkDate created_;
  std::int32_t length_ = 0;
  float weight_ = 0.0F;
  IBOOLEAN nullable_ = ITRUE;
  std::int16_t precision_ = 0;
  char16_t initial_ = 0;
  char scale_ = 0;
  bool hasCreated_ = false;
  bool hasInitial_ = false;
  std::uint8_t dataType_ = static_cast<std::uint8_t>(DataType::VARCHAR);
};

}  // namespace com::example::catalog
