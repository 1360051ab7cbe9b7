// Object storage and its facade on the test package's object classes: cardinality,
// instanceOf, identities, the proxy discipline and proxy resolution, and the object
// reflector.
#include "icore/IObjectInfo.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "icore/IObjectReflector.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/runtime/SeedIdentity.h"
#include "icore/runtime/StringIdentity.h"
#include "tests/icore/TestModel.h"
#include "tests/support/AssertionCatcher.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using exception::IdentityException;
using exception::IllegalArgumentException;
using exception::UnresolvedProxyException;
using exception::UnsupportedOperationException;
using internal::IObjectInternal;
using runtime::SeedIdentity;
using runtime::StringIdentity;
using namespace testmodel;  // NOLINT: the test package and its property ids

TestModel& model() { return TestModel::get(); }
IProperty& prop(int id) { return model().property(id); }

std::unique_ptr<TestObject> proxyOf(IClass* objectClass, const char* identityText) {
  IIdentity const* identity = new StringIdentity(identityText);
  IObject* made = objectClass->createProxy(identity);
  return std::unique_ptr<TestObject>(static_cast<TestObject*>(made));
}

TEST(ObjectStorageTest, CardinalityOfUnsetAndSetProperties) {
  std::unique_ptr<TestObject> object(model().newNode("n"));
  std::unique_ptr<TestObject> other(model().newNode("o"));
  IObjectInfo& info = object->iGetIObjectInfo();
  // An unset single-valued primitive or enumeration counts as one.
  EXPECT_EQ(info.getCardinality(prop(kCount)), 1);
  EXPECT_EQ(info.getCardinality(prop(kData)), 1);
  EXPECT_EQ(info.getCardinality(prop(kColour)), 1);
  EXPECT_EQ(info.getCardinality(prop(kPartner)), 0);
  EXPECT_EQ(info.getCardinality(prop(kDetail)), 0);
  EXPECT_EQ(info.getCardinality(prop(kLinks)), 0);
  EXPECT_EQ(info.getCardinality(prop(kTags)), 0);
  EXPECT_EQ(info.getCardinality(prop(kShades)), 0);
  EXPECT_FALSE(info.hasItems(prop(kLinks)));

  info.set(prop(kPartner), static_cast<IObject*>(other.get()), IFALSE);
  object->links().append(other.get());
  object->links().append(other.get());
  object->tags().append(new IUString("t"));
  object->scores().append(new double(1.5));
  EXPECT_EQ(info.getCardinality(prop(kPartner)), 1);
  EXPECT_EQ(info.getCardinality(prop(kLinks)), 2);
  EXPECT_EQ(info.getCardinality(prop(kTags)), 1);
  EXPECT_EQ(info.getCardinality(prop(kScores)), 1);
  EXPECT_TRUE(info.hasItems(prop(kLinks)));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.hasItems(prop(kCount)); }),
            qvxFormatMsg(73005, "count", "com.veltrana.qvx.test.testmodel.Node"));
}

TEST(ObjectStorageTest, AccessIsCheckedAgainstTheObjectsClass) {
  std::unique_ptr<TestObject> node(model().newNode("n"));
  std::unique_ptr<TestValue> value(model().newValue());
  IObjectInfo& info = node->iGetIObjectInfo();
  // SeededNode's own property is not a property of Node, and Value's not of either.
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.get(prop(kLevel), IFALSE); }),
            qvxFormatMsg(73005, "level", "com.veltrana.qvx.test.testmodel.Node"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.get(model().amount(), IFALSE); }),
            qvxFormatMsg(73005, "amount", "com.veltrana.qvx.test.testmodel.Node"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { value->iGetIObjectInfo().get(prop(kName), IFALSE); }),
            qvxFormatMsg(73005, "name", "com.veltrana.qvx.test.testmodel.Value"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.set(prop(kChildren), nullptr, IFALSE); }),
            qvxFormatMsg(73010, "children", "Node"));

  std::int64_t amount = 12;
  value->iGetIObjectInfo().set(model().amount(), &amount, 0, IFALSE);
  EXPECT_EQ(*static_cast<std::int64_t const*>(value->iGetIObjectInfo().get(model().amount(), IFALSE)), 12);

  // A seeded node has Node's properties as well as its own.
  std::unique_ptr<TestObject> seeded(model().newSeededNode("s"));
  std::int32_t level = 3;
  seeded->iGetIObjectInfo().set(prop(kLevel), &level, IFALSE);
  EXPECT_EQ(*static_cast<std::int32_t const*>(seeded->iGetIObjectInfo().get(prop(kLevel), IFALSE)), 3);
  EXPECT_EQ(*static_cast<IUString const*>(seeded->iGetIObjectInfo().get(prop(kName), IFALSE)), IUString("s"));
}

