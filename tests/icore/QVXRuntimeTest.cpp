// The runtime registry: package registration by qualified name, null-object answers,
// generated identities and the registered encryption provider. The loading of a
// provider named by the environment runs in processes of its own
// (RuntimeEnvironmentTest.cpp), since the runtime reads that variable once.
#include "icore/QVXRuntime.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "icore/IEncryptionProvider.h"
#include "icore/IIdentity.h"
#include "icore/IPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/runtime/UUIIdentity.h"
#include "tests/support/TestPackageLoader.h"

namespace {

using com::veltrana::qvx::icore::IEncryptionProvider;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IPackage;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::icore::qvxGetMsg;
using com::veltrana::qvx::icore::exception::IdentityException;
using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::icore::runtime::UUIIdentity;

// A package that is never built from tables, only named. Registered packages stay
// listed by the runtime for the life of the process, so tests leave them alive. The
// name gets a number that is new in the process, so that tests can be repeated.
IPackage* namedPackage(const char* prefix, const char* name) {
  static int made = 0;
  auto* package = new IPackage();
  package->setNsPrefix(prefix);
  package->setName(IUString::format("%s%d", name, ++made));
  return package;
}

// A second package under the same qualified name as `package`.
IPackage* namesake(IPackage const& package) {
  auto* twin = new IPackage();
  twin->setNsPrefix(package.getNsPrefix());
  twin->setName(package.getName());
  return twin;
}

std::size_t timesListed(IPackage* package) {
  std::size_t count = 0;
  for (IPackage* listed : QVXRuntime::getInstance()->getAllIPackages()) count += listed == package ? 1 : 0;
  return count;
}

TEST(QVXRuntimeTest, ReportsItsVersionAndIsOneInstance) {
  EXPECT_EQ(QVXRuntime::getInstance()->getQVXVersion(), IUString("9.5.0"));
  EXPECT_EQ(QVXRuntime::getInstance(), QVXRuntime::getInstance());
}

TEST(QVXRuntimeTest, NullObjectGetsNullAnswersWithoutThrowing) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  const QVXRuntime* constRuntime = runtime;
  EXPECT_EQ(runtime->getIClass(nullptr), nullptr);
  EXPECT_EQ(constRuntime->getIObjectInfo(static_cast<IObject const*>(nullptr)), nullptr);
  EXPECT_EQ(runtime->getIObjectInfo(static_cast<IObject*>(nullptr)), nullptr);
  EXPECT_EQ(runtime->assignUUID(nullptr), nullptr);
}

TEST(QVXRuntimeTest, RegisteringTheSamePackageTwiceKeepsOneEntry) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  IPackage* package = namedPackage("com.example.runtime", "twice");
  const IUString name = package->getQualifiedName();
  EXPECT_EQ(runtime->isPackageRegistered(name), IFALSE);

  runtime->registerPackage(package);
  runtime->registerPackage(package);

  EXPECT_EQ(runtime->getIPackageForName(name), package);
  EXPECT_EQ(runtime->isPackageRegistered(name), ITRUE);
  EXPECT_EQ(timesListed(package), 1u);
  // Names are compared exactly.
  IUString otherCase = name;
  otherCase.replaceAll("twice", "Twice");
  EXPECT_EQ(runtime->getIPackageForName(otherCase), nullptr);
  EXPECT_EQ(runtime->getIPackageForName(package->getName()), nullptr);
}

TEST(QVXRuntimeTest, SecondPackageWithEqualNameThrows73007AndFirstStays) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  IPackage* first = namedPackage("com.example.runtime", "clash");
  std::unique_ptr<IPackage> second(namesake(*first));
  runtime->registerPackage(first);

  try {
    runtime->registerPackage(second.get());
    FAIL() << "a second package under a taken name was accepted";
  } catch (IllegalArgumentException& error) {
    EXPECT_EQ(error.getMessage(), qvxFormatMsg(73007, first->getQualifiedName()));
  }
  EXPECT_EQ(runtime->getIPackageForName(first->getQualifiedName()), first);
  EXPECT_EQ(timesListed(second.get()), 0u);
}

TEST(QVXRuntimeTest, NullPackageThrows73009) {
  try {
    QVXRuntime::getInstance()->registerPackage(nullptr);
    FAIL() << "a null package was accepted";
  } catch (IllegalArgumentException& error) {
    EXPECT_EQ(error.getMessage(), qvxGetMsg(73009));
  }
}

TEST(QVXRuntimeTest, DeregisteredPackageIsNotFoundButStaysListed) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  IPackage* package = namedPackage("com.example.runtime", "leaving");
  const IUString name = package->getQualifiedName();
  runtime->registerPackage(package);

  EXPECT_EQ(runtime->deregisterPackage(package), ITRUE);
  EXPECT_EQ(runtime->isPackageRegistered(name), IFALSE);
  EXPECT_EQ(runtime->getIPackageForName(name), nullptr);
  EXPECT_EQ(timesListed(package), 1u);
  EXPECT_EQ(runtime->deregisterPackage(package), IFALSE);

  // The name is free again, for this package or another one.
  runtime->registerPackage(package);
  EXPECT_EQ(runtime->getIPackageForName(name), package);
  EXPECT_EQ(timesListed(package), 2u);

  std::unique_ptr<IPackage> unknown(namedPackage("com.example.runtime", "neverRegistered"));
  EXPECT_EQ(runtime->deregisterPackage(unknown.get()), IFALSE);
}

