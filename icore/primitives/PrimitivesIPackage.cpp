#include "icore/primitives/PrimitivesIPackage.h"

#include <atomic>
#include <mutex>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/primitives/PrimitivesIFactory.h"
#include "platform/QvxAssert.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore::primitives {

namespace {

struct ClassRow {
  const char* name;
  IDatatype* const* valueType;  // read once the core package has made the data types
  const char* defaultLiteral;
};

// In class-id order. IByte's default is the boolean literal "false". That is deliberate:
// the literal is part of the package's published metadata, so it is not "corrected".
const ClassRow kClasses[PrimitivesIPackage::kClassCount] = {
    {"IBlob", &ICoreDatatypes::I_BLOB, ""},
    {"IBoolean", &ICoreDatatypes::I_BOOLEAN, "false"},
    {"IByte", &ICoreDatatypes::I_BYTE, "false"},
    {"ICharacter", &ICoreDatatypes::I_CHARACTER, ""},
    {"IDate", &ICoreDatatypes::I_DATE, "01/01/1970:00:00:00.000"},
    {"IDouble", &ICoreDatatypes::I_DOUBLE, "0.0"},
    {"IFloat", &ICoreDatatypes::I_FLOAT, "0.0"},
    {"IInteger", &ICoreDatatypes::I_INTEGER, "0"},
    {"ILong", &ICoreDatatypes::I_LONG, "0"},
    {"IShort", &ICoreDatatypes::I_SHORT, "0"},
    {"IString", &ICoreDatatypes::I_STRING, ""},
};

constexpr int kValuePropertyId = 0;

std::atomic<PrimitivesIPackage*> gInstance{nullptr};
bool gInitialising = false;

WkMutex& initLock() {
  static WkMutex* lock = new WkMutex();  // lives for the process
  return *lock;
}

}  // namespace

PrimitivesIPackage::PrimitivesIPackage() = default;

PrimitivesIPackage::~PrimitivesIPackage() = default;

PrimitivesIPackage* PrimitivesIPackage::iGetInstance() {
  if (PrimitivesIPackage* built = gInstance.load(std::memory_order_acquire)) return built;
  return init();
}

PrimitivesIPackage* PrimitivesIPackage::init() {
  std::lock_guard<WkMutex> guard(initLock());
  if (PrimitivesIPackage* built = gInstance.load(std::memory_order_acquire)) return built;
  if (gInitialising) return nullptr;  // asked again by the thread that is building it
  // The value properties are typed by the core data types, which the core package makes.
  IcoreIPackage::iGetInstance();
  QVX_ASSERT(ICoreDatatypes::I_STRING != nullptr);
  gInitialising = true;
  auto* package = new PrimitivesIPackage();  // lives for the process
  package->createPackageContents();
  package->initializePackageContents();
  gInstance.store(package, std::memory_order_release);
  gInitialising = false;
  return package;
}

IUString const& PrimitivesIPackage::getIName() {
  static const IUString name("primitives");
  return name;
}

IUString const& PrimitivesIPackage::getIPrefix() {
  static const IUString prefix("com.veltrana.qvx.icore");
  return prefix;
}

IClass* PrimitivesIPackage::getPrimitiveIClass(int classId) const {
  if (classId < 0 || classId >= kClassCount) return nullptr;
  return classes_[classId];
}

void PrimitivesIPackage::createPackageContents() {
  for (int classId = 0; classId < kClassCount; ++classId) {
    classes_[classId] = createIClass(classId);
    createIProperty(classes_[classId], kValuePropertyId);
  }
}

void PrimitivesIPackage::initializePackageContents() {
  setName(getIName());
  setNsPrefix(getIPrefix());
  setVersion(IUString("1.0.0"));
  setComment(IUString());
  QVXRuntime::getInstance()->registerPackage(this);
  // A boxed primitive is a value without identity: VALUE_CLASS, reference scope NONE
  // (so not identifiable, and no proxies). Final, since nothing specialises a value.
  for (int classId = 0; classId < kClassCount; ++classId) {
    const ClassRow& row = kClasses[classId];
    IClass* target = classes_[classId];
    initIClass(target, row.name, IFALSE, IClassKind::VALUE_CLASS, IReferenceScope::NONE, ITRUE, IFALSE, IUString());
    initIProperty(target->getDeclaredProperties()[0], *row.valueType, "value", row.defaultLiteral, 1, 1, nullptr,
                  IFALSE, IFALSE, IFALSE, IFALSE, IFALSE, IFALSE, IUString(), IRedefinability::FINAL_PROPERTY,
                  IReferenceScope::NONE, IUString(), IFALSE);
  }
  PrimitivesIFactory* factory = PrimitivesIFactory::iGetInstance();
  setFactory(factory);
  factory->setPackage(this);
}

}  // namespace com::veltrana::qvx::icore::primitives