TEST(ObjectStorageTest, InstanceOfFollowsTheClassChain) {
  std::unique_ptr<TestObject> node(model().newNode());
  std::unique_ptr<TestObject> seeded(model().newSeededNode());
  EXPECT_TRUE(node->instanceOf(*model().node));
  EXPECT_FALSE(node->instanceOf(*model().seededNode));
  EXPECT_TRUE(seeded->instanceOf(*model().seededNode));
  EXPECT_TRUE(seeded->instanceOf(*model().node));
  EXPECT_FALSE(seeded->instanceOf(*model().value));
  TestObject classless(nullptr);
  EXPECT_FALSE(classless.instanceOf(*model().node));
  // Equality is identity, never a comparison of values.
  std::unique_ptr<TestObject> twin(model().newNode());
  EXPECT_FALSE(*node == *twin);
  EXPECT_TRUE(*node == *node);
  EXPECT_FALSE(static_cast<IObject&>(*node) == static_cast<IObject&>(*twin));
}

TEST(ObjectStorageTest, IdentityStringsTakeTheKindOfTheClass) {
  std::unique_ptr<TestObject> node(model().newNode());
  std::unique_ptr<TestObject> seeded(model().newSeededNode());
  IObjectInfo& nodeInfo = node->iGetIObjectInfo();
  EXPECT_EQ(nodeInfo.getIdentity(), nullptr);
  EXPECT_EQ(nodeInfo.getIdentityString(), IUString());

  nodeInfo.setIdentityString("abc");
  EXPECT_NE(dynamic_cast<StringIdentity const*>(nodeInfo.getIdentity()), nullptr);
  EXPECT_EQ(nodeInfo.getIdentityString(), IUString("abc"));
  seeded->iGetIObjectInfo().setIdentityString("seed-1");
  EXPECT_NE(dynamic_cast<SeedIdentity const*>(seeded->iGetIObjectInfo().getIdentity()), nullptr);
  EXPECT_EQ(seeded->iGetIObjectInfo().getIdentityString(), IUString("seed-1"));

  EXPECT_EQ(messageOf<IdentityException>([&] { nodeInfo.setIdentityString("again"); }), qvxGetMsg(74002));
  IIdentity const* another = new StringIdentity("other");
  EXPECT_EQ(messageOf<IdentityException>([&] { nodeInfo.setIdentity(another); }), qvxGetMsg(74002));
  delete another;
  EXPECT_EQ(nodeInfo.getIdentityString(), IUString("abc"));
}

// An identity of a kind that has no externalizer, so it has no text form.
class MuteIdentity : public IIdentity {
 public:
  IBOOLEAN operator==(IIdentity const& other) const override { return &other == this ? ITRUE : IFALSE; }
  runtime::IdentityExternalizer* getIdentityExternalizer() const override { return nullptr; }
};

TEST(ObjectStorageTest, IdentityWithoutExternalizerHasNoString) {
  std::unique_ptr<TestObject> node(model().newNode());
  IIdentity const* identity = new MuteIdentity();
  node->iGetIObjectInfo().setIdentity(identity);
  EXPECT_EQ(node->iGetIObjectInfo().getIdentity(), identity);
  EXPECT_EQ(messageOf<IdentityException>([&] { node->iGetIObjectInfo().getIdentityString(); }), qvxGetMsg(74000));
}

TEST(ObjectStorageTest, NonIdentifiableClassHasNoIdentity) {
  std::unique_ptr<TestValue> value(model().newValue());
  IObjectInfo& info = value->iGetIObjectInfo();
  const IUString expected = qvxFormatMsg(73008, "Value");
  EXPECT_EQ(messageOf<IdentityException>([&] { info.getIdentity(); }), expected);
  EXPECT_EQ(messageOf<IdentityException>([&] { info.getIdentityString(); }), expected);
  EXPECT_EQ(messageOf<IdentityException>([&] { info.setIdentityString("x"); }), expected);
  IIdentity const* identity = nullptr;
  EXPECT_EQ(messageOf<IdentityException>([&] { info.setIdentity(identity); }), expected);
}

