// The seed externalizer's singleton and id.
#include "icore/runtime/SeedExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

SeedExternalizer* SeedExternalizer::getInstance() {
  static auto* const instance = new SeedExternalizer();  // never destroyed: usable until exit
  return instance;
}

SeedExternalizer::SeedExternalizer() : TextExternalizer("smd") {}

SeedExternalizer::~SeedExternalizer() = default;

}  // namespace com::veltrana::qvx::icore::runtime
