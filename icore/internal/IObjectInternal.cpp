#include "icore/internal/IObjectInternal.h"

#include <memory>

#include "icore/IClass.h"
#include "icore/IEncryptionProvider.h"
#include "icore/IEncryptionProviderImpl.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IIdentity.h"
#include "icore/IProperty.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/internal/ClassTable.h"
#include "icore/internal/CollectionAccess.h"
#include "icore/runtime/IdentityExternalizer.h"
#include "icore/runtime/SeedIdentity.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIIdentity.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::internal {

using exception::IdentityException;
using exception::IllegalArgumentException;
using exception::UnresolvedProxyException;
using exception::UnsupportedOperationException;

namespace {
// The element count of a collection that iGet returned, without asking the property
// for its type when the kind already says which vector it is.
std::size_t collectionSize(IProperty const& property, PropertyKind kind, void const* items) {
  if (items == nullptr) return 0;
  switch (kind) {
    case PropertyKind::kReference:
    case PropertyKind::kContainment: return static_cast<IVector<IObject*> const*>(items)->size();
    case PropertyKind::kEnumeration: return static_cast<IVector<IEnumerationLiteral*> const*>(items)->size();
    case PropertyKind::kPrimitive: break;
  }
  return CollectionAccess::size(property, items);
}

IUString classNameOf(IClass const* objectClass) { return objectClass != nullptr ? objectClass->getName() : IUString(); }
IUString qualifiedClassNameOf(IClass const* objectClass) {
  return objectClass != nullptr ? objectClass->getQualifiedName() : IUString();
}
}  // namespace

IObjectInternal::IObjectInternal() : info_(this) {}

IObjectInternal::IObjectInternal(const IObjectInternal& other)
    : IObject(other),
      info_(this),
      proxy_(other.proxy_),
      class_(other.class_),
      container_(other.container_),
      containmentProperty_(other.containmentProperty_) {}

IObjectInternal& IObjectInternal::operator=(const IObjectInternal& other) {
  proxy_ = other.proxy_;
  class_ = other.class_;
  container_ = other.container_;
  containmentProperty_ = other.containmentProperty_;
  return *this;
}

IObjectInternal::~IObjectInternal() = default;

void const* IObjectInternal::iGet(IProperty const&, unsigned int*, IBOOLEAN) const {
  QVX_ASSERT_FAIL("iGet is not implemented by this class");
  return nullptr;
}

void IObjectInternal::iSet(IProperty const&, void*, unsigned int, IBOOLEAN) {
  QVX_ASSERT_FAIL("iSet is not implemented by this class");
}

IIdentity const* IObjectInternal::iGetIdentity() const {
  throw IdentityException(qvxFormatMsg(73008, classNameOf(class_)));
}

void IObjectInternal::iSetIdentity(IIdentity const*&) {
  throw IdentityException(qvxFormatMsg(73008, classNameOf(class_)));
}

IBOOLEAN IObjectInternal::iHasItems(IProperty const&) {
  QVX_ASSERT_FAIL("iHasItems is not implemented by this class");
  return IFALSE;
}

IIdentity const* IObjectInternal::iSetUUIDIdentity(const unsigned char* bytes) {
  std::unique_ptr<IIdentity const> made(new runtime::UUIIdentity(bytes));
  IIdentity const* identity = made.get();
  iSetIdentity(identity);
  made.release();  // the object owns it now
  return identity;
}

void IObjectInternal::iUnsetProxy() {
  if (!proxy_) throw UnsupportedOperationException(qvxGetMsg(75001));
  proxy_ = IFALSE;
}

void IObjectInternal::iResolveProxy(IObject* resolved) {
  if (!proxy_) throw UnsupportedOperationException(qvxGetMsg(75001));
  if (resolved == nullptr) throw IllegalArgumentException(qvxGetMsg(75002));
  IObjectInfo* resolvedInfo = QVXRuntime::getInstance()->getIObjectInfo(resolved);
  QVX_ASSERT(resolvedInfo != nullptr);
  if (resolvedInfo == nullptr) return;
  IObjectInternal* source = resolvedInfo->getAssociatedObject();
  if (class_ != source->iGetIClass()) throw IllegalArgumentException(qvxGetMsg(75003));

  IVector<IProperty*> const& properties = class_->getAllProperties(ITRUE);
  iUnsetProxy();
  for (IProperty* property : properties) {
    if (!property->isCollection()) {
      if (property->isContainer()) continue;
      unsigned int length = 0;
      void* value = const_cast<void*>(source->iGet(*property, &length, IFALSE));
      const bool movesChild = property->isContainment() && value != nullptr;
      // A contained object moves to this object: the source lets go of it first, so
      // that freeing the source does not free it too.
      if (movesChild) source->iSet(*property, nullptr, 0, IFALSE);
      iSet(*property, value, length, IFALSE);
      if (movesChild) static_cast<IObjectInternal*>(static_cast<IObject*>(value))->iSetContainer(this, property);
      continue;
    }
    void const* sourceItems = source->iGet(*property, nullptr, IFALSE);
    void const* ownItems = iGet(*property, nullptr, IFALSE);
    if (sourceItems == nullptr || ownItems == nullptr) continue;
    CollectionAccess::replaceWithCopy(*property, const_cast<void*>(ownItems), sourceItems);
    if (property->isContainment()) {
      // Contained elements move to this object for the same reason as above.
      CollectionAccess::adoptContained(*property, *this, const_cast<void*>(sourceItems));
    }
  }
}

