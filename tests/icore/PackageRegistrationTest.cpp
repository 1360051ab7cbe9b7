// Loading package libraries on demand: the resolver's answers and their failures, and
// the test package library, which this program does not link, becoming a registered
// package whose classes work through reflection.
#include "icore/runtime/PackageRegistration.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "icore/IClass.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IIdentity.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/runtime/SeedIdentity.h"
#include "tests/support/TestPackageLoader.h"

namespace {

using com::veltrana::qvx::icore::IClass;
using com::veltrana::qvx::icore::IEnumeration;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IPackage;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::qvxFormatMsg;
using com::veltrana::qvx::icore::exception::IllegalArgumentException;
using com::veltrana::qvx::icore::exception::UnresolvedProxyException;
using com::veltrana::qvx::icore::runtime::PackageRegistration;
using com::veltrana::qvx::icore::runtime::SeedIdentity;
using shapes_test::infoOf;
using shapes_test::shapesClass;
using shapes_test::shapesPackageName;
using shapes_test::shapesProperty;

const char* const kLibraryFile = QVX_TEST_PACKAGE_LIBRARY_STEM ".so";

// Whether the test package library is in the process, asked without loading it.
bool isLibraryResident() {
  void* handle = dlopen(kLibraryFile, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

int gResolverCalls = 0;

// Names the real test library and reports an error at the same time.
IUString resolverWithError(IUString const&, IUString& error) {
  ++gResolverCalls;
  error = "map file unreadable";
  return IUString(QVX_TEST_PACKAGE_LIBRARY_STEM);
}

IUString resolverWithoutName(IUString const&, IUString&) {
  ++gResolverCalls;
  return IUString();
}

IUString resolverToMissingLibrary(IUString const&, IUString&) {
  ++gResolverCalls;
  return IUString("/nonexistent-qvx-dir/libqvx_missing_package");
}

// Installs a resolver for one test and puts back the process's one afterwards.
class PackageRegistrationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    previous_ = PackageRegistration::getPackageLibraryResolver();
    gResolverCalls = 0;
  }
  void TearDown() override { PackageRegistration::registerPackageLibraryResolver(previous_); }

 private:
  PackageRegistration::Resolver previous_ = nullptr;
};

TEST_F(PackageRegistrationTest, RuntimeForwardsTheResolver) {
  QVXRuntime::registerPackageLibraryResolver(&resolverWithoutName);
  EXPECT_EQ(PackageRegistration::getPackageLibraryResolver(), &resolverWithoutName);
  PackageRegistration::registerPackageLibraryResolver(nullptr);
  EXPECT_EQ(QVXRuntime::getPackageLibraryResolver(), nullptr);
}

TEST_F(PackageRegistrationTest, WithoutResolverFailsWith76005) {
  PackageRegistration::registerPackageLibraryResolver(nullptr);
  IUString error;
  EXPECT_EQ(QVXRuntime::loadPackageLibrary("com.example.absent", error), ISTATUS_FAILURE);
  EXPECT_EQ(error, qvxFormatMsg(76005, IUString("com.example.absent")));
}

TEST_F(PackageRegistrationTest, ResolverErrorFailsWith76012BeforeTheNameIsUsed) {
  const bool residentBefore = isLibraryResident();
  PackageRegistration::registerPackageLibraryResolver(&resolverWithError);
  IUString error;
  EXPECT_EQ(PackageRegistration::loadPackageLibrary("com.example.test.shapes", error), ISTATUS_FAILURE);
  EXPECT_EQ(error, qvxFormatMsg(76012, IUString("com.example.test.shapes"), IUString("map file unreadable")));
  EXPECT_EQ(gResolverCalls, 1);
  // Only meaningful when no earlier test of this process loaded the library (as when
  // each test runs in a process of its own).
  if (!residentBefore) {
    EXPECT_FALSE(isLibraryResident());
  }
}

TEST_F(PackageRegistrationTest, EmptyLibraryNameFailsWith76013) {
  PackageRegistration::registerPackageLibraryResolver(&resolverWithoutName);
  IUString error;
  EXPECT_EQ(PackageRegistration::loadPackageLibrary("com.example.nameless", error), ISTATUS_FAILURE);
  EXPECT_EQ(error, qvxFormatMsg(76013, IUString("com.example.nameless")));
}

TEST_F(PackageRegistrationTest, MissingLibraryGivesTheLoadersTextNamingTheFile) {
  PackageRegistration::registerPackageLibraryResolver(&resolverToMissingLibrary);
  IUString error;
  EXPECT_EQ(PackageRegistration::loadPackageLibrary("com.example.missing", error), ISTATUS_FAILURE);
  const std::string text = error.toUtf8();
  EXPECT_NE(text.find("/nonexistent-qvx-dir/libqvx_missing_package.so"), std::string::npos) << text;
}

TEST_F(PackageRegistrationTest, LoadingTheLibraryRegistersItsPackageOnce) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  PackageRegistration::registerPackageLibraryResolver(&shapes_test::shapesLibraryResolver);
  IUString error;
  ASSERT_EQ(QVXRuntime::loadPackageLibrary(shapesPackageName(), error), ISTATUS_SUCCESS) << error.toUtf8();
  IPackage* loaded = runtime->getIPackageForName(shapesPackageName());
  ASSERT_NE(loaded, nullptr);
  EXPECT_EQ(loaded->getVersion(), IUString("1.0.0"));
  EXPECT_TRUE(isLibraryResident());

