// The identity of an object of a seeded class: the seed id under which the seed registry
// finds the shared object. Its qualified form is "smd:<seed id>".
#pragma once

#include "icore/runtime/StringId.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::runtime {

class QVX_API SeedIdentity : public StringId {
 public:
  explicit SeedIdentity(IUString const& idString) : StringId(idString) {}
  SeedIdentity(const SeedIdentity&) = default;
  ~SeedIdentity() override;

  IdentityExternalizer* getIdentityExternalizer() const override;
};

}  // namespace com::veltrana::qvx::icore::runtime
