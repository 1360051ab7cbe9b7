#include "icore/IEncryptionProviderImpl.h"

#include <gtest/gtest.h>

#include <string>

#include "icore/IObject.h"
#include "icore/exception/EncryptionFailureException.h"
#include "platform/WkEncryption.h"
#include "tests/platform/TestScopes.h"

using com::veltrana::qvx::icore::IEncryptionProviderImpl;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::exception::EncryptionFailureException;

TEST(IEncryptionProviderImplTest, UsesThePlatformCipherAndTranslatesItsFailures) {
  const ScopedEnv noKeyFile(WkEncryption::kKeyFileVariable, nullptr);
  WkEncryption::clearKey();
  IEncryptionProviderImpl provider;
  const auto failureOf = [](auto action) { return thrownMessage<EncryptionFailureException>(action); };
  const std::string noKey = "no encryption key configured (set QVX_ENCRYPTION_KEY_FILE)";
  EXPECT_EQ(failureOf([&] { provider.encrypt("secret", nullptr, nullptr); }), noKey);

  const unsigned char key[WkEncryption::kKeyLength] = {0xA0, 0xA1, 0xA2};
  WkEncryption::setKey(key, sizeof key);
  const IObject owner;
  const IUString value(u"p\u00e4ss\0\U0001F511", 7);
  const IUString sealed = provider.encrypt(value, nullptr, &owner);
  EXPECT_EQ(decryptString(sealed.data(), sealed.length(), ENC_TYPE_DEFAULT), value);
  EXPECT_EQ(provider.decrypt(sealed, nullptr, nullptr), value);
  EXPECT_EQ(provider.decrypt(encryptString(u"other", ENC_TYPE_DEFAULT), nullptr, nullptr), IUString("other"));

  EXPECT_EQ(failureOf([&] { provider.decrypt("secret", nullptr, nullptr); }), "encrypted text has an unknown format");
  // Drop one full Base64 quad: still well-formed, but the tag no longer matches.
  const IUString shortened = sealed.substr(0, sealed.length() - 4);
  EXPECT_EQ(failureOf([&] { provider.decrypt(shortened, nullptr, nullptr); }),
            "encrypted text failed authentication (tampered or wrong key)");
  WkEncryption::clearKey();
}
