#include "icore/IObjectReflector.h"

#include "icore/IObjectInfo.h"
#include "icore/internal/IObjectInternal.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

// Made during library load, before any client code runs, and never replaced.
IObjectReflector* IObjectReflector::I_INSTANCE = new IObjectReflector();

IObjectReflector::~IObjectReflector() = default;

IObjectReflector* IObjectReflector::getInstance() {
  QVX_ASSERT(I_INSTANCE != nullptr);
  return I_INSTANCE;
}

IObjectInfo* IObjectReflector::getIObjectInfo(IObject const* object) {
  auto* storage = const_cast<internal::IObjectInternal*>(static_cast<internal::IObjectInternal const*>(object));
  return &storage->iGetIObjectInfo();
}

IClass const* IObjectReflector::getIClass(IObject* object) { return getIObjectInfo(object)->getIClass(); }

}  // namespace com::veltrana::qvx::icore
