// The boxed primitives and the primitives package's factory: each boxed class with its
// value property and reflective access to the value, the blob's copies and lengths, and
// the factory's refusals.
#include "icore/primitives/PrimitivesIPackage.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/primitives/IBlob.h"
#include "icore/primitives/IBoolean.h"
#include "icore/primitives/IByte.h"
#include "icore/primitives/ICharacter.h"
#include "icore/primitives/IDate.h"
#include "icore/primitives/IDouble.h"
#include "icore/primitives/IFloat.h"
#include "icore/primitives/IInteger.h"
#include "icore/primitives/ILong.h"
#include "icore/primitives/IShort.h"
#include "icore/primitives/IString.h"
#include "icore/primitives/PrimitivesIFactory.h"
#include "icore/runtime/StringIdentity.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;              // NOLINT: test file
using namespace com::veltrana::qvx::icore::primitives;  // NOLINT: test file
using exception::IllegalArgumentException;
using exception::InstantiationException;
using exception::UnresolvedProxyException;
using qvx_test::messageOf;

PrimitivesIPackage& package() { return *PrimitivesIPackage::iGetInstance(); }

// A proxy of a boxed class; only derived code can set the flag, the factory never does.
template <typename Boxed>
struct ProxyOf : Boxed {
  ProxyOf() { this->iSetProxy(); }
};

// A value other than the initial one, per boxed type.
template <typename Boxed> struct Sample;
template <> struct Sample<IBoolean> { static IBOOLEAN value() { return ITRUE; } };
template <> struct Sample<IByte> { static char value() { return '\x80'; } };
template <> struct Sample<ICharacter> { static unsigned short value() { return 0x263A; } };
template <> struct Sample<IDouble> { static double value() { return -1e300; } };
template <> struct Sample<IFloat> { static float value() { return 0.5f; } };
template <> struct Sample<IInteger> { static int value() { return INT_MIN; } };
template <> struct Sample<ILong> { static std::int64_t value() { return LLONG_MIN; } };
template <> struct Sample<IShort> { static short value() { return -2; } };
template <> struct Sample<IString> { static IUString value() { return IUString(u"\u00e4"); } };

template <typename Boxed>
class BoxedValueTest : public testing::Test {};
using ValueTypes = testing::Types<IBoolean, IByte, ICharacter, IDouble, IFloat, IInteger, ILong, IShort, IString>;
TYPED_TEST_SUITE(BoxedValueTest, ValueTypes);

TYPED_TEST(BoxedValueTest, FacadeReachesTheBoxedValueAndRefusesForeignPropertiesAndProxies) {
  using Value = std::decay_t<decltype(std::declval<TypeParam const&>().getValue())>;
  IClass* boxedClass = package().getPrimitiveIClass(TypeParam::kClassId);
  IProperty const& own = *TypeParam::Properties::getValueIProperty();
  IProperty const& foreign = *IcoreIPackage::iGetInstance()->getIModelElement_NameIProperty();
  TypeParam object;
  IObjectInfo& info = object.iGetIObjectInfo();
  ASSERT_EQ(info.getIClass(), boxedClass);
  ASSERT_EQ(boxedClass->getAllProperties(ITRUE).size(), 1u);
  ASSERT_EQ(&own, boxedClass->getAllProperties(ITRUE)[0]);
  EXPECT_EQ(own.getName() + IUString(":") + own.getType()->getName(), IUString("value:") + boxedClass->getName());
  EXPECT_TRUE(boxedClass->isValueClass() && !boxedClass->isIdentifiableClass());
  Value written = Sample<TypeParam>::value();
  info.set(own, &written, 0, ITRUE);
  EXPECT_EQ(object.getValue(), written);
  EXPECT_EQ(info.get(own, ITRUE), &object.getValue());  // the member itself, not a copy
  EXPECT_EQ(info.getCardinality(own), 1);
  const IUString notOurs = qvxFormatMsg(73005, foreign.getName(), boxedClass->getQualifiedName());
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.get(foreign, ITRUE); }), notOurs);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.hasItems(own); }),
            qvxFormatMsg(73005, own.getName(), boxedClass->getQualifiedName()));

  ProxyOf<TypeParam> proxy;
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy.setValue(written); }), qvxGetMsg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy.iGetIObjectInfo().get(own, ITRUE); }), qvxGetMsg(75004));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { proxy.iGetIObjectInfo().get(foreign, ITRUE); }), notOurs);
}

