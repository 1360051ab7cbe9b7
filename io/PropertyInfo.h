// What a class descriptor in a binary stream says about one declared property: how its
// values are typed and what it is called. The read side's picture; the writer works
// from the metamodel directly.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::io {

class QVX_API PropertyInfo {
 public:
  // For a collection the element kind: the primitive marker, TC_ENUM or TC_UDC.
  char getPropertyTypeMarker() const { return propertyTypeMarker_; }
  void setPropertyTypeMarker(char marker) { propertyTypeMarker_ = marker; }
  IUString const& getPropertyName() const { return propertyName_; }
  void setPropertyName(IUString name) { propertyName_ = std::move(name); }
  // The qualified name of the enumeration or class; empty for primitives.
  IUString const& getPropertyTypeName() const { return propertyTypeName_; }
  void setPropertyTypeName(IUString name) { propertyTypeName_ = std::move(name); }
  IBOOLEAN getIsCollection() const { return isCollection_; }
  void setIsCollection(IBOOLEAN value) { isCollection_ = value; }

 private:
  char propertyTypeMarker_ = 0;
  IUString propertyName_;
  IUString propertyTypeName_;
  IBOOLEAN isCollection_ = IFALSE;
};

}  // namespace com::veltrana::qvx::io
