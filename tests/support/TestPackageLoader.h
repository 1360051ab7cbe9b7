// Brings the test package "com.example.test.shapes" into a test program that does not
// link it, the way a host does: a package-library resolver names the shared library
// qvx_test_package and the runtime loads it. Needs QVX_TEST_PACKAGE_LIBRARY_STEM, the
// library's path without ".so". Objects are then made and used through reflection.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/QVXRuntime.h"
#include "platform/DynLoadLib.h"

namespace shapes_test {

namespace icore = com::veltrana::qvx::icore;

inline IUString const& shapesPackageName() {
  static const IUString name("com.example.test.shapes");
  return name;
}

// Names the test package's library for its package and no other.
inline IUString shapesLibraryResolver(IUString const& packageName, IUString& error) {
  if (packageName == shapesPackageName()) return IUString(QVX_TEST_PACKAGE_LIBRARY_STEM);
  error = IUString("no library is known for ") + packageName;
  return IUString();
}

// The registered test package, loaded first if need be. The process's resolver is
// restored afterwards. Null (with a test failure) when the library does not load.
inline icore::IPackage* loadShapesPackage() {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  if (icore::IPackage* loaded = runtime->getIPackageForName(shapesPackageName())) return loaded;
  const icore::QVXRuntime::PackageLibraryResolver previous = icore::QVXRuntime::getPackageLibraryResolver();
  icore::QVXRuntime::registerPackageLibraryResolver(&shapesLibraryResolver);
  IUString error;
  const ISTATUS status = icore::QVXRuntime::loadPackageLibrary(shapesPackageName(), error);
  icore::QVXRuntime::registerPackageLibraryResolver(previous);
  EXPECT_EQ(status, ISTATUS_SUCCESS) << error.toUtf8();
  return runtime->getIPackageForName(shapesPackageName());
}

inline icore::IClass* shapesClass(const char* name) {
  icore::IPackage* package = loadShapesPackage();
  if (package == nullptr) return nullptr;
  icore::IType* type = package->getType(IUString(name));
  return type != nullptr && type->isClass() ? static_cast<icore::IClass*>(type) : nullptr;
}

inline icore::IProperty* shapesProperty(const char* className, const char* propertyName) {
  icore::IClass* objectClass = shapesClass(className);
  return objectClass != nullptr ? objectClass->getProperty(IUString(propertyName)) : nullptr;
}

inline icore::IObjectInfo* infoOf(icore::IObject* object) {
  return icore::QVXRuntime::getInstance()->getIObjectInfo(object);
}

// The number of live objects of the package's classes, read from the loaded library.
inline int shapesLiveObjectCount() {
  loadShapesPackage();
  DynLoadLib library;  // the already loaded library: the loader hands out the same one
  if (library.load(IUString(QVX_TEST_PACKAGE_LIBRARY_STEM) + IUString(".so")) != ISTATUS_SUCCESS) {
    ADD_FAILURE() << library.getError().toUtf8();
    return -1;
  }
  void* address = library.getFunctionAddr("qvxTestPackageLiveObjectCount");
  if (address == nullptr) {
    ADD_FAILURE() << library.getError().toUtf8();
    return -1;
  }
  int (*count)() = nullptr;
  static_assert(sizeof count == sizeof address, "function and data pointers differ in size");
  std::memcpy(&count, &address, sizeof count);
  return count();
}

}  // namespace shapes_test
