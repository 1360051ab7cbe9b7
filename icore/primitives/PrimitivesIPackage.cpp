#include "icore/primitives/PrimitivesIPackage.h"

#include <iterator>

#include "icore/IClass.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/primitives/PrimitivesIFactory.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::primitives {

namespace {

using internal::ClassRow;
using internal::kNoType;
using internal::PropertyRow;
using P = PrimitivesIPackage;
using D = ICoreDatatypes;

// A boxed primitive is a value without identity: VALUE_CLASS, reference scope NONE (so
// not identifiable, and no proxies). Final, since nothing specialises a value.
constexpr IClassKind const* kVALUE = &IClassKind::VALUE_CLASS;
constexpr IReferenceScope const* kNONE = &IReferenceScope::NONE;

const ClassRow kClasses[] = {
    {P::kIBlobClassId, "IBlob", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIBooleanClassId, "IBoolean", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIByteClassId, "IByte", kNoType, false, true, false, kVALUE, kNONE},
    {P::kICharacterClassId, "ICharacter", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIDateClassId, "IDate", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIDoubleClassId, "IDouble", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIFloatClassId, "IFloat", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIIntegerClassId, "IInteger", kNoType, false, true, false, kVALUE, kNONE},
    {P::kILongClassId, "ILong", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIShortClassId, "IShort", kNoType, false, true, false, kVALUE, kNONE},
    {P::kIStringClassId, "IString", kNoType, false, true, false, kVALUE, kNONE},
};

// Each class's one property "value" (id 0), single-valued and of the matching core data
// type. IByte's default is the boolean literal "false". That is deliberate: the literal
// is part of the package's published metadata, so it is not "corrected".
const PropertyRow kProperties[] = {
    {P::kIBlobClassId, 0, "value", D::BLOB_TYPE_ID, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {P::kIBooleanClassId, 0, "value", D::BOOLEAN_TYPE_ID, 1, 1, 0, kNoType, 0, "false", kNONE, nullptr, nullptr, nullptr},
    {P::kIByteClassId, 0, "value", D::BYTE_TYPE_ID, 1, 1, 0, kNoType, 0, "false", kNONE, nullptr, nullptr, nullptr},
    {P::kICharacterClassId, 0, "value", D::CHARACTER_TYPE_ID, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
    {P::kIDateClassId, 0, "value", D::DATE_TYPE_ID, 1, 1, 0, kNoType, 0, "01/01/1970:00:00:00.000", kNONE, nullptr, nullptr, nullptr},
    {P::kIDoubleClassId, 0, "value", D::DOUBLE_TYPE_ID, 1, 1, 0, kNoType, 0, "0.0", kNONE, nullptr, nullptr, nullptr},
    {P::kIFloatClassId, 0, "value", D::FLOAT_TYPE_ID, 1, 1, 0, kNoType, 0, "0.0", kNONE, nullptr, nullptr, nullptr},
    {P::kIIntegerClassId, 0, "value", D::INTEGER_TYPE_ID, 1, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {P::kILongClassId, 0, "value", D::LONG_TYPE_ID, 1, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {P::kIShortClassId, 0, "value", D::SHORT_TYPE_ID, 1, 1, 0, kNoType, 0, "0", kNONE, nullptr, nullptr, nullptr},
    {P::kIStringClassId, 0, "value", D::STRING_TYPE_ID, 1, 1, 0, kNoType, 0, nullptr, kNONE, nullptr, nullptr, nullptr},
};

const internal::PackageTables kTables = {kClasses, std::size(kClasses), kProperties, std::size(kProperties),
                                         nullptr, 0};

}  // namespace

PrimitivesIPackage::PrimitivesIPackage() = default;

PrimitivesIPackage::~PrimitivesIPackage() = default;

PrimitivesIPackage* PrimitivesIPackage::iGetInstance() {
  return internal::PackageInstance<PrimitivesIPackage>::process().get(&PrimitivesIPackage::init);
}

PrimitivesIPackage* PrimitivesIPackage::init() {
  // The value properties are typed by the core data types, which the core package makes.
  IcoreIPackage::iGetInstance();
  QVX_ASSERT(ICoreDatatypes::I_STRING != nullptr);
  internal::PackageUnderConstruction<PrimitivesIPackage> package(new PrimitivesIPackage());
  package->createPackageContents();
  package->initializePackageContents();
  return package.release();  // lives for the process
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
  createContents(kTables);
  for (int classId = 0; classId < kClassCount; ++classId) classes_[classId] = classById(classId);
}

void PrimitivesIPackage::initializePackageContents() {
  setName(getIName());
  setNsPrefix(getIPrefix());
  setVersion(IUString("1.0.0"));
  setComment(IUString());
  QVXRuntime::getInstance()->registerPackage(this);
  initializeContents(kTables);
  PrimitivesIFactory* factory = PrimitivesIFactory::iGetInstance();
  setFactory(factory);
  factory->setPackage(this);
}

}  // namespace com::veltrana::qvx::icore::primitives
