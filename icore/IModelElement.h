// The root of the metamodel: a named, commented model object with a cached qualified
// name. Metamodel elements are model objects of the core package; once their package
// is initialised they are treated as frozen, and cross-links between them are plain
// pointers that stay valid for the process.
#pragma once

#include <atomic>
#include <memory>

#include "icore/internal/IObjectInternal.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {

class QVX_API IModelElement : public internal::IObjectInternal {
 public:
  IModelElement();
  ~IModelElement() override;
  IModelElement(const IModelElement&) = delete;
  IModelElement& operator=(const IModelElement&) = delete;

  IUString const& getName() const { return name_; }
  void setName(IUString name) { name_ = std::move(name); }
  IUString const& getComment() const { return comment_; }
  void setComment(IUString comment) { comment_ = std::move(comment); }

  // The namespace, ".", and the name; computed on first request and then kept, even
  // if the element is renamed or moved later. The name must not be empty.
  IUString const& getQualifiedName() const;
  // The qualified name of whatever contains this element; empty at this level.
  virtual IUString getNamespace() const;

  IIdentity const* iGetIdentity() const override { return identity_.get(); }
  // Takes ownership of `identity`; an element's identity is set once (74002).
  void iSetIdentity(IIdentity const*& identity) override;
  using internal::IObjectInternal::iSetIdentity;

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  IBOOLEAN iHasItems(IProperty const& property) override;

 protected:
  // The reflective errors of metamodel classes name the receiver by its plain name.
  [[noreturn]] void throwUnknownElementGet(IProperty const& property) const;
  [[noreturn]] void throwUnknownElementSet(IProperty const& property) const;
  [[noreturn]] void throwElementCollectionSet(IProperty const& property) const;
  // The value-enumeration constant of a reflective set of `property`, as found by
  // IcoreIPackage::classKindOf and its siblings; 73006 when the literal given stands
  // for none.
  template <typename Constant>
  Constant const* enumerationValue(Constant const* constant, IProperty const& property) const {
    if (constant == nullptr) throwUnknownElementSet(property);
    return constant;
  }

 private:
  std::unique_ptr<IIdentity const> identity_;
  IUString name_;
  IUString comment_;
  mutable IUString qualifiedName_;
  mutable std::atomic<bool> qualifiedNameReady_{false};
  mutable WkMutex lock_;
};

}  // namespace com::veltrana::qvx::icore
