#include "icore/IObjectInfo.h"

#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/internal/IObjectInternal.h"

namespace com::veltrana::qvx::icore {

IObjectInfo::IObjectInfo(internal::IObjectInternal* object) : object_(object) {
  if (object == nullptr) throw exception::IllegalArgumentException(qvxGetMsg(73009));
}

void IObjectInfo::checkNotProxy() const {
  if (object_->iIsProxy()) throw exception::UnresolvedProxyException(qvxGetMsg(75000));
}

IClass const* IObjectInfo::getIClass() const { return object_->iGetIClass(); }

void const* IObjectInfo::get(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  return object_->iGet(property, index, flag);
}

void const* IObjectInfo::get(IProperty const& property, IBOOLEAN flag) const {
  return object_->iGet(property, nullptr, flag);
}

void IObjectInfo::set(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  checkNotProxy();
  object_->iSet(property, value, index, flag);
}

void IObjectInfo::set(IProperty const& property, void* value, IBOOLEAN flag) { object_->iSet(property, value, 0, flag); }

int IObjectInfo::getCardinality(IProperty const& property) const {
  checkNotProxy();
  return object_->iGetCardinality(property);
}

IBOOLEAN IObjectInfo::hasItems(IProperty const& property) {
  checkNotProxy();
  return object_->iHasItems(property);
}

IIdentity const* IObjectInfo::getIdentity() const { return object_->iGetIdentity(); }

void IObjectInfo::setIdentity(IIdentity const*& identity) {
  checkNotProxy();
  object_->iSetIdentity(identity);
}

IUString IObjectInfo::getIdentityString() const { return object_->iGetIdentityString(); }

void IObjectInfo::setIdentityString(IUString const& text) {
  checkNotProxy();
  object_->iSetIdentity(text);
}

IBOOLEAN IObjectInfo::isProxy() const { return object_->iIsProxy(); }

void IObjectInfo::resolveProxy(IObject* resolved) { object_->iResolveProxy(resolved); }

void IObjectInfo::unsetProxy() { object_->iUnsetProxy(); }

IObject const* IObjectInfo::getContainer() const { return object_->iGetContainer(); }

IProperty const* IObjectInfo::getContainmentProperty() const { return object_->iGetContainmentProperty(); }

}  // namespace com::veltrana::qvx::icore
