// A class descriptor as read from a binary stream: the qualified class name, the package
// version it was written with, and the property information of the class's complete
// property list (the super class's complete list first, then the declared properties).
// The descriptor owns the PropertyInfo of its declared properties and shares those of
// its super class, which the same HandleManager keeps alive.
#pragma once

#include <memory>
#include <vector>

#include "io/PropertyInfo.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {
class IClass;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

class QVX_API ClassDescriptor {
 public:
  ClassDescriptor() = default;
  ClassDescriptor(const ClassDescriptor&) = delete;
  ClassDescriptor& operator=(const ClassDescriptor&) = delete;

  int getHandle() const { return handle_; }
  void setHandle(int handle) { handle_ = handle; }
  IUString const& getIClassName() const { return className_; }
  void setIClassName(IUString name) { className_ = std::move(name); }
  IUString const& getPackageVersion() const { return packageVersion_; }
  void setPackageVersion(IUString version) { packageVersion_ = std::move(version); }
  int getDeclPropCount() const { return declPropCount_; }
  void setDeclPropCount(int count) { declPropCount_ = count; }
  ClassDescriptor* getSuperClassDesc() const { return superClassDesc_; }
  // Takes the super class's complete list to the front of this one's.
  void setSuperClassDesc(ClassDescriptor* superClass);
  std::vector<PropertyInfo*> const& getAllPropsInfo() const { return allPropsInfo_; }
  // Appends a declared property; the descriptor takes ownership.
  void addDeclaredProperty(std::unique_ptr<PropertyInfo> property);

  // The registered class that objects of this descriptor are read into, with the
  // registered property of each entry of getAllPropsInfo() (null where the class has
  // no such property). Set once, by the object reader, on the first object.
  struct Binding {
    icore::IClass* objectClass = nullptr;
    std::vector<icore::IProperty const*> properties;
    // Entries whose type disagrees with the registered property: a value for one is an error.
    std::vector<bool> conflicting;
  };
  Binding const* getBinding() const { return binding_.get(); }
  void setBinding(std::unique_ptr<Binding> binding) { binding_ = std::move(binding); }

 private:
  int handle_ = -1;
  IUString className_;
  IUString packageVersion_;
  std::vector<PropertyInfo*> allPropsInfo_;
  std::vector<std::unique_ptr<PropertyInfo>> declared_;
  ClassDescriptor* superClassDesc_ = nullptr;
  int declPropCount_ = 0;
  std::unique_ptr<Binding> binding_;
};

}  // namespace com::veltrana::qvx::io