  ASSERT_EQ(QVXRuntime::loadPackageLibrary(shapesPackageName(), error), ISTATUS_SUCCESS) << error.toUtf8();
  EXPECT_EQ(runtime->getIPackageForName(shapesPackageName()), loaded);
  std::size_t listed = 0;
  for (IPackage* package : runtime->getAllIPackages()) listed += package == loaded ? 1 : 0;
  EXPECT_EQ(listed, 1u);
}

TEST_F(PackageRegistrationTest, LoadedPackageDescribesItsClasses) {
  IPackage* package = shapes_test::loadShapesPackage();
  ASSERT_NE(package, nullptr);
  IClass* circle = shapesClass("Circle");
  IClass* shape = shapesClass("Shape");
  ASSERT_TRUE(circle != nullptr && shape != nullptr);
  EXPECT_EQ(circle->getQualifiedName(), IUString("com.example.test.shapes.Circle"));
  EXPECT_EQ(circle->getSuperClass(), shape);
  EXPECT_EQ(circle->isTypeOf(*shape), ITRUE);
  EXPECT_EQ(circle->isSeeded(), ITRUE);
  EXPECT_EQ(shapesClass("Note")->isIdentifiableClass(), IFALSE);

  // Inherited properties come first and keep their ids; the subclass continues them.
  const IVector<IProperty*>& all = circle->getAllProperties(ITRUE);
  ASSERT_EQ(all.size(), 6u);
  for (std::size_t index = 0; index < all.size(); ++index) {
    EXPECT_EQ(all[index]->getPropertyId(), static_cast<int>(index)) << all[index]->getName().toUtf8();
  }
  EXPECT_EQ(all[5]->getName(), IUString("radius"));

  IProperty* shapes = shapesProperty("Stencil", "shapes");
  ASSERT_NE(shapes, nullptr);
  EXPECT_EQ(shapes->isCollection(), ITRUE);
  EXPECT_EQ(shapes->isContainment(), ITRUE);
  EXPECT_EQ(shapes->getOppositeProperty(), shapesProperty("Shape", "stencil"));
}

