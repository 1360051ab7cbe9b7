// The reflective deep comparison of object graphs, on graphs of the test package:
// equal graphs, one change anywhere named by its path, references by position,
// cycles, proxies and identities, and a containment chain far deeper than the stack.
#include "icore/ObjectGraphComparator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "icore/runtime/StringIdentity.h"
#include "tests/icore/TestModel.h"

namespace {

using com::veltrana::qvx::icore::ObjectGraphComparator;
using com::veltrana::qvx::icore::runtime::StringIdentity;
using namespace testmodel;  // NOLINT: the test package and its property ids

using Options = ObjectGraphComparator::Options;

TestModel& model() { return TestModel::get(); }

template <typename T>
void put(TestObject* object, int id, T value) {
  object->iGetIObjectInfo().set(model().property(id), &value, IFALSE);
}

void putBytes(TestObject* object, std::vector<char> bytes) {
  object->iGetIObjectInfo().set(model().property(kData), bytes.data(), static_cast<unsigned>(bytes.size()), IFALSE);
}

void putRef(TestObject* object, int id, IObject* target) {
  object->iGetIObjectInfo().set(model().property(id), target, IFALSE);
}

void putColour(TestObject* object, IEnumerationLiteral* literal) {
  object->iGetIObjectInfo().set(model().property(kColour), literal, IFALSE);
}

// A graph with every kind of value: root "catalog" with three children of two
// children each, a detail, references across the tree and to an object outside it.
struct Graph {
  std::unique_ptr<TestObject> root;
  std::unique_ptr<TestObject> outside;  // referenced, contained nowhere
  TestObject* detail = nullptr;          // the detail of children[0]
  TestObject* inner = nullptr;           // the child of the outside object