TEST(ObjectStorageTest, ProxyRefusesValuesButKeepsItsIdentity) {
  std::unique_ptr<TestObject> proxy = proxyOf(model().node, "p-1");
  IObjectInfo& info = proxy->iGetIObjectInfo();
  ASSERT_TRUE(info.isProxy());
  EXPECT_EQ(info.getIClass(), model().node);
  EXPECT_EQ(info.getIdentityString(), IUString("p-1"));
  EXPECT_EQ(info.getContainer(), nullptr);
  int count = 1;
  const IUString facadeRefusal = qvxGetMsg(75000);
  const IUString objectRefusal = qvxGetMsg(75004);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.get(prop(kCount), IFALSE); }), objectRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.set(prop(kCount), &count, IFALSE); }), objectRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.set(prop(kCount), &count, 0, IFALSE); }), facadeRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.getCardinality(prop(kCount)); }), facadeRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy->iGetCardinality(prop(kCount)); }), facadeRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.hasItems(prop(kLinks)); }), facadeRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { proxy->iHasItems(prop(kCount)); }), objectRefusal);
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.setIdentityString("q"); }), facadeRefusal);
  IIdentity const* identity = nullptr;
  EXPECT_EQ(messageOf<UnresolvedProxyException>([&] { info.setIdentity(identity); }), facadeRefusal);
  // A property of another class is refused before the proxy check.
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.get(model().amount(), IFALSE); }),
            qvxFormatMsg(73005, "amount", "com.veltrana.qvx.test.testmodel.Node"));

  info.unsetProxy();
  EXPECT_FALSE(info.isProxy());
  EXPECT_EQ(info.getCardinality(prop(kCount)), 1);
  EXPECT_EQ(messageOf<UnsupportedOperationException>([&] { info.unsetProxy(); }), qvxGetMsg(75001));
}

TEST(ObjectStorageTest, ResolveProxyRefusesBadArguments) {
  std::unique_ptr<TestObject> ordinary(model().newNode());
  std::unique_ptr<TestObject> proxy = proxyOf(model().node, "p-2");
  std::unique_ptr<TestObject> subclassObject(model().newSeededNode());
  std::unique_ptr<TestObject> source(model().newNode());
  EXPECT_EQ(messageOf<UnsupportedOperationException>([&] { ordinary->iGetIObjectInfo().resolveProxy(source.get()); }),
            qvxGetMsg(75001));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { proxy->iGetIObjectInfo().resolveProxy(nullptr); }),
            qvxGetMsg(75002));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { proxy->iGetIObjectInfo().resolveProxy(subclassObject.get()); }),
            qvxGetMsg(75003));
  // A failed check leaves the proxy a proxy.
  EXPECT_TRUE(proxy->iIsProxy());
  proxy->iGetIObjectInfo().resolveProxy(source.get());
  EXPECT_FALSE(proxy->iIsProxy());
  EXPECT_EQ(messageOf<UnsupportedOperationException>([&] { proxy->iGetIObjectInfo().resolveProxy(source.get()); }),
            qvxGetMsg(75001));
}

