// AES-256-GCM over OpenSSL's EVP interface, the key store with its key-file loader,
// and a strict Base64 codec for the text form described in WkEncryption.h.
#include "platform/WkEncryption.h"

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "platform/WkEncryptionError.h"
#include "platform/WkMutex.h"
#include "platform/WkUString.h"

namespace {

constexpr char kVersionTagText[] = "qvxenc1:";
constexpr char16_t kVersionTagText16[] = u"qvxenc1:";
constexpr std::size_t kVersionTagLength = sizeof kVersionTagText - 1;
static_assert(sizeof kVersionTagText16 / sizeof(char16_t) - 1 == kVersionTagLength, "one tag, two spellings");

constexpr std::size_t kKeyLength = WkEncryption::kKeyLength;
constexpr std::size_t kNonceLength = WkEncryption::kNonceLength;
constexpr std::size_t kTagLength = WkEncryption::kTagLength;
// The tag without its colon is bound into the authentication tag, so a future
// format can never be mistaken for this one even if its payload happened to verify.
constexpr std::size_t kAssociatedDataLength = kVersionTagLength - 1;
// A key file is tiny; anything larger is certainly not one and is not read whole.
constexpr std::size_t kMaxKeyFileSize = 4096;

// Key material on the stack or in the store: wiped whenever it goes out of use.
struct KeyBytes {
  unsigned char bytes[kKeyLength] = {};
  KeyBytes() = default;
  KeyBytes(const KeyBytes&) = delete;
  KeyBytes& operator=(const KeyBytes&) = delete;
  ~KeyBytes() { OPENSSL_cleanse(bytes, sizeof bytes); }
};

// Wipes a buffer of clear text or key-file content when the scope ends.
class ScopedWipe {
 public:
  explicit ScopedWipe(std::string& buffer) : buffer_(buffer) {}
  ScopedWipe(const ScopedWipe&) = delete;
  ScopedWipe& operator=(const ScopedWipe&) = delete;
  ~ScopedWipe() { OPENSSL_cleanse(buffer_.data(), buffer_.size()); }

 private:
  std::string& buffer_;
};

// The process-wide key. Created on first use; its destructor wipes the key at exit.
struct KeyStore {
  WkMutex mutex;
  KeyBytes key;
  bool isSet = false;
};

KeyStore& keyStore() {
  static KeyStore store;
  return store;
}

[[noreturn]] void fail(const IUString& message) { throw WkEncryptionError(message); }

// Throws with `what` and the first queued OpenSSL error, and empties the queue so
// that a stale error cannot be reported by an unrelated later call.
[[noreturn]] void failWithOpenSslError(const char* what) {
  const unsigned long code = ERR_get_error();
  ERR_clear_error();
  if (code == 0) fail(IUString(what));
  char reason[256];
  ERR_error_string_n(code, reason, sizeof reason);
  fail(IUString::format("%s (%s)", what, reason));
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

unsigned hexValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  return static_cast<unsigned>(c - 'A' + 10);
}

bool isAllHex(const char* text, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    if (!isHexDigit(text[i])) return false;
  }
  return true;
}

bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

// Reads the whole key file into `content`, refusing anything over kMaxKeyFileSize.
void readKeyFile(const char* path, std::string& content) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), &std::fclose);
  if (!file) fail(IUString::format("cannot read encryption key file '%s': %s", path, std::strerror(errno)));
  content.resize(kMaxKeyFileSize + 1);
  const std::size_t got = std::fread(content.data(), 1, content.size(), file.get());
  if (std::ferror(file.get())) {
    fail(IUString::format("cannot read encryption key file '%s': %s", path, std::strerror(errno)));
  }
  if (got > kMaxKeyFileSize) {
    fail(IUString::format("encryption key file '%s' is too large to hold a key", path));
  }
  content.resize(got);
}

