// The reflective deep comparison of object graphs, on graphs of the test package: equal
// graphs, one change anywhere named by its path, references by place, cycles, proxies
// and identities, and a containment chain far deeper than the stack.
#include "icore/ObjectGraphComparator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "icore/runtime/StringIdentity.h"
#include "tests/support/TestPackageAccess.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using namespace shapes_test;                // NOLINT: the test package's helpers
using Owned = std::unique_ptr<IObject>;
using Options = ObjectGraphComparator::Options;

void putBytes(IObject* drawing, std::vector<char> bytes) {
  infoOf(drawing)->set(propertyOf(drawing, "data"), bytes.data(), static_cast<unsigned>(bytes.size()), IFALSE);
}

// A drawing "catalog" with a value of every kind, three layers of two layers each, a
// caption, and references across the tree and to an uncontained drawing "outside".
struct Graph {
  Owned root{make("Drawing", "catalog")};
  Owned outside{make("Drawing", "outside")};
  IObject* inner = nullptr;  // the layer of the outside drawing

  IObject* at(std::initializer_list<int> path) const {
    IObject* node = root.get();
    for (int index : path) node = itemsOf<IObject>(node, "layers")[static_cast<std::size_t>(index)];
    return node;
  }
};

std::unique_ptr<Graph> build() {
  auto g = std::make_unique<Graph>();
  IObject* root = g->root.get();
  fillValues(root);
  for (int i = 0; i < 3; ++i) {
    IObject* layer = adopt(root, "layers", make("Drawing", ("c" + std::to_string(i)).c_str()));
    put(layer, "count", i);
    for (int j = 0; j < 2; ++j) put(adopt(layer, "layers", make("Drawing", "leaf")), "count", 10 * i + j);
  }
  IObject* caption = make("Note");
  put(caption, "text", IUString("caption"));
  refer(g->at({0}), "caption", caption);
  g->inner = adopt(g->outside.get(), "layers", make("Drawing", "inner"));
  refer(root, "partner", g->outside.get());
  refer(g->outside.get(), "partner", root);
  refer(g->at({0}), "partner", g->at({2, 1}));
  for (IObject* target : {root, g->at({1}), g->at({0, 0})}) itemsOf<IObject>(g->at({1}), "links").append(target);
  return g;
}

std::string difference(IObject const* left, IObject const* right, Options options = Options()) {
  auto result = ObjectGraphComparator::compare(left, right, options);
  EXPECT_EQ(result.equal, result.difference.isEmpty());
  return result.difference.toUtf8();
}

TEST(ObjectGraphComparatorTest, SeparatelyBuiltEqualGraphsCompareEqual) {
  auto left = build();
  EXPECT_EQ(difference(left->root.get(), build()->root.get()), "");
  EXPECT_EQ(difference(left->root.get(), left->root.get()), "");
}

struct Change {
  std::function<void(Graph&)> apply;
  const char* difference;
};

