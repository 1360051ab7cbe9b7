#include "examples/catalog/CatalogIPackage.h"

#include <atomic>
#include <iterator>
#include <mutex>

#include "examples/catalog/CatalogIFactory.h"
#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "platform/QvxAssert.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::IClassKind;
using com::veltrana::qvx::icore::ICoreDatatypes;
using com::veltrana::qvx::icore::IDatatype;
using com::veltrana::qvx::icore::IRedefinability;
using com::veltrana::qvx::icore::IReferenceScope;
using com::veltrana::qvx::icore::IType;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::QVXRuntime;

namespace {

// Indexes into the class and enumeration arrays; a class's index is its type id and
// the enumerations follow the classes.
enum ClassIndex { kNamedElement, kCatalog, kSchema, kTable, kColumn, kForeignKey, kPosition, kDataTypeDef, kView,
                  kClassCount, kNone = -1 };
enum EnumIndex { kDataType, kTableKind, kRefRule, kEnumCount };

struct ClassRow {
  const char* name;
  int superClass;
  bool isAbstract;
  IClassKind const* kind;
  IReferenceScope const* scope;
  bool isSeeded;
};

const ClassRow kClasses[kClassCount] = {
    {"NamedElement", kNone, true, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL, false},
    {"Catalog", kNamedElement, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL, false},
    {"Schema", kNamedElement, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL, false},
    {"Table", kNamedElement, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL, false},
    {"Column", kNamedElement, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL, false},
    {"ForeignKey", kNamedElement, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL, false},
    {"Position", kNone, false, &IClassKind::VALUE_CLASS, &IReferenceScope::NONE, false},
    {"DataTypeDef", kNamedElement, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL, true},
    {"View", kTable, false, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL, false},
};

// A property's type: one of the package's classes or enumerations, or a core
// primitive data type (held through the address of its ICoreDatatypes static, which
// is set when the core package is built).
enum class TypeKind { kClass, kEnum, kPrimitive };
struct TypeRef {
  TypeKind kind;
  int index;
  IDatatype* const* primitive;
};
constexpr TypeRef classType(int index) { return {TypeKind::kClass, index, nullptr}; }
constexpr TypeRef enumType(int index) { return {TypeKind::kEnum, index, nullptr}; }
constexpr TypeRef kBlob{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_BLOB};
constexpr TypeRef kBoolean{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_BOOLEAN};
constexpr TypeRef kByte{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_BYTE};
constexpr TypeRef kCharacter{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_CHARACTER};
constexpr TypeRef kDate{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_DATE};
constexpr TypeRef kDouble{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_DOUBLE};
constexpr TypeRef kFloat{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_FLOAT};
constexpr TypeRef kInteger{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_INTEGER};
constexpr TypeRef kLong{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_LONG};
constexpr TypeRef kShort{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_SHORT};
constexpr TypeRef kString{TypeKind::kPrimitive, 0, &ICoreDatatypes::I_STRING};

// Property flags.
enum : unsigned { kContainment = 1, kContainer = 2, kOrdered = 4, kUnique = 8, kSensitive = 16 };

struct PropertyRow {
  int owner;
  int id;
  const char* name;
  TypeRef type;
  int minOccurs;
  int maxOccurs;
  const char* defaultLiteral;
  unsigned flags;
  // The opposite property as (class index, position among its declared properties).
  int oppositeClass;
  int oppositePosition;
  const char* redefinedName;
  IRedefinability const* redefinability;
  IReferenceScope const* scope;
  // The element name of a property written as an XML element; null for an attribute.
  const char* xmlElementName;
};

constexpr IRedefinability const* kFINAL = &IRedefinability::FINAL_PROPERTY;
constexpr IRedefinability const* kREDEFINABLE = &IRedefinability::REDEFINABLE_PROPERTY;
constexpr IReferenceScope const* kNONE = &IReferenceScope::NONE;
constexpr IReferenceScope const* kINTERNAL = &IReferenceScope::INTERNAL;
constexpr IReferenceScope const* kDEFERRED = &IReferenceScope::DEFERRED;

// In creation order: each class's declared properties in id order, classes by type id.
// Ids continue the numbering of the super class's properties.
const PropertyRow kProperties[] = {
    {kNamedElement, 0, "name", kString, 1, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kNamedElement, 1, "description", kString, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, "documentation"},
    {kCatalog, 2, "version", kString, 1, 1, "1.0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kCatalog, 3, "created", kDate, 1, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kCatalog, 4, "schemas", classType(kSchema), 0, -1, "", kContainment | kOrdered, kNone, 0, "", kFINAL, kINTERNAL, nullptr},
    {kCatalog, 5, "dataTypes", classType(kDataTypeDef), 0, -1, "", kOrdered, kNone, 0, "", kFINAL, kDEFERRED, nullptr},
    {kCatalog, 6, "connectionPassword", kString, 0, 1, "", kSensitive, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kSchema, 2, "owner", kString, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kSchema, 3, "tables", classType(kTable), 0, -1, "", kContainment | kOrdered, kNone, 0, "", kFINAL, kINTERNAL, nullptr},
    {kTable, 2, "kind", enumType(kTableKind), 0, 1, "TABLE", 0, kNone, 0, "", kREDEFINABLE, kNONE, nullptr},
    {kTable, 3, "rowCount", kLong, 0, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kTable, 4, "columns", classType(kColumn), 0, -1, "", kContainment | kOrdered | kUnique, kColumn, 0, "", kFINAL, kINTERNAL, nullptr},
    {kTable, 5, "primaryKey", classType(kColumn), 0, -1, "", kOrdered | kUnique, kNone, 0, "", kFINAL, kDEFERRED, nullptr},
    {kTable, 6, "foreignKeys", classType(kForeignKey), 0, -1, "", kContainment | kOrdered, kNone, 0, "", kFINAL, kINTERNAL, nullptr},
    {kTable, 7, "tags", kString, 0, -1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kTable, 8, "layout", classType(kPosition), 0, 1, "", kContainment, kNone, 0, "", kFINAL, kDEFERRED, nullptr},
    {kTable, 9, "thumbnail", kBlob, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 2, "table", classType(kTable), 1, 1, "", kContainer, kTable, 2, "", kFINAL, kINTERNAL, nullptr},
    {kColumn, 3, "dataType", enumType(kDataType), 0, 1, "VARCHAR", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 4, "length", kInteger, 0, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 5, "precision", kShort, 0, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 6, "scale", kByte, 0, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 7, "nullable", kBoolean, 0, 1, "true", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 8, "defaultValue", kString, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 9, "selectivity", kDouble, 0, 1, "0.0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 10, "weight", kFloat, 0, 1, "0.0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 11, "created", kDate, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 12, "initial", kCharacter, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 13, "sampleValues", kInteger, 0, -1, "", kOrdered, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kColumn, 14, "type", classType(kDataTypeDef), 0, 1, "", 0, kNone, 0, "", kFINAL, kDEFERRED, nullptr},
    {kForeignKey, 2, "targetTable", classType(kTable), 0, 1, "", 0, kNone, 0, "", kFINAL, kDEFERRED, nullptr},
    {kForeignKey, 3, "columns", classType(kColumn), 0, -1, "", kOrdered, kNone, 0, "", kFINAL, kDEFERRED, nullptr},
    {kForeignKey, 4, "rules", enumType(kRefRule), 0, -1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kPosition, 0, "x", kInteger, 1, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kPosition, 1, "y", kInteger, 1, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kDataTypeDef, 2, "sqlName", kString, 1, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kDataTypeDef, 3, "maxLength", kInteger, 0, 1, "0", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kView, 10, "query", kString, 0, 1, "", 0, kNone, 0, "", kFINAL, kNONE, nullptr},
    {kView, 11, "kind", enumType(kTableKind), 0, 1, "VIEW", 0, kNone, 0, "kind", kFINAL, kNONE, nullptr},
};

struct EnumRow {
  const char* name;
  const char* const* literals;
  int literalCount;
  int defaultOrdinal;
};
const char* const kDataTypeLiterals[] = {"VARCHAR", "CHAR", "INTEGER", "BIGINT", "DECIMAL",
                                         "DOUBLE", "DATE", "TIMESTAMP", "BOOLEAN", "BLOB"};
const char* const kTableKindLiterals[] = {"TABLE", "VIEW", "EXTERNAL"};
const char* const kRefRuleLiterals[] = {"CASCADE", "RESTRICT", "SET_NULL", "NO_ACTION"};
const EnumRow kEnums[kEnumCount] = {
    {"DataType", kDataTypeLiterals, static_cast<int>(std::size(kDataTypeLiterals)), 0},
    {"TableKind", kTableKindLiterals, static_cast<int>(std::size(kTableKindLiterals)), 0},
    {"RefRule", kRefRuleLiterals, static_cast<int>(std::size(kRefRuleLiterals)), 0},
};

std::atomic<CatalogIPackage*> gInstance{nullptr};
bool gInitialising = false;

WkMutex& initLock() {
  static WkMutex* lock = new WkMutex();  // lives for the process
  return *lock;
}

IBOOLEAN toIBoolean(bool value) { return value ? ITRUE : IFALSE; }
IBOOLEAN hasFlag(unsigned flags, unsigned flag) { return (flags & flag) != 0 ? ITRUE : IFALSE; }

}  // namespace

CatalogIPackage::CatalogIPackage() = default;

CatalogIPackage::~CatalogIPackage() = default;

CatalogIPackage* CatalogIPackage::iGetInstance() {
  if (CatalogIPackage* built = gInstance.load(std::memory_order_acquire)) return built;
  return init();
}

CatalogIPackage* CatalogIPackage::init() {
  std::lock_guard<WkMutex> guard(initLock());
  if (CatalogIPackage* built = gInstance.load(std::memory_order_acquire)) return built;
  if (gInitialising) return nullptr;  // asked again by the thread that is building it
  // The property types are the core primitive data types, made with the core package.
  QVX_ASSERT(IcoreIPackage::iGetInstance() != nullptr);
  gInitialising = true;
  auto* package = new CatalogIPackage();
  QVX_ASSERT(package != nullptr);
  package->createPackageContents();
  package->initializePackageContents();
  gInstance.store(package, std::memory_order_release);
  gInitialising = false;
  return package;
}

IUString const& CatalogIPackage::getIName() {
  static const IUString name("catalog");
  return name;
}

IUString const& CatalogIPackage::getIPrefix() {
  static const IUString prefix("com.example");
  return prefix;
}

IFactory* CatalogIPackage::getFactory() { return IPackage::getFactory(); }

IFactory const* CatalogIPackage::getFactory() const { return IPackage::getFactory(); }

IProperty* CatalogIPackage::declaredProperty(int classIndex, int position) const {
  return classes_[classIndex]->getDeclaredProperties()[static_cast<std::size_t>(position)];
}

IEnumerationLiteral* CatalogIPackage::literal(int enumerationIndex, int ordinal) const {
  return enumerations_[enumerationIndex]->getLiterals()[static_cast<std::size_t>(ordinal)];
}

void CatalogIPackage::createPackageContents() {
  std::size_t next = 0;
  for (int typeId = 0; typeId < kClassCount; ++typeId) {
    classes_[typeId] = createIClass(typeId);
    for (; next < std::size(kProperties) && kProperties[next].owner == typeId; ++next) {
      createIProperty(classes_[typeId], kProperties[next].id);
    }
  }
  QVX_ASSERT(next == std::size(kProperties));
  for (int index = 0; index < kEnumCount; ++index) enumerations_[index] = createIEnumeration(kClassCount + index);
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
  addSuperTypesToClasses();
  initClasses();
  initEnums();
  CatalogIFactory* factory = CatalogIFactory::iGetInstance();
  setFactory(factory);
  factory->setPackage(this);
}

void CatalogIPackage::addSuperTypesToClasses() {
  for (int index = 0; index < kClassCount; ++index) {
    if (kClasses[index].superClass != kNone) classes_[index]->setSuperClass(classes_[kClasses[index].superClass]);
  }
}

void CatalogIPackage::initClasses() {
  auto typeOf = [this](TypeRef ref) -> IType* {
    switch (ref.kind) {
      case TypeKind::kClass: return classes_[ref.index];
      case TypeKind::kEnum: return enumerations_[ref.index];
      case TypeKind::kPrimitive: return *ref.primitive;
    }
    return nullptr;
  };
  std::size_t next = 0;
  for (int index = 0; index < kClassCount; ++index) {
    const ClassRow& row = kClasses[index];
    initIClass(classes_[index], row.name, toIBoolean(row.isAbstract), *row.kind, *row.scope, IFALSE,
               toIBoolean(row.isSeeded), IUString());
    for (IProperty* property : classes_[index]->getDeclaredProperties()) {
      const PropertyRow& p = kProperties[next++];
      IProperty* opposite = p.oppositeClass != kNone ? declaredProperty(p.oppositeClass, p.oppositePosition) : nullptr;
      initIProperty(property, typeOf(p.type), p.name, p.defaultLiteral, p.minOccurs, p.maxOccurs, opposite, IFALSE,
                    hasFlag(p.flags, kContainment), hasFlag(p.flags, kContainer), IFALSE, hasFlag(p.flags, kUnique),
                    hasFlag(p.flags, kOrdered), p.redefinedName, *p.redefinability, *p.scope, IUString(),
                    hasFlag(p.flags, kSensitive));
      if (p.xmlElementName != nullptr) {
        property->setXMLPropertyAsElement(ITRUE);
        property->setXMLPropertyElementName(p.xmlElementName);
      }
    }
  }
}

void CatalogIPackage::initEnums() {
  for (int index = 0; index < kEnumCount; ++index) {
    const EnumRow& row = kEnums[index];
    initIEnumeration(enumerations_[index], row.name, IUString());
    for (int ordinal = 0; ordinal < row.literalCount; ++ordinal) {
      addIEnumerationLiteral(enumerations_[index], row.literals[ordinal], ordinal, IUString());
    }
    enumerations_[index]->setDefaultLiteral(literal(index, row.defaultOrdinal));
  }
}

namespace {
// Loading the library builds the package and registers it with the runtime, so that a
// reader that loads the library on demand finds the package afterwards.
[[maybe_unused]] const bool gRegisteredAtLoad = CatalogIPackage::iGetInstance() != nullptr;
}  // namespace

}  // namespace com::example::catalog
