#include "platform/WkEncryption.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "platform/WkEncryptionError.h"

namespace {

using testing::HasSubstr;

using Key = std::vector<unsigned char>;

Key makeKey(unsigned char first) {
  Key key(WkEncryption::kKeyLength);
  for (std::size_t i = 0; i < key.size(); ++i) key[i] = static_cast<unsigned char>(first + 7 * i);
  return key;
}

std::string toHex(const Key& key, bool upper) {
  const char* digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
  std::string hex;
  for (unsigned char byte : key) {
    hex += digits[byte >> 4];
    hex += digits[byte & 0xF];
  }
  return hex;
}

// The text of the WkEncryptionError that `action` throws; a test failure if none.
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const WkEncryptionError& error) {
    return error.getMessage().toUtf8();
  }
  ADD_FAILURE() << "expected a WkEncryptionError";
  return std::string();
}

IUString encrypt(const IUString& text) { return encryptString(text.c_str(), ENC_TYPE_DEFAULT); }
IUString decrypt(const IUString& text) { return decryptString(text.c_str(), ENC_TYPE_DEFAULT); }

const IUString kVersionTag(WkEncryption::kVersionTag);

// Every test starts without a key and without the key-file variable, whatever the
// environment of the test run holds, and leaves things as it found them.
class WkEncryptionTest : public testing::Test {
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
    if (hadVariable_) {
      setenv(WkEncryption::kKeyFileVariable, previousVariable_.c_str(), 1);
    } else {
      unsetenv(WkEncryption::kKeyFileVariable);
    }
    for (const std::string& path : tempFiles_) std::remove(path.c_str());
  }

  static void useKey(const Key& key) { WkEncryption::setKey(key.data(), key.size()); }

  std::string writeTempFile(const std::string& content) {
    std::string path = testing::TempDir() + "qvx-key-XXXXXX";
    const int fd = mkstemp(path.data());
    EXPECT_GE(fd, 0) << "cannot create a temporary file";
    if (fd < 0) return path;
    EXPECT_EQ(write(fd, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    close(fd);
    tempFiles_.push_back(path);
    return path;
  }

  static void useKeyFile(const std::string& path) {
    setenv(WkEncryption::kKeyFileVariable, path.c_str(), 1);
    WkEncryption::clearKey();
  }

 private:
  bool hadVariable_ = false;
  std::string previousVariable_;
  std::vector<std::string> tempFiles_;
};

TEST_F(WkEncryptionTest, RoundTripsAsciiEmptyAndNonBmpText) {
  useKey(makeKey(1));
  const IUString texts[] = {IUString("s3cret password"), IUString(), IUString(u"caf\u00e9 \U0001F600 \u20ac"),
                            IUString(std::u16string(5000, u'x'))};
  for (const IUString& text : texts) {
    const IUString sealed = encrypt(text);
    EXPECT_TRUE(sealed.startsWith(kVersionTag));
    if (!text.isEmpty()) {
      EXPECT_EQ(sealed.find(text), IUString::npos);
    }
    EXPECT_EQ(decrypt(sealed), text);
  }
}

TEST_F(WkEncryptionTest, LengthTakingEntryPointsKeepEmbeddedNul) {
  useKey(makeKey(1));
  const IUString text(u"a\0b", 3);
  const IUString sealed = encryptString(text.data(), text.length(), ENC_TYPE_DEFAULT);
  EXPECT_EQ(decryptString(sealed.data(), sealed.length(), ENC_TYPE_DEFAULT), text);
  EXPECT_EQ(decrypt(sealed), text);
  // The zero-terminated form stops at the terminator, as its contract says.
  EXPECT_EQ(decrypt(encryptString(text.data(), ENC_TYPE_DEFAULT)), IUString("a"));
}

// Reads the text form back with OpenSSL directly, so the documented layout (tag,
// Base64 of nonce || ciphertext || tag, the tag as associated data) is what is written.
TEST_F(WkEncryptionTest, TextFormIsTaggedBase64OfNonceCiphertextAndTag) {
  const Key key = makeKey(9);
  useKey(key);
  const std::string clear = "caf\xC3\xA9 42";
  const std::string sealed = encrypt(IUString(clear.c_str())).toUtf8();
  const std::string payload = sealed.substr(std::strlen(WkEncryption::kVersionTag));
  const std::size_t rawLength = WkEncryption::kNonceLength + clear.size() + WkEncryption::kTagLength;
  ASSERT_EQ(payload.size(), (rawLength + 2) / 3 * 4);
  EXPECT_EQ(payload.find_first_of(" \r\n"), std::string::npos);

  std::vector<unsigned char> raw(payload.size());
  ASSERT_GE(EVP_DecodeBlock(raw.data(), reinterpret_cast<const unsigned char*>(payload.data()),
                            static_cast<int>(payload.size())),
            static_cast<int>(rawLength));
  const unsigned char* nonce = raw.data();
  const unsigned char* cipherText = nonce + WkEncryption::kNonceLength;
  unsigned char tag[WkEncryption::kTagLength];
  std::memcpy(tag, cipherText + clear.size(), sizeof tag);

  EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
  std::string opened(clear.size(), '\0');
  int written = 0;
  const unsigned char aad[] = {'q', 'v', 'x', 'e', 'n', 'c', '1'};
  ASSERT_EQ(EVP_DecryptInit_ex(context, EVP_aes_256_gcm(), nullptr, key.data(), nonce), 1);
  ASSERT_EQ(EVP_DecryptUpdate(context, nullptr, &written, aad, sizeof aad), 1);
  ASSERT_EQ(EVP_DecryptUpdate(context, reinterpret_cast<unsigned char*>(opened.data()), &written, cipherText,
                              static_cast<int>(clear.size())),
            1);
  ASSERT_EQ(EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_GCM_SET_TAG, sizeof tag, tag), 1);
  EXPECT_EQ(EVP_DecryptFinal_ex(context, nullptr, &written), 1);
  EVP_CIPHER_CTX_free(context);
  EXPECT_EQ(opened, clear);
}