TEST(ObjectGraphComparatorTest, OneChangeAnywhereIsNamedByItsPath) {
  const std::vector<Change> changes = {
      {[](Graph& g) { put(g.root.get(), "count", 6); }, "catalog.count: 5 != 6"},
      {[](Graph& g) { put(g.at({2, 1}), "name", IUString("x")); }, "catalog/layers[2]/layers[1].name: \"leaf\" != \"x\""},
      {[](Graph& g) { put(g.root.get(), "ratio", std::nextafter(0.1, 1.0)); },
       "catalog.ratio: 0.10000000000000001 != 0.10000000000000002"},
      {[](Graph& g) { put(g.at({1}), "ratio", -0.0); }, "catalog/layers[1].ratio: 0 != -0"},
      {[](Graph& g) { putBytes(g.root.get(), {1, 2, 3, 5}); }, "catalog.data: 4 bytes 01020304 != 4 bytes 01020305"},
      {[](Graph& g) { refer(g.root.get(), "style", lineStyle(0)); }, "catalog.style: DOTTED != SOLID"},
      {[](Graph& g) { refer(g.root.get(), "style", nullptr); }, "catalog.style: DOTTED != null"},
      {[](Graph& g) { put(g.root.get(), "when", lastOf2023(123456788)); },
       "catalog.when: 12/31/2023:23:59:58.123456789 != 12/31/2023:23:59:58.123456788"},
      {[](Graph& g) { put(g.root.get(), "flag", IFALSE); }, "catalog.flag: true != false"},
      {[](Graph& g) { put(g.root.get(), "initial", u'R'); }, "catalog.initial: U+0051 != U+0052"},
      {[](Graph& g) { put(g.root.get(), "weight", 2.75f); }, "catalog.weight: 2.5 != 2.75"},
      {[](Graph& g) { put(g.root.get(), "big", (std::int64_t{1} << 40) + 1); },
       "catalog.big: 1099511627776 != 1099511627777"},
      {[](Graph& g) { put(g.root.get(), "small", std::int16_t{7}); }, "catalog.small: -7 != 7"},
      {[](Graph& g) { put(g.root.get(), "octet", 'y'); }, "catalog.octet: 122 != 121"},
      {[](Graph& g) { *itemsOf<IUString>(g.root.get(), "tags")[1] = IUString("x"); }, "catalog.tags[1]: \"b\" != \"x\""},
      {[](Graph& g) { itemsOf<IEnumerationLiteral>(g.root.get(), "styles")[0] = lineStyle(0); },
       "catalog.styles[0]: DASHED != SOLID"},
      {[](Graph& g) { *itemsOf<double>(g.root.get(), "scores")[0] = 1.5; }, "catalog.scores[0]: 1.25 != 1.5"},
      {[](Graph& g) { adopt(g.at({1}), "layers", make("Drawing")); }, "catalog/layers[1].layers: 2 elements != 3 elements"},
      {[](Graph& g) { put(objectOf(g.at({0}), "caption"), "text", IUString("other")); },
       "catalog/layers[0]/caption.text: \"caption\" != \"other\""},
      {[](Graph& g) {
         IObject* caption = objectOf(g.at({0}), "caption");
         refer(g.at({0}), "caption", nullptr);  // hands the caption back
         delete caption;
       },
       "catalog/layers[0]/caption: an object != null"},
      {[](Graph& g) { put(g.inner, "count", 3); }, "catalog.partner/layers[0].count: 0 != 3"},
      // References compare by the place of their targets in the graph.
      {[](Graph& g) { refer(g.at({0}), "partner", g.at({1})); },
       "catalog/layers[0].partner: refers to catalog/layers[2]/layers[1] != refers to catalog/layers[1]"},
      {[](Graph& g) { itemsOf<IObject>(g.at({1}), "links")[2] = g.at({0, 1}); },
       "catalog/layers[1].links[2]: refers to catalog/layers[0]/layers[0] != refers to catalog/layers[0]/layers[1]"},
      {[](Graph& g) { refer(g.at({0}), "partner", g.inner); },
       "catalog/layers[0].partner: refers to catalog/layers[2]/layers[1] != refers to catalog.partner/layers[0]"},
  };
  for (const Change& change : changes) {
    auto left = build();
    auto right = build();
    change.apply(*right);
    EXPECT_EQ(difference(left->root.get(), right->root.get()), change.difference);
  }
}

TEST(ObjectGraphComparatorTest, AllDifferencesAreReportedInWalkOrderWhenAsked) {
  auto left = build();
  auto right = build();
  put(right->root.get(), "count", 6);
  itemsOf<IEnumerationLiteral>(right->root.get(), "styles")[0] = lineStyle(0);
  adopt(right->at({1}), "layers", make("Drawing"));
  put(right->at({2, 1}), "name", IUString("x"));
  refer(right->at({0}), "partner", right->at({1}));

  Options all;
  all.reportAllDifferences = true;
  auto result = ObjectGraphComparator::compare(left->root.get(), right->root.get(), all);
  std::vector<std::string> found;
  for (IUString const& text : result.differences) found.push_back(text.toUtf8());
  EXPECT_FALSE(result.equal);
  EXPECT_EQ(found, (std::vector<std::string>{
                       "catalog.count: 5 != 6",
                       "catalog.styles[0]: DASHED != SOLID",
                       "catalog/layers[1].layers: 2 elements != 3 elements",
                       "catalog/layers[2]/layers[1].name: \"leaf\" != \"x\"",
                       "catalog/layers[0].partner: refers to catalog/layers[2]/layers[1] != refers to catalog/layers[1]",
                   }));
  EXPECT_EQ(result.difference.toUtf8(), found.front());
  // Without the option the walk stops at the first and lists nothing.
  auto first = ObjectGraphComparator::compare(left->root.get(), right->root.get());
  EXPECT_EQ(first.difference.toUtf8(), found.front());
  EXPECT_TRUE(first.differences.isEmpty());
  // Equal graphs report nothing either way.
  EXPECT_TRUE(ObjectGraphComparator::compare(left->root.get(), build()->root.get(), all).differences.isEmpty());
}

