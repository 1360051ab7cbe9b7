// The externalizer of string identities, registered as "stringIdentity". Its text of an
// identity is the text of any text identity (a StringId, so also of a seed identity),
// else empty; any text reads back as a new StringIdentity, which the caller owns.
#pragma once

#include "icore/runtime/TextExternalizer.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class StringId;
class StringIdentity;

// A process-wide singleton, created on first use and never destroyed before exit.
class QVX_API StringExternalizer : public TextExternalizer<StringId, StringIdentity> {
 public:
  static StringExternalizer* getInstance();

 private:
  StringExternalizer();
  ~StringExternalizer() override;
};

}  // namespace com::veltrana::qvx::icore::runtime
