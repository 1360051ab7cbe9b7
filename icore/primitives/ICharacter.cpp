#include "icore/primitives/ICharacter.h"

namespace com::veltrana::qvx::icore::primitives {

ICharacter::ICharacter() = default;

ICharacter::~ICharacter() = default;

}  // namespace com::veltrana::qvx::icore::primitives