// A 32-byte file is a raw key unless it is entirely hexadecimal: such a file is
// almost certainly a 16-byte key written in hex (random bytes are all hex digits with
// probability about 2^-113), and silently using its text as key bytes would hide
// the mistake. Everything else must be 64 hex digits, possibly padded with white space.
void parseKeyFile(const char* path, const std::string& content, KeyBytes& key) {
  if (content.size() == kKeyLength && !isAllHex(content.data(), content.size())) {
    std::memcpy(key.bytes, content.data(), kKeyLength);
    return;
  }
  std::size_t begin = 0;
  std::size_t end = content.size();
  while (begin < end && isWhiteSpace(content[begin])) ++begin;
  while (end > begin && isWhiteSpace(content[end - 1])) --end;
  if (end - begin != 2 * kKeyLength || !isAllHex(content.data() + begin, end - begin)) {
    fail(IUString::format(
        "encryption key file '%s' must hold 64 hexadecimal characters or exactly 32 raw bytes", path));
  }
  for (std::size_t i = 0; i < kKeyLength; ++i) {
    key.bytes[i] = static_cast<unsigned char>(hexValue(content[begin + 2 * i]) << 4 |
                                              hexValue(content[begin + 2 * i + 1]));
  }
}

// Copies the process key into `out`, loading it from the key file on first need.
void currentKey(KeyBytes& out) {
  KeyStore& store = keyStore();
  WkMutexGuard guard(store.mutex);
  if (!store.isSet) {
    const char* path = std::getenv(WkEncryption::kKeyFileVariable);
    if (path == nullptr || *path == '\0') {
      fail(IUString("no encryption key configured (set QVX_ENCRYPTION_KEY_FILE)"));
    }
    std::string content;
    ScopedWipe wipeContent(content);
    KeyBytes loaded;
    readKeyFile(path, content);
    parseKeyFile(path, content, loaded);
    std::memcpy(store.key.bytes, loaded.bytes, kKeyLength);
    store.isSet = true;
  }
  std::memcpy(out.bytes, store.key.bytes, kKeyLength);
}

// --- Base64 (RFC 4648, standard alphabet, padded) ---

constexpr char kBase64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void appendBase64(IUString& out, const unsigned char* data, std::size_t length) {
  out.reserve(out.length() + (length + 2) / 3 * 4);
  std::size_t i = 0;
  for (; i + 3 <= length; i += 3) {
    const unsigned long triple = static_cast<unsigned long>(data[i]) << 16 |
                                 static_cast<unsigned long>(data[i + 1]) << 8 | data[i + 2];
    out += static_cast<char16_t>(kBase64Alphabet[triple >> 18 & 0x3F]);
    out += static_cast<char16_t>(kBase64Alphabet[triple >> 12 & 0x3F]);
    out += static_cast<char16_t>(kBase64Alphabet[triple >> 6 & 0x3F]);
    out += static_cast<char16_t>(kBase64Alphabet[triple & 0x3F]);
  }
  const std::size_t rest = length - i;
  if (rest == 0) return;
  unsigned long triple = static_cast<unsigned long>(data[i]) << 16;
  if (rest == 2) triple |= static_cast<unsigned long>(data[i + 1]) << 8;
  out += static_cast<char16_t>(kBase64Alphabet[triple >> 18 & 0x3F]);
  out += static_cast<char16_t>(kBase64Alphabet[triple >> 12 & 0x3F]);
  out += rest == 2 ? static_cast<char16_t>(kBase64Alphabet[triple >> 6 & 0x3F]) : u'=';
  out += u'=';
}

int base64Value(char16_t c) {
  if (c >= u'A' && c <= u'Z') return c - u'A';
  if (c >= u'a' && c <= u'z') return c - u'a' + 26;
  if (c >= u'0' && c <= u'9') return c - u'0' + 52;
  if (c == u'+') return 62;
  if (c == u'/') return 63;
  return -1;
}