TEST(QVXRuntimeTest, AllPackagesAreListedInRegistrationOrder) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  IPackage* earlier = namedPackage("com.example.runtime.order", "a");
  IPackage* later = namedPackage("com.example.runtime.order", "b");
  runtime->registerPackage(later);
  runtime->registerPackage(earlier);

  const IVector<IPackage*> listed = runtime->getAllIPackages();
  const long laterAt = listed.indexOf(later);
  const long earlierAt = listed.indexOf(earlier);
  ASSERT_GE(laterAt, 0);
  ASSERT_GE(earlierAt, 0);
  EXPECT_LT(laterAt, earlierAt);
  // The list is a copy: changing it leaves the runtime's list alone.
  IVector<IPackage*> copy = runtime->getAllIPackages();
  copy.clear();
  EXPECT_EQ(runtime->getAllIPackages().size(), listed.size());
}

TEST(QVXRuntimeTest, AssignUUIDOnNonIdentifiableClassThrows73008) {
  std::unique_ptr<IObject> note(shapes_test::shapesClass("Note")->create());
  try {
    QVXRuntime::getInstance()->assignUUID(note.get());
    FAIL() << "an object of a class without identities got one";
  } catch (IdentityException& error) {
    EXPECT_EQ(error.getMessage(), qvxFormatMsg(73008, IUString("Note")));
  }
}

TEST(QVXRuntimeTest, AssignUUIDGivesTheObjectANewIdentityOnce) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::unique_ptr<IObject> first(shapes_test::shapesClass("Drawing")->create());
  std::unique_ptr<IObject> second(shapes_test::shapesClass("Drawing")->create());
  IObjectInfo* info = runtime->getIObjectInfo(first.get());
  ASSERT_EQ(info->getIdentity(), nullptr);

  IIdentity const* assigned = runtime->assignUUID(first.get());
  ASSERT_NE(assigned, nullptr);
  EXPECT_EQ(info->getIdentity(), assigned);
  EXPECT_NE(dynamic_cast<UUIIdentity const*>(assigned), nullptr);
  EXPECT_TRUE(runtime->identityToString(assigned).startsWith("uuidV1:"));

  IIdentity const* other = runtime->assignUUID(second.get());
  EXPECT_FALSE(*assigned == *other);

  // An identity is set once: a second one is refused and the first stays.
  EXPECT_THROW(runtime->assignUUID(first.get()), IdentityException);
  EXPECT_EQ(info->getIdentity(), assigned);
}

TEST(QVXRuntimeTest, IdentityTextRoundTripsThroughTheRuntime) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::unique_ptr<IIdentity> generated(runtime->generateNewId());
  const IUString text = runtime->identityToString(generated.get());
  std::unique_ptr<IIdentity> read(runtime->identityFromString(text));
  ASSERT_NE(read, nullptr);
  EXPECT_TRUE(*read == *generated);
  EXPECT_THROW(runtime->identityFromString("noSuchKind:abc"), IdentityException);
}

// Counts its own destruction, so a test can tell whether the runtime deleted it.
class CountingProvider : public IEncryptionProvider {
 public:
  explicit CountingProvider(int* destroyed) : destroyed_(destroyed) {}
  ~CountingProvider() override { ++*destroyed_; }
  IUString encrypt(IUString value, IProperty const*, IObject const*) override { return IUString("enc:") + value; }
  IUString decrypt(IUString value, IProperty const*, IObject const*) override { return value.substr(4); }

 private:
  int* destroyed_;
};

TEST(QVXRuntimeTest, RegisteredProviderIsReplacedWithoutDeletionAndNullClearsIt) {
  // No provider library may be named here: with none registered, the lookup below
  // would otherwise load one.
  unsetenv("QVX_ENCRYPTION_PROVIDER_LIBRARY");
  QVXRuntime* runtime = QVXRuntime::getInstance();
  IEncryptionProvider* before = runtime->isEncryptionProviderRegistered() ? runtime->getEncryptionProvider() : nullptr;

  int destroyed = 0;
  auto first = std::make_unique<CountingProvider>(&destroyed);
  auto second = std::make_unique<CountingProvider>(&destroyed);
  runtime->registerEncryptionProvider(first.get());
  EXPECT_EQ(runtime->getEncryptionProvider(), first.get());
  EXPECT_EQ(runtime->isEncryptionProviderRegistered(), ITRUE);

  runtime->registerEncryptionProvider(second.get());
  EXPECT_EQ(runtime->getEncryptionProvider(), second.get());
  EXPECT_EQ(destroyed, 0);

  // The registered provider is the one objects encrypt with.
  com::veltrana::qvx::icore::internal::IObjectInternal plain;
  EXPECT_EQ(plain.encrypt("abc", nullptr, &plain), IUString("enc:abc"));

  runtime->registerEncryptionProvider(nullptr);
  EXPECT_EQ(runtime->isEncryptionProviderRegistered(), IFALSE);
  EXPECT_EQ(runtime->getEncryptionProvider(), nullptr);
  EXPECT_EQ(destroyed, 0);

  // The runtime held these without owning them for the test; put back what was there.
  runtime->registerEncryptionProvider(before);
}

}  // namespace
