// The package and factory of the test package "com.example.test.shapes", built from
// constant tables like generated package code (see TestPackage.h for the model).
#include "tests/support/TestPackage.h"

#include <iterator>

#include "icore/IClass.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IClassKind.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IReferenceScope.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"

namespace com::example::test::shapes {

using icore::ICoreDatatypes;
using icore::IReferenceScope;
using icore::internal::kNoType;
using icore::internal::PropertyRow;

namespace {

enum TypeId { kStencil, kShape, kCircle, kNote, kDrawing, kLineStyle };

constexpr IReferenceScope const* kNONE = &IReferenceScope::NONE;
constexpr IReferenceScope const* kINTERNAL = &IReferenceScope::INTERNAL;
constexpr IReferenceScope const* kEXTERNAL = &IReferenceScope::EXTERNAL;
constexpr IReferenceScope const* kDEFERRED = &IReferenceScope::DEFERRED;
constexpr unsigned kContained = icore::internal::kContainment | icore::internal::kOrdered;
constexpr unsigned kContainer = icore::internal::kContainer;

constexpr icore::internal::ClassRow kClasses[] = {
    {kStencil, "Stencil", kNoType, false, false, true, &icore::IClassKind::FIRST_CLASS, kEXTERNAL},
    {kShape, "Shape", kNoType, false, false, true, &icore::IClassKind::SECOND_CLASS, kEXTERNAL},
    {kCircle, "Circle", kShape, false, false, true, &icore::IClassKind::SECOND_CLASS, kEXTERNAL},
    {kNote, "Note", kNoType, false, true, false, &icore::IClassKind::VALUE_CLASS, kINTERNAL},
    {kDrawing, "Drawing", kNoType, false, false, false, &icore::IClassKind::FIRST_CLASS, kEXTERNAL},
};

// A row without default literal, redefinition or XML settings.
constexpr PropertyRow row(int owner, int id, const char* name, int type, int minOccurs, int maxOccurs,
                          unsigned flags = 0, IReferenceScope const* scope = kNONE, int oppositeOwner = kNoType,
                          int oppositeId = 0) {
  return {owner, id, name, type, minOccurs, maxOccurs, flags, oppositeOwner, oppositeId, nullptr, scope, nullptr,
          nullptr, nullptr};
}

constexpr int kString = ICoreDatatypes::STRING_TYPE_ID;
constexpr int kInteger = ICoreDatatypes::INTEGER_TYPE_ID;
constexpr int kBoolean = ICoreDatatypes::BOOLEAN_TYPE_ID;
constexpr int kDouble = ICoreDatatypes::DOUBLE_TYPE_ID;

constexpr PropertyRow kProperties[] = {
    row(kStencil, 0, "name", kString, 1, 1),
    row(kStencil, 1, "shapes", kShape, 0, -1, kContained, kINTERNAL, kShape, 4),
    row(kStencil, 2, "note", kNote, 0, 1, kContained, kINTERNAL),
    row(kStencil, 3, "parts", kStencil, 0, -1, kContained, kINTERNAL),
    row(kShape, 0, "name", kString, 1, 1),
    row(kShape, 1, "sides", kInteger, 1, 1),
    row(kShape, 2, "filled", kBoolean, 1, 1),
    row(kShape, 3, "outline", kLineStyle, 1, 1),
    row(kShape, 4, "stencil", kStencil, 0, 1, kContainer, kINTERNAL, kStencil, 1),
    row(kCircle, 5, "radius", kInteger, 1, 1),
    row(kNote, 0, "text", kString, 1, 1),
    row(kDrawing, 0, "name", kString, 1, 1),
    row(kDrawing, 1, "uses", kShape, 0, -1, 0, kDEFERRED),
    row(kDrawing, 2, "background", kShape, 0, 1, 0, kDEFERRED),
    row(kDrawing, 3, "count", kInteger, 1, 1),
    row(kDrawing, 4, "ratio", kDouble, 1, 1),
    row(kDrawing, 5, "data", ICoreDatatypes::BLOB_TYPE_ID, 0, 1),
    row(kDrawing, 6, "style", kLineStyle, 0, 1),
    row(kDrawing, 7, "when", ICoreDatatypes::DATE_TYPE_ID, 0, 1),
    row(kDrawing, 8, "flag", kBoolean, 1, 1),
    row(kDrawing, 9, "initial", ICoreDatatypes::CHARACTER_TYPE_ID, 1, 1),
    row(kDrawing, 10, "weight", ICoreDatatypes::FLOAT_TYPE_ID, 1, 1),
    row(kDrawing, 11, "big", ICoreDatatypes::LONG_TYPE_ID, 1, 1),
    row(kDrawing, 12, "small", ICoreDatatypes::SHORT_TYPE_ID, 1, 1),
    row(kDrawing, 13, "octet", ICoreDatatypes::BYTE_TYPE_ID, 1, 1),
    row(kDrawing, 14, "tags", kString, 0, -1),
    row(kDrawing, 15, "styles", kLineStyle, 0, -1),
    row(kDrawing, 16, "scores", kDouble, 0, -1),
    row(kDrawing, 17, "layers", kDrawing, 0, -1, kContained, kINTERNAL, kDrawing, 18),
    row(kDrawing, 18, "owner", kDrawing, 0, 1, kContainer, kINTERNAL, kDrawing, 17),
    row(kDrawing, 19, "partner", kDrawing, 0, 1, 0, kDEFERRED),
    row(kDrawing, 20, "links", kDrawing, 0, -1, 0, kDEFERRED),
    row(kDrawing, 21, "caption", kNote, 0, 1, kContained, kINTERNAL),
};

constexpr const char* kLineStyleLiterals[] = {"SOLID", "DASHED", "DOTTED"};
constexpr icore::internal::EnumRow kEnums[] = {{kLineStyle, "LineStyle", kLineStyleLiterals, 3, 0}};

constexpr icore::internal::PackageTables kTables = {kClasses, std::size(kClasses), kProperties,
                                                    std::size(kProperties), kEnums, std::size(kEnums)};

void checkOwnClass(icore::IFactory const& factory, icore::IClass const& objectClass) {
  if (objectClass.getPackage() == factory.getPackage()) return;
  throw icore::exception::IllegalArgumentException(
      icore::qvxFormatMsg(73011, IUString("shapes"), objectClass.getQualifiedName()));
}

}  // namespace

ShapesIPackage::~ShapesIPackage() = default;

ShapesIPackage* ShapesIPackage::iGetInstance() {
  return icore::internal::PackageInstance<ShapesIPackage>::process().get(&ShapesIPackage::init);
}

ShapesIPackage* ShapesIPackage::init() {
  auto* package = new ShapesIPackage();  // lives for the process
  package->createContents(kTables);
  package->setName("shapes");
  package->setNsPrefix("com.example.test");
  package->setVersion("1.0.0");
  package->setXMLPackageNsPrefix("shp");
  icore::QVXRuntime::getInstance()->registerPackage(package);
  package->initializeContents(kTables);
  ShapesIFactory* factory = ShapesIFactory::iGetInstance();
  package->setFactory(factory);
  factory->setPackage(package);
  return package;
}

ShapesIFactory* ShapesIFactory::iGetInstance() {
  static auto* factory = new ShapesIFactory();  // lives for the process
  return factory;
}

icore::IObject* ShapesIFactory::create(icore::IClass const& objectClass) {
  checkOwnClass(*this, objectClass);
  return newObject(const_cast<icore::IClass*>(&objectClass), nullptr);
}

icore::IObject* ShapesIFactory::createProxy(icore::IClass const& objectClass, icore::IIdentity const*& identity) {
  checkOwnClass(*this, objectClass);
  if (identity == nullptr) throw icore::exception::IllegalArgumentException(icore::qvxGetMsg(75007));
  if (!objectClass.isIdentifiableClass()) {
    throw icore::exception::InstantiationException(icore::qvxFormatMsg(75009, objectClass.getQualifiedName()));
  }
  return newObject(const_cast<icore::IClass*>(&objectClass), identity);
}

void* ShapesIFactory::datatypeFromString(icore::IDatatype const& datatype, IUString const& text) {
  for (icore::IEnumerationLiteral* literal : static_cast<icore::IEnumeration const&>(datatype).getLiterals()) {
    if (literal->getName() == text) return literal;
  }
  return nullptr;
}

IUString* ShapesIFactory::datatypeToString(icore::IDatatype const&, void const* value) {
  if (value == nullptr) return nullptr;
  return new IUString(static_cast<icore::IEnumerationLiteral const*>(value)->getName());
}

}  // namespace com::example::test::shapes
