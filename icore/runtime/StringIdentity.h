// A plain string identity: the id of an identifiable object given as text (read from a
// document, or set through setIdentityString). Its qualified form is "stringIdentity:<text>".
#pragma once

#include "icore/runtime/StringId.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class QVX_API StringIdentity : public StringId {
 public:
  explicit StringIdentity(IUString const& idString) : StringId(idString) {}
  StringIdentity(const StringIdentity&) = default;
  ~StringIdentity() override;

  IdentityExternalizer* getIdentityExternalizer() const override;
};

}  // namespace com::veltrana::qvx::icore::runtime
