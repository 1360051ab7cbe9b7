#include "examples/catalog/Position.h"

#include "examples/catalog/CatalogSupport.h"
#include "icore/IClass.h"
#include "icore/IProperty.h"
#include "platform/QvxAssert.h"

namespace com::example::catalog {

Position::Position() : Position(0, 0) {}

Position::Position(std::int32_t x, std::int32_t y) : x_(x), y_(y) {
  CatalogIPackage* package = CatalogIPackage::iGetInstance();
  QVX_ASSERT(package != nullptr);
  if (package != nullptr) iSetIClass(package->getPositionIClass());
}

Position::~Position() = default;

std::int32_t Position::getX() const {
  checkNotProxy();
  return x_;
}

void Position::setX(std::int32_t x) {
  checkNotProxy();
  x_ = x;
}

std::int32_t Position::getY() const {
  checkNotProxy();
  return y_;
}

void Position::setY(std::int32_t y) {
  checkNotProxy();
  y_ = y;
}

void const* Position::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case kXPropertyId: return &x_;
    case kYPropertyId: return &y_;
    default: throwUnknownGet(property);
  }
}

void Position::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  checkPropertyAccess(property);
  switch (property.getPropertyId()) {
    case kXPropertyId: support::assignOrDefault(x_, value, std::int32_t{0}); return;
    case kYPropertyId: support::assignOrDefault(y_, value, std::int32_t{0}); return;
    default: throwUnknownSet(property);
  }
}

IBOOLEAN Position::iHasItems(IProperty const& property) {
  checkPropertyAccess(property);
  throwNotMultiValued(property);
}

}  // namespace com::example::catalog
