#include "icore/IModelElement.h"

#include <mutex>

#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

using exception::IllegalArgumentException;

IModelElement::IModelElement() = default;

IModelElement::~IModelElement() = default;

void IModelElement::iSetIdentity(IIdentity const*& identity) {
  performChecksBeforeSet();
  identity_.reset(identity);
}

IUString const& IModelElement::getQualifiedName() const {
  if (qualifiedNameReady_.load(std::memory_order_acquire)) return qualifiedName_;
  std::lock_guard<WkMutex> guard(lock_);
  if (qualifiedNameReady_.load(std::memory_order_relaxed)) return qualifiedName_;
  QVX_ASSERT(!name_.isEmpty());
  const IUString ns = getNamespace();
  qualifiedName_ = ns.isEmpty() ? name_ : ns + IUString(u".") + name_;
  qualifiedNameReady_.store(true, std::memory_order_release);
  return qualifiedName_;
}

IUString IModelElement::getNamespace() const { return IUString(); }

void const* IModelElement::iGet(IProperty const& property, unsigned int*, IBOOLEAN) const {
  switch (property.getPropertyId()) {
    case 0: return &name_;
    case 1: return &comment_;
    default: throwUnknownElementGet(property);
  }
}

void IModelElement::iSet(IProperty const& property, void* value, unsigned int, IBOOLEAN) {
  switch (property.getPropertyId()) {
    case 0: setName(*static_cast<IUString*>(value)); return;
    case 1: setComment(*static_cast<IUString*>(value)); return;
    default: throwUnknownElementSet(property);
  }
}

IBOOLEAN IModelElement::iHasItems(IProperty const& property) { throwUnknownElementGet(property); }

void IModelElement::throwUnknownElementGet(IProperty const& property) const {
  throw IllegalArgumentException(qvxFormatMsg(73005, property.getName(), name_));
}

void IModelElement::throwUnknownElementSet(IProperty const& property) const {
  throw IllegalArgumentException(qvxFormatMsg(73006, property.getName(), name_));
}

void IModelElement::throwElementCollectionSet(IProperty const& property) const {
  throw IllegalArgumentException(qvxFormatMsg(73010, property.getName(), name_));
}

}  // namespace com::veltrana::qvx::icore