TEST(ObjectStorageTest, ResolveProxyCopiesValuesAndTakesOverContainedObjects) {
  TestModel& m = model();
  auto holder = std::unique_ptr<TestObject>(m.newNode("holder"));
  TestObject* proxy = holder->addChild(proxyOf(m.node, "p-3").release());
  IProperty const* proxyContainment = proxy->iGetContainmentProperty();

  auto source = std::unique_ptr<TestObject>(m.newNode("resolved"));
  std::unique_ptr<TestObject> partner(m.newNode("partner"));
  IObjectInfo& in = source->iGetIObjectInfo();
  std::int32_t count = 7;
  double ratio = 0.25;
  const char bytes[] = {1, 0, 2, 3};
  WkDate when;
  when.setDate(2024, 2, 29);
  in.set(prop(kCount), &count, IFALSE);
  in.set(prop(kRatio), &ratio, IFALSE);
  in.set(prop(kData), const_cast<char*>(bytes), sizeof bytes, IFALSE);
  in.set(prop(kColour), m.blue, IFALSE);
  in.set(prop(kPartner), static_cast<IObject*>(partner.get()), IFALSE);
  in.set(prop(kWhen), &when, IFALSE);
  TestObject* first = source->addChild(m.newNode("first"));
  TestObject* second = source->addChild(m.newNode("second"));
  first->addChild(m.newNode("grandchild"));
  TestObject* detail = m.newNode("detail");
  in.set(prop(kDetail), static_cast<IObject*>(detail), IFALSE);
  detail->iSetContainer(source.get(), &prop(kDetail));
  source->links().append(partner.get());
  source->tags().append(new IUString("alpha"));
  source->shades().append(m.green);
  source->scores().append(new double(2.5));

  proxy->iGetIObjectInfo().resolveProxy(source.get());

  IObjectInfo& out = proxy->iGetIObjectInfo();
  EXPECT_FALSE(out.isProxy());
  EXPECT_EQ(*static_cast<IUString const*>(out.get(prop(kName), IFALSE)), IUString("resolved"));
  EXPECT_EQ(*static_cast<std::int32_t const*>(out.get(prop(kCount), IFALSE)), 7);
  EXPECT_EQ(*static_cast<double const*>(out.get(prop(kRatio), IFALSE)), 0.25);
  unsigned int length = 0;
  void const* data = out.get(prop(kData), &length, IFALSE);
  ASSERT_EQ(length, sizeof bytes);
  EXPECT_EQ(std::memcmp(data, bytes, sizeof bytes), 0);
  EXPECT_EQ(out.get(prop(kColour), IFALSE), m.blue);
  EXPECT_EQ(out.get(prop(kPartner), IFALSE), static_cast<IObject*>(partner.get()));
  EXPECT_EQ(*static_cast<WkDate const*>(out.get(prop(kWhen), IFALSE)), when);
  // Identity, container and containing property stay those of the proxy.
  EXPECT_EQ(out.getIdentityString(), IUString("p-3"));
  EXPECT_EQ(out.getContainer(), holder.get());
  EXPECT_EQ(out.getContainmentProperty(), proxyContainment);
  // References and multi-valued primitives are copied.
  ASSERT_EQ(proxy->links().size(), 1u);
  EXPECT_EQ(proxy->links()[0], partner.get());
  ASSERT_EQ(proxy->tags().size(), 1u);
  EXPECT_EQ(*proxy->tags()[0], IUString("alpha"));
  EXPECT_NE(proxy->tags()[0], source->tags()[0]);
  ASSERT_EQ(proxy->shades().size(), 1u);
  EXPECT_EQ(proxy->shades()[0], m.green);
  ASSERT_EQ(proxy->scores().size(), 1u);
  EXPECT_EQ(*proxy->scores()[0], 2.5);
  // The contained objects now belong to the proxy.
  ASSERT_EQ(proxy->children().size(), 2u);
  EXPECT_EQ(proxy->children()[0], first);
  EXPECT_EQ(proxy->children()[1], second);
  EXPECT_EQ(first->iGetContainer(), proxy);
  EXPECT_EQ(second->iGetContainer(), proxy);
  EXPECT_EQ(first->iGetContainmentProperty(), &prop(kChildren));
  EXPECT_EQ(out.get(prop(kDetail), IFALSE), static_cast<IObject*>(detail));
  // The single-valued containment too, although the source, as it lets go of it,
  // detaches it (clears its container) the way the object storage documents.
  EXPECT_EQ(detail->iGetContainer(), proxy);
  EXPECT_EQ(detail->iGetContainmentProperty(), &prop(kDetail));

  // Freeing the source must not free what the proxy now owns (the sanitizer build
  // reports a double free or a use after free otherwise).
  source.reset();
  EXPECT_EQ(*static_cast<IUString const*>(first->iGetIObjectInfo().get(prop(kName), IFALSE)), IUString("first"));
  ASSERT_EQ(first->children().size(), 1u);
  EXPECT_EQ(*proxy->tags()[0], IUString("alpha"));
  EXPECT_EQ(*static_cast<IUString const*>(detail->iGetIObjectInfo().get(prop(kName), IFALSE)), IUString("detail"));
}

TEST(ObjectStorageTest, FacadeNeedsAnObjectAndBaseOperationsAssert) {
  EXPECT_EQ(messageOf<IllegalArgumentException>([] { IObjectInfo info(nullptr); }), qvxGetMsg(73009));
  AssertionCatcher catcher;
  IObjectInternal bare;
  IProperty const& any = prop(kCount);
  EXPECT_THROW(bare.iGet(any, nullptr, IFALSE), AssertionFailure);
  EXPECT_THROW(bare.iSet(any, nullptr, 0, IFALSE), AssertionFailure);
  EXPECT_THROW(bare.iHasItems(any), AssertionFailure);
  EXPECT_THROW(bare.iGetIdentity(), IdentityException);
}

TEST(ObjectReflectorTest, ReflectsAnyObjectsFacadeAndClass) {
  IObjectReflector* reflector = IObjectReflector::getInstance();
  ASSERT_NE(reflector, nullptr);
  EXPECT_EQ(IObjectReflector::getInstance(), reflector);
  std::unique_ptr<TestObject> node(model().newNode());
  std::unique_ptr<TestValue> value(model().newValue());
  IObject* objects[] = {node.get(), value.get(), model().node, &model().package, &prop(kName), model().red};
  for (IObject* object : objects) {
    IObjectInfo* info = reflector->getIObjectInfo(object);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->getAssociatedObject(), static_cast<IObjectInternal*>(object));
    EXPECT_EQ(reflector->getIClass(object), static_cast<IObjectInternal*>(object)->iGetIClass());
  }
  EXPECT_EQ(reflector->getIClass(node.get()), model().node);
  EXPECT_EQ(reflector->getIClass(model().node), IcoreIPackage::iGetInstance()->getIClassIClass());
}

}  // namespace