TEST_F(WkEncryptionTest, EncryptingTwiceUsesFreshNonces) {
  useKey(makeKey(1));
  const IUString first = encrypt("same");
  const IUString second = encrypt("same");
  EXPECT_NE(first, second);
  // The nonce leads the payload: 12 bytes are the first 16 Base64 characters.
  EXPECT_NE(first.substr(kVersionTag.length(), 16), second.substr(kVersionTag.length(), 16));
  EXPECT_EQ(decrypt(first), IUString("same"));
  EXPECT_EQ(decrypt(second), IUString("same"));
}

TEST_F(WkEncryptionTest, AnyAlteredPayloadCharacterFails) {
  useKey(makeKey(1));
  const std::u16string sealed = encrypt("pay me 100").str();
  for (std::size_t at = kVersionTag.length(); at < sealed.size(); ++at) {
    if (sealed[at] == u'=') continue;
    std::u16string altered = sealed;
    altered[at] = sealed[at] == u'A' ? u'B' : u'A';
    EXPECT_THAT(failureOf([&] { decrypt(IUString(altered)); }), testing::StartsWith("encrypted text"))
        << "altered at " << at;
  }
}

// Flipping bits of the decoded bytes keeps the Base64 valid, so only authentication
// stands between the change and the caller: nonce, ciphertext and tag are all covered.
TEST_F(WkEncryptionTest, AnyFlippedByteFailsAuthentication) {
  useKey(makeKey(1));
  const std::string payload = encrypt("pay me 100").toUtf8().substr(kVersionTag.length());
  std::vector<unsigned char> raw(payload.size());
  const int decoded = EVP_DecodeBlock(raw.data(), reinterpret_cast<const unsigned char*>(payload.data()),
                                      static_cast<int>(payload.size()));
  // EVP_DecodeBlock counts padding bytes as data; the real length is fixed by the layout.
  const std::size_t rawLength = WkEncryption::kNonceLength + 10 + WkEncryption::kTagLength;
  ASSERT_GE(decoded, static_cast<int>(rawLength));
  for (std::size_t at = 0; at < rawLength; ++at) {
    std::vector<unsigned char> flipped(raw.begin(), raw.begin() + static_cast<std::ptrdiff_t>(rawLength));
    flipped[at] ^= 0x01;
    std::string reencoded(rawLength * 2 + 4, '\0');
    const int length = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(reencoded.data()), flipped.data(),
                                       static_cast<int>(flipped.size()));
    reencoded.resize(static_cast<std::size_t>(length));
    EXPECT_EQ(failureOf([&] { decrypt(kVersionTag + IUString(reencoded.c_str())); }),
              "encrypted text failed authentication (tampered or wrong key)")
        << "flipped byte " << at;
  }
}

