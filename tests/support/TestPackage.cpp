// The package and factory of the test package "com.example.test.shapes", built from
// tables in the manner of generated package code.
#include "tests/support/TestPackage.h"

#include <atomic>
#include <iterator>
#include <mutex>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "platform/QvxAssert.h"

namespace com::example::test::shapes {

using icore::IClass;
using icore::IClassKind;
using icore::IProperty;
using icore::IReferenceScope;
using icore::exception::IllegalArgumentException;

namespace {

enum ClassIndex { kStencil, kShape, kCircle, kNote, kDrawing, kClassCount, kNone = -1 };
constexpr int kLineStyleTypeId = kClassCount;

struct ClassRow {
  const char* name;
  int superClass;
  bool isAbstract;
  bool isSeeded;
  IClassKind const* kind;
  IReferenceScope const* scope;
};

const ClassRow kClasses[kClassCount] = {
    {"Stencil", kNone, false, true, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
    {"Shape", kNone, false, true, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL},
    {"Circle", kShape, false, true, &IClassKind::SECOND_CLASS, &IReferenceScope::EXTERNAL},
    {"Note", kNone, false, false, &IClassKind::SECOND_CLASS, &IReferenceScope::INTERNAL},
    {"Drawing", kNone, false, false, &IClassKind::FIRST_CLASS, &IReferenceScope::EXTERNAL},
};

enum class TypeKind { kClass, kLineStyle, kBoolean, kInteger, kString };

struct PropertyRow {
  int owner;
  int id;
  const char* name;
  TypeKind type;
  int typeClass;
  int minOccurs;
  int maxOccurs;
  bool containment;
  bool container;
  int oppositeClass;
  const char* oppositeName;
  IReferenceScope const* scope;
};

IReferenceScope const* const kNONE = &IReferenceScope::NONE;
IReferenceScope const* const kINTERNAL = &IReferenceScope::INTERNAL;
IReferenceScope const* const kDEFERRED = &IReferenceScope::DEFERRED;

// In creation order: each class's declared properties in id order, classes by type id.
const PropertyRow kProperties[] = {
    {kStencil, 0, "name", TypeKind::kString, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kStencil, 1, "shapes", TypeKind::kClass, kShape, 0, -1, true, false, kShape, "stencil", kINTERNAL},
    {kStencil, 2, "note", TypeKind::kClass, kNote, 0, 1, true, false, kNone, nullptr, kINTERNAL},
    {kStencil, 3, "parts", TypeKind::kClass, kStencil, 0, -1, true, false, kNone, nullptr, kINTERNAL},
    {kShape, 0, "name", TypeKind::kString, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kShape, 1, "sides", TypeKind::kInteger, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kShape, 2, "filled", TypeKind::kBoolean, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kShape, 3, "outline", TypeKind::kLineStyle, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kShape, 4, "stencil", TypeKind::kClass, kStencil, 0, 1, false, true, kStencil, "shapes", kINTERNAL},
    {kCircle, 5, "radius", TypeKind::kInteger, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kNote, 0, "text", TypeKind::kString, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kDrawing, 0, "title", TypeKind::kString, kNone, 1, 1, false, false, kNone, nullptr, kNONE},
    {kDrawing, 1, "uses", TypeKind::kClass, kShape, 0, -1, false, false, kNone, nullptr, kDEFERRED},
    {kDrawing, 2, "background", TypeKind::kClass, kShape, 0, 1, false, false, kNone, nullptr, kDEFERRED},
};

const char* const kLineStyleLiterals[] = {"SOLID", "DASHED"};

std::atomic<ShapesIPackage*> gInstance{nullptr};
bool gInitialising = false;

WkMutex& initLock() {
  static WkMutex* lock = new WkMutex();  // lives for the process
  return *lock;
}

IBOOLEAN toIBoolean(bool value) { return value ? ITRUE : IFALSE; }

}  // namespace

ShapesIPackage::ShapesIPackage() = default;

ShapesIPackage::~ShapesIPackage() = default;

ShapesIPackage* ShapesIPackage::iGetInstance() {
  if (ShapesIPackage* built = gInstance.load(std::memory_order_acquire)) return built;
  return init();
}

ShapesIPackage* ShapesIPackage::init() {
  std::lock_guard<WkMutex> guard(initLock());
  if (ShapesIPackage* built = gInstance.load(std::memory_order_acquire)) return built;
  if (gInitialising) return nullptr;  // asked again by the thread that is building it
  gInitialising = true;
  auto* package = new ShapesIPackage();  // lives for the process
  package->createPackageContents();
  package->initializePackageContents();
  gInstance.store(package, std::memory_order_release);
  gInitialising = false;
  return package;
}

IUString const& ShapesIPackage::getIName() {
  static const IUString name("shapes");
  return name;
}

IUString const& ShapesIPackage::getIPrefix() {
  static const IUString prefix("com.example.test");
  return prefix;
}

IUString const& ShapesIPackage::getIVersion() {
  static const IUString version("1.0.0");
  return version;
}

IProperty* ShapesIPackage::declaredProperty(int classIndex, int position) const {
  return classes_[classIndex]->getDeclaredProperties()[static_cast<std::size_t>(position)];
}

void ShapesIPackage::createPackageContents() {
  std::size_t next = 0;
  for (int typeId = 0; typeId < kClassCount; ++typeId) {
    classes_[typeId] = createIClass(typeId);
    for (; next < std::size(kProperties) && kProperties[next].owner == typeId; ++next) {
      createIProperty(classes_[typeId], kProperties[next].id);
    }
  }
  QVX_ASSERT(next == std::size(kProperties));
  lineStyle_ = createIEnumeration(kLineStyleTypeId);
}

void ShapesIPackage::initializePackageContents() {
  std::lock_guard<WkMutex> guard(lock_);
  if (contentsInitialised_) return;
  contentsInitialised_ = true;
  setName(getIName());
  setNsPrefix(getIPrefix());
  setVersion(getIVersion());
  setXMLPackageNsPrefix(IUString("shp"));
  setComment(IUString());
  icore::QVXRuntime::getInstance()->registerPackage(this);
  addSuperTypesToClasses();
  initEnums();
  initClasses();
  ShapesIFactory* factory = ShapesIFactory::iGetInstance();
  setFactory(factory);
  factory->setPackage(this);
}

void ShapesIPackage::addSuperTypesToClasses() {
  for (int index = 0; index < kClassCount; ++index) {
    if (kClasses[index].superClass != kNone) classes_[index]->setSuperClass(classes_[kClasses[index].superClass]);
  }
}

void ShapesIPackage::initClasses() {
  auto typeOf = [this](PropertyRow const& row) -> icore::IType* {
    switch (row.type) {
      case TypeKind::kClass: return classes_[row.typeClass];
      case TypeKind::kLineStyle: return lineStyle_;
      case TypeKind::kBoolean: return icore::ICoreDatatypes::I_BOOLEAN;
      case TypeKind::kInteger: return icore::ICoreDatatypes::I_INTEGER;
      case TypeKind::kString: return icore::ICoreDatatypes::I_STRING;
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
      initIProperty(property, typeOf(p), p.name, IUString(), p.minOccurs, p.maxOccurs, nullptr, IFALSE,
                    toIBoolean(p.containment), toIBoolean(p.container), IFALSE, IFALSE, ITRUE, IUString(),
                    icore::IRedefinability::FINAL_PROPERTY, *p.scope, IUString(), IFALSE);
    }
  }
  // Opposites are found by name, so they are linked once every property is named.
  next = 0;
  for (int index = 0; index < kClassCount; ++index) {
    for (IProperty* property : classes_[index]->getDeclaredProperties()) {
      const PropertyRow& p = kProperties[next++];
      if (p.oppositeClass == kNone) continue;
      property->setOppositeProperty(classes_[p.oppositeClass]->getDeclaredProperty(p.oppositeName));
    }
  }
}

void ShapesIPackage::initEnums() {
  initIEnumeration(lineStyle_, "LineStyle", IUString());
  for (int ordinal = 0; ordinal < static_cast<int>(std::size(kLineStyleLiterals)); ++ordinal) {
    addIEnumerationLiteral(lineStyle_, kLineStyleLiterals[ordinal], ordinal, IUString());
  }
  lineStyle_->setDefaultLiteral(lineStyle_->getLiterals()[0]);
}

ShapesIFactory* ShapesIFactory::iGetInstance() {
  static ShapesIFactory* instance = new ShapesIFactory();  // lives for the process
  return instance;
}

ShapesIFactory::~ShapesIFactory() = default;

icore::IObject* ShapesIFactory::create(IClass const& objectClass) {
  ShapesIPackage* package = ShapesIPackage::iGetInstance();
  if (&objectClass == package->getStencilIClass()) return new Stencil();
  if (&objectClass == package->getShapeIClass()) return new Shape();
  if (&objectClass == package->getCircleIClass()) return new Circle();
  if (&objectClass == package->getNoteIClass()) return new Note();
  if (&objectClass == package->getDrawingIClass()) return new Drawing();
  throw IllegalArgumentException(icore::qvxFormatMsg(73002, objectClass.getQualifiedName()));
}

icore::IObject* ShapesIFactory::createProxy(IClass const& objectClass, icore::IIdentity const*& identity) {
  if (identity == nullptr) throw IllegalArgumentException(icore::qvxGetMsg(75007));
  if (objectClass.isAbstract()) throw IllegalArgumentException(icore::qvxGetMsg(75008));
  if (!objectClass.isIdentifiableClass()) {
    throw IllegalArgumentException(icore::qvxFormatMsg(75009, objectClass.getName()));
  }
  // Every identifiable class of the package derives from IdentifiedObject.
  std::unique_ptr<icore::IObject> made(create(objectClass));
  static_cast<IdentifiedObject*>(made.get())->becomeProxy(identity);
  return made.release();
}

void* ShapesIFactory::datatypeFromString(icore::IDatatype const& datatype, IUString const& text) {
  if (!datatype.isPrimitive()) throw IllegalArgumentException(icore::qvxFormatMsg(73002, datatype.getQualifiedName()));
  unsigned int length = 0;
  return icore::ICoreDatatypes::primitiveFromString(datatype, text, &length);
}

IUString* ShapesIFactory::datatypeToString(icore::IDatatype const& datatype, void const* value) {
  if (!datatype.isPrimitive()) throw IllegalArgumentException(icore::qvxFormatMsg(73002, datatype.getQualifiedName()));
  return icore::ICoreDatatypes::primitiveToString(datatype, value, 0);
}

}  // namespace com::example::test::shapes
