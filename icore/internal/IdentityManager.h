// The identity manager: keeps the externalizers by their ids, generates new identities
// and gives every identity its qualified string form, "<externalizer id>:<text>". The
// runtime (QVXRuntime) forwards its identity operations here.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {

class IIdentity;

namespace runtime {
class IdentityExternalizer;
}

namespace internal {

// A process-wide singleton, created on first use and never destroyed before exit.
// Registration and look-up of externalizers are guarded by the manager's own lock, so
// every operation may be called from any thread. Externalizers are never removed, and
// the manager does not own them (they are singletons of their own).
class QVX_API IdentityManager {
 public:
  static IdentityManager* getInstance();

  IdentityManager(const IdentityManager&) = delete;
  IdentityManager& operator=(const IdentityManager&) = delete;

  // A new, unique UUID identity. Caller owns the result.
  IIdentity* generateNewId();
  // The 16 bytes of a new, unique UUID, as generateNewId's identity would hold them,
  // for an identity made in place.
  void generateNewUUIDBytes(unsigned char* bytes);

  // The qualified string of `identity`: its externalizer's id, ":", then the
  // externalizer's text. Registers the externalizer first, so that a foreign kind of
  // identity becomes readable once one of its identities has been written. Throws
  // IdentityException (74000) when `identity` is null or has no externalizer.
  IUString identityToString(IIdentity const* identity);

  // Appends the qualified string of `identity` as UTF-8 to `utf8Out`, the same text as
  // identityToString gives. For the built-in kinds (UUID, string, seed) it takes no lock
  // and allocates only when `utf8Out` must grow, so a writer that keeps one buffer
  // allocates nothing per identity. Same errors as identityToString.
  void appendIdentityString(std::string& utf8Out, IIdentity const* identity);

  // Reads a qualified string: text without ":" is a string identity; otherwise the text
  // before the first ":" names the externalizer that reads the rest (which may contain
  // further colons). May return null when the externalizer finds no identity in the
  // text. Throws IdentityException (74001, with the prefix) when no externalizer is
  // registered under the prefix. Caller owns the result.
  IIdentity* identityFromString(IUString const& text);
  // identityFromString of `length` UTF-16 code units held elsewhere (a document's
  // attribute text, say). The built-in prefixes ("uuidV1", "U", "stringIdentity", "smd")
  // are recognised without a lock and without copying the text; other prefixes are
  // looked up under the lock. Caller owns the result.
  IIdentity* identityFromText(const char16_t* text, std::size_t length);

  // Registers `externalizer` under its externalizer id unless that id is taken: the first
  // registration of an id wins. Returns true when `externalizer` is the one registered
  // under its id afterwards (also when it already was), false when the id belongs to
  // another externalizer or `externalizer` is null.
  IBOOLEAN registerExternalizer(runtime::IdentityExternalizer* externalizer);

  // The externalizer registered under `externalizerId`, or null.
  runtime::IdentityExternalizer* findExternalizer(IUString const& externalizerId);

 private:
  IdentityManager();
  ~IdentityManager();

  // One of the externalizers registered at construction, found by comparing its id in
  // place, or null.
  static runtime::IdentityExternalizer* findBuiltIn(const char16_t* prefix, std::size_t length);
  // The externalizer of `identity` (74000 without one), registered if it is foreign.
  runtime::IdentityExternalizer& externalizerOf(IIdentity const* identity);

  std::unordered_map<IUString, runtime::IdentityExternalizer*> externalizers_;
  WkMutex mutex_;
};

}  // namespace internal
}  // namespace com::veltrana::qvx::icore
