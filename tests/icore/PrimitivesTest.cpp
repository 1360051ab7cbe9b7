// The boxed primitives, the primitives package and its factory: reflective access under
// the object-storage contract, the package's metadata, blob and date ownership, and
// the refusal to make proxies.
#include "icore/primitives/PrimitivesIPackage.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IIdentity.h"
#include "icore/IObjectInfo.h"
#include "icore/IProperty.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
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

namespace {

using namespace com::veltrana::qvx::icore;
using namespace com::veltrana::qvx::icore::primitives;
using exception::IllegalArgumentException;
using exception::InstantiationException;
using exception::UnresolvedProxyException;

PrimitivesIPackage& package() {
  PrimitivesIPackage* built = PrimitivesIPackage::iGetInstance();
  EXPECT_NE(built, nullptr);
  return *built;
}

// The message of the exception of type E that `action` throws ("<nothing thrown>" if none).
template <typename E, typename Action>
std::string messageOf(Action&& action) {
  try {
    action();
  } catch (E& thrown) {
    return thrown.getMessage().toUtf8();
  }
  return "<nothing thrown>";
}

std::string msg(int number) { return qvxGetMsg(number).toUtf8(); }
template <typename... Args>
std::string msg(int number, Args const&... args) {
  return qvxFormatMsg(number, args...).toUtf8();
}

// A proxy of a boxed class; only derived code can set the flag, the factory never does.
template <typename Boxed>
struct ProxyOf : Boxed {
  ProxyOf() { this->iSetProxy(); }
};

// A value other than the initial one, and the class accessor, per boxed type.
template <typename Boxed> struct Sample;
template <> struct Sample<IBoolean> {
  static IBOOLEAN value() { return ITRUE; }
  static IClass* cls() { return package().getIBooleanIClass(); }
};
template <> struct Sample<IByte> {
  static char value() { return '\x80'; }
  static IClass* cls() { return package().getIByteIClass(); }
};
template <> struct Sample<ICharacter> {
  static unsigned short value() { return 0x263A; }
  static IClass* cls() { return package().getICharacterIClass(); }
};
template <> struct Sample<IDouble> {
  static double value() { return -1e300; }
  static IClass* cls() { return package().getIDoubleIClass(); }
};
template <> struct Sample<IFloat> {
  static float value() { return 0.5f; }
  static IClass* cls() { return package().getIFloatIClass(); }
};
template <> struct Sample<IInteger> {
  static int value() { return INT_MIN; }
  static IClass* cls() { return package().getIIntegerIClass(); }
};
template <> struct Sample<ILong> {
  static std::int64_t value() { return LLONG_MIN; }
  static IClass* cls() { return package().getILongIClass(); }
};
template <> struct Sample<IShort> {
  static short value() { return -2; }
  static IClass* cls() { return package().getIShortIClass(); }
};
template <> struct Sample<IString> {
  static IUString value() { return IUString(u"\u00e4 value"); }
  static IClass* cls() { return package().getIStringIClass(); }
};

template <typename Boxed>
class BoxedValueTest : public testing::Test {};
using ValueTypes = testing::Types<IBoolean, IByte, ICharacter, IDouble, IFloat, IInteger, ILong, IShort, IString>;
TYPED_TEST_SUITE(BoxedValueTest, ValueTypes);

TYPED_TEST(BoxedValueTest, ReflectiveAccessReachesTheTypedValue) {
  using Value = std::decay_t<decltype(std::declval<TypeParam const&>().getValue())>;
  TypeParam object;
  ASSERT_EQ(object.iGetIClass(), Sample<TypeParam>::cls());
  IProperty* property = TypeParam::Properties::getValueIProperty();
  ASSERT_EQ(property, Sample<TypeParam>::cls()->getDeclaredProperties()[0]);
  EXPECT_EQ(object.getValue(), Value());

  IObjectInfo* info = QVXRuntime::getInstance()->getIObjectInfo(&object);
  ASSERT_NE(info, nullptr);
  Value written = Sample<TypeParam>::value();
  info->set(*property, &written, 0, ITRUE);
  EXPECT_EQ(object.getValue(), written);
  EXPECT_EQ(info->get(*property, ITRUE), &object.getValue());  // the member itself, not a copy
  object.setValue(Value());
  EXPECT_EQ(*static_cast<Value const*>(info->get(*property, nullptr, ITRUE)), Value());
  EXPECT_EQ(info->getCardinality(*property), 1);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info->hasItems(*property); }),
            msg(73005, property->getName(), Sample<TypeParam>::cls()->getQualifiedName()));
}

