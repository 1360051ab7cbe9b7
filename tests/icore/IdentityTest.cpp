// Text identities, their externalizers and the identity manager's qualified strings.
#include "icore/IIdentity.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/internal/IdentityManager.h"
#include "icore/runtime/IdentityExternalizer.h"
#include "icore/runtime/SeedExternalizer.h"
#include "icore/runtime/SeedIdentity.h"
#include "icore/runtime/StringExternalizer.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIDExternalizer.h"
#include "icore/runtime/UUIIdentity.h"

namespace {

using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::exception::IdentityException;
using com::veltrana::qvx::icore::internal::IdentityManager;
using com::veltrana::qvx::icore::runtime::IdentityExternalizer;
using com::veltrana::qvx::icore::runtime::SeedExternalizer;
using com::veltrana::qvx::icore::runtime::SeedIdentity;
using com::veltrana::qvx::icore::runtime::StringExternalizer;
using com::veltrana::qvx::icore::runtime::StringIdentity;
using com::veltrana::qvx::icore::runtime::UUIDExternalizer;

std::unique_ptr<IIdentity> read(const IUString& text) {
  return std::unique_ptr<IIdentity>(IdentityManager::getInstance()->identityFromString(text));
}

// A kind of identity from outside the library, with an externalizer that prefixes the
// text so that a test can tell it did the conversion.
class ForeignExternalizer;

class ForeignIdentity : public IIdentity {
 public:
  ForeignIdentity(ForeignExternalizer* externalizer, IUString value) : externalizer_(externalizer), value_(std::move(value)) {}
  IBOOLEAN operator==(IIdentity const& other) const override;
  IdentityExternalizer* getIdentityExternalizer() const override;
  const IUString& value() const { return value_; }

 private:
  ForeignExternalizer* externalizer_;
  IUString value_;
};

class ForeignExternalizer : public IdentityExternalizer {
 public:
  explicit ForeignExternalizer(IUString id) : id_(std::move(id)) {}
  ~ForeignExternalizer() = default;
  IUString toString(IIdentity const* identity) override {
    const auto* foreign = dynamic_cast<const ForeignIdentity*>(identity);
    return foreign != nullptr ? IUString("f-") + foreign->value() : IUString();
  }
  IIdentity* fromString(IUString const& text) override {
    return text.startsWith("f-") ? new ForeignIdentity(this, text.substr(2)) : nullptr;
  }
  IUString const& getExternalizerId() const override { return id_; }

 private:
  IUString id_;
};

IBOOLEAN ForeignIdentity::operator==(IIdentity const& other) const {
  const auto* foreign = dynamic_cast<const ForeignIdentity*>(&other);
  return foreign != nullptr && foreign->value_ == value_ ? ITRUE : IFALSE;
}

IdentityExternalizer* ForeignIdentity::getIdentityExternalizer() const { return externalizer_; }

// An identity whose externalizer cannot be reached: none at all, or one that throws.
class BrokenIdentity : public IIdentity {
 public:
  explicit BrokenIdentity(bool throws) : throws_(throws) {}
  IBOOLEAN operator==(IIdentity const& other) const override { return this == &other ? ITRUE : IFALSE; }
  IdentityExternalizer* getIdentityExternalizer() const override {
    if (throws_) {
      throw std::runtime_error("no externalizer");
    }
    return nullptr;
  }

