#include "icore/QVXRuntime.h"

#include <memory>
#include <mutex>

#include "icore/IClass.h"
#include "icore/IEncryptionProvider.h"
#include "icore/IEncryptionProviderImpl.h"
#include "icore/IIdentity.h"
#include "icore/IObjectReflector.h"
#include "icore/IPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/internal/IdentityManager.h"
#include "icore/primitives/IBlob.h"
#include "icore/primitives/IBoolean.h"
#include "icore/primitives/IByte.h"
#include "icore/primitives/ICharacter.h"
#include "icore/primitives/IDate.h"
#include "icore/primitives/IDouble.h"
#include "icore/primitives/IFloat.h"
#include "icore/primitives/IInteger.h"
#include "icore/primitives/ILong.h"
#include "icore/primitives/IShort.h"
#include "icore/primitives/IString.h"
#include "icore/primitives/PrimitivesIFactory.h"
#include "icore/runtime/PackageRegistration.h"
#include "icore/runtime/SeedRegistry.h"
#include "icore/runtime/UUIIdentity.h"
#include "io/ResourceResolver.h"
#include "platform/DynLoadLib.h"
#include "platform/QvxAssert.h"
#include "platform/WkSystem.h"

namespace com::veltrana::qvx::icore {

using exception::IllegalArgumentException;

IUString const QVXRuntime::QVX_VERSION("9.5.0");
IUString const QVXRuntime::QVX_ENCRYPTION_PROVIDER_LIBRARY("QVX_ENCRYPTION_PROVIDER_LIBRARY");
char const* const QVXRuntime::QVX_ENCRYPTION_PROVIDER_FUNCTION = "getEncryptionProviderInstance";
QVXRuntime* QVXRuntime::I_INSTANCE = nullptr;

namespace {
bool gInstanceCreated = false;
// Set before the provider library named by the environment is tried, so that it is
// tried at most once per process.
bool gProviderLoadAttempted = false;
}  // namespace

QVXRuntime* QVXRuntime::getInstance() {
  static WkMutex* lock = new WkMutex();  // lives for the process
  std::lock_guard<WkMutex> guard(*lock);
  if (!gInstanceCreated) {
    I_INSTANCE = new QVXRuntime();
    QVX_ASSERT(I_INSTANCE != nullptr);
    gInstanceCreated = true;
  }
  return I_INSTANCE;
}

QVXRuntime::QVXRuntime()
    : identityManager_(internal::IdentityManager::getInstance()),
      seedRegistry_(runtime::SeedRegistry::getInstance()),
      packageTable_(64) {}

QVXRuntime::~QVXRuntime() { delete encryptionProvider_.load(); }

void QVXRuntime::registerPackage(IPackage* package) const {
  if (package == nullptr) throw IllegalArgumentException(qvxGetMsg(73009));
  const IUString& name = package->getQualifiedName();
  std::lock_guard<WkMutex> guard(registryLock_);
  auto [entry, inserted] = packageTable_.emplace(name, package);
  if (inserted) {
    packageList_.append(package);
    return;
  }
  if (entry->second != package) throw IllegalArgumentException(qvxFormatMsg(73007, name));
}

IBOOLEAN QVXRuntime::deregisterPackage(IPackage* package) {
  if (package == nullptr) return IFALSE;
  const IUString& name = package->getQualifiedName();
  std::lock_guard<WkMutex> guard(registryLock_);
  return packageTable_.erase(name) > 0 ? ITRUE : IFALSE;
}

void QVXRuntime::withdrawPackage(IPackage const* package) {
  std::lock_guard<WkMutex> guard(registryLock_);
  for (auto entry = packageTable_.begin(); entry != packageTable_.end(); ++entry) {
    if (entry->second != package) continue;
    packageTable_.erase(entry);
    break;
  }
  while (packageList_.removeElement(const_cast<IPackage*>(package))) {
  }
}

IPackage* QVXRuntime::getIPackageForName(IUString const& qualifiedName) {
  std::lock_guard<WkMutex> guard(registryLock_);
  auto found = packageTable_.find(qualifiedName);
  return found != packageTable_.end() ? found->second : nullptr;
}

IBOOLEAN QVXRuntime::isPackageRegistered(IUString const& qualifiedName) {
  return getIPackageForName(qualifiedName) != nullptr ? ITRUE : IFALSE;
}

IVector<IPackage*> QVXRuntime::getAllIPackages() const {
  std::lock_guard<WkMutex> guard(registryLock_);
  return packageList_;
}

ISTATUS QVXRuntime::loadPackageLibrary(IUString const& packageName, IUString& error) {
  return runtime::PackageRegistration::loadPackageLibrary(packageName, error);
}

void QVXRuntime::registerPackageLibraryResolver(PackageLibraryResolver resolver) {
  runtime::PackageRegistration::registerPackageLibraryResolver(resolver);
}

QVXRuntime::PackageLibraryResolver QVXRuntime::getPackageLibraryResolver() {
  return runtime::PackageRegistration::getPackageLibraryResolver();
}

void QVXRuntime::registerQVXResourceResolver(ResourceResolver resolver) {
  io::ResourceResolver::registerQVXResourceResolver(resolver);
}

QVXRuntime::ResourceResolver QVXRuntime::getQVXResourceResolver() {
  return io::ResourceResolver::getQVXResourceResolver();
}

IClass const* QVXRuntime::getIClass(IObject const* object) const {
  IObjectInfo const* info = getIObjectInfo(object);
  return info != nullptr ? info->getIClass() : nullptr;
}

IObjectInfo const* QVXRuntime::getIObjectInfo(IObject const* object) const {
  if (object == nullptr) return nullptr;
  return IObjectReflector::getInstance()->getIObjectInfo(object);
}

IObjectInfo* QVXRuntime::getIObjectInfo(IObject* object) {
  if (object == nullptr) return nullptr;
  return IObjectReflector::getInstance()->getIObjectInfo(object);
}

IIdentity* QVXRuntime::generateNewId() { return identityManager_->generateNewId(); }

IIdentity const* QVXRuntime::assignUUID(IObject* object) const {
  if (object == nullptr) return nullptr;
  IObjectInfo* info = IObjectReflector::getInstance()->getIObjectInfo(object);
  IClass const* objectClass = info->getIClass();
  if (objectClass == nullptr || !objectClass->isIdentifiableClass()) {
    throw exception::IdentityException(
        qvxFormatMsg(73008, objectClass != nullptr ? objectClass->getName() : IUString()));
  }
  // The facade's setIdentity would refuse a proxy; the identity is then made in place
  // by the object (iSetUUIDIdentity), which saves a heap block per object.
  if (info->isProxy()) throw exception::UnresolvedProxyException(qvxGetMsg(75000));
  unsigned char bytes[runtime::UUIIdentity::kByteCount];
  identityManager_->generateNewUUIDBytes(bytes);
  return info->getAssociatedObject()->iSetUUIDIdentity(bytes);
}

IUString QVXRuntime::identityToString(IIdentity const* identity) { return identityManager_->identityToString(identity); }

IIdentity* QVXRuntime::identityFromString(IUString const& text) const {
  return identityManager_->identityFromString(text);
}

IBOOLEAN QVXRuntime::registerIdentityExternalizer(runtime::IdentityExternalizer* externalizer) {
  return identityManager_->registerExternalizer(externalizer);
}

runtime::SeedRegistry& QVXRuntime::getSeedRegistry() const {
  QVX_ASSERT(seedRegistry_ != nullptr);
  return *seedRegistry_;
}

void QVXRuntime::registerEncryptionProvider(IEncryptionProvider* provider) {
  std::lock_guard<WkMutex> guard(encryptionLock_);
  encryptionProvider_ = provider;
}

IEncryptionProvider* QVXRuntime::getEncryptionProvider() const {
  if (IEncryptionProvider* provider = encryptionProvider_.load(std::memory_order_acquire)) return provider;
  std::lock_guard<WkMutex> guard(encryptionLock_);
  if (!gProviderLoadAttempted) {
    gProviderLoadAttempted = true;
    const IUString library = wkGetEnv(QVX_ENCRYPTION_PROVIDER_LIBRARY);
    IUString ignored;
    if (!library.isEmpty()) const_cast<QVXRuntime*>(this)->registerExternalModule(library, ignored);
  }
  return encryptionProvider_;
}

IEncryptionProvider* QVXRuntime::getOrInstallEncryptionProvider() {
  if (IEncryptionProvider* provider = encryptionProvider_.load(std::memory_order_acquire)) return provider;
  std::lock_guard<WkMutex> guard(encryptionLock_);
  if (IEncryptionProvider* provider = getEncryptionProvider()) return provider;
  auto* fallback = new IEncryptionProviderImpl();
  encryptionProvider_.store(fallback, std::memory_order_release);
  return fallback;
}

IBOOLEAN QVXRuntime::isEncryptionProviderRegistered() const { return encryptionProvider_ != nullptr ? ITRUE : IFALSE; }

ISTATUS QVXRuntime::registerExternalModule(IUString const& libraryName, IUString& error) {
  const IUString file = libraryName + IUString(runtime::PackageRegistration::LIBRARY_SUFFIX);
  DynLoadLib library;
  if (library.load(file) != ISTATUS_SUCCESS) {
    error = library.getError();
    return ISTATUS_FAILURE;
  }
  typedef IEncryptionProvider* (*ProviderFactory)();
  auto factory = reinterpret_cast<ProviderFactory>(library.getFunctionAddr(QVX_ENCRYPTION_PROVIDER_FUNCTION));
  if (factory == nullptr) {
    error = library.getError();
    return ISTATUS_FAILURE;
  }
  encryptionProvider_ = factory();
  if (encryptionProvider_.load() == nullptr) {
    error = qvxFormatMsg(76011, file);
    return ISTATUS_FAILURE;
  }
  return ISTATUS_SUCCESS;
}

namespace {
// A new boxed value from the primitives factory, set to `value`; the caller owns it.
template <typename Boxed, typename Value>
Boxed* makeBoxed(Boxed* (primitives::PrimitivesIFactory::*create)(), Value const& value) {
  std::unique_ptr<Boxed> made((primitives::PrimitivesIFactory::iGetInstance()->*create)());
  made->setValue(value);
  return made.release();
}
}  // namespace

primitives::IBlob* QVXRuntime::createIBlob(char const* bytes, std::uint32_t length) const {
  std::unique_ptr<primitives::IBlob> made(primitives::PrimitivesIFactory::iGetInstance()->createIBlob());
  made->setValue(bytes, length);
  return made.release();
}

primitives::IBoolean* QVXRuntime::createIBoolean(IBOOLEAN value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIBoolean, value);
}

primitives::ICharacter* QVXRuntime::createICharacter(std::uint16_t value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createICharacter, value);
}

// The new IDate takes ownership of `value` (it may be null).
primitives::IDate* QVXRuntime::createIDate(WkDate* value) const {
  std::unique_ptr<WkDate> owned(value);
  std::unique_ptr<primitives::IDate> made(primitives::PrimitivesIFactory::iGetInstance()->createIDate());
  made->setValue(owned.release());
  return made.release();
}

primitives::IDouble* QVXRuntime::createIDouble(double value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIDouble, value);
}

primitives::IFloat* QVXRuntime::createIFloat(float value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIFloat, value);
}

primitives::IInteger* QVXRuntime::createIInteger(std::int32_t value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIInteger, value);
}

primitives::IByte* QVXRuntime::createIByte(char value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIByte, value);
}

primitives::ILong* QVXRuntime::createILong(std::int64_t value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createILong, value);
}

primitives::IShort* QVXRuntime::createIShort(std::int16_t value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIShort, value);
}

primitives::IString* QVXRuntime::createIString(IUString const& value) const {
  return makeBoxed(&primitives::PrimitivesIFactory::createIString, value);
}

}  // namespace com::veltrana::qvx::icore
