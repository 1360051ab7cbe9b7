// The object classes of the test package. Each keeps its values in typed members and
// serves the reflective protocol as a switch over property ids, after the access
// checks of IObjectInternal: a property of another class gives 73005, a proxy 75004.
#include <atomic>
#include <utility>

#include "icore/IClass.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "platform/QvxAssert.h"
#include "tests/support/TestPackage.h"

namespace com::example::test::shapes {

using icore::IObject;
using icore::IProperty;
using icore::internal::IObjectInternal;

namespace {

std::atomic<int> gLiveObjects{0};

ShapesIPackage* package() {
  ShapesIPackage* built = ShapesIPackage::iGetInstance();
  QVX_ASSERT(built != nullptr);
  return built;
}

// Reference values pass the reflective interface as object pointers.
IObjectInternal* asObject(void* value) { return static_cast<IObjectInternal*>(static_cast<IObject*>(value)); }
void const* asValue(IObject const* object) { return object; }

void deleteAll(IVector<IObject*>& objects) {
  for (IObject* object : objects) delete object;
  objects.clear();
}

}  // namespace

int liveObjectCount() { return gLiveObjects.load(); }

IdentifiedObject::IdentifiedObject() { ++gLiveObjects; }

IdentifiedObject::~IdentifiedObject() { --gLiveObjects; }

void IdentifiedObject::iSetIdentity(icore::IIdentity const*& identity) {
  performChecksBeforeSet();
  identity_.reset(identity);
}

void IdentifiedObject::becomeProxy(icore::IIdentity const*& identity) {
  identity_.reset(identity);
  iSetProxy();
}

Stencil::Stencil() { iSetIClass(package()->getStencilIClass()); }

Stencil::~Stencil() {
  deleteAll(shapes_);
  delete note_;
  deleteAll(parts_);
}

IUString const& Stencil::getName() const {
  checkNotProxy();
  return name_;
}

void Stencil::setName(IUString name) {
  checkNotProxy();
  name_ = std::move(name);
}

IVector<IObject*>& Stencil::getShapes() {
  checkNotProxy();
  return shapes_;
}

void Stencil::addShape(Shape* shape) {
  checkNotProxy();
  shape->iSetContainer(this, package()->getStencil_ShapesIProperty());
  shapes_.append(shape);
}

Note* Stencil::getNote() {
  checkNotProxy();
  return note_;
}

void Stencil::setNote(Note* note) {
  checkNotProxy();
  if (note_ != nullptr) note_->iSetContainer(nullptr, nullptr);
  note_ = note;
  if (note_ != nullptr) note_->iSetContainer(this, package()->getStencil_NoteIProperty());
}

IVector<IObject*>& Stencil::getParts() {
  checkNotProxy();
  return parts_;
}

void const* Stencil::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case 0: return &name_;
    case 1: return &shapes_;
    case 2: return asValue(note_);
    case 3: return &parts_;
    default: throwUnknownGet(property);
  }
}

void Stencil::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case 0: name_ = *static_cast<IUString*>(value); return;
    case 1: throwCollectionSet(property);
    case 2: setNote(static_cast<Note*>(asObject(value))); return;
    case 3: throwCollectionSet(property);
    default: throwUnknownSet(property);
  }
}

IBOOLEAN Stencil::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  if (property.getPropertyId() == 1) return shapes_.isEmpty() ? IFALSE : ITRUE;
  if (property.getPropertyId() == 3) return parts_.isEmpty() ? IFALSE : ITRUE;
  throwNotMultiValued(property);
}

Shape::Shape() {
  ShapesIPackage* shapes = package();
  iSetIClass(shapes->getShapeIClass());
  outline_ = shapes->getLineStyleIEnumeration()->getDefaultLiteral();
}

Shape::~Shape() = default;

IUString const& Shape::getName() const {
  checkNotProxy();
  return name_;
}

void Shape::setName(IUString name) {
  checkNotProxy();
  name_ = std::move(name);
}

std::int32_t Shape::getSides() const {
  checkNotProxy();
  return sides_;
}

void Shape::setSides(std::int32_t sides) {
  checkNotProxy();
  sides_ = sides;
}

IBOOLEAN Shape::isFilled() const {
  checkNotProxy();
  return filled_;
}

