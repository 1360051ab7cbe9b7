#include "tools/qvx/GraphSize.h"

#include <vector>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "icore/QVXRuntime.h"

namespace qvx_tool {

namespace icore = com::veltrana::qvx::icore;

namespace {

void pushContained(icore::IObject const* object, std::vector<icore::IObject const*>& pending) {
  icore::IObjectInfo const* info = icore::QVXRuntime::getInstance()->getIObjectInfo(object);
  if (info == nullptr || info->isProxy()) return;
  IVector<icore::IProperty*> const& properties = info->getIClass()->getAllProperties(IFALSE);
  for (std::size_t i = 0; i < properties.size(); ++i) {
    icore::IProperty const& property = *properties[i];
    if (!property.isContainment() || property.getType() == nullptr || !property.getType()->isClass()) continue;
    void const* value = info->get(property, IFALSE);
    if (value == nullptr) continue;
    if (!property.isCollection()) {
      pending.push_back(static_cast<icore::IObject const*>(value));
      continue;
    }
    auto const* items = static_cast<IVector<icore::IObject*> const*>(value);
    for (std::size_t k = 0; k < items->size(); ++k) pending.push_back((*items)[k]);
  }
}

}  // namespace

std::size_t GraphSize::count(IVector<icore::IObject*> const& roots) {
  std::vector<icore::IObject const*> pending;
  for (std::size_t i = 0; i < roots.size(); ++i) pending.push_back(roots[i]);
  std::size_t objects = 0;
  while (!pending.empty()) {
    icore::IObject const* object = pending.back();
    pending.pop_back();
    if (object == nullptr) continue;
    ++objects;
    pushContained(object, pending);
  }
  return objects;
}

}  // namespace qvx_tool
