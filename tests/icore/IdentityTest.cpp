// Identities and their qualified text forms, "<externalizer id>:<text>", read and written
// by the identity manager: string, seed and UUID identities (canonical and compact UUID
// texts) and equality across kinds.
#include "icore/IIdentity.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/internal/IdentityManager.h"
#include "icore/runtime/IdentityExternalizer.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIDExternalizer.h"
#include "tests/support/AssertionCatcher.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using exception::IdentityException;
using internal::IdentityManager;
using runtime::UUIDExternalizer;

std::unique_ptr<IIdentity> read(const IUString& text) {
  return std::unique_ptr<IIdentity>(IdentityManager::getInstance()->identityFromString(text));
}

// The DNS namespace UUID of RFC 4122, canonical and compact (URL-safe Base64 of its bytes).
const char* const kCanonical = "6ba7b810-9dad-11d1-80b4-00c04fd430c8";
const char* const kCompact = "a6e4EJ2tEdGAtADAT9QwyA";

TEST(IdentityTest, TextIsReadAsItsKindAndWrittenBackQualified) {
  const IUString known = IUString("uuidV1:") + IUString(kCanonical);
  const struct { IUString text, written; } cases[] = {
      {"abc", "stringIdentity:abc"},  // text without a colon is a string identity
      {"stringIdentity:abc", "stringIdentity:abc"},
      {"stringIdentity:a:b", "stringIdentity:a:b"},  // only the first colon ends the prefix
      {"smd:abc", "smd:abc"},
      {"smd:", "smd:"},
      {"uuidV1:6BA7B810-9DAD-11D1-80B4-00C04FD430C8", known},
      {IUString("U:") + IUString(kCanonical), known},  // "U" is an alias of "uuidV1"
      {IUString("U:") + IUString(kCompact), known},
      {IUString("uuidV1:") + IUString(kCompact), known},
      {"uuidV1:_____________________w", "uuidV1:ffffffff-ffff-ffff-ffff-ffffffffffff"},
      {"uuidV1:---------------------w", "uuidV1:fbefbefb-efbe-fbef-befb-efbefbefbefb"},
  };
  for (const auto& entry : cases) {
    const std::unique_ptr<IIdentity> identity = read(entry.text);
    ASSERT_NE(identity, nullptr) << entry.text.toUtf8();
    EXPECT_EQ(IdentityManager::getInstance()->identityToString(identity.get()), entry.written) << entry.text.toUtf8();
  }
}

TEST(IdentityTest, EqualityNeedsTheSameKindAndText) {
  const struct { IUString left, right; bool equal; } cases[] = {
      {"abc", "stringIdentity:abc", true},
      {"abc", "abd", false},
      {"smd:abc", "smd:abc", true},
      {"smd:abc", "abc", false},
      {IUString("uuidV1:") + IUString(kCanonical), IUString("stringIdentity:") + IUString(kCanonical), false},
      {IUString("U:") + IUString(kCompact), IUString("uuidV1:") + IUString(kCanonical), true},
      {"uuidV1:00000000-0000-0000-0000-000000000000", IUString("uuidV1:") + IUString(kCanonical), false},
  };
  for (const auto& entry : cases) {
    const std::unique_ptr<IIdentity> left = read(entry.left);
    const std::unique_ptr<IIdentity> right = read(entry.right);
    ASSERT_TRUE(left != nullptr && right != nullptr);
    EXPECT_EQ(*left == *right, entry.equal) << entry.left.toUtf8() << " == " << entry.right.toUtf8();
    EXPECT_EQ(*right == *left, entry.equal) << entry.right.toUtf8() << " == " << entry.left.toUtf8();
  }
}

TEST(IdentityTest, TextThatIsNoUuidGivesNoIdentity) {
  AssertionCatcher catcher;  // none of these is an assertion failure
  // Shorter than the compact form's 22 characters; then 23 or more, so canonical texts,
  // malformed (ACE's own parser would accept the first four of those).
  for (const char16_t* body : {u"", u"A", u"a6e4EJ2tEdGAtADAT9Qwy", u" 6ba7b81-9dad-11d1-80b4-00c04fd430c8",
                               u"+6ba7b81-9dad-11d1-80b4-00c04fd430c8", u"0x6ba7b8-9dad-11d1-80b4-00c04fd430c8",
                               u"6ba7b810-9dad-11d1-80b4-00c04fd430c", u"6ba7b810-9dad-11d1-80b4",
                               u"{6ba7b810-9dad-11d1-80b4-00c04fd430c8}", u"6ba7b8109-dad-11d1-80b4-00c04fd430c8",
                               u"6ba7b810-9dad-11d1-80b4-00c04fd430g8", u"6ba7b8109dad11d180b400c04fd430c8",
                               u"6ba7b810-9dad-11d1-80b4-00c04fd430\uff18\uff18",
                               u"6ba7b810_9dad_11d1_80b4_00c04fd430c8"}) {
    EXPECT_EQ(read(IUString(u"uuidV1:") + IUString(body)), nullptr) << IUString(body).toUtf8();
  }
}

TEST(IdentityTest, CompactTextOutsideTheAlphabetIsAnAssertionFailure) {
  AssertionCatcher catcher;
  // The last one has a bit set beyond the 16th byte.
  for (const char16_t* text : {u"a6e4EJ2tEdGAtADAT9Qwy+", u"a6e4EJ2tEdGAtADAT9Qw/A", u"a6e4EJ2tEdGAtADAT9Qwy=",
                               u"a6e4EJ2tEdGAtADAT9Qwy\u00e9", u"a6e4EJ2tEdGAtADAT9QwyB"}) {
    EXPECT_THROW(delete UUIDExternalizer::getInstance()->fromString(text), AssertionFailure) << IUString(text).toUtf8();
  }
}