// Decodes canonical Base64 only: a multiple of four characters, "=" only as the one
// or two last characters, and zero bits under the padding. Anything else returns
// false, so every encrypted text has exactly one accepted spelling.
bool decodeBase64(std::u16string_view text, std::string& out) {
  if (text.size() % 4 != 0) return false;
  out.clear();
  out.reserve(text.size() / 4 * 3);
  for (std::size_t i = 0; i < text.size(); i += 4) {
    const bool isLast = i + 4 == text.size();
    int padding = 0;
    if (isLast && text[i + 3] == u'=') padding = text[i + 2] == u'=' ? 2 : 1;
    unsigned long quad = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      int value = 0;
      if (k < 4 - static_cast<std::size_t>(padding)) {
        value = base64Value(text[i + k]);
        if (value < 0) return false;
      }
      quad = quad << 6 | static_cast<unsigned long>(value);
    }
    out += static_cast<char>(quad >> 16 & 0xFF);
    if (padding == 2) {
      if ((quad & 0xFFFF) != 0) return false;
      continue;
    }
    out += static_cast<char>(quad >> 8 & 0xFF);
    if (padding == 1) {
      if ((quad & 0xFF) != 0) return false;
      continue;
    }
    out += static_cast<char>(quad & 0xFF);
  }
  return true;
}

// --- AES-256-GCM ---

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)>;

CipherContext newCipherContext() {
  CipherContext context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
  if (!context) failWithOpenSslError("cannot create a cipher context");
  return context;
}

const unsigned char* associatedData() { return reinterpret_cast<const unsigned char*>(kVersionTagText); }

std::u16string_view versionTag16() { return std::u16string_view(kVersionTagText16, kVersionTagLength); }

// Returns nonce || ciphertext || tag for `clear` under `key`.
std::string sealBytes(const std::string& clear, const KeyBytes& key) {
  if (clear.size() > static_cast<std::size_t>(INT_MAX) - kNonceLength - kTagLength) {
    fail(IUString("text is too long to encrypt"));
  }
  std::string sealed(kNonceLength + clear.size() + kTagLength, '\0');
  unsigned char* nonce = reinterpret_cast<unsigned char*>(sealed.data());
  unsigned char* cipherText = nonce + kNonceLength;
  unsigned char* tag = cipherText + clear.size();
  if (RAND_bytes(nonce, static_cast<int>(kNonceLength)) != 1) {
    failWithOpenSslError("cannot obtain random bytes for the nonce");
  }

  CipherContext context = newCipherContext();
  int written = 0;
  int finalWritten = 0;
  if (EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.bytes, nonce) != 1 ||
      EVP_EncryptUpdate(context.get(), nullptr, &written, associatedData(),
                        static_cast<int>(kAssociatedDataLength)) != 1 ||
      EVP_EncryptUpdate(context.get(), cipherText, &written,
                        reinterpret_cast<const unsigned char*>(clear.data()), static_cast<int>(clear.size())) != 1 ||
      EVP_EncryptFinal_ex(context.get(), cipherText + written, &finalWritten) != 1 ||
      EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, static_cast<int>(kTagLength), tag) != 1) {
    failWithOpenSslError("AES-256-GCM encryption failed");
  }
  return sealed;
}

// Verifies and decrypts nonce || ciphertext || tag into `clear`.
void openBytes(const std::string& sealed, const KeyBytes& key, std::string& clear) {
  if (sealed.size() < kNonceLength + kTagLength) {
    fail(IUString("encrypted text is too short to hold a nonce and an authentication tag"));
  }
  const std::size_t cipherLength = sealed.size() - kNonceLength - kTagLength;
  if (cipherLength > static_cast<std::size_t>(INT_MAX)) fail(IUString("encrypted text is too long"));
  const unsigned char* nonce = reinterpret_cast<const unsigned char*>(sealed.data());
  const unsigned char* cipherText = nonce + kNonceLength;
  // The tag control takes a non-const pointer, so hand it a copy.
  unsigned char tag[kTagLength];
  std::memcpy(tag, cipherText + cipherLength, kTagLength);

  clear.assign(cipherLength, '\0');
  unsigned char* clearBytes = reinterpret_cast<unsigned char*>(clear.data());
  CipherContext context = newCipherContext();
  int written = 0;
  int finalWritten = 0;
  if (EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, key.bytes, nonce) != 1 ||
      EVP_DecryptUpdate(context.get(), nullptr, &written, associatedData(),
                        static_cast<int>(kAssociatedDataLength)) != 1 ||
      EVP_DecryptUpdate(context.get(), clearBytes, &written, cipherText, static_cast<int>(cipherLength)) != 1 ||
      EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, static_cast<int>(kTagLength), tag) != 1) {
    failWithOpenSslError("AES-256-GCM decryption failed");
  }
  if (EVP_DecryptFinal_ex(context.get(), clearBytes + written, &finalWritten) != 1) {
    ERR_clear_error();
    // Unverified output must not survive the failure.
    OPENSSL_cleanse(clear.data(), clear.size());
    clear.clear();
    fail(IUString("encrypted text failed authentication (tampered or wrong key)"));
  }
}

