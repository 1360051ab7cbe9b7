// Object storage and its facade on objects of the test package: cardinality, the class
// check, identities, the proxy discipline and proxy resolution.
#include "icore/IObjectInfo.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "icore/ObjectGraphComparator.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/runtime/SeedIdentity.h"
#include "icore/runtime/StringIdentity.h"
#include "tests/support/TestPackageAccess.h"
#include "tests/support/ThrownMessage.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using namespace shapes_test;                // NOLINT: the test package's helpers
using exception::IdentityException;
using exception::IllegalArgumentException;
using exception::UnresolvedProxyException;
using exception::UnsupportedOperationException;
using qvx_test::messageOf;
using Owned = std::unique_ptr<IObject>;

Owned proxyOf(const char* className, const char* identityText) {
  IIdentity const* identity = new runtime::StringIdentity(identityText);
  return Owned(shapesClass(className)->createProxy(identity));
}

IUString notOf(const char* property, const char* className) {
  return qvxFormatMsg(73005, property, IUString("com.example.test.shapes.") + IUString(className));
}

TEST(ObjectStorageTest, CardinalityCountsValuesAndOnlyTheClassChainsPropertiesAreServed) {
  Owned drawing(make("Drawing", "d"));
  IObjectInfo& info = *infoOf(drawing.get());
  auto cardinality = [&](const char* name) { return info.getCardinality(propertyOf(drawing.get(), name)); };
  // Unset single primitives and literals count as one, unset objects and collections as none.
  for (const char* one : {"count", "data", "style", "when"}) EXPECT_EQ(cardinality(one), 1) << one;
  for (const char* none : {"partner", "caption", "links", "tags", "layers"}) EXPECT_EQ(cardinality(none), 0) << none;
  EXPECT_FALSE(info.hasItems(propertyOf(drawing.get(), "links")));
  refer(drawing.get(), "partner", drawing.get());
  itemsOf<IObject>(drawing.get(), "links").append(drawing.get());
  itemsOf<IObject>(drawing.get(), "links").append(drawing.get());
  EXPECT_EQ(cardinality("partner") + cardinality("links"), 3);
  EXPECT_TRUE(info.hasItems(propertyOf(drawing.get(), "links")));
  // Only the properties of the object's class and its super classes are served.
  Owned shape(make("Shape"));
  Owned circle(make("Circle"));
  int value = 1;
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.hasItems(propertyOf(drawing.get(), "count")); }),
            notOf("count", "Drawing"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(shape.get())->get(*shapesProperty("Circle", "radius"), IFALSE); }),
            notOf("radius", "Shape"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.set(*shapesProperty("Note", "text"), &value, 0, IFALSE); }),
            notOf("text", "Drawing"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.set(propertyOf(drawing.get(), "layers"), &value, 0, IFALSE); }),
            qvxFormatMsg(73010, "layers", "Drawing"));
  EXPECT_TRUE(infoOf(circle.get())->getAssociatedObject()->instanceOf(*shapesClass("Shape")));
  EXPECT_FALSE(infoOf(shape.get())->getAssociatedObject()->instanceOf(*shapesClass("Circle")));
}

// An identity of a kind that has no externalizer, so it has no text form.
class MuteIdentity : public IIdentity {
 public:
  IBOOLEAN operator==(IIdentity const& other) const override { return &other == this ? ITRUE : IFALSE; }
  runtime::IdentityExternalizer* getIdentityExternalizer() const override { return nullptr; }
};

TEST(ObjectStorageTest, IdentitiesAreSetOnceWithTheKindOfTheClass) {
  Owned drawing(make("Drawing"));
  Owned stencil(make("Stencil"));
  IObjectInfo& info = *infoOf(drawing.get());
  EXPECT_EQ(info.getIdentity(), nullptr);
  EXPECT_EQ(info.getIdentityString(), IUString());
  info.setIdentityString("abc");
  EXPECT_NE(dynamic_cast<runtime::StringIdentity const*>(info.getIdentity()), nullptr);
  infoOf(stencil.get())->setIdentityString("seed-1");
  EXPECT_NE(dynamic_cast<runtime::SeedIdentity const*>(infoOf(stencil.get())->getIdentity()), nullptr);
  EXPECT_EQ(messageOf<IdentityException>([&] { info.setIdentityString("again"); }), qvxGetMsg(74002));
  auto another = std::make_unique<runtime::StringIdentity>("other");
  IIdentity const* handedOver = another.get();
  EXPECT_EQ(messageOf<IdentityException>([&] { info.setIdentity(handedOver); }), qvxGetMsg(74002));
  EXPECT_EQ(info.getIdentityString(), IUString("abc"));

  Owned mute(make("Drawing"));
  IIdentity const* identity = new MuteIdentity();
  infoOf(mute.get())->setIdentity(identity);
  EXPECT_EQ(messageOf<IdentityException>([&] { infoOf(mute.get())->getIdentityString(); }), qvxGetMsg(74000));

  Owned note(make("Note"));
  IObjectInfo& noteInfo = *infoOf(note.get());
  const std::vector<std::function<void()>> refused = {
      [&] { noteInfo.getIdentity(); }, [&] { noteInfo.getIdentityString(); },
      [&] { noteInfo.setIdentityString("x"); }, [&] { noteInfo.setIdentity(handedOver); }};
  for (auto const& action : refused) EXPECT_EQ(messageOf<IdentityException>(action), qvxFormatMsg(73008, "Note"));
  EXPECT_EQ(messageOf<IllegalArgumentException>([] { IObjectInfo unusable(nullptr); }), qvxGetMsg(73009));
}