TEST_F(PackageRegistrationTest, LoadedClassesAreCreatedReadAndWrittenReflectively) {
  IClass* circleClass = shapesClass("Circle");
  IClass* stencilClass = shapesClass("Stencil");
  ASSERT_TRUE(circleClass != nullptr && stencilClass != nullptr);
  std::unique_ptr<IObject> stencil(stencilClass->create());
  IObject* circle = circleClass->create();  // handed to the stencil below
  IObjectInfo* circleInfo = infoOf(circle);
  ASSERT_NE(circleInfo, nullptr);
  EXPECT_EQ(circleInfo->getIClass(), circleClass);

  IProperty* name = shapesProperty("Circle", "name");
  IProperty* sides = shapesProperty("Circle", "sides");
  IProperty* filled = shapesProperty("Circle", "filled");
  IProperty* outline = shapesProperty("Circle", "outline");
  IProperty* radius = shapesProperty("Circle", "radius");
  IUString nameValue("wheel");
  std::int32_t sidesValue = 0;
  IBOOLEAN filledValue = ITRUE;
  std::int32_t radiusValue = 12;
  auto* lineStyle = static_cast<IEnumeration*>(outline->getType());
  IEnumerationLiteral* dashed = lineStyle->getLiterals()[1];
  circleInfo->set(*name, &nameValue, 0, ITRUE);
  circleInfo->set(*sides, &sidesValue, 0, ITRUE);
  circleInfo->set(*filled, &filledValue, 0, ITRUE);
  circleInfo->set(*outline, dashed, 0, IFALSE);
  circleInfo->set(*radius, &radiusValue, 0, ITRUE);

  EXPECT_EQ(*static_cast<IUString const*>(circleInfo->get(*name, ITRUE)), IUString("wheel"));
  EXPECT_EQ(*static_cast<std::int32_t const*>(circleInfo->get(*radius, ITRUE)), 12);
  EXPECT_EQ(*static_cast<IBOOLEAN const*>(circleInfo->get(*filled, ITRUE)), ITRUE);
  EXPECT_EQ(circleInfo->get(*outline, IFALSE), dashed);

  // A multi-valued containment is changed through the collection that get returns.
  IObjectInfo* stencilInfo = infoOf(stencil.get());
  IProperty* contents = shapesProperty("Stencil", "shapes");
  EXPECT_EQ(stencilInfo->getCardinality(*contents), 0);
  EXPECT_EQ(stencilInfo->hasItems(*contents), IFALSE);
  auto* collection = const_cast<IVector<IObject*>*>(static_cast<IVector<IObject*> const*>(stencilInfo->get(*contents, IFALSE)));
  collection->append(circle);
  circleInfo->getAssociatedObject()->iSetContainer(stencilInfo->getAssociatedObject(), contents);
  EXPECT_EQ(stencilInfo->getCardinality(*contents), 1);
  EXPECT_EQ(stencilInfo->hasItems(*contents), ITRUE);
  EXPECT_EQ(circleInfo->get(*shapesProperty("Circle", "stencil"), IFALSE), stencil.get());
  EXPECT_THROW(stencilInfo->set(*contents, collection, 0, IFALSE), IllegalArgumentException);

  // A property of another class is refused with the class's qualified name.
  try {
    circleInfo->get(*shapesProperty("Note", "text"), ITRUE);
    FAIL() << "a property of another class was read";
  } catch (IllegalArgumentException& error) {
    EXPECT_EQ(error.getMessage(),
              qvxFormatMsg(73005, IUString("text"), IUString("com.example.test.shapes.Circle")));
  }
}

TEST_F(PackageRegistrationTest, LoadedClassesMakeProxiesThatRefuseValues) {
  IClass* shapeClass = shapesClass("Shape");
  ASSERT_NE(shapeClass, nullptr);
  IIdentity const* identity = new SeedIdentity("com.example.test.shapes:Shape.proxy");
  std::unique_ptr<IObject> proxy(shapeClass->createProxy(identity));
  IObjectInfo* info = infoOf(proxy.get());
  EXPECT_EQ(info->isProxy(), ITRUE);
  EXPECT_EQ(info->getIdentityString(), IUString("com.example.test.shapes:Shape.proxy"));
  EXPECT_THROW(info->get(*shapesProperty("Shape", "name"), ITRUE), UnresolvedProxyException);
}

}  // namespace