int IObjectInternal::iGetCardinality(IProperty const& property) const {
  if (proxy_) throw UnresolvedProxyException(qvxGetMsg(75000));
  // The class table answers for the class's own properties; a foreign property is
  // described from scratch (and refused by iGet unless it is a datatype or enumeration).
  ClassTable::Entry const* entry = class_ != nullptr ? class_->getClassTable().find(property) : nullptr;
  const bool multiValued = entry != nullptr ? entry->multiValued : property.isCollection() != IFALSE;
  const PropertyKind kind = entry != nullptr ? entry->kind : ClassTable::kindOf(property);
  if (multiValued) return static_cast<int>(collectionSize(property, kind, iGet(property, nullptr, IFALSE)));
  if (kind == PropertyKind::kPrimitive || kind == PropertyKind::kEnumeration) return 1;
  return iGet(property, nullptr, IFALSE) != nullptr ? 1 : 0;
}

IUString IObjectInternal::iGetIdentityString() const {
  IIdentity const* identity = iGetIdentity();
  if (identity == nullptr) return IUString();
  runtime::IdentityExternalizer* externalizer = identity->getIdentityExternalizer();
  if (externalizer == nullptr) throw IdentityException(qvxGetMsg(74000));
  return externalizer->toString(identity);
}

void IObjectInternal::iSetIdentity(IUString const& text) {
  if (class_ == nullptr || !class_->isIdentifiableClass()) {
    throw IdentityException(qvxFormatMsg(73008, classNameOf(class_)));
  }
  std::unique_ptr<IIdentity> made;
  if (class_->isSeeded()) {
    made = std::make_unique<runtime::SeedIdentity>(text);
  } else {
    made = std::make_unique<runtime::StringIdentity>(text);
  }
  IIdentity const* identity = made.get();
  iSetIdentity(identity);
  made.release();  // the object owns it now
}

IBOOLEAN IObjectInternal::instanceOf(IClass const& candidate) const {
  if (class_ == nullptr) return IFALSE;
  if (class_ == &candidate) return ITRUE;
  return class_->isTypeOf(candidate);
}

// The runtime installs the default provider (and owns it) when there is none yet.
IUString IObjectInternal::encrypt(IUString value, IProperty const* property, IObject const* object) {
  return QVXRuntime::getInstance()->getOrInstallEncryptionProvider()->encrypt(std::move(value), property, object);
}

IUString IObjectInternal::decrypt(IUString value, IProperty const* property, IObject const* object) {
  return QVXRuntime::getInstance()->getOrInstallEncryptionProvider()->decrypt(std::move(value), property, object);
}

void IObjectInternal::performChecksBeforeSet() const {
  if (iGetIdentity() != nullptr) throw IdentityException(qvxGetMsg(74002));
}

void IObjectInternal::throwProxyAccess() { throw UnresolvedProxyException(qvxGetMsg(75004)); }

void IObjectInternal::throwUnknownGet(IProperty const& property) const {
  throw IllegalArgumentException(qvxFormatMsg(73005, property.getName(), qualifiedClassNameOf(class_)));
}

void IObjectInternal::throwUnknownSet(IProperty const& property) const {
  throw IllegalArgumentException(qvxFormatMsg(73006, property.getName(), qualifiedClassNameOf(class_)));
}

void IObjectInternal::throwCollectionSet(IProperty const& property) const {
  throw IllegalArgumentException(qvxFormatMsg(73010, property.getName(), classNameOf(class_)));
}

void IObjectInternal::throwNotMultiValued(IProperty const& property) const {
  checkNotProxy();
  throwUnknownGet(property);
}

}  // namespace com::veltrana::qvx::icore::internal