TEST(ObjectGraphComparatorTest, CyclesTerminate) {
  auto ring = [] {
    Owned root(make("Drawing", "ring"));
    for (int i = 0; i < 4; ++i) adopt(root.get(), "layers", make("Drawing"));
    IVector<IObject*>& members = itemsOf<IObject>(root.get(), "layers");
    for (std::size_t i = 0; i < 4; ++i) {
      refer(members[i], "partner", members[(i + 1) % 4]);
      itemsOf<IObject>(members[i], "links").append(root.get());
    }
    return root;
  };
  Owned left = ring();
  Owned right = ring();
  EXPECT_EQ(difference(left.get(), right.get()), "");
  refer(itemsOf<IObject>(right.get(), "layers")[3], "partner", itemsOf<IObject>(right.get(), "layers")[1]);
  EXPECT_EQ(difference(left.get(), right.get()),
            "ring/layers[3].partner: refers to ring/layers[0] != refers to ring/layers[1]");

  // A containment that leads back to the root meets the root's place again.
  Owned loop(make("Drawing", "loop"));
  Owned other(make("Drawing", "loop"));
  Owned stranger(make("Drawing", "loop"));
  itemsOf<IObject>(adopt(loop.get(), "layers", make("Drawing")), "layers").append(loop.get());
  IObject* otherInner = adopt(other.get(), "layers", make("Drawing"));
  itemsOf<IObject>(otherInner, "layers").append(other.get());
  EXPECT_EQ(difference(loop.get(), other.get()), "");
  itemsOf<IObject>(otherInner, "layers")[0] = stranger.get();
  EXPECT_EQ(difference(loop.get(), other.get()),
            "loop/layers[0]/layers[0]: the object at loop != an object reached for the first time");
  // Break the loops before the objects free what they contain.
  itemsOf<IObject>(itemsOf<IObject>(loop.get(), "layers")[0], "layers").clear();
  itemsOf<IObject>(otherInner, "layers").clear();
}

TEST(ObjectGraphComparatorTest, ProxiesAndIdentitiesCountUnlessIdentitiesAreIgnored) {
  auto holder = [](const char* className, const char* id) {
    Owned stencil(make("Stencil", "holder"));
    IIdentity const* identity = new runtime::StringIdentity(id);
    adopt(stencil.get(), "shapes", shapesClass(className)->createProxy(identity));
    return stencil;
  };
  Owned left = holder("Shape", "p");
  Options ignore;
  ignore.ignoreIdentities = true;
  EXPECT_EQ(difference(left.get(), holder("Shape", "p").get()), "");
  EXPECT_EQ(difference(left.get(), holder("Shape", "q").get()),
            "holder/shapes[0]: identity stringIdentity:p != stringIdentity:q");
  EXPECT_EQ(difference(left.get(), holder("Shape", "q").get(), ignore), "");
  EXPECT_EQ(difference(left.get(), holder("Circle", "p").get()),
            "holder/shapes[0]: class com.example.test.shapes.Shape != com.example.test.shapes.Circle");
  Owned resolved(make("Stencil", "holder"));
  infoOf(adopt(resolved.get(), "shapes", make("Shape")))->setIdentityString("p");
  EXPECT_EQ(difference(left.get(), resolved.get()), "holder/shapes[0]: proxy != object");
}

TEST(ObjectGraphComparatorTest, SeveralRootsAreComparedInOrder) {
  IVector<IObject*> left;
  IVector<IObject*> right;
  for (IVector<IObject*>* roots : {&left, &right}) {
    roots->append(make("Drawing", "first"));
    roots->append(make("Note"));
  }
  EXPECT_TRUE(ObjectGraphComparator::compare(left, right).equal);
  put(right[1], "text", IUString("t"));
  EXPECT_EQ(ObjectGraphComparator::compare(left, right).difference.toUtf8(), "[1]Note.text: \"\" != \"t\"");
  right.append(make("Note"));
  EXPECT_EQ(ObjectGraphComparator::compare(left, right).difference.toUtf8(), "top-level objects: 2 != 3");
  for (IObject* root : left) delete root;
  for (IObject* root : right) delete root;
}

Owned chain(int depth, const char* leafName) {
  Owned root(make("Stencil", "chain"));
  IObject* last = root.get();
  for (int level = 0; level < depth; ++level) last = adopt(last, "parts", make("Stencil"));
  put(last, "name", IUString(leafName));
  return root;
}

TEST(ObjectGraphComparatorTest, DeepContainmentChainNeedsNoStackPerLevel) {
  constexpr int kDepth = 100000;
  Owned left = chain(kDepth, "a");
  EXPECT_EQ(difference(left.get(), chain(kDepth, "a").get()), "");
  std::string expected = "chain";
  for (int level = 0; level < kDepth; ++level) expected += "/parts[0]";
  EXPECT_EQ(difference(left.get(), chain(kDepth, "b").get()), expected + ".name: \"a\" != \"b\"");
}

}  // namespace