  TestObject* at(std::initializer_list<int> path) const {
    TestObject* node = root.get();
    for (int index : path) node = static_cast<TestObject*>(node->children()[static_cast<std::size_t>(index)]);
    return node;
  }
};

Graph build() {
  TestModel& m = model();
  Graph g;
  g.root.reset(m.newNode("catalog"));
  TestObject* root = g.root.get();
  put<std::int32_t>(root, kCount, 5);
  put<double>(root, kRatio, 0.1);
  putBytes(root, {1, 2, 3, 4});
  putColour(root, m.red);
  WkDate when;
  when.setDate(2023, 12, 31);
  when.setTime(23, 59, 58, 123456789);
  put<WkDate>(root, kWhen, when);
  put<IBOOLEAN>(root, kFlag, ITRUE);
  put<char16_t>(root, kInitial, u'Q');
  put<float>(root, kWeight, 2.5f);
  put<std::int64_t>(root, kBig, 1LL << 40);
  put<std::int16_t>(root, kSmall, -7);
  put<char>(root, kOctet, 'z');
  root->tags().append(new IUString("a"));
  root->tags().append(new IUString("b"));
  root->shades().append(m.green);
  root->shades().append(m.blue);
  root->scores().append(new double(1.25));
  for (int i = 0; i < 3; ++i) {
    TestObject* child = root->addChild(m.newNode(("c" + std::to_string(i)).c_str()));
    put<std::int32_t>(child, kCount, i);
    for (int j = 0; j < 2; ++j) {
      TestObject* grandchild = child->addChild(m.newNode(("c" + std::to_string(i) + "-" + std::to_string(j)).c_str()));
      put<std::int32_t>(grandchild, kCount, 10 * i + j);
    }
  }
  g.detail = m.newNode("detail");
  putRef(g.at({0}), kDetail, g.detail);
  g.detail->iSetContainer(g.at({0}), &m.property(kDetail));

  g.outside.reset(m.newNode("outside"));
  g.inner = g.outside->addChild(m.newNode("inner"));
  putRef(root, kPartner, g.outside.get());
  putRef(g.outside.get(), kPartner, root);
  putRef(g.at({0}), kPartner, g.at({2, 1}));
  g.at({1})->links().append(root);
  g.at({1})->links().append(g.at({1}));
  g.at({1})->links().append(g.at({0, 0}));
  g.outside->links().append(g.outside.get());
  return g;
}

ObjectGraphComparator::ComparisonResult compare(Graph const& left, Graph const& right, Options options = Options()) {
  return ObjectGraphComparator::compare(left.root.get(), right.root.get(), options);
}

TEST(ObjectGraphComparatorTest, SeparatelyBuiltEqualGraphsCompareEqual) {
  Graph left = build();
  Graph right = build();
  auto result = compare(left, right);
  EXPECT_TRUE(result.equal) << result.difference.toUtf8();
  EXPECT_TRUE(result.difference.isEmpty());
  auto self = compare(left, left);
  EXPECT_TRUE(self.equal) << self.difference.toUtf8();
}

struct Change {
  const char* what;
  std::function<void(Graph&)> apply;
  const char* difference;
};

TEST(ObjectGraphComparatorTest, OneChangedValueAnywhereIsNamedByItsPath) {
  TestModel& m = model();
  const std::vector<Change> changes = {
      {"integer", [](Graph& g) { put<std::int32_t>(g.root.get(), kCount, 6); }, "catalog.count: 5 != 6"},
      {"deep string", [](Graph& g) { put<IUString>(g.at({2, 1}), kName, IUString("changed")); },
       "catalog/children[2]/children[1].name: \"c2-1\" != \"changed\""},
      {"double by one ulp", [](Graph& g) { put<double>(g.root.get(), kRatio, std::nextafter(0.1, 1.0)); },
       "catalog.ratio: 0.10000000000000001 != 0.10000000000000002"},
      {"negative zero", [](Graph& g) { put<double>(g.at({1}), kRatio, -0.0); }, "catalog/children[1].ratio: 0 != -0"},
      {"blob byte", [](Graph& g) { putBytes(g.root.get(), {1, 2, 3, 5}); },
       "catalog.data: 4 bytes 01020304 != 4 bytes 01020305"},
      {"blob length", [](Graph& g) { putBytes(g.root.get(), {1, 2, 3}); },
       "catalog.data: 4 bytes 01020304 != 3 bytes 010203"},
      {"enumeration", [&m](Graph& g) { putColour(g.root.get(), m.blue); },
       "catalog.colour: RED != BLUE"},
      {"unset enumeration", [](Graph& g) { putColour(g.root.get(), nullptr); },
       "catalog.colour: RED != null"},
      {"date nanosecond",
       [](Graph& g) {
         WkDate when;
         when.setDate(2023, 12, 31);
         when.setTime(23, 59, 58, 123456788);
         put<WkDate>(g.root.get(), kWhen, when);
       },
       "catalog.when: 12/31/2023:23:59:58.123456789 != 12/31/2023:23:59:58.123456788"},
      {"boolean", [](Graph& g) { put<IBOOLEAN>(g.root.get(), kFlag, IFALSE); }, "catalog.flag: true != false"},
      {"character", [](Graph& g) { put<char16_t>(g.root.get(), kInitial, u'R'); }, "catalog.initial: U+0051 != U+0052"},
      {"float", [](Graph& g) { put<float>(g.root.get(), kWeight, 2.75f); }, "catalog.weight: 2.5 != 2.75"},
      {"long", [](Graph& g) { put<std::int64_t>(g.root.get(), kBig, (1LL << 40) + 1); },
       "catalog.big: 1099511627776 != 1099511627777"},
      {"short", [](Graph& g) { put<std::int16_t>(g.root.get(), kSmall, 7); }, "catalog.small: -7 != 7"},
      {"byte", [](Graph& g) { put<char>(g.root.get(), kOctet, 'y'); }, "catalog.octet: 122 != 121"},
      {"string element", [](Graph& g) { *g.root->tags()[1] = IUString("x"); }, "catalog.tags[1]: \"b\" != \"x\""},
      {"string count", [](Graph& g) { g.root->tags().append(new IUString("c")); },
       "catalog.tags: 2 elements != 3 elements"},
      {"enumeration element", [&m](Graph& g) { g.root->shades()[0] = m.red; }, "catalog.shades[0]: GREEN != RED"},
      {"double element", [](Graph& g) { *g.root->scores()[0] = 1.5; }, "catalog.scores[0]: 1.25 != 1.5"},
      {"contained count", [&m](Graph& g) { g.at({1})->addChild(m.newNode("extra")); },
       "catalog/children[1].children: 2 elements != 3 elements"},
      {"contained single value", [](Graph& g) { put<IUString>(g.detail, kName, IUString("other")); },
       "catalog/children[0]/detail.name: \"detail\" != \"other\""},
      {"contained single value missing",
       [](Graph& g) {
         putRef(g.at({0}), kDetail, nullptr);  // hands the detail back
         delete g.detail;
       },
       "catalog/children[0]/detail: an object != null"},
      {"uncontained object's contents", [](Graph& g) { put<std::int32_t>(g.inner, kCount, 3); },
       "catalog.partner/children[0].count: 0 != 3"},
      {"class of a contained object",
       [&m](Graph& g) {
         TestObject* parent = g.at({2});
         delete parent->children()[0];
         parent->children().removeAt(0);
         TestObject* seeded = m.newSeededNode("c2-0");
         parent->children().insertAt(0, seeded);
         seeded->iSetContainer(parent, &m.property(kChildren));
       },
       "catalog/children[2]/children[0]: class com.veltrana.qvx.test.testmodel.Node != "
       "com.veltrana.qvx.test.testmodel.SeededNode"},
  };
  for (const Change& change : changes) {
    SCOPED_TRACE(change.what);
    Graph left = build();
    Graph right = build();
    change.apply(right);
    auto result = compare(left, right);
    EXPECT_FALSE(result.equal);
    EXPECT_EQ(result.difference.toUtf8(), change.difference);
  }
}

TEST(ObjectGraphComparatorTest, ReferencesCompareByTheTargetsPlaceInTheGraph) {
  const std::vector<Change> changes = {
      {"single reference retargeted", [](Graph& g) { putRef(g.at({0}), kPartner, g.at({1})); },
       "catalog/children[0].partner: refers to catalog/children[2]/children[1] != refers to catalog/children[1]"},
      {"single reference cleared", [](Graph& g) { putRef(g.at({0}), kPartner, nullptr); },
       "catalog/children[0].partner: refers to catalog/children[2]/children[1] != null"},
      {"element retargeted", [](Graph& g) { g.at({1})->links()[2] = g.at({0, 1}); },
       "catalog/children[1].links[2]: refers to catalog/children[0]/children[0] != refers to "
       "catalog/children[0]/children[1]"},
      {"cycle through the outside object", [](Graph& g) { putRef(g.outside.get(), kPartner, g.at({0})); },
       "catalog.partner.partner: refers to catalog != refers to catalog/children[0]"},
      {"contained target against an uncontained one", [](Graph& g) { putRef(g.at({0}), kPartner, g.inner); },
       "catalog/children[0].partner: refers to catalog/children[2]/children[1] != refers to "
       "catalog.partner/children[0]"},
  };
  for (const Change& change : changes) {
    SCOPED_TRACE(change.what);
    Graph left = build();
    Graph right = build();
    change.apply(right);
    auto result = compare(left, right);
    EXPECT_FALSE(result.equal);
    EXPECT_EQ(result.difference.toUtf8(), change.difference);
  }
}

TEST(ObjectGraphComparatorTest, EqualValuesInAnotherPlaceAreADifferentTarget) {
  // Two references to one object against references to two equal objects.
  TestModel& m = model();
  std::unique_ptr<TestObject> left(m.newNode("pair"));
  std::unique_ptr<TestObject> right(m.newNode("pair"));
  for (TestObject* root : {left.get(), right.get()}) {
    root->addChild(m.newNode("twin"));
    root->addChild(m.newNode("twin"));
    root->links().append(root->children()[0]);
  }
  left->links().append(left->children()[0]);
  right->links().append(right->children()[1]);
  auto result = ObjectGraphComparator::compare(left.get(), right.get());
  EXPECT_EQ(result.difference.toUtf8(), "pair.links[1]: refers to pair/children[0] != refers to pair/children[1]");
}

TEST(ObjectGraphComparatorTest, CyclesOfReferencesTerminate) {
  TestModel& m = model();
  auto makeRing = [&m](int size) {
    std::unique_ptr<TestObject> ring(m.newNode("ring"));
    std::vector<TestObject*> members;
    for (int i = 0; i < size; ++i) members.push_back(ring->addChild(m.newNode("member")));
    for (int i = 0; i < size; ++i) {
      putRef(members[static_cast<std::size_t>(i)], kPartner, members[static_cast<std::size_t>((i + 1) % size)]);
      members[static_cast<std::size_t>(i)]->links().append(ring.get());
      members[static_cast<std::size_t>(i)]->links().append(members[static_cast<std::size_t>(i)]);
    }
    return ring;
  };
  auto left = makeRing(4);
  auto right = makeRing(4);
  EXPECT_TRUE(ObjectGraphComparator::compare(left.get(), right.get()).equal);
  putRef(static_cast<TestObject*>(right->children()[3]), kPartner, right->children()[1]);
  EXPECT_EQ(ObjectGraphComparator::compare(left.get(), right.get()).difference.toUtf8(),
            "ring/children[3].partner: refers to ring/children[0] != refers to ring/children[1]");

  // Two uncontained objects that only refer to each other.
  std::unique_ptr<TestObject> a(m.newNode("a"));
  std::unique_ptr<TestObject> b(m.newNode("b"));
  std::unique_ptr<TestObject> c(m.newNode("a"));
  std::unique_ptr<TestObject> d(m.newNode("b"));
  putRef(a.get(), kPartner, b.get());
  putRef(b.get(), kPartner, a.get());
  putRef(c.get(), kPartner, d.get());
  putRef(d.get(), kPartner, c.get());
  EXPECT_TRUE(ObjectGraphComparator::compare(a.get(), c.get()).equal);
  put<std::int32_t>(d.get(), kCount, 1);
  EXPECT_EQ(ObjectGraphComparator::compare(a.get(), c.get()).difference.toUtf8(), "a.partner.count: 0 != 1");
}

TEST(ObjectGraphComparatorTest, CycleOfContainmentsTerminates) {
  // A containment that leads back to the root: the walk meets the root's place again.
  TestModel& m = model();
  std::unique_ptr<TestObject> left(m.newNode("loop"));
  std::unique_ptr<TestObject> right(m.newNode("loop"));
  std::unique_ptr<TestObject> stranger(m.newNode("loop"));
  left->addChild(m.newNode("inner"))->children().append(left.get());
  TestObject* rightInner = right->addChild(m.newNode("inner"));
  rightInner->children().append(right.get());
  EXPECT_TRUE(ObjectGraphComparator::compare(left.get(), right.get()).equal);
  rightInner->children()[0] = stranger.get();
  EXPECT_EQ(ObjectGraphComparator::compare(left.get(), right.get()).difference.toUtf8(),
            "loop/children[0]/children[0]: the object at loop != an object reached for the first time");
  // Break the loops before the objects free what they contain.
  static_cast<TestObject*>(left->children()[0])->children().clear();
  rightInner->children().clear();
}

TEST(ObjectGraphComparatorTest, IdentitiesCountUnlessIgnored) {
  Graph left = build();
  Graph right = build();
  left.at({1})->iGetIObjectInfo().setIdentityString("id-1");
  right.at({1})->iGetIObjectInfo().setIdentityString("id-2");
  EXPECT_EQ(compare(left, right).difference.toUtf8(),
            "catalog/children[1]: identity stringIdentity:id-1 != stringIdentity:id-2");
  Options ignore;
  ignore.ignoreIdentities = true;
  EXPECT_TRUE(compare(left, right, ignore).equal);
  Graph third = build();
  third.at({1})->iGetIObjectInfo().setIdentityString("id-1");
  EXPECT_TRUE(compare(left, third).equal);
  Graph fourth = build();
  EXPECT_EQ(compare(left, fourth).difference.toUtf8(), "catalog/children[1]: identity stringIdentity:id-1 != none");
}

TEST(ObjectGraphComparatorTest, ProxiesCompareByClassAndIdentity) {
  TestModel& m = model();
  auto proxy = [](const char* id, IClass* objectClass) {
    IIdentity const* identity = new StringIdentity(id);
    return static_cast<TestObject*>(objectClass->createProxy(identity));
  };
  auto holder = [&m](TestObject* target) {
    std::unique_ptr<TestObject> root(m.newNode("holder"));
    root->addChild(target);
    return root;
  };
  auto left = holder(proxy("p", m.node));
  EXPECT_TRUE(ObjectGraphComparator::compare(left.get(), holder(proxy("p", m.node)).get()).equal);
  EXPECT_EQ(ObjectGraphComparator::compare(left.get(), holder(proxy("q", m.node)).get()).difference.toUtf8(),
            "holder/children[0]: identity stringIdentity:p != stringIdentity:q");
  EXPECT_EQ(ObjectGraphComparator::compare(left.get(), holder(m.newNode("p")).get()).difference.toUtf8(),
            "holder/children[0]: proxy != object");
  EXPECT_EQ(ObjectGraphComparator::compare(left.get(), holder(proxy("p", m.seededNode)).get()).difference.toUtf8(),
            "holder/children[0]: class com.veltrana.qvx.test.testmodel.Node != "
            "com.veltrana.qvx.test.testmodel.SeededNode");
  Options ignore;
  ignore.ignoreIdentities = true;
  EXPECT_TRUE(ObjectGraphComparator::compare(left.get(), holder(proxy("q", m.node)).get(), ignore).equal);
}

TEST(ObjectGraphComparatorTest, SeveralRootsAreComparedInOrder) {
  TestModel& m = model();
  std::unique_ptr<TestObject> a(m.newNode("first"));
  std::unique_ptr<TestObject> b(m.newNode("second"));
  std::unique_ptr<TestObject> c(m.newNode("first"));
  std::unique_ptr<TestObject> d(m.newNode("second"));
  std::unique_ptr<TestValue> v(m.newValue());
  std::unique_ptr<TestValue> w(m.newValue());
  IVector<IObject*> left;
  IVector<IObject*> right;
  left.append(a.get());
  left.append(b.get());
  left.append(v.get());
  right.append(c.get());
  right.append(d.get());
  right.append(w.get());
  EXPECT_TRUE(ObjectGraphComparator::compare(left, right).equal);
  std::int64_t amount = 9;
  w->iGetIObjectInfo().set(m.amount(), &amount, IFALSE);
  EXPECT_EQ(ObjectGraphComparator::compare(left, right).difference.toUtf8(), "[2]Value.amount: 0 != 9");
  put<std::int32_t>(d.get(), kCount, 4);
  EXPECT_EQ(ObjectGraphComparator::compare(left, right).difference.toUtf8(), "[1]second.count: 0 != 4");
  right.removeAt(2);
  EXPECT_EQ(ObjectGraphComparator::compare(left, right).difference.toUtf8(), "top-level objects: 3 != 2");
  // An empty name leaves the root named by its class.
  std::unique_ptr<TestObject> nameless(m.newNode(""));
  std::unique_ptr<TestObject> counted(m.newNode(""));
  put<std::int32_t>(counted.get(), kCount, 1);
  EXPECT_EQ(ObjectGraphComparator::compare(nameless.get(), counted.get()).difference.toUtf8(), "Node.count: 0 != 1");
}

std::unique_ptr<TestObject> chain(int depth, std::int32_t leafCount) {
  TestModel& m = model();
  std::unique_ptr<TestObject> root(m.newNode("chain"));
  TestObject* last = root.get();
  for (int level = 0; level < depth; ++level) {
    TestObject* next = last->addChild(m.newNode("link"));
    putRef(next, kPartner, last);
    last = next;
  }
  put<std::int32_t>(last, kCount, leafCount);
  return root;
}

TEST(ObjectGraphComparatorTest, DeepContainmentChainNeedsNoStackPerLevel) {
  constexpr int kDepth = 100000;
  auto left = chain(kDepth, 1);
  auto same = chain(kDepth, 1);
  auto other = chain(kDepth, 2);
  EXPECT_TRUE(ObjectGraphComparator::compare(left.get(), same.get()).equal);
  auto result = ObjectGraphComparator::compare(left.get(), other.get());
  ASSERT_FALSE(result.equal);
  const std::string difference = result.difference.toUtf8();
  std::string expectedPath = "chain";
  for (int level = 0; level < kDepth; ++level) expectedPath += "/children[0]";
  EXPECT_EQ(difference, expectedPath + ".count: 1 != 2");
}

}  // namespace