TYPED_TEST(BoxedValueTest, ForeignPropertiesAndProxiesAreRefused) {
  IProperty const& foreign = *IcoreIPackage::iGetInstance()->getIModelElement_NameIProperty();
  IProperty const& own = *TypeParam::Properties::getValueIProperty();
  const std::string notOurs = msg(73005, foreign.getName(), Sample<TypeParam>::cls()->getQualifiedName());
  TypeParam object;
  IObjectInfo& info = object.iGetIObjectInfo();
  IUString anything;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.get(foreign, ITRUE); }), notOurs);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.set(foreign, &anything, 0, ITRUE); }), notOurs);
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { object.iHasItems(foreign); }), notOurs);

  ProxyOf<TypeParam> proxy;
  IObjectInfo& proxyInfo = proxy.iGetIObjectInfo();
  auto value = Sample<TypeParam>::value();
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy.getValue(); }), msg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy.setValue(value); }), msg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxyInfo.get(own, ITRUE); }), msg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxyInfo.set(own, &value, ITRUE); }), msg(75004));
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy.iHasItems(own); }), msg(75004));
  // Membership is checked before the proxy state.
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { proxyInfo.get(foreign, ITRUE); }), notOurs);
}

TEST(PrimitivesIPackageTest, DescribesElevenValueClasses) {
  struct Row {
    IClass* cls;
    const char* name;
    IDatatype* type;
    const char* defaultLiteral;
  };
  PrimitivesIPackage& primitives = package();
  const Row rows[] = {
      {primitives.getIBlobIClass(), "IBlob", ICoreDatatypes::I_BLOB, ""},
      {primitives.getIBooleanIClass(), "IBoolean", ICoreDatatypes::I_BOOLEAN, "false"},
      {primitives.getIByteIClass(), "IByte", ICoreDatatypes::I_BYTE, "false"},
      {primitives.getICharacterIClass(), "ICharacter", ICoreDatatypes::I_CHARACTER, ""},
      {primitives.getIDateIClass(), "IDate", ICoreDatatypes::I_DATE, "01/01/1970:00:00:00.000"},
      {primitives.getIDoubleIClass(), "IDouble", ICoreDatatypes::I_DOUBLE, "0.0"},
      {primitives.getIFloatIClass(), "IFloat", ICoreDatatypes::I_FLOAT, "0.0"},
      {primitives.getIIntegerIClass(), "IInteger", ICoreDatatypes::I_INTEGER, "0"},
      {primitives.getILongIClass(), "ILong", ICoreDatatypes::I_LONG, "0"},
      {primitives.getIShortIClass(), "IShort", ICoreDatatypes::I_SHORT, "0"},
      {primitives.getIStringIClass(), "IString", ICoreDatatypes::I_STRING, ""},
  };
  EXPECT_EQ(primitives.getQualifiedName(), IUString("com.veltrana.qvx.icore.primitives"));
  EXPECT_EQ(PrimitivesIPackage::getIName(), IUString("primitives"));
  EXPECT_EQ(PrimitivesIPackage::getIPrefix(), IUString("com.veltrana.qvx.icore"));
  EXPECT_EQ(primitives.getVersion(), IUString("1.0.0"));
  EXPECT_EQ(QVXRuntime::getInstance()->getIPackageForName(primitives.getQualifiedName()), &primitives);
  ASSERT_EQ(primitives.getFactory(), PrimitivesIFactory::iGetInstance());
  EXPECT_EQ(primitives.getFactory()->getPackage(), &primitives);
  ASSERT_EQ(primitives.getTypes().size(), std::size(rows));

  for (int classId = 0; classId < PrimitivesIPackage::kClassCount; ++classId) {
    const Row& row = rows[classId];
    SCOPED_TRACE(row.name);
    ASSERT_NE(row.cls, nullptr);
    EXPECT_EQ(primitives.getTypes()[static_cast<std::size_t>(classId)], row.cls);
    EXPECT_EQ(primitives.getPrimitiveIClass(classId), row.cls);
    EXPECT_EQ(row.cls->getTypeId(), classId);
    EXPECT_EQ(row.cls->getQualifiedName(), IUString("com.veltrana.qvx.icore.primitives.") + IUString(row.name));
    EXPECT_TRUE(row.cls->isValueClass());
    EXPECT_FALSE(row.cls->isIdentifiableClass());
    EXPECT_FALSE(row.cls->isAbstract());

    ASSERT_EQ(row.cls->getAllProperties(ITRUE).size(), 1u);
    IProperty const& value = *row.cls->getAllProperties(ITRUE)[0];
    EXPECT_EQ(value.getName(), IUString("value"));
    EXPECT_EQ(value.getPropertyId(), 0);
    EXPECT_EQ(value.getType(), row.type);
    EXPECT_TRUE(value.isSingleValued());
    EXPECT_TRUE(value.isPrimitive());
    EXPECT_EQ(value.getDefaultValueLiteral(), IUString(row.defaultLiteral));

    // A new object holds the value that its default literal denotes (compared as text;
    // a new blob's null buffer and the empty literal's empty buffer both print as "").
    std::unique_ptr<IObject> made(primitives.getFactory()->create(*row.cls));
    ASSERT_NE(made, nullptr);
    IObjectInfo const* info = QVXRuntime::getInstance()->getIObjectInfo(made.get());
    EXPECT_EQ(info->getIClass(), row.cls);
    unsigned int length = 0;
    std::unique_ptr<IUString> initial(
        ICoreDatatypes::primitiveToString(*row.type, info->get(value, &length, ITRUE), length));
    unsigned int literalLength = 0;
    void* parsed = ICoreDatatypes::primitiveFromString(*row.type, value.getDefaultValueLiteral(), &literalLength);
    std::unique_ptr<IUString> denoted(ICoreDatatypes::primitiveToString(*row.type, parsed, literalLength));
    if (row.type == ICoreDatatypes::I_BLOB) {
      delete[] static_cast<char*>(parsed);
      EXPECT_EQ(initial, nullptr);
      EXPECT_EQ(length, 0u);
      ASSERT_NE(denoted, nullptr);
      EXPECT_TRUE(denoted->isEmpty());
      continue;
    }
    ICoreDatatypes::deletePrimitive(*row.type, parsed);
    ASSERT_NE(initial, nullptr);
    ASSERT_NE(denoted, nullptr);
    EXPECT_EQ(*initial, *denoted);
  }
  EXPECT_EQ(primitives.getPrimitiveIClass(PrimitivesIPackage::kClassCount), nullptr);
  EXPECT_EQ(primitives.getPrimitiveIClass(-1), nullptr);
}

