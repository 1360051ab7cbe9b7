// Loads the test provider libraries the way the runtime does (library name plus
// ".so", entry point "getEncryptionProviderInstance") and uses what they hand out.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "icore/IEncryptionProvider.h"
#include "icore/IObject.h"
#include "icore/exception/EncryptionFailureException.h"
#include "platform/DynLoadLib.h"

namespace {

using com::veltrana::qvx::icore::IEncryptionProvider;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::exception::EncryptionFailureException;

using EntryPoint = IEncryptionProvider* (*)();
using PropertyAccessor = const IProperty* (*)();
using ObjectAccessor = const IObject* (*)();
using CountAccessor = int (*)();

// Converts a symbol address to a function pointer without a cast that ISO C++
// leaves conditionally supported.
template <typename Function>
Function functionAt(DynLoadLib& library, const char* name) {
  void* address = library.getFunctionAddr(name);
  EXPECT_NE(address, nullptr) << name << ": " << library.getError().toUtf8();
  Function function = nullptr;
  static_assert(sizeof function == sizeof address, "function and data pointers differ in size");
  std::memcpy(&function, &address, sizeof function);
  return function;
}

TEST(EncryptionProviderLibraryTest, ProviderFromLibraryTransformsAndSeesPropertyAndObject) {
  DynLoadLib library;
  // The name the runtime is given carries no suffix; it appends one itself.
  EXPECT_EQ(library.load(QVX_TEST_PROVIDER_LIBRARY_STEM), ISTATUS_FAILURE);
  ASSERT_EQ(library.load(IUString(QVX_TEST_PROVIDER_LIBRARY_STEM) + IUString(".so")), ISTATUS_SUCCESS)
      << library.getError().toUtf8();

  const auto entryPoint = functionAt<EntryPoint>(library, "getEncryptionProviderInstance");
  const auto lastProperty = functionAt<PropertyAccessor>(library, "testEncryptionProviderLastProperty");
  const auto lastObject = functionAt<ObjectAccessor>(library, "testEncryptionProviderLastObject");
  ASSERT_TRUE(entryPoint && lastProperty && lastObject);

  const std::unique_ptr<IEncryptionProvider> provider(entryPoint());
  ASSERT_NE(provider, nullptr);

  // The provider only records the property pointer, so any distinct address will do.
  const IObject owner;
  const int propertyStandIn = 0;
  const auto* property = reinterpret_cast<const IProperty*>(&propertyStandIn);

  const IUString sealed = provider->encrypt("abc\U0001F600", property, &owner);
  EXPECT_EQ(sealed.substr(0, 5), IUString("test:"));
  EXPECT_EQ(sealed.substr(5).length(), 5u);
  EXPECT_EQ(lastProperty(), property);
  EXPECT_EQ(lastObject(), &owner);

  EXPECT_EQ(provider->decrypt(sealed, nullptr, &owner), IUString("abc\U0001F600"));
  EXPECT_EQ(lastProperty(), nullptr);

  // An exception thrown inside the library is caught here by its exact type.
  EXPECT_THROW(provider->decrypt("not ours", property, nullptr), EncryptionFailureException);
}

TEST(EncryptionProviderLibraryTest, NullVariantEntryPointReturnsNull) {
  DynLoadLib library;
  ASSERT_EQ(library.load(IUString(QVX_TEST_NULL_PROVIDER_LIBRARY_STEM) + IUString(".so")), ISTATUS_SUCCESS)
      << library.getError().toUtf8();
  const auto entryPoint = functionAt<EntryPoint>(library, "getEncryptionProviderInstance");
  const auto callCount = functionAt<CountAccessor>(library, "testEncryptionProviderCallCount");
  ASSERT_TRUE(entryPoint && callCount);
  const int before = callCount();
  EXPECT_EQ(entryPoint(), nullptr);
  EXPECT_EQ(callCount(), before + 1);
  EXPECT_STREQ(QVX_TEST_NULL_PROVIDER_LIBRARY, (std::string(QVX_TEST_NULL_PROVIDER_LIBRARY_STEM) + ".so").c_str());
}

}  // namespace
