#include "platform/WkEncryption.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/WkEncryptionError.h"
#include "tests/platform/TestScopes.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Key = std::vector<unsigned char>;

Key makeKey(unsigned char first) {
  Key key(WkEncryption::kKeyLength);
  for (std::size_t i = 0; i < key.size(); ++i) key[i] = static_cast<unsigned char>(first + 7 * i);
  return key;
}

std::string toHex(const Key& key, const char* digits = "0123456789abcdef") {
  std::string hex;
  for (unsigned char byte : key) hex.append({digits[byte >> 4], digits[byte & 0xF]});
  return hex;
}

IUString encrypt(const IUString& text) { return encryptString(text.c_str(), ENC_TYPE_DEFAULT); }
IUString decrypt(const IUString& text) { return decryptString(text.c_str(), ENC_TYPE_DEFAULT); }
const auto failureOf = [](auto action) { return thrownMessage<WkEncryptionError>(action); };

const IUString kVersionTag(WkEncryption::kVersionTag);
const std::string kNoKey = "no encryption key configured (set QVX_ENCRYPTION_KEY_FILE)";

// Every test starts without a key and without the key-file variable.
class WkEncryptionTest : public testing::Test {
 protected:
  WkEncryptionTest() { WkEncryption::clearKey(); }
  ~WkEncryptionTest() override { WkEncryption::clearKey(); }
  static void useKey(const Key& key) { WkEncryption::setKey(key.data(), key.size()); }
  static void useKeyFile(const std::string& path) {
    setenv(WkEncryption::kKeyFileVariable, path.c_str(), 1);
    WkEncryption::clearKey();
  }

  ScopedEnv keyFileVariable_{WkEncryption::kKeyFileVariable, nullptr};
  TempDir dir_;
};

TEST_F(WkEncryptionTest, RoundTripsAnyTextWithAFreshNonceEachTime) {
  // Sealed independently (Python's cryptography package: AES-256-GCM, makeKey(0), nonce
  // bytes 0xA0..0xAB, additional data "qvxenc1"), so this pins the text form.
  useKey(makeKey(0));
  EXPECT_EQ(decrypt("qvxenc1:oKGio6Slpqeoqaqru0kTnFwbB5mXDO4oylbHdi4QP0bR/Mqw"), IUString(u"caf\u00e9 42"));
  for (const IUString& text : {IUString("s3cret"), IUString(), IUString(u"caf\u00e9 \U0001F600"),
                               IUString(std::u16string(5000, u'x')), IUString(u"a\0b", 3)}) {
    const IUString sealed = encryptString(text.data(), text.length(), ENC_TYPE_DEFAULT);
    EXPECT_EQ(decryptString(sealed.data(), sealed.length(), ENC_TYPE_DEFAULT), text);
    // The nonce leads the payload: its 12 bytes are the first 16 Base64 characters.
    EXPECT_NE(encrypt(text).substr(kVersionTag.length(), 16), sealed.substr(kVersionTag.length(), 16));
  }
  // The zero-terminated form stops at the terminator, as its contract says.
  EXPECT_EQ(decrypt(encryptString(u"a\0b", ENC_TYPE_DEFAULT)), IUString("a"));
}

TEST_F(WkEncryptionTest, AlteredTruncatedAndForeignTextFails) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("pay me 100");
  for (std::size_t at = 0; at < sealed.length(); ++at) {
    EXPECT_THAT(failureOf([&] { decrypt(sealed.substr(0, at)); }), StartsWith("encrypted text")) << "cut " << at;
    std::u16string altered = sealed.str();
    altered[at] = altered[at] == u'A' ? u'B' : u'A';
    EXPECT_THAT(failureOf([&] { decrypt(IUString(altered)); }), StartsWith("encrypted text")) << "altered " << at;
  }
  EXPECT_EQ(failureOf([&] { decrypt(sealed.substr(kVersionTag.length())); }), "encrypted text has an unknown format");
  // "AB==" spells the byte 0 with non-zero bits under the padding: not canonical.
  EXPECT_EQ(failureOf([&] { decrypt(kVersionTag + IUString("AB==")); }), "encrypted text is not valid Base64");
}

TEST_F(WkEncryptionTest, WrongMissingOrRejectedKeysAndTypesFail) {
  useKey(makeKey(1));
  const IUString sealed = encrypt("value");
  const Key shortKey(16, 0x11);
  EXPECT_THAT(failureOf([&] { WkEncryption::setKey(shortKey.data(), shortKey.size()); }), HasSubstr("32 bytes"));
  EXPECT_EQ(decrypt(sealed), IUString("value"));  // a rejected key leaves the previous one
  EXPECT_THAT(failureOf([] { encryptString(u"x", static_cast<EncType>(2)); }), HasSubstr("type 2 is not supported"));
  useKey(makeKey(2));
  EXPECT_EQ(failureOf([&] { decrypt(sealed); }), "encrypted text failed authentication (tampered or wrong key)");
  WkEncryption::clearKey();
  EXPECT_EQ(failureOf([&] { decrypt(sealed); }), kNoKey);
  setenv(WkEncryption::kKeyFileVariable, "", 1);
  EXPECT_EQ(failureOf([] { encrypt("value"); }), kNoKey);
}

// A key file is checked by decrypting, under the file's key, a value sealed with the
// key the file is meant to hold.
TEST_F(WkEncryptionTest, ReadsHexKeyFilesWithSurroundingWhiteSpaceAndRawKeyFiles) {
  Key key = makeKey(5);
  key.front() = ' ';  // white-space bytes at both ends belong to a raw key
  key.back() = '\n';
  useKey(key);
  const IUString sealed = encrypt("from a file");
  for (const std::string& content :
       {" \n\t" + toHex(key) + "\r\n\n", toHex(key, "0123456789ABCDEF"), std::string(key.begin(), key.end())}) {
    useKeyFile(dir_.write("key", content));
    EXPECT_EQ(decrypt(sealed), IUString("from a file"));
  }
}

TEST_F(WkEncryptionTest, MalformedOrMissingKeyFileFailsWithItsPath) {
  const std::string hex = toHex(makeKey(3));
  // The fifth is a 16-byte key in hex, as long as a raw key.
  for (const std::string& content : {hex.substr(1), hex + "0", hex.substr(0, 63) + "g",
                                     hex.substr(0, 32) + " " + hex.substr(32), hex.substr(0, 32),
                                     std::string(31, '\x01'), std::string(), std::string(5000, '0')}) {
    const std::string path = dir_.write("key", content);
    useKeyFile(path);
    EXPECT_THAT(failureOf([] { encrypt("value"); }), HasSubstr(path)) << "content of size " << content.size();
  }
  const std::string missing = (dir_.path() / "missing").string();
  useKeyFile(missing);
  EXPECT_THAT(failureOf([] { encrypt("value"); }), HasSubstr("cannot read encryption key file '" + missing + "'"));
}

}  // namespace
