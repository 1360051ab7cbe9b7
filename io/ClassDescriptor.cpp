#include "io/ClassDescriptor.h"

namespace com::veltrana::qvx::io {

void ClassDescriptor::setSuperClassDesc(ClassDescriptor* superClass) {
  superClassDesc_ = superClass;
  if (superClass == nullptr) return;
  std::vector<PropertyInfo*> const& inherited = superClass->getAllPropsInfo();
  allPropsInfo_.insert(allPropsInfo_.begin(), inherited.begin(), inherited.end());
}

void ClassDescriptor::addDeclaredProperty(std::unique_ptr<PropertyInfo> property) {
  allPropsInfo_.push_back(property.get());
  declared_.push_back(std::move(property));
}

}  // namespace com::veltrana::qvx::io
