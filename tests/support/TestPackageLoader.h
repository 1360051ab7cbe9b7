// Brings the test package "com.example.test.shapes" into a test program that does not
// link it, the way a host does: a package-library resolver names the shared library
// qvx_test_package (QVX_TEST_PACKAGE_LIBRARY_STEM, its path without ".so") and the
// runtime loads it. Objects are then made and used through reflection.
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

// Names the test package's library for its package and no other.
inline IUString shapesLibraryResolver(IUString const& packageName, IUString& error) {
  if (packageName == IUString("com.example.test.shapes")) return IUString(QVX_TEST_PACKAGE_LIBRARY_STEM);
  error = IUString("no library is known for ") + packageName;
  return IUString();
}

// The registered test package, loaded first if need be; the process's resolver is put
// back afterwards.
inline icore::IPackage* loadShapesPackage() {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  if (runtime->isPackageRegistered("com.example.test.shapes") == IFALSE) {
    const icore::QVXRuntime::PackageLibraryResolver previous = icore::QVXRuntime::getPackageLibraryResolver();
    icore::QVXRuntime::registerPackageLibraryResolver(&shapesLibraryResolver);
    IUString error;
    const ISTATUS status = icore::QVXRuntime::loadPackageLibrary("com.example.test.shapes", error);
    EXPECT_EQ(status, ISTATUS_SUCCESS) << error.toUtf8();
    icore::QVXRuntime::registerPackageLibraryResolver(previous);
  }
  return runtime->getIPackageForName("com.example.test.shapes");
}

inline icore::IClass* shapesClass(const char* name) {
  icore::IPackage* package = loadShapesPackage();
  return package != nullptr ? static_cast<icore::IClass*>(package->getType(name)) : nullptr;
}

inline icore::IProperty* shapesProperty(const char* className, const char* propertyName) {
  return shapesClass(className)->getProperty(propertyName);
}

inline icore::IObjectInfo* infoOf(icore::IObject* object) {
  return icore::QVXRuntime::getInstance()->getIObjectInfo(object);
}

// The number of live objects of the package's classes, read from the loaded library.
inline int shapesLiveObjectCount() {
  loadShapesPackage();
  DynLoadLib library;  // the library already loaded: the loader hands out the same one
  void* address = library.load(IUString(QVX_TEST_PACKAGE_LIBRARY_STEM) + IUString(".so")) == ISTATUS_SUCCESS
                      ? library.getFunctionAddr("qvxTestPackageLiveObjectCount")
                      : nullptr;
  EXPECT_NE(address, nullptr) << library.getError().toUtf8();
  int (*count)() = nullptr;
  std::memcpy(&count, &address, sizeof count);
  return count != nullptr ? count() : -1;
}

}  // namespace shapes_test