std::u16string_view checkedText(const char16_t* text, std::size_t length, EncType type) {
  if (type != ENC_TYPE_DEFAULT) fail(IUString::format("encryption type %d is not supported", static_cast<int>(type)));
  if (text == nullptr) fail(IUString("no text given to encrypt or decrypt"));
  return std::u16string_view(text, length);
}

std::size_t lengthOf(const char16_t* text) { return text == nullptr ? 0 : std::char_traits<char16_t>::length(text); }

}  // namespace

const char* const WkEncryption::kKeyFileVariable = "QVX_ENCRYPTION_KEY_FILE";
const char* const WkEncryption::kVersionTag = kVersionTagText;

IUString WkEncryption::encrypt(std::u16string_view clearText) {
  std::string clear;
  ScopedWipe wipeClear(clear);
  // Reserved up front so that no reallocation leaves an unwiped copy behind.
  clear.reserve(WkUString::utf8Length(clearText.data(), clearText.size()));
  WkUString::appendUtf16AsUtf8(clear, clearText.data(), clearText.size());
  KeyBytes key;
  currentKey(key);
  const std::string sealed = sealBytes(clear, key);
  IUString result(versionTag16());
  appendBase64(result, reinterpret_cast<const unsigned char*>(sealed.data()), sealed.size());
  return result;
}

IUString WkEncryption::decrypt(std::u16string_view encryptedText) {
  if (encryptedText.substr(0, kVersionTagLength) != versionTag16()) {
    fail(IUString("encrypted text has an unknown format"));
  }
  std::string sealed;
  if (!decodeBase64(encryptedText.substr(kVersionTagLength), sealed)) {
    fail(IUString("encrypted text is not valid Base64"));
  }
  KeyBytes key;
  currentKey(key);
  std::string clear;
  ScopedWipe wipeClear(clear);
  openBytes(sealed, key, clear);
  return IUString::fromUtf8(clear);
}

void WkEncryption::setKey(const unsigned char* key, std::size_t length) {
  if (key == nullptr) fail(IUString("no encryption key given"));
  if (length != kKeyLength) fail(IUString::format("an encryption key must be %zu bytes, not %zu", kKeyLength, length));
  KeyStore& store = keyStore();
  WkMutexGuard guard(store.mutex);
  std::memcpy(store.key.bytes, key, kKeyLength);
  store.isSet = true;
}

void WkEncryption::clearKey() {
  KeyStore& store = keyStore();
  WkMutexGuard guard(store.mutex);
  OPENSSL_cleanse(store.key.bytes, sizeof store.key.bytes);
  store.isSet = false;
}

IUString encryptString(const char16_t* text, EncType type) { return encryptString(text, lengthOf(text), type); }

IUString decryptString(const char16_t* text, EncType type) { return decryptString(text, lengthOf(text), type); }

IUString encryptString(const char16_t* text, std::size_t length, EncType type) {
  return WkEncryption::encrypt(checkedText(text, length, type));
}

IUString decryptString(const char16_t* text, std::size_t length, EncType type) {
  return WkEncryption::decrypt(checkedText(text, length, type));
}
