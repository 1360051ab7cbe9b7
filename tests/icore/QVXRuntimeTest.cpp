// The runtime registry: package registration and its failures, deregistration,
// assigned identities and the registered encryption provider. Loading the provider that
// the environment names is tested in RuntimeEnvironmentTest.cpp, a process per case.
#include "icore/QVXRuntime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "icore/IEncryptionProvider.h"
#include "icore/IIdentity.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "tests/support/TestPackageAccess.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using exception::IdentityException;
using exception::IllegalArgumentException;
using qvx_test::messageOf;

QVXRuntime* theRuntime() { return QVXRuntime::getInstance(); }

// A package that is only named, never built. Registered packages stay listed for the
// life of the process, so they are left alive; each name is new in the process.
IPackage* namedPackage(const char* name) {
  static int made = 0;
  auto* package = new IPackage();
  package->setNsPrefix("com.example.runtime");
  package->setName(IUString::format("%s%d", name, ++made));
  return package;
}

long timesListed(IPackage* package) {
  const IVector<IPackage*> listed = theRuntime()->getAllIPackages();
  return std::count(listed.begin(), listed.end(), package);
}

TEST(QVXRuntimeTest, ReportsItsVersionAndAnswersNullForNoObject) {
  EXPECT_EQ(theRuntime()->getQVXVersion(), IUString("9.5.0"));
  EXPECT_EQ(theRuntime()->getIClass(nullptr), nullptr);
  EXPECT_EQ(theRuntime()->getIObjectInfo(nullptr), nullptr);
  EXPECT_EQ(theRuntime()->assignUUID(nullptr), nullptr);
}

TEST(QVXRuntimeTest, FailuresThrowTheirCatalogMessage) {
  IPackage* first = namedPackage("clash");
  theRuntime()->registerPackage(first);
  auto namesake = std::make_unique<IPackage>();
  namesake->setNsPrefix(first->getNsPrefix());
  namesake->setName(first->getName());
  std::unique_ptr<IObject> note(shapes_test::make("Note"));  // a class without identities
  EXPECT_EQ(messageOf<IllegalArgumentException>([&namesake] { theRuntime()->registerPackage(namesake.get()); }),
            qvxFormatMsg(73007, first->getQualifiedName()));
  EXPECT_EQ(messageOf<IllegalArgumentException>([] { theRuntime()->registerPackage(nullptr); }), qvxGetMsg(73009));
  EXPECT_EQ(messageOf<IdentityException>([&note] { theRuntime()->assignUUID(note.get()); }),
            qvxFormatMsg(73008, IUString("Note")));
  // The package that came first keeps the name.
  EXPECT_EQ(theRuntime()->getIPackageForName(first->getQualifiedName()), first);
  EXPECT_EQ(timesListed(namesake.get()), 0);
}

TEST(QVXRuntimeTest, RegistrationIsByExactQualifiedNameAndDeregistrationFreesIt) {
  IPackage* package = namedPackage("leaving");
  IPackage* later = namedPackage("later");
  const IUString name = package->getQualifiedName();
  EXPECT_EQ(theRuntime()->isPackageRegistered(name), IFALSE);
  theRuntime()->registerPackage(package);
  theRuntime()->registerPackage(package);  // the same package again changes nothing
  theRuntime()->registerPackage(later);
  EXPECT_EQ(theRuntime()->getIPackageForName(name), package);
  EXPECT_EQ(theRuntime()->getIPackageForName(package->getName()), nullptr);
  EXPECT_EQ(timesListed(package), 1);
  const IVector<IPackage*> listed = theRuntime()->getAllIPackages();
  EXPECT_LT(listed.indexOf(package), listed.indexOf(later));

  // Deregistered, it is no longer found but stays listed, and its name is free again.
  EXPECT_EQ(theRuntime()->deregisterPackage(package), ITRUE);
  EXPECT_EQ(theRuntime()->deregisterPackage(package), IFALSE);
  EXPECT_EQ(theRuntime()->isPackageRegistered(name), IFALSE);
  EXPECT_EQ(theRuntime()->getIPackageForName(name), nullptr);
  EXPECT_EQ(timesListed(package), 1);
  theRuntime()->registerPackage(package);
  EXPECT_EQ(theRuntime()->getIPackageForName(name), package);
  EXPECT_EQ(timesListed(package), 2);
}

TEST(QVXRuntimeTest, AssignUUIDGivesANewIdentityOnce) {
  std::unique_ptr<IObject> first(shapes_test::make("Drawing"));
  std::unique_ptr<IObject> second(shapes_test::make("Drawing"));
  IIdentity const* assigned = theRuntime()->assignUUID(first.get());
  ASSERT_NE(assigned, nullptr);
  EXPECT_EQ(theRuntime()->getIObjectInfo(first.get())->getIdentity(), assigned);
  EXPECT_FALSE(*assigned == *theRuntime()->assignUUID(second.get()));
  const IUString text = theRuntime()->identityToString(assigned);
  EXPECT_TRUE(text.startsWith("uuidV1:")) << text.toUtf8();
  EXPECT_TRUE(*std::unique_ptr<IIdentity>(theRuntime()->identityFromString(text)) == *assigned);
  // A second identity is refused and the first stays.
  EXPECT_THROW(theRuntime()->assignUUID(first.get()), IdentityException);
  EXPECT_EQ(theRuntime()->getIObjectInfo(first.get())->getIdentity(), assigned);
}

class PrefixingProvider : public IEncryptionProvider {
 public:
  IUString encrypt(IUString value, IProperty const*, IObject const*) override { return IUString("enc:") + value; }
  IUString decrypt(IUString value, IProperty const*, IObject const*) override { return value.substr(4); }
};

TEST(QVXRuntimeTest, ProviderIsReplacedWithoutDeletionAndNullClearsIt) {
  unsetenv("QVX_ENCRYPTION_PROVIDER_LIBRARY");  // else a lookup with none registered could load one
  IEncryptionProvider* before =
      theRuntime()->isEncryptionProviderRegistered() ? theRuntime()->getEncryptionProvider() : nullptr;
  // On the stack: a deletion by the runtime would crash the test.
  PrefixingProvider first;
  PrefixingProvider second;
  theRuntime()->registerEncryptionProvider(&first);
  theRuntime()->registerEncryptionProvider(&second);
  EXPECT_EQ(theRuntime()->getEncryptionProvider(), &second);
  internal::IObjectInternal plain;
  EXPECT_EQ(plain.encrypt("abc", nullptr, &plain), IUString("enc:abc"));  // objects use the registered one

  theRuntime()->registerEncryptionProvider(nullptr);
  EXPECT_EQ(theRuntime()->isEncryptionProviderRegistered(), IFALSE);
  EXPECT_EQ(theRuntime()->getEncryptionProvider(), nullptr);
  theRuntime()->registerEncryptionProvider(before);
}

}  // namespace