void Shape::setFilled(IBOOLEAN filled) {
  checkNotProxy();
  filled_ = filled;
}

icore::IEnumerationLiteral* Shape::getOutline() const {
  checkNotProxy();
  return outline_;
}

void Shape::setOutline(icore::IEnumerationLiteral* outline) {
  checkNotProxy();
  outline_ = outline;
}

Stencil* Shape::getStencil() const {
  checkNotProxy();
  if (iGetContainmentProperty() != package()->getStencil_ShapesIProperty()) return nullptr;
  return static_cast<Stencil*>(const_cast<IObjectInternal*>(iGetContainer()));
}

void const* Shape::getShapeValue(IProperty const& property) const {
  switch (property.getPropertyId()) {
    case 0: return &name_;
    case 1: return &sides_;
    case 2: return &filled_;
    case 3: return outline_;
    case 4: return asValue(getStencil());
    default: throwUnknownGet(property);
  }
}

void Shape::setShapeValue(IProperty const& property, void* value) {
  switch (property.getPropertyId()) {
    case 0: name_ = *static_cast<IUString*>(value); return;
    case 1: sides_ = *static_cast<std::int32_t*>(value); return;
    case 2: filled_ = *static_cast<IBOOLEAN*>(value); return;
    case 3: outline_ = static_cast<icore::IEnumerationLiteral*>(value); return;
    case 4: iSetContainer(asObject(value), value != nullptr ? package()->getStencil_ShapesIProperty() : nullptr); return;
    default: throwUnknownSet(property);
  }
}

void const* Shape::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  return getShapeValue(property);
}

void Shape::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  setShapeValue(property, value);
}

IBOOLEAN Shape::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  throwNotMultiValued(property);
}

Circle::Circle() { iSetIClass(package()->getCircleIClass()); }

Circle::~Circle() = default;

std::int32_t Circle::getRadius() const {
  checkNotProxy();
  return radius_;
}

void Circle::setRadius(std::int32_t radius) {
  checkNotProxy();
  radius_ = radius;
}

void const* Circle::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  if (property.getPropertyId() == 5) return &radius_;
  return getShapeValue(property);
}

void Circle::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  if (property.getPropertyId() == 5) {
    radius_ = *static_cast<std::int32_t*>(value);
    return;
  }
  setShapeValue(property, value);
}

Note::Note() {
  iSetIClass(package()->getNoteIClass());
  ++gLiveObjects;
}

Note::~Note() { --gLiveObjects; }

IUString const& Note::getText() const {
  checkNotProxy();
  return text_;
}

void Note::setText(IUString text) {
  checkNotProxy();
  text_ = std::move(text);
}

void const* Note::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  if (property.getPropertyId() == 0) return &text_;
  throwUnknownGet(property);
}

void Note::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  if (property.getPropertyId() == 0) {
    text_ = *static_cast<IUString*>(value);
    return;
  }
  throwUnknownSet(property);
}

IBOOLEAN Note::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  throwNotMultiValued(property);
}

Drawing::Drawing() { iSetIClass(package()->getDrawingIClass()); }

Drawing::~Drawing() = default;

IUString const& Drawing::getTitle() const {
  checkNotProxy();
  return title_;
}

void Drawing::setTitle(IUString title) {
  checkNotProxy();
  title_ = std::move(title);
}

IVector<IObject*>& Drawing::getUses() {
  checkNotProxy();
  return uses_;
}

IObject* Drawing::getBackground() const {
  checkNotProxy();
  return background_;
}

void Drawing::setBackground(IObject* shape) {
  checkNotProxy();
  background_ = shape;
}

void const* Drawing::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case 0: return &title_;
    case 1: return &uses_;
    case 2: return asValue(background_);
    default: throwUnknownGet(property);
  }
}

void Drawing::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case 0: title_ = *static_cast<IUString*>(value); return;
    case 1: throwCollectionSet(property);
    case 2: background_ = static_cast<IObject*>(value); return;
    default: throwUnknownSet(property);
  }
}

IBOOLEAN Drawing::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  if (property.getPropertyId() == 1) return uses_.isEmpty() ? IFALSE : ITRUE;
  throwNotMultiValued(property);
}

}  // namespace com::example::test::shapes
