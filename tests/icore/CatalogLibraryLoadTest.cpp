// Loading the sample package "com.example.catalog" on demand: this program does not
// link its library, so the package only exists here once the runtime has loaded the
// library through a package-library resolver and the library's initialiser has
// registered it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/QVXRuntime.h"

namespace {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IPackage;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;

const char* const kCatalogPackage = "com.example.catalog";

IUString catalogLibraryResolver(IUString const& packageName, IUString& error) {
  if (packageName == IUString(kCatalogPackage)) return IUString(QVX_TEST_CATALOG_LIBRARY_STEM);
  error = IUString("no library is known for ") + packageName;
  return IUString();
}

bool isCatalogLibraryResident() {
  void* handle = dlopen(QVX_TEST_CATALOG_LIBRARY_STEM ".so", RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

TEST(CatalogLibraryLoadTest, LoadingTheLibraryRegistersThePackage) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  if (!isCatalogLibraryResident()) {
    EXPECT_FALSE(runtime->isPackageRegistered(kCatalogPackage));
  }

  const QVXRuntime::PackageLibraryResolver previous = QVXRuntime::getPackageLibraryResolver();
  QVXRuntime::registerPackageLibraryResolver(&catalogLibraryResolver);
  IUString error;
  const ISTATUS status = QVXRuntime::loadPackageLibrary(kCatalogPackage, error);
  QVXRuntime::registerPackageLibraryResolver(previous);
  ASSERT_EQ(status, ISTATUS_SUCCESS) << error.toUtf8();

  EXPECT_TRUE(isCatalogLibraryResident());
  ASSERT_TRUE(runtime->isPackageRegistered(kCatalogPackage));
  IPackage* package = runtime->getIPackageForName(kCatalogPackage);
  EXPECT_EQ(package->getVersion(), IUString("1.2.0"));

  // The package's classes work through reflection alone.
  auto* tableClass = static_cast<IClass*>(package->getType("Table"));
  ASSERT_NE(tableClass, nullptr);
  std::unique_ptr<IObject> table(tableClass->create());
  IObjectInfo* info = runtime->getIObjectInfo(table.get());
  IProperty const* name = tableClass->getProperty("name");
  ASSERT_NE(name, nullptr);
  IUString text("orders");
  info->set(*name, &text, 0, ITRUE);
  EXPECT_EQ(*static_cast<IUString const*>(info->get(*name, ITRUE)), text);
}

}  // namespace