TEST(IdentityTest, UnknownPrefixThrows74001AndNoIdentity74000) {
  for (const char* prefix : {"xyz", "", "uuidv1"}) {  // prefixes are case-sensitive
    EXPECT_EQ(qvx_test::messageOf<IdentityException>([prefix] { read(IUString(prefix) + IUString(":abc")); }),
              qvxFormatMsg(74001, IUString(prefix)));
  }
  EXPECT_EQ(qvx_test::messageOf<IdentityException>([] { IdentityManager::getInstance()->identityToString(nullptr); }),
            qvxGetMsg(74000));
}

// A kind of identity the library does not know: its externalizer relies on the default
// UTF-8 and in-place forms.
class TagIdentity;
class TagExternalizer : public runtime::IdentityExternalizer {
 public:
  static TagExternalizer* getInstance() {
    static auto* const instance = new TagExternalizer();  // registered for good once written
    return instance;
  }
  IUString toString(IIdentity const* identity) override;
  IIdentity* fromString(IUString const& text) override;
  IUString const& getExternalizerId() const override { return id_; }

 private:
  const IUString id_{u"tag\u00e9"};
};

class TagIdentity : public IIdentity {
 public:
  explicit TagIdentity(IUString text) : text_(std::move(text)) {}
  IBOOLEAN operator==(IIdentity const& other) const override {
    auto const* tag = dynamic_cast<TagIdentity const*>(&other);
    return tag != nullptr && tag->text_ == text_ ? ITRUE : IFALSE;
  }
  runtime::IdentityExternalizer* getIdentityExternalizer() const override { return TagExternalizer::getInstance(); }
  IUString const& text() const { return text_; }

 private:
  const IUString text_;
};

IUString TagExternalizer::toString(IIdentity const* identity) { return static_cast<TagIdentity const*>(identity)->text(); }
IIdentity* TagExternalizer::fromString(IUString const& text) { return new TagIdentity(text); }

TEST(IdentityTest, Utf8FormEqualsTheQualifiedStringForEveryKind) {
  IdentityManager* manager = IdentityManager::getInstance();
  std::vector<std::unique_ptr<IIdentity>> identities;
  for (const char16_t* text : {u"abc", u"", u"stringIdentity:a:b c", u"caf\u00e9", u"\U0001F600", u"smd:seed-1", u"smd:",
                               u"U:a6e4EJ2tEdGAtADAT9QwyA"}) {
    identities.push_back(read(text));
  }
  identities.emplace_back(manager->generateNewId());
  identities.emplace_back(new TagIdentity(u"x\u00fcy"));
  identities.emplace_back(new runtime::StringIdentity(IUString(u"lone \xd800 surrogate")));
  std::string buffer = "kept ";  // appending never touches what is there
  std::string expected = buffer;
  for (const auto& identity : identities) {
    ASSERT_NE(identity, nullptr);
    manager->appendIdentityString(buffer, identity.get());
    expected += manager->identityToString(identity.get()).toUtf8();
    ASSERT_EQ(buffer, expected);
  }
  // Once written, the foreign kind is readable too, in place within a longer text.
  const std::u16string longer = u"tag\u00e9:x\u00fcy|trailing";
  std::unique_ptr<IIdentity> back(manager->identityFromText(longer.data(), longer.find(u'|')));
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(*back == *identities[identities.size() - 2]);
  EXPECT_EQ(qvx_test::messageOf<IdentityException>([&] { manager->appendIdentityString(buffer, nullptr); }),
            qvxGetMsg(74000));
  EXPECT_EQ(buffer, expected);
}

TEST(IdentityTest, InPlaceReadingStopsAtTheGivenLength) {
  IdentityManager* manager = IdentityManager::getInstance();
  const std::u16string text = std::u16string(u"uuidV1:") + u"6ba7b810-9dad-11d1-80b4-00c04fd430c8" + u"ff";
  // The canonical text followed by more characters is 38 long: no identity...
  EXPECT_EQ(std::unique_ptr<IIdentity>(manager->identityFromText(text.data(), text.size())), nullptr);
  // ...but cut at 36 it is the UUID, and cut at a colon-free prefix a string identity.
  std::unique_ptr<IIdentity> uuid(manager->identityFromText(text.data(), text.size() - 2));
  ASSERT_NE(uuid, nullptr);
  EXPECT_EQ(manager->identityToString(uuid.get()), IUString(u"uuidV1:6ba7b810-9dad-11d1-80b4-00c04fd430c8"));
  std::unique_ptr<IIdentity> plain(manager->identityFromText(text.data(), 4));
  EXPECT_EQ(manager->identityToString(plain.get()), IUString(u"stringIdentity:uuid"));
  std::unique_ptr<IIdentity> empty(manager->identityFromText(text.data(), 0));
  EXPECT_EQ(manager->identityToString(empty.get()), IUString(u"stringIdentity:"));
  const std::u16string unknown = u"uuidV:abc";
  EXPECT_EQ(qvx_test::messageOf<IdentityException>([&] { manager->identityFromText(unknown.data(), unknown.size()); }),
            qvxFormatMsg(74001, IUString(u"uuidV")));
}

}  // namespace
