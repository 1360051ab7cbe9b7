// Anchors the vtable and type information of IEncryptionProvider in the library, so
// providers built into other libraries share them.
#include "icore/IEncryptionProvider.h"

namespace com::veltrana::qvx::icore {

IEncryptionProvider::~IEncryptionProvider() = default;

}  // namespace com::veltrana::qvx::icore