TEST_F(WkEncryptionTest, TruncatedTextFails) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("truncate me");
  for (std::size_t cut = 1; cut < sealed.length(); ++cut) {
    const IUString shorter = sealed.substr(0, sealed.length() - cut);
    EXPECT_FALSE(failureOf([&] { decrypt(shorter); }).empty()) << "cut " << cut;
  }
  EXPECT_THAT(failureOf([&] { decrypt(kVersionTag); }), HasSubstr("too short"));
}

TEST_F(WkEncryptionTest, ForeignOrMalformedTextFails) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("value");
  const IUString payload = sealed.substr(kVersionTag.length());
  const std::string unknownFormat = "encrypted text has an unknown format";
  EXPECT_EQ(failureOf([&] { decrypt(IUString("qvxenc2:") + payload); }), unknownFormat);
  EXPECT_EQ(failureOf([&] { decrypt(IUString("QVXENC1:") + payload); }), unknownFormat);
  EXPECT_EQ(failureOf([&] { decrypt(payload); }), unknownFormat);
  EXPECT_EQ(failureOf([&] { decrypt(IUString()); }), unknownFormat);
  EXPECT_EQ(failureOf([&] { decrypt(IUString("value")); }), unknownFormat);

  const std::string notBase64 = "encrypted text is not valid Base64";
  const std::size_t middle = kVersionTag.length() + 8;
  const IUString withBreak = sealed.substr(0, middle) + IUString("\n") + sealed.substr(middle);
  EXPECT_EQ(failureOf([&] { decrypt(withBreak); }), notBase64);
  std::u16string withUnicode = sealed.str();
  withUnicode[kVersionTag.length() + 3] = u'\u00c4';
  EXPECT_EQ(failureOf([&] { decrypt(IUString(withUnicode)); }), notBase64);
  EXPECT_EQ(failureOf([&] { decrypt(sealed + IUString("====")); }), notBase64);
  EXPECT_EQ(failureOf([&] { decrypt(kVersionTag + IUString("AAA=AAAA")); }), notBase64);
  // "AB==" spells the byte 0x00 with non-zero bits under the padding: not canonical.
  EXPECT_EQ(failureOf([&] { decrypt(kVersionTag + IUString("AB==")); }), notBase64);
}

TEST_F(WkEncryptionTest, WrongKeyFailsAuthentication) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("value");
  useKey(makeKey(2));
  EXPECT_EQ(failureOf([&] { decrypt(sealed); }), "encrypted text failed authentication (tampered or wrong key)");
  useKey(makeKey(1));
  EXPECT_EQ(decrypt(sealed), IUString("value"));
}

TEST_F(WkEncryptionTest, NoKeyConfiguredFailsBothWays) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("value");
  WkEncryption::clearKey();
  const std::string noKey = "no encryption key configured (set QVX_ENCRYPTION_KEY_FILE)";
  EXPECT_EQ(failureOf([] { encrypt("value"); }), noKey);
  EXPECT_EQ(failureOf([&] { decrypt(sealed); }), noKey);
  setenv(WkEncryption::kKeyFileVariable, "", 1);
  EXPECT_EQ(failureOf([] { encrypt("value"); }), noKey);
}

TEST_F(WkEncryptionTest, UnsupportedTypeAndNullTextFail) {
  useKey(makeKey(1));
  EXPECT_THAT(failureOf([] { encryptString(u"x", static_cast<EncType>(2)); }), HasSubstr("type 2 is not supported"));
  EXPECT_THAT(failureOf([] { decryptString(u"x", static_cast<EncType>(0)); }), HasSubstr("type 0 is not supported"));
  EXPECT_FALSE(failureOf([] { encryptString(nullptr, ENC_TYPE_DEFAULT); }).empty());
  EXPECT_FALSE(failureOf([] { decryptString(nullptr, ENC_TYPE_DEFAULT); }).empty());
}

TEST_F(WkEncryptionTest, SetKeyRejectsWrongLengthAndKeepsThePreviousKey) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("value");
  const Key shortKey(16, 0x11);
  EXPECT_THAT(failureOf([&] { WkEncryption::setKey(shortKey.data(), shortKey.size()); }), HasSubstr("32 bytes"));
  EXPECT_FALSE(failureOf([] { WkEncryption::setKey(nullptr, 32); }).empty());
  EXPECT_EQ(decrypt(sealed), IUString("value"));
}