TEST(ObjectStorageTest, ProxyRefusesValuesButKeepsItsClassAndIdentity) {
  Owned proxy = proxyOf("Drawing", "p-1");
  IObjectInfo& info = *infoOf(proxy.get());
  ASSERT_TRUE(info.isProxy());
  EXPECT_EQ(info.getIClass(), shapesClass("Drawing"));
  EXPECT_EQ(info.getIdentityString(), IUString("p-1"));
  IProperty const& count = propertyOf(proxy.get(), "count");
  IProperty const& links = propertyOf(proxy.get(), "links");
  int value = 1;
  IIdentity const* none = nullptr;
  // The object's own checks say 75004, the facade's 75000.
  const std::vector<std::pair<std::function<void()>, int>> refusals = {
      {[&] { info.get(count, IFALSE); }, 75004},
      {[&] { info.set(count, &value, IFALSE); }, 75004},
      {[&] { info.getAssociatedObject()->iHasItems(count); }, 75004},
      {[&] { info.set(count, &value, 0, IFALSE); }, 75000},
      {[&] { info.getCardinality(count); }, 75000},
      {[&] { info.hasItems(links); }, 75000},
      {[&] { info.setIdentityString("q"); }, 75000},
      {[&] { info.setIdentity(none); }, 75000},
  };
  for (auto const& [action, number] : refusals) {
    EXPECT_EQ(messageOf<UnresolvedProxyException>(action), qvxGetMsg(number)) << number;
  }
  // A property of another class is refused before the proxy state is looked at.
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { info.get(*shapesProperty("Note", "text"), IFALSE); }),
            notOf("text", "Drawing"));
  info.unsetProxy();
  EXPECT_EQ(info.getCardinality(count), 1);
  EXPECT_EQ(messageOf<UnsupportedOperationException>([&] { info.unsetProxy(); }), qvxGetMsg(75001));
}

TEST(ObjectStorageTest, ResolveProxyRefusesWhatIsNotAnUnresolvedProxyAndAnObjectOfItsClass) {
  Owned ordinary(make("Shape"));
  Owned proxy = proxyOf("Shape", "p-2");
  Owned circle(make("Circle"));
  EXPECT_EQ(messageOf<UnsupportedOperationException>([&] { infoOf(ordinary.get())->resolveProxy(circle.get()); }),
            qvxGetMsg(75001));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(proxy.get())->resolveProxy(nullptr); }),
            qvxGetMsg(75002));
  EXPECT_EQ(messageOf<IllegalArgumentException>([&] { infoOf(proxy.get())->resolveProxy(circle.get()); }),
            qvxGetMsg(75003));
  EXPECT_TRUE(infoOf(proxy.get())->isProxy());
  infoOf(proxy.get())->resolveProxy(ordinary.get());
  EXPECT_EQ(messageOf<UnsupportedOperationException>([&] { infoOf(proxy.get())->resolveProxy(ordinary.get()); }),
            qvxGetMsg(75001));
}

// A drawing with a value in every property: two contained layers (one with a layer of
// its own), a caption and references to `partner`.
void fill(IObject* drawing, IObject* partner) {
  fillValues(drawing);
  refer(drawing, "partner", partner);
  itemsOf<IObject>(drawing, "links").append(partner);
  adopt(adopt(drawing, "layers", make("Drawing", "first")), "layers", make("Drawing", "nested"));
  adopt(drawing, "layers", make("Drawing", "second"));
  refer(drawing, "caption", make("Note"));
}

TEST(ObjectStorageTest, ResolveProxyCopiesValuesAndTakesOverContainedObjects) {
  Owned holder(make("Drawing", "holder"));
  Owned partner(make("Drawing", "partner"));
  IObject* proxy = adopt(holder.get(), "layers", proxyOf("Drawing", "p-3").release());
  auto source = Owned(make("Drawing", "resolved"));
  fill(source.get(), partner.get());
  Owned expected(make("Drawing", "resolved"));
  fill(expected.get(), partner.get());
  IObject* caption = objectOf(source.get(), "caption");
  const int liveBefore = shapesLiveObjectCount();

  infoOf(proxy)->resolveProxy(source.get());

  ObjectGraphComparator::Options ignoreIdentities;
  ignoreIdentities.ignoreIdentities = true;
  auto result = ObjectGraphComparator::compare(proxy, expected.get(), ignoreIdentities);
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  // Identity, container and containing property stay those of the proxy.
  EXPECT_EQ(infoOf(proxy)->getIdentityString(), IUString("p-3"));
  EXPECT_EQ(infoOf(proxy)->getContainer(), holder.get());
  EXPECT_EQ(infoOf(proxy)->getContainmentProperty(), &propertyOf(holder.get(), "layers"));
  // Primitive elements are copied; contained objects move, with their containers.
  EXPECT_NE(itemsOf<IUString>(proxy, "tags")[0], itemsOf<IUString>(source.get(), "tags")[0]);
  IObject* first = itemsOf<IObject>(proxy, "layers")[0];
  EXPECT_EQ(infoOf(first)->getContainer(), proxy);
  EXPECT_EQ(infoOf(caption)->getContainer(), proxy);
  EXPECT_TRUE(itemsOf<IObject>(source.get(), "layers").isEmpty());
  // Freeing the source frees only the source (the sanitizer build also sees a double
  // free or a use after free here).
  source.reset();
  EXPECT_EQ(shapesLiveObjectCount(), liveBefore - 1);
  EXPECT_EQ(valueOf<IUString>(itemsOf<IObject>(first, "layers")[0], "name"), IUString("nested"));
}

}  // namespace