TEST(PrimitivesIFactoryTest, RefusesForeignClassesProxiesAndDatatypeConversions) {
  PrimitivesIFactory& factory = *PrimitivesIFactory::iGetInstance();
  IClass const& foreign = *IcoreIPackage::iGetInstance()->getIClassIClass();
  IClass const& stringClass = *package().getPrimitiveIClass(IString::kClassId);
  const IUString notInPackage = qvxFormatMsg(73011, IUString("primitives"), foreign.getQualifiedName());
  runtime::StringIdentity identity(IUString("id-1"));
  IIdentity const* given = &identity;
  IIdentity const* none = nullptr;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.create(foreign); }), notInPackage);
  // The package is checked first, even before the identity.
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.createProxy(foreign, none); }), notInPackage);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.createProxy(stringClass, none); }), qvxGetMsg(75007));
  EXPECT_EQ(messageOf<InstantiationException>([&] { stringClass.createProxy(given); }),
            qvxFormatMsg(75009, stringClass.getQualifiedName()));
  const int value = 3;
  IDatatype const& integer = *ICoreDatatypes::I_INTEGER;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.datatypeToString(integer, &value); }),
            qvxFormatMsg(73002, integer.getQualifiedName()));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.datatypeFromString(integer, IUString("3")); }),
            qvxFormatMsg(73002, integer.getQualifiedName()));
}

TEST(IBlobTest, KeepsItsOwnCopyAndTheOldLengthAfterANullValue) {
  IBlob blob;
  char const* data = "not null";
  EXPECT_EQ(blob.getValue(data), 0u);
  EXPECT_EQ(data, nullptr);
  char source[] = {'a', 'b', 'c', 'd', 'e'};
  blob.setValue(source, 5);
  source[0] = 'X';
  ASSERT_EQ(blob.getValue(data), 5u);
  EXPECT_EQ(std::string(data, 5), "abcde");
  blob.setValue(data + 1, 3);  // from its own buffer
  ASSERT_EQ(blob.getValue(data), 3u);
  EXPECT_EQ(std::string(data, 3), "bcd");
  blob.setValue(nullptr, 0);
  EXPECT_EQ(blob.getValue(data), 3u);
  EXPECT_EQ(data, nullptr);
  // Through the facade the length travels beside the bytes.
  char bytes[] = {'\0', '\xff', '\x7f'};
  blob.iGetIObjectInfo().set(*IBlob::Properties::getValueIProperty(), bytes, 3, ITRUE);
  unsigned int length = 0;
  void const* read = blob.iGetIObjectInfo().get(*IBlob::Properties::getValueIProperty(), &length, ITRUE);
  ASSERT_EQ(length, 3u);
  EXPECT_NE(read, bytes);
  EXPECT_EQ(std::string(static_cast<char const*>(read), 3), std::string(bytes, 3));
}

// A reflective set copies the date, as every reflective set copies its value, so the
// generic copy of a property between two objects leaves each with its own date;
// setValue alone adopts the date it is given.
TEST(IDateTest, ReflectiveSetCopiesTheDateWhileSetValueAdoptsIt) {
  IProperty const& value = *IDate::Properties::getValueIProperty();
  IDate source;
  source.setValue(new WkDate(WkDate::fromTime(1706708707, 250000000)));  // 01/31/2024 13:45:07.250
  {
    IDate copy;
    copy.iGetIObjectInfo().set(value, const_cast<void*>(source.iGetIObjectInfo().get(value, ITRUE)), 0, ITRUE);
    ASSERT_NE(copy.getValue(), nullptr);
    EXPECT_NE(copy.getValue(), source.getValue());
    EXPECT_EQ(*copy.getValue(), *source.getValue());
  }  // the copy's date is freed here, the source's must still be usable
  EXPECT_EQ(source.getValue()->getYear(), 2024);

  WkDate local = WkDate::fromTime(946684799);  // 12/31/1999 23:59:59
  IDate fromLocal;
  fromLocal.iGetIObjectInfo().set(value, &local, 0, ITRUE);  // a date the caller keeps
  local.AddToPart("S", 1);
  EXPECT_EQ(fromLocal.getValue()->getYear(), 1999);
  fromLocal.iGetIObjectInfo().set(value, nullptr, 0, ITRUE);
  EXPECT_EQ(fromLocal.getValue(), nullptr);

  auto* adopted = new WkDate();
  fromLocal.setValue(adopted);
  EXPECT_EQ(fromLocal.getValue(), adopted);
}

}  // namespace
