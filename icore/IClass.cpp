#include "icore/IClass.h"

#include <mutex>

#include "icore/IClassKind.h"
#include "icore/IFactory.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IReferenceScope.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/InstantiationException.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

IClass::IClass() : classKind_(&IClassKind::UNSET), referenceScope_(&IReferenceScope::UNSET) {
  if (IcoreIPackage* core = IcoreIPackage::iGetInstance()) iSetIClass(core->getIClassIClass());
}

IClass::~IClass() {
  for (IProperty* property : declaredProperties_) delete property;
}

IClassKind const& IClass::getClassKind() const {
  QVX_ASSERT(classKind_ != nullptr);
  return *classKind_;
}

IReferenceScope const& IClass::getReferenceScope() const {
  QVX_ASSERT(referenceScope_ != nullptr);
  return *referenceScope_;
}

IBOOLEAN IClass::isFirstClass() const { return classKind_ == &IClassKind::FIRST_CLASS; }
IBOOLEAN IClass::isSecondClass() const { return classKind_ == &IClassKind::SECOND_CLASS; }
IBOOLEAN IClass::isValueClass() const { return classKind_ == &IClassKind::VALUE_CLASS; }
IBOOLEAN IClass::isIdentifiableClass() const { return referenceScope_ == &IReferenceScope::EXTERNAL; }

IBOOLEAN IClass::isInternallyReferable() const {
  return referenceScope_ == &IReferenceScope::INTERNAL || classKind_ == &IClassKind::VALUE_CLASS;
}

namespace {
template <typename Property>
Property* findByName(IVector<IProperty*> const& properties, IUString const& name) {
  for (IProperty* property : properties) {
    if (property->getName() == name) return property;
  }
  return nullptr;
}
}  // namespace

IProperty* IClass::getDeclaredProperty(IUString const& name) {
  return findByName<IProperty>(declaredProperties_, name);
}

IProperty const* IClass::getDeclaredProperty(IUString const& name) const {
  return findByName<IProperty const>(declaredProperties_, name);
}

IProperty* IClass::getProperty(IUString const& name) { return findByName<IProperty>(getAllProperties(ITRUE), name); }

IProperty const* IClass::getProperty(IUString const& name) const {
  return findByName<IProperty const>(getAllProperties(ITRUE), name);
}

IVector<IClass*> const& IClass::getAllSuperTypes() const {
  if (superTypesValid_.load(std::memory_order_acquire)) return *superTypes_;
  std::lock_guard<WkMutex> guard(superTypesLock_);
  if (!superTypesValid_.load(std::memory_order_relaxed)) {
    auto list = std::make_unique<IVector<IClass*>>(10, 200, 1000);
    for (IClass* ancestor = superClass_; ancestor != nullptr; ancestor = ancestor->superClass_) {
      list->insertFront(ancestor);
    }
    superTypes_ = std::move(list);
    superTypesValid_.store(true, std::memory_order_release);
  }
  return *superTypes_;
}

std::unique_ptr<IVector<IProperty*>> IClass::getInheritedProperties(IBOOLEAN keepRedefined) const {
  auto list = std::make_unique<IVector<IProperty*>>(10, 200, 1000);
  for (IClass* ancestor : getAllSuperTypes()) {
    for (IProperty* property : ancestor->declaredProperties_) list->append(property);
  }
  if (!keepRedefined) pruneRedefinedProperties(*list);
  return list;
}

void IClass::pruneRedefinedProperties(IVector<IProperty*>& list) {
  IVector<IProperty*> redefined;
  for (IProperty* property : list) {
    QVX_ASSERT(property != nullptr);
    if (property == nullptr) continue;
    if (IProperty* target = property->getRedefinedProperty()) redefined.append(target);
  }
  for (IProperty* target : redefined) {
    while (list.removeElement(target)) {
    }
  }
}

IVector<IProperty*> const& IClass::getAllProperties(IBOOLEAN keepRedefined) const {
  PropertyCache& cache = keepRedefined ? allProperties_ : prunedProperties_;
  if (cache.valid.load(std::memory_order_acquire)) return *cache.list;
  std::lock_guard<WkMutex> guard(propertyCacheLock_);
  if (!cache.valid.load(std::memory_order_relaxed)) {
    std::unique_ptr<IVector<IProperty*>> list = getInheritedProperties(keepRedefined);
    for (IProperty* property : declaredProperties_) list->append(property);
    if (!keepRedefined) pruneRedefinedProperties(*list);
    cache.list = std::move(list);
    cache.valid.store(true, std::memory_order_release);
  }
  return *cache.list;
}

internal::ClassTable const& IClass::buildClassTable() const {
  std::lock_guard<WkMutex> guard(propertyCacheLock_);
  if (classTableOwner_ == nullptr) {
    classTableOwner_ = std::make_unique<internal::ClassTable const>(*this);
    classTable_.store(classTableOwner_.get(), std::memory_order_release);
  }
  return *classTableOwner_;
}

IBOOLEAN IClass::isTypeOf(IClass const& other) const {
  if (&other == this) return ITRUE;
  return getAllSuperTypes().contains(const_cast<IClass*>(&other)) ? ITRUE : IFALSE;
}

IObject* IClass::create() const {
  if (abstract_) throw exception::InstantiationException(qvxFormatMsg(73000, getName()));
  IPackage const* package = getPackage();
  QVX_ASSERT(package != nullptr && package->getFactory() != nullptr);
  if (package == nullptr || package->getFactory() == nullptr) return nullptr;
  return const_cast<IFactory*>(package->getFactory())->create(*this);
}

IObject* IClass::createProxy(IIdentity const*& identity) const {
  IPackage const* package = getPackage();
  QVX_ASSERT(package != nullptr && package->getFactory() != nullptr);
  if (package == nullptr || package->getFactory() == nullptr) return nullptr;
  return const_cast<IFactory*>(package->getFactory())->createProxy(*this, identity);
}

void const* IClass::iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const {
  switch (property.getPropertyId()) {
    case 3: return &abstract_;
    case 4: return &final_;
    case 5: return &seeded_;
    case 6: return &declaredProperties_;
    case 7: return static_cast<IObject const*>(superClass_);
    case 8: return IcoreIPackage::iGetInstance()->literalOf(*classKind_);
    case 9: return IcoreIPackage::iGetInstance()->literalOf(*referenceScope_);
    default: return IType::iGet(property, index, flag);
  }
}

void IClass::iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) {
  switch (property.getPropertyId()) {
    case 3: setAbstract(*static_cast<IBOOLEAN*>(value)); return;
    case 4: setFinal(*static_cast<IBOOLEAN*>(value)); return;
    case 5: setSeeded(*static_cast<IBOOLEAN*>(value)); return;
    case 6: throwElementCollectionSet(property);
    case 7: setSuperClass(static_cast<IClass*>(static_cast<IObject*>(value))); return;
    case 8: classKind_ = enumerationValue(IcoreIPackage::iGetInstance()->classKindOf(value), property); return;
    case 9: referenceScope_ = enumerationValue(IcoreIPackage::iGetInstance()->referenceScopeOf(value), property); return;
    default: IType::iSet(property, value, index, flag); return;
  }
}

IBOOLEAN IClass::iHasItems(IProperty const& property) {
  if (property.getPropertyId() == 6) return declaredProperties_.isEmpty() ? IFALSE : ITRUE;
  return IType::iHasItems(property);
}

}  // namespace com::veltrana::qvx::icore
