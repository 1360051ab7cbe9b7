// Streams nobody checked: truncated at every byte, corrupted at every byte, with
// negative or absurd counts, bad handles, descriptors that disagree with the registered
// class, objects of the wrong class and containment cycles. Each read ends in an
// IOException (or InvalidDataException) or a valid graph, never a crash, hang or large
// allocation, and the objects a failed read made are freed (the sanitizer build checks).
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "tests/io/BinaryStreamTestSupport.h"
#include "tests/support/TestPackageAccess.h"

namespace {

using namespace binary_test;
namespace catalog = com::example::catalog;
namespace icore = com::veltrana::qvx::icore;

class BinaryStreamHostileTest : public ::testing::Test {
 protected:
  void SetUp() override { prepareCatalog(); }
};

// Reads every item of `data`; frees what it gets. Returns the exception text, or the
// empty string when the stream read completely.
IUString readAll(const std::string& data) {
  std::istringstream in(data);
  QVXBinaryInputStream stream(&in, nullptr, nullptr);
  try {
    while (stream.hasNextObject()) {
      if (stream.getNextObjectType() == QVXBinaryInputStream::LIST_OF_OBJECTS) {
        std::unique_ptr<IVector<icore::IObject*>> list(stream.readObjects());
        for (icore::IObject* object : *list) delete object;
      } else {
        delete stream.readObject();
      }
    }
  } catch (IOException const& error) {
    return error.getMessage().isEmpty() ? IUString("empty message") : error.getMessage();
  }
  std::unique_ptr<IVector<icore::IObject*>> detached(stream.releaseDetachedObjects());
  for (icore::IObject* object : *detached) delete object;
  return IUString();
}

// A drawing of the test package with a value of every kind, a contained layer, a
// partner and a caption.
std::string drawingStream() {
  using namespace shapes_test;
  std::unique_ptr<icore::IObject> drawing(make("Drawing", "top"));
  icore::IObject* layer = make("Drawing", "layer");
  itemsOf<icore::IObject>(drawing.get(), "layers").append(layer);
  static_cast<icore::internal::IObjectInternal*>(layer)->iSetContainer(
      static_cast<icore::internal::IObjectInternal*>(drawing.get()), &propertyOf(drawing.get(), "layers"));
  refer(drawing.get(), "partner", layer);
  put(drawing.get(), "count", 7);
  put(drawing.get(), "ratio", 0.5);
  itemsOf<IUString>(drawing.get(), "tags").append(new IUString("t"));
  itemsOf<double>(drawing.get(), "scores").append(new double(1.5));
  std::ostringstream out;
  QVXBinaryOutputStream stream(&out, nullptr, nullptr);
  stream.writeObject(drawing.get());
  stream.markEnd();
  return out.str();
}

std::string catalogStream() {
  std::unique_ptr<catalog::Catalog> built(catalog::buildCatalog(1, 3, 2, 1));
  std::ostringstream out;
  QVXBinaryOutputStream stream(&out, nullptr, nullptr);
  stream.writeObject(built.get());
  stream.markEnd();
  return out.str();
}

TEST_F(BinaryStreamHostileTest, EveryTruncationThrowsAndFreesWhatWasMade) {
  const int before = shapes_test::shapesLiveObjectCount();
  for (const std::string& data : {drawingStream(), catalogStream()}) {
    ASSERT_TRUE(readAll(data).isEmpty()) << readAll(data).toUtf8();
    for (std::size_t length = 0; length + 1 < data.size(); ++length) {
      const IUString message = readAll(data.substr(0, length));
      ASSERT_FALSE(message.isEmpty()) << "cut at " << length;
    }
  }
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), before);
}

TEST_F(BinaryStreamHostileTest, EveryCorruptedByteEndsInAnExceptionOrAGraph) {
  const int before = shapes_test::shapesLiveObjectCount();
  for (const std::string& data : {drawingStream(), catalogStream()}) {
    for (std::size_t at = 0; at < data.size(); ++at) {
      for (const char replacement : {'\x60', '\xFF', '\x00', '\x03', '\x11'}) {
        std::string corrupt = data;
        corrupt[at] = replacement;
        readAll(corrupt);
      }
    }
  }
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), before);
}

TEST_F(BinaryStreamHostileTest, NegativeAndAbsurdCountsAreRejectedCheaply) {
  const IUString negative = readAll(header() + bytes({0x1C}) + int32(-1));
  EXPECT_TRUE(negative.startsWith(icore::qvxFormatMsg(81018, -1, 12LL))) << negative.toUtf8();
  // Two billion elements claimed, three present.
  EXPECT_FALSE(readAll(header() + bytes({0x1C}) + int32(0x7FFFFFFF) + bytes({0x10, 0x10, 0x10})).isEmpty());
  EXPECT_FALSE(readAll(header() + bytes({0x25}) + int32(0x7FFFFFFF) + bytes({0x08}) + int32(1)).isEmpty());
  EXPECT_FALSE(readAll(header() + bytes({0x0D}) + int32(0x7FFFFFFF) + "abc").isEmpty());
}