// A key file is checked by decrypting, under the file's key, a value sealed with the
// key the file is meant to hold.
TEST_F(WkEncryptionTest, ReadsHexKeyFileWithSurroundingWhiteSpace) {
  const Key key = makeKey(3);
  useKey(key);
  const IUString sealed = encrypt("from a file");
  for (const bool upper : {false, true}) {
    useKeyFile(writeTempFile(" \n\t" + toHex(key, upper) + "\r\n\n"));
    EXPECT_EQ(decrypt(sealed), IUString("from a file"));
  }
}

TEST_F(WkEncryptionTest, ReadsRawKeyFileWithoutTrimmingIt) {
  // White-space bytes at both ends belong to a raw key and must not be trimmed.
  Key key = makeKey(5);
  key.front() = ' ';
  key.back() = '\n';
  useKey(key);
  const IUString sealed = encrypt("raw");
  useKeyFile(writeTempFile(std::string(key.begin(), key.end())));
  EXPECT_EQ(decrypt(sealed), IUString("raw"));
}

TEST_F(WkEncryptionTest, MalformedKeyFileFailsWithItsPath) {
  const std::string hex = toHex(makeKey(3), false);
  const std::string malformed[] = {
      hex.substr(1),                      // 63 digits
      hex + "0",                          // 65 digits
      hex.substr(0, 63) + "g",            // not a digit
      hex.substr(0, 32) + " " + hex.substr(32),  // space inside
      hex.substr(0, 32),                  // a 16-byte key in hex, exactly 32 bytes long
      std::string(31, '\x01'),            // raw, one byte short
      std::string(33, '\x01'),            // raw, one byte over
      std::string(),                      // empty
      std::string(5000, '0'),             // far too large
  };
  for (const std::string& content : malformed) {
    const std::string path = writeTempFile(content);
    useKeyFile(path);
    EXPECT_THAT(failureOf([] { encrypt("value"); }), HasSubstr(path)) << "content of size " << content.size();
  }
  const std::string missing = testing::TempDir() + "qvx-no-such-key-file";
  useKeyFile(missing);
  EXPECT_THAT(failureOf([] { encrypt("value"); }), HasSubstr("cannot read encryption key file '" + missing + "'"));
  useKeyFile(testing::TempDir());
  EXPECT_THAT(failureOf([] { encrypt("value"); }), HasSubstr("cannot read encryption key file"));
}

TEST_F(WkEncryptionTest, KeyFileFailureIsRetriedButItsKeyIsCached) {
  const std::string path = testing::TempDir() + "qvx-late-key-" + std::to_string(getpid());
  useKeyFile(path);
  EXPECT_THAT(failureOf([] { encrypt("value"); }), HasSubstr(path));

  // Supplying the file afterwards works without a restart.
  const Key key = makeKey(7);
  {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    std::fputs(toHex(key, false).c_str(), file);
    std::fclose(file);
  }
  const IUString sealed = encrypt("value");
  std::remove(path.c_str());

  // Once read, the key no longer depends on the file or the variable.
  unsetenv(WkEncryption::kKeyFileVariable);
  EXPECT_EQ(decrypt(sealed), IUString("value"));
  WkEncryption::clearKey();
  EXPECT_THAT(failureOf([&] { decrypt(sealed); }), HasSubstr("no encryption key configured"));
  useKey(key);
  EXPECT_EQ(decrypt(sealed), IUString("value"));
}

TEST_F(WkEncryptionTest, SetKeyTakesPrecedenceOverKeyFile) {
  useKeyFile(writeTempFile(toHex(makeKey(3), false)));
  const IUString fromFile = encrypt("value");
  useKey(makeKey(4));
  EXPECT_EQ(failureOf([&] { decrypt(fromFile); }), "encrypted text failed authentication (tampered or wrong key)");
}

TEST_F(WkEncryptionTest, ConcurrentFirstUseSharesOneKey) {
  const Key key = makeKey(11);
  useKeyFile(writeTempFile(toHex(key, false)));
  constexpr int kThreads = 4;
  std::vector<IUString> sealed(kThreads);
  std::vector<std::string> failures(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &sealed, &failures] {
      try {
        for (int i = 0; i < 200; ++i) {
          const IUString text = IUString::format("thread %d value %d", t, i);
          if (decrypt(encrypt(text)) != text) failures[t] = "round trip changed the text";
          sealed[t] = encrypt(text);
        }
      } catch (const WkEncryptionError& error) {
        failures[t] = error.getMessage().toUtf8();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(failures[t], "") << "thread " << t;
  useKey(key);
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(decrypt(sealed[t]), IUString::format("thread %d value 199", t));
}

}  // namespace
