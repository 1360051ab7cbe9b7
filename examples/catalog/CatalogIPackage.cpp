#include "examples/catalog/CatalogIPackage.h"

#include <iterator>
#include <mutex>

#include "examples/catalog/CatalogIFactory.h"
#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/PackageRegistration.h"
#include "platform/QvxAssert.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::IClassKind;
using com::veltrana::qvx::icore::ICoreDatatypes;
using com::veltrana::qvx::icore::IRedefinability;
using com::veltrana::qvx::icore::IReferenceScope;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::QVXRuntime;
namespace internal = com::veltrana::qvx::icore::internal;

namespace {

using internal::ClassRow;
using internal::EnumRow;
using internal::kNoType;
using internal::PropertyRow;

// Type ids: the classes 0-8 (also their positions in classes_), then the enumerations
// 9-11; the core data types are 1000-1011.
enum TypeId { kNamedElement, kCatalog, kSchema, kTable, kColumn, kForeignKey, kPosition, kDataTypeDef, kView,
              kDataType, kTableKind, kRefRule };
constexpr int kClassCount = kDataType;
constexpr int kEnumCount = 3;
constexpr int kBlob = ICoreDatatypes::BLOB_TYPE_ID;
constexpr int kBoolean = ICoreDatatypes::BOOLEAN_TYPE_ID;
constexpr int kByte = ICoreDatatypes::BYTE_TYPE_ID;
constexpr int kCharacter = ICoreDatatypes::CHARACTER_TYPE_ID;
constexpr int kDate = ICoreDatatypes::DATE_TYPE_ID;
constexpr int kDouble = ICoreDatatypes::DOUBLE_TYPE_ID;
constexpr int kFloat = ICoreDatatypes::FLOAT_TYPE_ID;
constexpr int kInteger = ICoreDatatypes::INTEGER_TYPE_ID;
constexpr int kLong = ICoreDatatypes::LONG_TYPE_ID;
constexpr int kShort = ICoreDatatypes::SHORT_TYPE_ID;
constexpr int kString = ICoreDatatypes::STRING_TYPE_ID;

constexpr IClassKind const* kFIRST = &IClassKind::FIRST_CLASS;
constexpr IClassKind const* kSECOND = &IClassKind::SECOND_CLASS;
constexpr IReferenceScope const* kEXTERNAL = &IReferenceScope::EXTERNAL;
constexpr IReferenceScope const* kNONE = &IReferenceScope::NONE;
constexpr IReferenceScope const* kINTERNAL = &IReferenceScope::INTERNAL;
constexpr IReferenceScope const* kDEFERRED = &IReferenceScope::DEFERRED;
constexpr IRedefinability const* kREDEFINABLE = &IRedefinability::REDEFINABLE_PROPERTY;

const ClassRow kClasses[] = {
    {kNamedElement, "NamedElement", kNoType, true, false, false, kSECOND, kEXTERNAL},
    {kCatalog, "Catalog", kNamedElement, false, false, false, kFIRST, kEXTERNAL},
    {kSchema, "Schema", kNamedElement, false, false, false, kSECOND, kEXTERNAL},
    {kTable, "Table", kNamedElement, false, false, false, kSECOND, kEXTERNAL},
    {kColumn, "Column", kNamedElement, false, false, false, kSECOND, kEXTERNAL},
    {kForeignKey, "ForeignKey", kNamedElement, false, false, false, kSECOND, kEXTERNAL},
    {kPosition, "Position", kNoType, false, false, false, &IClassKind::VALUE_CLASS, kNONE},
    {kDataTypeDef, "DataTypeDef", kNamedElement, false, false, true, kFIRST, kEXTERNAL},
    {kView, "View", kTable, false, false, false, kSECOND, kEXTERNAL},
};

constexpr unsigned kContainment = internal::kContainment;
constexpr unsigned kContainer = internal::kContainer;
constexpr unsigned kOrdered = internal::kOrdered;
constexpr unsigned kUnique = internal::kUnique;

// Each class's declared properties in id order, classes by type id. Ids continue the
// numbering of the super class's properties. Redefinability is FINAL_PROPERTY where
// none is given.
const PropertyRow kProperties[] = {
    {kNamedElement, 0, "name", kString, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kNamedElement, 1, "description", kString, 0, 1, internal::kXmlAsElement, kNoType, 0, nullptr, kNONE, nullptr, nullptr, "documentation"},
    {kCatalog, 2, "version", kString, 1, 1, 0, kNoType, 0, "1.0", kNONE, nullptr, nullptr, nullptr},
    {kCatalog, 3, "created", kDate, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kCatalog, 4, "schemas", kSchema, 0, -1, kContainment | kOrdered, kNoType, 0, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kCatalog, 5, "dataTypes", kDataTypeDef, 0, -1, kOrdered, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kCatalog, 6, "connectionPassword", kString, 0, 1, internal::kSensitive, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kSchema, 2, "owner", kString, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kSchema, 3, "tables", kTable, 0, -1, kContainment | kOrdered, kNoType, 0, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kTable, 2, "kind", kTableKind, 0, 1, 0, kNoType, 0, "TABLE", kNONE, nullptr, kREDEFINABLE, nullptr},
    {kTable, 3, "rowCount", kLong, 0, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kTable, 4, "columns", kColumn, 0, -1, kContainment | kOrdered | kUnique, kColumn, 2, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kTable, 5, "primaryKey", kColumn, 0, -1, kOrdered | kUnique, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kTable, 6, "foreignKeys", kForeignKey, 0, -1, kContainment | kOrdered, kNoType, 0, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kTable, 7, "tags", kString, 0, -1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kTable, 8, "layout", kPosition, 0, 1, kContainment, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kTable, 9, "thumbnail", kBlob, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kColumn, 2, "table", kTable, 1, 1, kContainer, kTable, 4, nullptr, kINTERNAL, nullptr, nullptr, nullptr},
    {kColumn, 3, "dataType", kDataType, 0, 1, 0, kNoType, 0, "VARCHAR", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 4, "length", kInteger, 0, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 5, "precision", kShort, 0, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 6, "scale", kByte, 0, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 7, "nullable", kBoolean, 0, 1, 0, kNoType, 0, "true", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 8, "defaultValue", kString, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kColumn, 9, "selectivity", kDouble, 0, 1, 0, kNoType, 0, "0.0", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 10, "weight", kFloat, 0, 1, 0, kNoType, 0, "0.0", kNONE, nullptr, nullptr, nullptr},
    {kColumn, 11, "created", kDate, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kColumn, 12, "initial", kCharacter, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kColumn, 13, "sampleValues", kInteger, 0, -1, kOrdered, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kColumn, 14, "type", kDataTypeDef, 0, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kForeignKey, 2, "targetTable", kTable, 0, 1, 0, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kForeignKey, 3, "columns", kColumn, 0, -1, kOrdered, kNoType, 0, nullptr, kDEFERRED, nullptr, nullptr, nullptr},
    {kForeignKey, 4, "rules", kRefRule, 0, -1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kPosition, 0, "x", kInteger, 1, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kPosition, 1, "y", kInteger, 1, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kDataTypeDef, 2, "sqlName", kString, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kDataTypeDef, 3, "maxLength", kInteger, 0, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {kView, 10, "query", kString, 0, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {kView, 11, "kind", kTableKind, 0, 1, 0, kNoType, 0, "VIEW", kNONE, "kind", nullptr, nullptr},
};

const char* const kDataTypeLiterals[] = {"VARCHAR", "CHAR", "INTEGER", "BIGINT", "DECIMAL",
                                         "DOUBLE", "DATE", "TIMESTAMP", "BOOLEAN", "BLOB"};
const char* const kTableKindLiterals[] = {"TABLE", "VIEW", "EXTERNAL"};
const char* const kRefRuleLiterals[] = {"CASCADE", "RESTRICT", "SET_NULL", "NO_ACTION"};
const EnumRow kEnums[] = {
    {kDataType, "DataType", kDataTypeLiterals, static_cast<int>(std::size(kDataTypeLiterals)), 0},
    {kTableKind, "TableKind", kTableKindLiterals, static_cast<int>(std::size(kTableKindLiterals)), 0},
    {kRefRule, "RefRule", kRefRuleLiterals, static_cast<int>(std::size(kRefRuleLiterals)), 0},
};

const internal::PackageTables kTables = {kClasses, std::size(kClasses), kProperties, std::size(kProperties),
                                         kEnums, std::size(kEnums)};

}  // namespace

CatalogIPackage::CatalogIPackage() = default;

CatalogIPackage::~CatalogIPackage() = default;

CatalogIPackage* CatalogIPackage::iGetInstance() {
  return internal::PackageInstance<CatalogIPackage>::process().get(&CatalogIPackage::init);
}

CatalogIPackage* CatalogIPackage::init() {
  // The property types are the core primitive data types, made with the core package.
  QVX_ASSERT(IcoreIPackage::iGetInstance() != nullptr);
  internal::PackageUnderConstruction<CatalogIPackage> package(new CatalogIPackage());
  package->createPackageContents();
  package->initializePackageContents();
  return package.release();  // lives for the process
}

IUString const& CatalogIPackage::getIName() {
  static const IUString name("catalog");
  return name;
}

IUString const& CatalogIPackage::getIPrefix() {
  static const IUString prefix("com.example");
  return prefix;
}

IProperty* CatalogIPackage::declaredProperty(int classIndex, int position) const {
  return classes_[classIndex]->getDeclaredProperties()[static_cast<std::size_t>(position)];
}

IEnumerationLiteral* CatalogIPackage::literal(int enumerationIndex, int ordinal) const {
  return enumerations_[enumerationIndex]->getLiterals()[static_cast<std::size_t>(ordinal)];
}

void CatalogIPackage::createPackageContents() {
  createContents(kTables);
  for (int typeId = 0; typeId < kClassCount; ++typeId) classes_[typeId] = classById(typeId);
  for (int index = 0; index < kEnumCount; ++index) enumerations_[index] = enumerationById(kClassCount + index);
}

void CatalogIPackage::initializePackageContents() {
  std::lock_guard<WkMutex> guard(lock_);
  if (contentsInitialised_) return;
  contentsInitialised_ = true;
  setName(getIName());
  setNsPrefix(getIPrefix());
  setComment(IUString());
  setVersion("1.2.0");
  setXMLPackageNsPrefix("cat");
  QVXRuntime::getInstance()->registerPackage(this);
  initializeContents(kTables);
  CatalogIFactory* factory = CatalogIFactory::iGetInstance();
  setFactory(factory);
  factory->setPackage(this);
}

namespace {
// Loading the library builds the package and registers it with the runtime, so that a
// reader that loads the library on demand finds the package afterwards.
[[maybe_unused]] const bool gRegisteredAtLoad =
    com::veltrana::qvx::icore::runtime::PackageRegistration::buildPackagesOnLoad([] { CatalogIPackage::iGetInstance(); });
}  // namespace

}  // namespace com::example::catalog