TEST_F(BinaryStreamHostileTest, HandlesOutOfRangeOrOfTheWrongKindAreRefused) {
  const IUString unknown = readAll(header() + bytes({0x11}) + int32(12345));
  EXPECT_TRUE(unknown.startsWith(icore::qvxGetMsg(81005))) << unknown.toUtf8();
  EXPECT_FALSE(readAll(header() + bytes({0x11}) + int32(-3)).isEmpty());
  // Handle 0 holds a class descriptor, not an object; and an object is no descriptor.
  const std::string position = bytes({0x03}) + positionDescriptor() + bytes({0x12, 0x12, 0x12, 0x12, 0x1B, 0x1B});
  const IUString notAnObject = readAll(header() + position + bytes({0x11}) + int32(0));
  EXPECT_TRUE(notAnObject.startsWith(icore::qvxGetMsg(81005))) << notAnObject.toUtf8();
  const std::string table = bytes({0x03, 0x04}) + int32(0) + text("com.example.catalog.Table") + text("1.2.0") +
                            bytes({0, 0, 0x12, 0x35}) + int32(1) + bytes({0x12, 0x12, 0x12});
  const IUString notADescriptor = readAll(header() + table + bytes({0x03, 0x02}) + int32(1));
  EXPECT_TRUE(notADescriptor.startsWith(icore::qvxFormatMsg(81012, 1))) << notADescriptor.toUtf8();
}

TEST_F(BinaryStreamHostileTest, ADescriptorThatDisagreesWithTheRegisteredClassIsInvalidData) {
  // Position.x declared as a string.
  const std::string wrong = bytes({0x03, 0x04}) + int32(0) + text("com.example.catalog.Position") + text("1.2.0") +
                            bytes({0, 2, 0x12, 0x0D}) + text("x") + bytes({0x08}) + text("y") +
                            bytes({0x12, 0x12, 0x12, 0x12, 0x0D}) + text("3") + bytes({0x08}) + int32(4);
  const IUString message = readAll(header() + wrong);
  EXPECT_TRUE(mentions(message, "TC_BYTE TC_BOOLEAN")) << message.toUtf8();
  // A value marker that does not match the descriptor's entry.
  const std::string mismatch =
      bytes({0x03}) + positionDescriptor() + bytes({0x12, 0x12, 0x12, 0x12, 0x09}) + int32(0) + int32(3);
  EXPECT_FALSE(readAll(header() + mismatch).isEmpty());
  // An unknown class and an unknown package.
  EXPECT_TRUE(readAll(header() + bytes({0x03, 0x04}) + int32(0) + text("com.example.catalog.Nope") + text("1.2.0") +
                      bytes({0, 0, 0x12}))
                  .startsWith(icore::qvxFormatMsg(81011, "com.example.catalog.Nope", "com.example.catalog")));
  EXPECT_FALSE(readAll(header() + bytes({0x03, 0x04}) + int32(0) + text("no.such.Thing") + text("1.0") +
                       bytes({0, 0, 0x12}))
                   .isEmpty());
}

TEST_F(BinaryStreamHostileTest, AnObjectOfTheWrongClassOrAContainmentCycleIsRefused) {
  using namespace shapes_test;
  const int before = shapesLiveObjectCount();
  std::unique_ptr<icore::IObject> drawing(make("Drawing", "top"));
  refer(drawing.get(), "partner", drawing.get());
  std::ostringstream out;
  QVXBinaryOutputStream(&out, nullptr, nullptr).writeObject(drawing.get());
  std::string data = out.str();
  // Entries layers (empty), owner (none), partner (itself, handle 1) become: layers holds
  // the object itself, no owner, no partner.
  const std::string entries = bytes({0x1B, 0x1B, 0x13, 0x11}) + int32(1);
  const std::size_t at = data.find(entries);
  ASSERT_NE(at, std::string::npos);
  std::string cycle = data;
  cycle.replace(at, entries.size(), bytes({0x1A}) + int32(1) + bytes({0x11}) + int32(1) + bytes({0x1B, 0x1B}));
  EXPECT_FALSE(readAll(cycle).isEmpty());
  EXPECT_EQ(shapesLiveObjectCount(), before + 1);
}

TEST_F(BinaryStreamHostileTest, DeepOrWideDescriptorChainsNeitherRecurseNorBalloon) {
  // 200,000 nested super class descriptors: read with a loop, then refused as unknown.
  std::string deep = header() + bytes({0x03});
  const int depth = 200000;
  for (int level = 0; level < depth; ++level) {
    deep += bytes({0x04}) + int32(level) + text("p.C") + text("1") + bytes({0, 0});
  }
  deep += bytes({0x12});
  EXPECT_FALSE(readAll(deep).isEmpty());
  // 100,000 nested descriptors whose innermost super class has 30,000 properties: each
  // would copy them all.
  std::string wide = header() + bytes({0x03});
  for (int heir = 1; heir <= 100000; ++heir) wide += bytes({0x04}) + int32(heir) + text("p.H") + text("1") + bytes({0, 0});
  wide += bytes({0x04}) + int32(0) + text("p.W") + text("1") + bytes({0x75, 0x30, 0x12});
  for (int property = 0; property < 30000; ++property) wide += bytes({0x08}) + text("a");
  const IUString message = readAll(wide);
  EXPECT_TRUE(mentions(message, "inherit more property entries")) << message.toUtf8();
}

}  // namespace