TEST(PrimitivesIFactoryTest, RefusesForeignClassesAndProxies) {
  PrimitivesIFactory& factory = *PrimitivesIFactory::iGetInstance();
  IClass const& foreign = *IcoreIPackage::iGetInstance()->getIClassIClass();
  IClass const& stringClass = *package().getIStringIClass();
  const std::string notInPackage = msg(73011, IUString("primitives"), foreign.getQualifiedName());
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.create(foreign); }), notInPackage);

  runtime::StringIdentity identity(IUString("id-1"));
  IIdentity const* given = &identity;
  IIdentity const* none = nullptr;
  EXPECT_EQ(messageOf<InstantiationException>([&] { factory.createProxy(stringClass, given); }),
            msg(75009, stringClass.getQualifiedName()));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.createProxy(stringClass, none); }), msg(75007));
  // The package check comes first, even without an identity.
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.createProxy(foreign, none); }), notInPackage);
  EXPECT_EQ(messageOf<InstantiationException>([&] { stringClass.createProxy(given); }),
            msg(75009, stringClass.getQualifiedName()));

  const int value = 3;
  IDatatype const& integer = *ICoreDatatypes::I_INTEGER;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.datatypeToString(integer, &value); }),
            msg(73002, integer.getQualifiedName()));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { factory.datatypeFromString(integer, IUString("3")); }),
            msg(73002, integer.getQualifiedName()));
}

