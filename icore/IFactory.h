// Creates the instances of a package's classes and converts its data types to and from
// text. Every package supplies a derived factory; the base operations are assertion
// failures.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IClass;
class IDatatype;
class IIdentity;
class IObject;
class IPackage;

class QVX_API IFactory {
 public:
  IFactory() = default;
  IFactory(const IFactory&) = delete;
  IFactory& operator=(const IFactory&) = delete;
  virtual ~IFactory();

  // A new instance of `objectClass`; the caller owns it.
  virtual IObject* create(IClass const& objectClass);
  // A new proxy of `objectClass` that takes ownership of `identity`; the caller owns it.
  virtual IObject* createProxy(IClass const& objectClass, IIdentity const*& identity);
  // A newly allocated value parsed from `text`; the caller owns it.
  virtual void* datatypeFromString(IDatatype const& datatype, IUString const& text);
  // A newly allocated text of `value`; the caller owns it.
  virtual IUString* datatypeToString(IDatatype const& datatype, void const* value);

  virtual IPackage* getPackage() { return package_; }
  virtual IPackage const* getPackage() const { return package_; }
  void setPackage(IPackage* package) { package_ = package; }

 private:
  IPackage* package_ = nullptr;
};

}  // namespace com::veltrana::qvx::icore
