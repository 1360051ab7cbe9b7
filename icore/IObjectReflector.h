// The entry point to the reflective view of any object: its facade and its class. A
// stateless process-wide singleton that exists from library load on; it needs no
// runtime instance.
#pragma once

#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IClass;
class IObject;
class IObjectInfo;

class QVX_API IObjectReflector {
 public:
  static IObjectReflector* getInstance();

  // The object's own facade. Every object of the framework derives from the object
  // storage base, which this relies on.
  IObjectInfo* getIObjectInfo(IObject const* object);
  IClass const* getIClass(IObject* object);

  IObjectReflector(const IObjectReflector&) = default;
  IObjectReflector& operator=(const IObjectReflector&) = default;
  virtual ~IObjectReflector();

 private:
  IObjectReflector() = default;
  static IObjectReflector* I_INSTANCE;
};

}  // namespace com::veltrana::qvx::icore
