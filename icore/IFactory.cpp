#include "icore/IFactory.h"

#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore {

IFactory::~IFactory() = default;

IObject* IFactory::create(IClass const&) {
  QVX_ASSERT_FAIL("the package's factory does not override create");
  return nullptr;
}

IObject* IFactory::createProxy(IClass const&, IIdentity const*&) {
  QVX_ASSERT_FAIL("the package's factory does not override createProxy");
  return nullptr;
}

void* IFactory::datatypeFromString(IDatatype const&, IUString const&) {
  QVX_ASSERT_FAIL("the package's factory does not override datatypeFromString");
  return nullptr;
}

IUString* IFactory::datatypeToString(IDatatype const&, void const*) {
  QVX_ASSERT_FAIL("the package's factory does not override datatypeToString");
  return nullptr;
}

}  // namespace com::veltrana::qvx::icore
