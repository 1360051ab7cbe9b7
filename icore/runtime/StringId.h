// The common base of the identities whose value is plain text: string identities and
// seed identities. Which kind a text belongs to is decided by the externalizer.
#pragma once

#include "icore/IIdentity.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class QVX_API StringId : public IIdentity {
 public:
  explicit StringId(IUString const& idString) : idString_(idString) {}
  ~StringId() override;

  // True when `other` has the same externalizer (so is of the same kind) and the same
  // text. Anything that goes wrong while comparing (a foreign kind that throws) is
  // answered with false.
  IBOOLEAN operator==(IIdentity const& other) const override;

  IUString const& getIdString() const { return idString_; }

 protected:
  StringId(const StringId&) = default;

 private:
  const IUString idString_;
};

}  // namespace com::veltrana::qvx::icore::runtime
