#include "icore/primitives/BoxedPrimitive.h"

#include <atomic>

#include "icore/IClass.h"
#include "icore/primitives/PrimitivesIPackage.h"

namespace com::veltrana::qvx::icore::primitives::detail {

namespace {
// One slot per class id. A racing first use stores the same pointer twice.
std::atomic<IProperty*> gValueProperties[PrimitivesIPackage::kClassCount];
}  // namespace

IClass* primitiveIClass(int classId) {
  PrimitivesIPackage* package = PrimitivesIPackage::iGetInstance();
  QVX_ASSERT(package != nullptr);
  if (package == nullptr) return nullptr;
  IClass* primitiveClass = package->getPrimitiveIClass(classId);
  QVX_ASSERT(primitiveClass != nullptr);
  return primitiveClass;
}

IProperty* valueIProperty(int classId) {
  QVX_ASSERT(classId >= 0 && classId < PrimitivesIPackage::kClassCount);
  if (classId < 0 || classId >= PrimitivesIPackage::kClassCount) return nullptr;
  std::atomic<IProperty*>& slot = gValueProperties[classId];
  if (IProperty* cached = slot.load(std::memory_order_acquire)) return cached;
  IClass* primitiveClass = primitiveIClass(classId);
  if (primitiveClass == nullptr) return nullptr;
  IProperty* property = primitiveClass->getAllProperties(ITRUE)[0];
  slot.store(property, std::memory_order_release);
  return property;
}

}  // namespace com::veltrana::qvx::icore::primitives::detail
