// The package "com.example.catalog": a relational data catalog (catalogs, schemas,
// tables and views, columns, foreign keys, seeded data type definitions). It is built
// once, on the first iGetInstance(), from the tables in its source file, and registers
// itself with the runtime; loading the library does that first call.
#pragma once

#include "examples/catalog/CatalogExport.h"
#include "icore/IPackage.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {
class IEnumerationLiteral;
}

namespace com::example::catalog {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IEnumeration;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IPackage;
using com::veltrana::qvx::icore::IProperty;

// The literals of the package's enumerations, by ordinal value.
enum class DataType : int { VARCHAR, CHAR, INTEGER, BIGINT, DECIMAL, DOUBLE, DATE, TIMESTAMP, BOOLEAN, BLOB };
enum class TableKind : int { TABLE, VIEW, EXTERNAL };
enum class RefRule : int { CASCADE, RESTRICT, SET_NULL, NO_ACTION };

class QVX_CATALOG_API CatalogIPackage : public IPackage {
 public:
  // The package, built on the first call. Returns null while the package is being
  // built on this thread; other threads wait until it is complete.
  static CatalogIPackage* iGetInstance();
  static IUString const& getIName();
  static IUString const& getIPrefix();

  IClass* getNamedElementIClass() const { return classes_[0]; }
  IClass* getCatalogIClass() const { return classes_[1]; }
  IClass* getSchemaIClass() const { return classes_[2]; }
  IClass* getTableIClass() const { return classes_[3]; }
  IClass* getColumnIClass() const { return classes_[4]; }
  IClass* getForeignKeyIClass() const { return classes_[5]; }
  IClass* getPositionIClass() const { return classes_[6]; }
  IClass* getDataTypeDefIClass() const { return classes_[7]; }
  IClass* getViewIClass() const { return classes_[8]; }
  IEnumeration* getDataTypeIEnumeration() const { return enumerations_[0]; }
  IEnumeration* getTableKindIEnumeration() const { return enumerations_[1]; }
  IEnumeration* getRefRuleIEnumeration() const { return enumerations_[2]; }

  IProperty* getNamedElement_NameIProperty() const { return declaredProperty(0, 0); }
  IProperty* getNamedElement_DescriptionIProperty() const { return declaredProperty(0, 1); }
  IProperty* getCatalog_VersionIProperty() const { return declaredProperty(1, 0); }
  IProperty* getCatalog_CreatedIProperty() const { return declaredProperty(1, 1); }
  IProperty* getCatalog_SchemasIProperty() const { return declaredProperty(1, 2); }
  IProperty* getCatalog_DataTypesIProperty() const { return declaredProperty(1, 3); }
  IProperty* getCatalog_ConnectionPasswordIProperty() const { return declaredProperty(1, 4); }
  IProperty* getSchema_OwnerIProperty() const { return declaredProperty(2, 0); }
  IProperty* getSchema_TablesIProperty() const { return declaredProperty(2, 1); }
  IProperty* getTable_KindIProperty() const { return declaredProperty(3, 0); }
  IProperty* getTable_RowCountIProperty() const { return declaredProperty(3, 1); }
  IProperty* getTable_ColumnsIProperty() const { return declaredProperty(3, 2); }
  IProperty* getTable_PrimaryKeyIProperty() const { return declaredProperty(3, 3); }
  IProperty* getTable_ForeignKeysIProperty() const { return declaredProperty(3, 4); }
  IProperty* getTable_TagsIProperty() const { return declaredProperty(3, 5); }
  IProperty* getTable_LayoutIProperty() const { return declaredProperty(3, 6); }
  IProperty* getTable_ThumbnailIProperty() const { return declaredProperty(3, 7); }
  IProperty* getColumn_TableIProperty() const { return declaredProperty(4, 0); }
  IProperty* getColumn_DataTypeIProperty() const { return declaredProperty(4, 1); }
  IProperty* getColumn_LengthIProperty() const { return declaredProperty(4, 2); }
  IProperty* getColumn_PrecisionIProperty() const { return declaredProperty(4, 3); }
  IProperty* getColumn_ScaleIProperty() const { return declaredProperty(4, 4); }
  IProperty* getColumn_NullableIProperty() const { return declaredProperty(4, 5); }
  IProperty* getColumn_DefaultValueIProperty() const { return declaredProperty(4, 6); }
  IProperty* getColumn_SelectivityIProperty() const { return declaredProperty(4, 7); }
  IProperty* getColumn_WeightIProperty() const { return declaredProperty(4, 8); }
  IProperty* getColumn_CreatedIProperty() const { return declaredProperty(4, 9); }
  IProperty* getColumn_InitialIProperty() const { return declaredProperty(4, 10); }
  IProperty* getColumn_SampleValuesIProperty() const { return declaredProperty(4, 11); }
  IProperty* getColumn_TypeIProperty() const { return declaredProperty(4, 12); }
  IProperty* getForeignKey_TargetTableIProperty() const { return declaredProperty(5, 0); }
  IProperty* getForeignKey_ColumnsIProperty() const { return declaredProperty(5, 1); }
  IProperty* getForeignKey_RulesIProperty() const { return declaredProperty(5, 2); }
  IProperty* getPosition_XIProperty() const { return declaredProperty(6, 0); }
  IProperty* getPosition_YIProperty() const { return declaredProperty(6, 1); }
  IProperty* getDataTypeDef_SqlNameIProperty() const { return declaredProperty(7, 0); }
  IProperty* getDataTypeDef_MaxLengthIProperty() const { return declaredProperty(7, 1); }
  IProperty* getView_QueryIProperty() const { return declaredProperty(8, 0); }
  IProperty* getView_KindIProperty() const { return declaredProperty(8, 1); }

  // The literal of each enumeration value.
  IEnumerationLiteral* getLiteral(DataType value) const { return literal(0, static_cast<int>(value)); }
  IEnumerationLiteral* getLiteral(TableKind value) const { return literal(1, static_cast<int>(value)); }
  IEnumerationLiteral* getLiteral(RefRule value) const { return literal(2, static_cast<int>(value)); }

  void createPackageContents();
  void initializePackageContents();

 private:
  CatalogIPackage();
  ~CatalogIPackage() override;
  static CatalogIPackage* init();

  IProperty* declaredProperty(int classIndex, int position) const;
  IEnumerationLiteral* literal(int enumerationIndex, int ordinal) const;

  IClass* classes_[9] = {};
  IEnumeration* enumerations_[3] = {};
  bool contentsInitialised_ = false;
  WkMutex lock_;
};

}  // namespace com::example::catalog
