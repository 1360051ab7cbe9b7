// The process-wide entry point: the registry of packages by qualified name, identity
// generation and conversion, the seed registry, the encryption provider, and
// one-line factories for boxed primitive values. Packages register themselves; the
// runtime never owns or deletes them. Thread-safe: the registry, the provider and
// getInstance each have their own recursive lock.
#pragma once

#include <atomic>
#include <cstdint>
#include <unordered_map>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"
#include "platform/WkMutex.h"

class WkDate;

namespace com::veltrana::qvx::icore {

class IClass;
class IEncryptionProvider;
class IIdentity;
class IObject;
class IObjectInfo;
class IPackage;
namespace internal {
class IdentityManager;
class IObjectInternal;
}  // namespace internal
namespace runtime {
class IdentityExternalizer;
class SeedRegistry;
}
namespace primitives {
class IBlob;
class IBoolean;
class IByte;
class ICharacter;
class IDate;
class IDouble;
class IFloat;
class IInteger;
class ILong;
class IShort;
class IString;
}  // namespace primitives

class QVX_API QVXRuntime {
 public:
  typedef IUString (*PackageLibraryResolver)(IUString const& packageName, IUString& error);
  typedef IUString (*ResourceResolver)(IUString const& name);

  static QVXRuntime* getInstance();
  IUString getQVXVersion() const { return QVX_VERSION; }

  // Throws IllegalArgumentException: 73009 for null, 73007 when another package holds
  // the qualified name. Registering the same package again does nothing.
  void registerPackage(IPackage* package) const;
  IBOOLEAN deregisterPackage(IPackage* package);
  IPackage* getIPackageForName(IUString const& qualifiedName);
  IBOOLEAN isPackageRegistered(IUString const& qualifiedName);
  // Every package ever registered, in registration order (deregistered ones included).
  IVector<IPackage*> getAllIPackages() const;

  static ISTATUS loadPackageLibrary(IUString const& packageName, IUString& error);
  static void registerPackageLibraryResolver(PackageLibraryResolver resolver);
  static PackageLibraryResolver getPackageLibraryResolver();
  static void registerQVXResourceResolver(ResourceResolver resolver);
  static ResourceResolver getQVXResourceResolver();

  IClass const* getIClass(IObject const* object) const;
  IObjectInfo const* getIObjectInfo(IObject const* object) const;
  IObjectInfo* getIObjectInfo(IObject* object);

  // A new generated identity; the caller owns it.
  IIdentity* generateNewId();
  // Gives `object` a new generated identity and returns it (the object owns it).
  // IdentityException (73008) when the object's class is not identifiable.
  IIdentity const* assignUUID(IObject* object) const;
  IUString identityToString(IIdentity const* identity);
  // A new identity parsed from its qualified text; the caller owns it.
  IIdentity* identityFromString(IUString const& text) const;
  IBOOLEAN registerIdentityExternalizer(runtime::IdentityExternalizer* externalizer);
  runtime::SeedRegistry& getSeedRegistry() const;

  // Takes ownership of `provider`, replacing (without deleting) any earlier one.
  void registerEncryptionProvider(IEncryptionProvider* provider);
  // The provider; on first need it may be loaded from the library named by the
  // environment variable QVX_ENCRYPTION_PROVIDER_LIBRARY (consulted once per process).
  IEncryptionProvider* getEncryptionProvider() const;
  IBOOLEAN isEncryptionProviderRegistered() const;

  // Boxed primitives; the caller owns each result. createIDate takes ownership of `value`.
  primitives::IBlob* createIBlob(char const* bytes, std::uint32_t length) const;
  primitives::IBoolean* createIBoolean(IBOOLEAN value) const;
  primitives::ICharacter* createICharacter(std::uint16_t value) const;
  primitives::IDate* createIDate(WkDate* value) const;
  primitives::IDouble* createIDouble(double value) const;
  primitives::IFloat* createIFloat(float value) const;
  primitives::IInteger* createIInteger(std::int32_t value) const;
  primitives::IByte* createIByte(char value) const;
  primitives::ILong* createILong(std::int64_t value) const;
  primitives::IShort* createIShort(std::int16_t value) const;
  primitives::IString* createIString(IUString const& value) const;

  static IUString const QVX_VERSION;
  static IUString const QVX_ENCRYPTION_PROVIDER_LIBRARY;
  static char const* const QVX_ENCRYPTION_PROVIDER_FUNCTION;

 private:
  QVXRuntime();
  ~QVXRuntime();
  QVXRuntime(const QVXRuntime&) = delete;
  QVXRuntime& operator=(const QVXRuntime&) = delete;

  ISTATUS registerExternalModule(IUString const& libraryName, IUString& error);

  // The provider for IObjectInternal's encrypt and decrypt: the registered one, else the
  // one the environment names (tried once), else a new default provider, registered
  // here. Decided under the encryption lock, so threads that encrypt at once install
  // one provider, and none replaces a provider the host registers meanwhile.
  IEncryptionProvider* getOrInstallEncryptionProvider();
  friend class internal::IObjectInternal;

  // Forgets `package` wherever the table or the list holds it, for a package that is
  // destroyed; another package registered under the same name stays.
  void withdrawPackage(IPackage const* package);
  friend class IPackage;

  internal::IdentityManager* identityManager_;  // process-wide singleton
  runtime::SeedRegistry* seedRegistry_;
  // Owned. Read without the lock on the fast path, hence atomic.
  std::atomic<IEncryptionProvider*> encryptionProvider_{nullptr};
  mutable std::unordered_map<IUString, IPackage*> packageTable_;
  mutable IVector<IPackage*> packageList_{10, 200, 1000};
  mutable WkMutex encryptionLock_;
  mutable WkMutex registryLock_;

  static QVXRuntime* I_INSTANCE;
};

}  // namespace com::veltrana::qvx::icore
