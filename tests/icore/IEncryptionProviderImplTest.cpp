#include "icore/IEncryptionProviderImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "icore/IObject.h"
#include "icore/exception/EncryptionFailureException.h"
#include "platform/WkEncryption.h"

namespace {

using com::veltrana::qvx::icore::IEncryptionProvider;
using com::veltrana::qvx::icore::IEncryptionProviderImpl;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::exception::EncryptionFailureException;

// The text of the EncryptionFailureException that `action` throws; a test failure if
// none (or if anything else, such as the platform's own error, escapes).
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const EncryptionFailureException& failure) {
    return failure.getMessage().toUtf8();
  }
  ADD_FAILURE() << "expected an EncryptionFailureException";
  return std::string();
}

// Runs every test without a key and without the key-file variable.
class IEncryptionProviderImplTest : public testing::Test {
 protected:
  void SetUp() override {
    const char* previous = std::getenv(WkEncryption::kKeyFileVariable);
    hadVariable_ = previous != nullptr;
    if (hadVariable_) previousVariable_ = previous;
    unsetenv(WkEncryption::kKeyFileVariable);
    WkEncryption::clearKey();
  }

  void TearDown() override {
    WkEncryption::clearKey();
    if (hadVariable_) setenv(WkEncryption::kKeyFileVariable, previousVariable_.c_str(), 1);
  }

  static void useTestKey() {
    unsigned char key[WkEncryption::kKeyLength];
    for (std::size_t i = 0; i < sizeof key; ++i) key[i] = static_cast<unsigned char>(0xA0 + i);
    WkEncryption::setKey(key, sizeof key);
  }

  std::unique_ptr<IEncryptionProvider> provider_ = std::make_unique<IEncryptionProviderImpl>();

 private:
  bool hadVariable_ = false;
  std::string previousVariable_;
};

TEST_F(IEncryptionProviderImplTest, UsesThePlatformCipherOfTypeOne) {
  useTestKey();
  const IObject owner;
  const IUString sealed = provider_->encrypt(IUString(u"p\u00e4ss \U0001F511"), nullptr, &owner);
  EXPECT_TRUE(sealed.startsWith(IUString(WkEncryption::kVersionTag)));
  EXPECT_EQ(decryptString(sealed.c_str(), ENC_TYPE_DEFAULT), IUString(u"p\u00e4ss \U0001F511"));
  EXPECT_EQ(provider_->decrypt(encryptString(u"other", ENC_TYPE_DEFAULT), nullptr, nullptr), IUString("other"));
}

TEST_F(IEncryptionProviderImplTest, KeepsValuesWithEmbeddedNulWhole) {
  useTestKey();
  const IUString value(u"before\0after", 12);
  EXPECT_EQ(provider_->decrypt(provider_->encrypt(value, nullptr, nullptr), nullptr, nullptr), value);
}

TEST_F(IEncryptionProviderImplTest, ReportsPlatformFailuresAsEncryptionFailure) {
  EXPECT_EQ(failureOf([this] { provider_->encrypt("secret", nullptr, nullptr); }),
            "no encryption key configured (set QVX_ENCRYPTION_KEY_FILE)");

  useTestKey();
  const IUString sealed = provider_->encrypt("secret", nullptr, nullptr);
  EXPECT_EQ(failureOf([this] { provider_->decrypt("secret", nullptr, nullptr); }),
            "encrypted text has an unknown format");
  // Drop one full Base64 quad: still well-formed, but the tag no longer matches.
  const IUString shortened = sealed.substr(0, sealed.length() - 4);
  EXPECT_EQ(failureOf([&] { provider_->decrypt(shortened, nullptr, nullptr); }),
            "encrypted text failed authentication (tampered or wrong key)");

  WkEncryption::clearKey();
  EXPECT_THAT(failureOf([&] { provider_->decrypt(sealed, nullptr, nullptr); }),
              testing::HasSubstr("no encryption key configured"));
}

}  // namespace