 private:
  bool throws_;
};

TEST(IdentityTest, UnqualifiedAndQualifiedTextReadAsTheSameStringIdentity) {
  const auto plain = read("abc");
  const auto qualified = read("stringIdentity:abc");
  const auto* plainString = dynamic_cast<const StringIdentity*>(plain.get());
  ASSERT_NE(plainString, nullptr);
  ASSERT_NE(dynamic_cast<const StringIdentity*>(qualified.get()), nullptr);
  EXPECT_EQ(plainString->getIdString(), IUString("abc"));
  EXPECT_TRUE(*plain == *qualified);
  EXPECT_TRUE(*qualified == *plain);
  EXPECT_FALSE(*plain == *read("abd"));
}

TEST(IdentityTest, SeedIdentityNeverEqualsStringIdentityWithTheSameText) {
  const auto seed = read("smd:abc");
  const auto* seedIdentity = dynamic_cast<const SeedIdentity*>(seed.get());
  ASSERT_NE(seedIdentity, nullptr);
  EXPECT_EQ(seedIdentity->getIdString(), IUString("abc"));
  const StringIdentity string("abc");
  EXPECT_FALSE(*seed == string);
  EXPECT_FALSE(string == *seed);
  EXPECT_TRUE(*seed == SeedIdentity("abc"));
}

TEST(IdentityTest, OnlyTheFirstColonSeparatesThePrefix) {
  const auto identity = read("stringIdentity:a:b");
  const auto* string = dynamic_cast<const StringIdentity*>(identity.get());
  ASSERT_NE(string, nullptr);
  EXPECT_EQ(string->getIdString(), IUString("a:b"));

  const auto emptyBody = read("smd:");
  ASSERT_NE(dynamic_cast<const SeedIdentity*>(emptyBody.get()), nullptr);
  EXPECT_TRUE(*emptyBody == SeedIdentity(""));
}

TEST(IdentityTest, UnknownPrefixThrows74001NamingThePrefix) {
  IdentityManager* manager = IdentityManager::getInstance();
  for (const char* text : {"xyz:abc", ":abc", "uuidv1:a6e4EJ2tEdGAtADAT9QwyA"}) {
    const IUString prefix = IUString(text).substr(0, IUString(text).find(u':'));
    try {
      delete manager->identityFromString(text);
      ADD_FAILURE() << "no exception for " << text;
    } catch (const IdentityException& e) {
      EXPECT_EQ(e.getMessage(), com::veltrana::qvx::icore::qvxFormatMsg(74001, prefix)) << text;
      if (!prefix.isEmpty()) {
        EXPECT_NE(e.getMessage().find(prefix), IUString::npos) << e.getMessage().toUtf8();
      }
    }
  }
}

TEST(IdentityTest, QualifiedStringsRoundTripForEveryBuiltInKind) {
  IdentityManager* manager = IdentityManager::getInstance();
  const StringIdentity string("a:b c");
  const SeedIdentity seed("seed-1");
  EXPECT_EQ(manager->identityToString(&string), IUString("stringIdentity:a:b c"));
  EXPECT_EQ(manager->identityToString(&seed), IUString("smd:seed-1"));

  const std::unique_ptr<IIdentity> generated(manager->generateNewId());
  const IUString text = manager->identityToString(generated.get());
  ASSERT_TRUE(text.startsWith("uuidV1:")) << text.toUtf8();
  EXPECT_EQ(text.length(), 7u + 36u);

  for (const IIdentity* identity : {static_cast<const IIdentity*>(&string), static_cast<const IIdentity*>(&seed),
                                    static_cast<const IIdentity*>(generated.get())}) {
    const auto back = read(manager->identityToString(identity));
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(*back == *identity) << manager->identityToString(identity).toUtf8();
  }
}

TEST(IdentityTest, WritingAnIdentityWithoutExternalizerThrows74000) {
  IdentityManager* manager = IdentityManager::getInstance();
  const BrokenIdentity withoutExternalizer(false);
  for (const IIdentity* identity : {static_cast<const IIdentity*>(&withoutExternalizer), static_cast<const IIdentity*>(nullptr)}) {
    try {
      manager->identityToString(identity);
      ADD_FAILURE() << "no exception";
    } catch (const IdentityException& e) {
      EXPECT_EQ(e.getMessage(), com::veltrana::qvx::icore::qvxGetMsg(74000));
      EXPECT_FALSE(e.getMessage().isEmpty());
    }
  }
}

TEST(IdentityTest, ComparingWithAnIdentityWhoseExternalizerThrowsIsFalse) {
  const BrokenIdentity throwing(true);
  EXPECT_FALSE(StringIdentity("x") == throwing);
  EXPECT_FALSE(SeedIdentity("x") == throwing);
  const std::unique_ptr<IIdentity> uuid(IdentityManager::getInstance()->generateNewId());
  EXPECT_FALSE(*uuid == throwing);
}

TEST(IdentityTest, ForeignKindBecomesReadableOnceOneOfItsIdentitiesIsWritten) {
  IdentityManager* manager = IdentityManager::getInstance();
  static ForeignExternalizer* const externalizer = new ForeignExternalizer("foreignKind");
  EXPECT_THROW(delete manager->identityFromString("foreignKind:f-1"), IdentityException);

  const ForeignIdentity identity(externalizer, "1");
  EXPECT_EQ(manager->identityToString(&identity), IUString("foreignKind:f-1"));
  EXPECT_EQ(manager->findExternalizer("foreignKind"), externalizer);
  const auto back = read("foreignKind:f-1");
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(*back == identity);
  EXPECT_EQ(read("foreignKind:other"), nullptr);  // the externalizer's own "no identity"
}

TEST(IdentityTest, FirstRegistrationOfAnIdWins) {
  IdentityManager* manager = IdentityManager::getInstance();
  static ForeignExternalizer* const impostor = new ForeignExternalizer("uuidV1");
  static ForeignExternalizer* const first = new ForeignExternalizer("registeredTwice");
  static ForeignExternalizer* const second = new ForeignExternalizer("registeredTwice");

  EXPECT_FALSE(manager->registerExternalizer(impostor));
  EXPECT_EQ(manager->findExternalizer("uuidV1"), UUIDExternalizer::getInstance());
  EXPECT_TRUE(manager->registerExternalizer(first));
  EXPECT_TRUE(manager->registerExternalizer(first));
  EXPECT_FALSE(manager->registerExternalizer(second));
  EXPECT_EQ(manager->findExternalizer("registeredTwice"), first);
  EXPECT_FALSE(manager->registerExternalizer(nullptr));

  // Writing an identity of the impostor does not displace the built-in externalizer.
  const ForeignIdentity identity(impostor, "1");
  EXPECT_EQ(manager->identityToString(&identity), IUString("uuidV1:f-1"));
  EXPECT_EQ(manager->findExternalizer("uuidV1"), UUIDExternalizer::getInstance());
}

TEST(IdentityTest, BuiltInExternalizersAreRegisteredUnderTheirIdsAndTheUuidAlias) {
  IdentityManager* manager = IdentityManager::getInstance();
  EXPECT_EQ(manager->findExternalizer("stringIdentity"), StringExternalizer::getInstance());
  EXPECT_EQ(manager->findExternalizer("smd"), SeedExternalizer::getInstance());
  EXPECT_EQ(manager->findExternalizer("uuidV1"), UUIDExternalizer::getInstance());
  EXPECT_EQ(manager->findExternalizer("U"), UUIDExternalizer::getInstance());
  EXPECT_EQ(manager->findExternalizer("u"), nullptr);
}

TEST(IdentityTest, ExternalizersWriteOnlyTheirOwnKinds) {
  const StringIdentity string("s");
  const SeedIdentity seed("d");
  const std::unique_ptr<IIdentity> uuid(IdentityManager::getInstance()->generateNewId());
  // A seed identity is also a text identity, which the string externalizer can write.
  EXPECT_EQ(StringExternalizer::getInstance()->toString(&seed), IUString("d"));
  EXPECT_EQ(StringExternalizer::getInstance()->toString(uuid.get()), IUString());
  EXPECT_EQ(SeedExternalizer::getInstance()->toString(&string), IUString());
  EXPECT_EQ(UUIDExternalizer::getInstance()->toString(&string), IUString());
  EXPECT_EQ(UUIDExternalizer::getInstance()->toString(nullptr), IUString());
  EXPECT_EQ(string.getIdentityExternalizer(), StringExternalizer::getInstance());
  EXPECT_EQ(seed.getIdentityExternalizer(), SeedExternalizer::getInstance());
}

}  // namespace