TEST(IBlobTest, KeepsItsOwnCopyAndTheOldLengthAfterNull) {
  IBlob blob;
  char const* data = reinterpret_cast<char const*>(&blob);  // any non-null value
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
  blob.setValue(source, 5);
  blob.setValue(nullptr, 0);
  EXPECT_EQ(blob.getValue(data), 5u);
  EXPECT_EQ(data, nullptr);

  IProperty const& value = *IBlob::Properties::getValueIProperty();
  IObjectInfo& info = blob.iGetIObjectInfo();
  char bytes[] = {'\0', '\xff', '\x7f'};
  info.set(value, bytes, 3, ITRUE);
  unsigned int length = 0;
  auto const* read = static_cast<char const*>(info.get(value, &length, ITRUE));
  ASSERT_EQ(length, 3u);
  EXPECT_NE(read, bytes);
  EXPECT_EQ(std::memcmp(read, bytes, 3), 0);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([] {
              ProxyOf<IBlob> proxy;
              proxy.setValue("x", 1);
            }),
            msg(75004));
}

TEST(IDateTest, OwnsTheDateItIsGiven) {
  IDate date;
  ASSERT_NE(date.getValue(), nullptr);
  EXPECT_EQ(*date.getValue(), WkDate());  // the epoch

  auto* given = new WkDate(WkDate::fromTime(86400, 5));
  date.setValue(given);  // the old date is freed, the new one adopted
  EXPECT_EQ(date.getValue(), given);
  date.setValue(given);  // the same pointer again must not free it
  EXPECT_EQ(date.getValue()->getDay(), 2);

  IProperty const& value = *IDate::Properties::getValueIProperty();
  IObjectInfo& info = date.iGetIObjectInfo();
  EXPECT_EQ(info.get(value, ITRUE), given);
  auto* viaFacade = new WkDate(WkDate::fromTime(-86400));
  info.set(value, viaFacade, ITRUE);  // ownership passes through iSet too
  EXPECT_EQ(date.getValue(), viaFacade);
  date.setValue(nullptr);
  EXPECT_EQ(date.getValue(), nullptr);
}

TEST(BoxedPrimitiveFactoriesTest, RuntimeMakesBoxesHoldingTheGivenValues) {
  QVXRuntime& runtime = *QVXRuntime::getInstance();
  std::unique_ptr<IBlob> blob(runtime.createIBlob("\x01\x02", 2));
  char const* bytes = nullptr;
  EXPECT_EQ(blob->getValue(bytes), 2u);
  EXPECT_EQ(std::string(bytes, 2), "\x01\x02");
  EXPECT_EQ(std::unique_ptr<IBoolean>(runtime.createIBoolean(ITRUE))->getValue(), ITRUE);
  EXPECT_EQ(std::unique_ptr<ICharacter>(runtime.createICharacter(0xFFFF))->getValue(), 0xFFFF);
  EXPECT_EQ(std::unique_ptr<IDouble>(runtime.createIDouble(-0.25))->getValue(), -0.25);
  EXPECT_EQ(std::unique_ptr<IFloat>(runtime.createIFloat(1.5f))->getValue(), 1.5f);
  EXPECT_EQ(std::unique_ptr<IInteger>(runtime.createIInteger(INT_MIN))->getValue(), INT_MIN);
  EXPECT_EQ(std::unique_ptr<IByte>(runtime.createIByte('\x80'))->getValue(), '\x80');
  EXPECT_EQ(std::unique_ptr<ILong>(runtime.createILong(LLONG_MAX))->getValue(), LLONG_MAX);
  EXPECT_EQ(std::unique_ptr<IShort>(runtime.createIShort(SHRT_MIN))->getValue(), SHRT_MIN);
  EXPECT_EQ(std::unique_ptr<IString>(runtime.createIString(IUString("s")))->getValue(), IUString("s"));
  auto* when = new WkDate(WkDate::fromTime(1700000000));
  std::unique_ptr<IDate> date(runtime.createIDate(when));  // adopts `when`
  EXPECT_EQ(date->getValue(), when);
  EXPECT_EQ(date->iGetIClass(), package().getIDateIClass());
}

}  // namespace
