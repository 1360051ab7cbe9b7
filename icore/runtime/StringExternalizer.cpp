// The string externalizer's singleton and id.
#include "icore/runtime/StringExternalizer.h"

namespace com::veltrana::qvx::icore::runtime {

StringExternalizer* StringExternalizer::getInstance() {
  static auto* const instance = new StringExternalizer();  // never destroyed: usable until exit
  return instance;
}

StringExternalizer::StringExternalizer() : TextExternalizer("stringIdentity") {}

StringExternalizer::~StringExternalizer() = default;

}  // namespace com::veltrana::qvx::icore::runtime
