#include "icore/IObjectInfo.h"

#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/internal/IObjectInternal.h"

namespace com::veltrana::qvx::icore {

IObjectInfo::IObjectInfo(internal::IObjectInternal* object) : object_(object) {
  if (object == nullptr) throw exception::IllegalArgumentException(qvxGetMsg(73009));
}

void IObjectInfo::throwProxy() { throw exception::UnresolvedProxyException(qvxGetMsg(75000)); }

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

void IObjectInfo::resolveProxy(IObject* resolved) { object_->iResolveProxy(resolved); }

void IObjectInfo::unsetProxy() { object_->iUnsetProxy(); }

IObject const* IObjectInfo::getContainer() const { return object_->iGetContainer(); }

IProperty const* IObjectInfo::getContainmentProperty() const { return object_->iGetContainmentProperty(); }

}  // namespace com::veltrana::qvx::icore
