// The platform cipher behind the default encryption provider: authenticated
// encryption of short texts (property values) under a key that the deployment
// supplies. The object layer reaches it through encryptString/decryptString.
//
// Algorithm: AES-256-GCM (OpenSSL libcrypto) with a fresh random 12-byte nonce per
// value and the text's version tag (without its colon) as additional authenticated
// data. The clear text is encrypted as UTF-8, so a lone UTF-16 surrogate in it comes
// back as U+FFFD, exactly as IUString::toUtf8 converts it.
//
// Text form of an encrypted value (plain ASCII, no line breaks):
//   "qvxenc1:" Base64( nonce[12] || ciphertext[n] || tag[16] )
// with the standard Base64 alphabet and "=" padding. Decryption accepts exactly this
// form (canonical Base64 only) and fails on anything else; a value that was altered,
// truncated or encrypted under another key fails authentication instead of yielding
// garbage.
//
// The key (32 bytes) comes from, in order of precedence:
//   1. setKey(), for hosts that manage keys themselves and for tests;
//   2. the file named by the environment variable QVX_ENCRYPTION_KEY_FILE, holding
//      either 64 hexadecimal characters (surrounding white space allowed) or exactly
//      32 raw bytes. The file is read on first need and the key cached; a failed
//      read is not cached, so fixing the file takes effect on the next call.
// With no key configured every encryption and decryption throws WkEncryptionError.
// There is deliberately no built-in fallback key.
//
// Thread-safety: all members may be called from any thread; the cached key is
// guarded by a lock, and each call works on its own copy of it.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

// Encryption types of encryptString/decryptString. Only ENC_TYPE_DEFAULT is
// implemented; any other value fails with WkEncryptionError.
// A fixed underlying type, so that any number a caller passes is a valid value to refuse.
enum EncType : int { ENC_TYPE_DEFAULT = 1 };

class QVX_API WkEncryption {
 public:
  static constexpr std::size_t kKeyLength = 32;
  static constexpr std::size_t kNonceLength = 12;
  static constexpr std::size_t kTagLength = 16;
  // The environment variable that names the key file.
  static const char* const kKeyFileVariable;  // "QVX_ENCRYPTION_KEY_FILE"
  // The prefix of every encrypted text of this version.
  static const char* const kVersionTag;  // "qvxenc1:"

  WkEncryption() = delete;

  // Both throw WkEncryptionError on any failure.
  static IUString encrypt(std::u16string_view clearText);
  static IUString decrypt(std::u16string_view encryptedText);

  // Makes `key` (`length` must be kKeyLength) the key of the process, replacing any
  // key set or loaded before; the environment is then no longer consulted.
  static void setKey(const unsigned char* key, std::size_t length);
  // Wipes the key; the next use consults QVX_ENCRYPTION_KEY_FILE afresh.
  static void clearKey();
};

// The platform entry points, used with type ENC_TYPE_DEFAULT by the default
// encryption provider. `text` is zero-terminated UTF-16; the overloads with a length
// take `length` code units instead, so a value with an embedded U+0000 is not cut
// short. All throw WkEncryptionError on failure, including a null `text` and an
// unsupported `type`.
QVX_API IUString encryptString(const char16_t* text, EncType type);
QVX_API IUString decryptString(const char16_t* text, EncType type);
QVX_API IUString encryptString(const char16_t* text, std::size_t length, EncType type);
QVX_API IUString decryptString(const char16_t* text, std::size_t length, EncType type);
