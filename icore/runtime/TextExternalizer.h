// The shared implementation of the externalizers whose text of an identity is the
// identity's own id string, and which read any text back as a new identity of their
// kind: StringExternalizer ("stringIdentity") and SeedExternalizer ("smd").
#pragma once

#include "icore/runtime/IdentityExternalizer.h"
#include "platform/IUString.h"

namespace com::veltrana::qvx::icore::runtime {

// `Readable` is the identity class whose id string toString returns (anything else
// gives the empty string); `Made` is the identity class fromString makes. Both take
// their text from StringId. Instantiated, in TextExternalizer.cpp, only for the two
// externalizers above; use those classes, not this one.
template <typename Readable, typename Made>
class TextExternalizer : public IdentityExternalizer {
 public:
  IUString toString(IIdentity const* identity) override;
  // A new `Made` with `text`. Caller owns the result.
  IIdentity* fromString(IUString const& text) override;
  IUString const& getExternalizerId() const override;
  // The id string of a `Readable` as UTF-8, else nothing.
  void appendText(IIdentity const* identity, std::string& utf8Out) override;

 protected:
  explicit TextExternalizer(const char* externalizerId);
  ~TextExternalizer() override;

 private:
  const IUString externalizerId_;
};

}  // namespace com::veltrana::qvx::icore::runtime
