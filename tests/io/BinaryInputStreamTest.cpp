// What QVXBinaryInputStream makes of the items of a stream: the header, null objects,
// the end marker, lists, boxed primitives, annotations, unknown properties and package
// versions.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "icore/exception/IllegalArgumentException.h"
#include "platform/WkDate.h"
#include "tests/io/BinaryStreamTestSupport.h"

namespace {

using namespace binary_test;
namespace catalog = com::example::catalog;
namespace icore = com::veltrana::qvx::icore;

class BinaryInputStreamTest : public ::testing::Test {
 protected:
  void SetUp() override { prepareCatalog(); }

  QVXBinaryInputStream& streamOf(const std::string& data) {
    in_ = std::make_unique<std::istringstream>(data);
    stream_ = std::make_unique<QVXBinaryInputStream>(in_.get(), &logger_, nullptr);
    return *stream_;
  }

  RecordingLogger logger_{1};
  std::unique_ptr<std::istringstream> in_;
  std::unique_ptr<QVXBinaryInputStream> stream_;
};

// A whole Position record: its descriptor of the given package version, then x and y.
std::string positionRecord(const std::string& version, int x, int y) {
  return bytes({0x03}) + positionDescriptor(0, version) + positionBody(x, y);
}

int xOf(icore::IObject* object) { return static_cast<catalog::Position*>(object)->getX(); }
int yOf(icore::IObject* object) { return static_cast<catalog::Position*>(object)->getY(); }

TEST_F(BinaryInputStreamTest, TheHeaderMustBeTheStartMarkerAndVersion14_0_0) {
  const IUString start = messageOf<InvalidDataException>([&] { streamOf(bytes({0x02})).readObject(); });
  EXPECT_TRUE(mentions(start, "TC_SERIALIZATION_START")) << start.toUtf8();
  const IUString version =
      messageOf<InvalidDataException>([&] { streamOf(bytes({0x01}) + text("14.0.1") + bytes({0x10})).readObject(); });
  EXPECT_TRUE(version.startsWith(icore::qvxFormatMsg(81002, "14.0.1", "14.0.0"))) << version.toUtf8();
  EXPECT_TRUE(logger_.has(RecordingLogger::ERROR_LEVEL, version.toUtf8()));
}

TEST_F(BinaryInputStreamTest, ANullObjectThenTheEndOfTheData) {
  QVXBinaryInputStream& stream = streamOf(header() + bytes({0x10}));
  EXPECT_EQ(stream.readObject(), nullptr);
  const IUString end = messageOf<IOException>([&] { stream.readObject(); });
  EXPECT_TRUE(end.startsWith(icore::qvxGetMsg(80002))) << end.toUtf8();
}

TEST_F(BinaryInputStreamTest, TheEndMarkerEndsTheStreamForGood) {
  QVXBinaryInputStream& stream = streamOf(header() + bytes({0x34}));
  EXPECT_EQ(stream.getNextObjectType(), QVXBinaryInputStream::STREAM_END);
  EXPECT_EQ(stream.hasNextObject(), IFALSE);
  for (int attempt = 0; attempt < 3; ++attempt) {
    const IUString message = messageOf<IOException>([&] { stream.readObject(); });
    EXPECT_TRUE(message.startsWith(icore::qvxGetMsg(81015))) << message.toUtf8();
  }
  EXPECT_THROW(stream.readInt(), IOException);
  // Met by a read rather than by getNextObjectType, it behaves the same.
  QVXBinaryInputStream& direct = streamOf(header() + bytes({0x34}));
  EXPECT_THROW(direct.readObjects(), IOException);
  EXPECT_EQ(direct.hasNextObject(), IFALSE);
}

TEST_F(BinaryInputStreamTest, NextObjectTypeClassifiesEachItemAndKeepsTheMarkerForTheRead) {
  QVXBinaryInputStream& stream = streamOf(header() + bytes({0x08}) + int32(5) + bytes({0x2F}) + int32(1) +
                                          bytes({0x1C}) + int32(1) + bytes({0x10}) + bytes({0x25}) + int32(0));
  EXPECT_EQ(stream.getNextObjectType(), QVXBinaryInputStream::PRIMITIVE_INTEGER);
  EXPECT_EQ(stream.getNextObjectType(), QVXBinaryInputStream::PRIMITIVE_INTEGER);
  EXPECT_EQ(stream.readInt(), 5);
  EXPECT_EQ(stream.getNextObjectType(), QVXBinaryInputStream::BOXED_INTEGER);
  EXPECT_EQ(stream.readObject(), nullptr);  // the boxed value is consumed, no object results
  EXPECT_EQ(stream.getNextObjectType(), QVXBinaryInputStream::LIST_OF_OBJECTS);
  const IUString list = messageOf<IOException>([&] { stream.readObject(); });
  EXPECT_TRUE(list.startsWith(icore::qvxGetMsg(81013))) << list.toUtf8();
  std::unique_ptr<IVector<icore::IObject*>> objects(stream.readObjects());
  ASSERT_EQ(objects->size(), 1U);
  EXPECT_EQ((*objects)[0], nullptr);
  EXPECT_EQ(stream.getNextObjectType(), QVXBinaryInputStream::LIST_OF_INTEGERS);
  const IUString notObjects = messageOf<IOException>([&] { stream.readObjects(); });
  EXPECT_TRUE(notObjects.startsWith(icore::qvxGetMsg(81014))) << notObjects.toUtf8();
  EXPECT_THROW(stream.readShorts(), IOException);  // 81003: not the item's type
}

TEST_F(BinaryInputStreamTest, AnUnknownItemMarkerIsInvalidData) {
  const IUString message = messageOf<InvalidDataException>([&] { streamOf(header() + bytes({0x60})).readObject(); });
  EXPECT_TRUE(mentions(message, "TC_NULL TC_OBJ_REFERENCE TC_OBJECT TC_BOXED_BYTE")) << message.toUtf8();
  EXPECT_THROW(streamOf(header() + bytes({0x16})).getNextObjectType(), InvalidDataException);
}

TEST_F(BinaryInputStreamTest, PrimitiveItemsAndListsReadBack) {
  std::ostringstream out;
  QVXBinaryOutputStream writer(&out, nullptr, nullptr);
  writer.writeLong(-7);
  writer.writeDouble(2.5);
  const WkDate date = WkDate::fromTime(0);
  writer.writeDate(&date);
  writer.writeDate(nullptr);
  IUString a("a");
  IVector<IUString*> strings;
  strings.append(&a);
  strings.append(nullptr);
  writer.writeStrings(&strings);
  short s = -3;
  IVector<short*> shorts;
  shorts.append(&s);
  writer.writeShorts(&shorts);
  QVXBinaryInputStream& stream = streamOf(out.str());
  EXPECT_EQ(stream.readLong(), -7);
  EXPECT_EQ(stream.readDouble(), 2.5);
  std::unique_ptr<WkDate> back(stream.readDate());
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/01/1970:00:00:00.000"));
  EXPECT_EQ(stream.readDate(), nullptr);
  std::unique_ptr<IVector<IUString*>> texts(stream.readStrings());
  ASSERT_EQ(texts->size(), 2U);
  EXPECT_EQ(*(*texts)[0], IUString("a"));
  EXPECT_EQ((*texts)[1], nullptr);
  delete (*texts)[0];
  std::unique_ptr<IVector<short*>> numbers(stream.readShorts());
  ASSERT_EQ(numbers->size(), 1U);
  EXPECT_EQ(*(*numbers)[0], -3);
  delete (*numbers)[0];
}

TEST_F(BinaryInputStreamTest, AnObjectWhoseStreamClassHasAnExtraPropertyLoadsIntoTheRegisteredClass) {
  // As a Position with a third property "z" between x and y would write it; the value of
  // z is itself an object record, which is read in skip mode.
  const std::string extraEntry = bytes({0x13}) + text("com.example.catalog.Gone") + text("z");
  const std::string nested = bytes({0x03, 0x04}) + int32(1) + text("com.example.catalog.Gone") + text("1.0") +
                             bytes({0, 1, 0x12, 0x0D}) + text("label") + bytes({0x35}) + int32(2) + bytes({0x1D}) +
                             text("not:an identity") + bytes({0x12, 0x12, 0x0D}) + text("dropped");
  const std::string data = header() + bytes({0x03, 0x04}) + int32(0) + text("com.example.catalog.Position") +
                           text("1.2.0") + bytes({0, 3, 0x12, 0x08}) + text("x") + extraEntry + bytes({0x08}) + text("y") +
                           bytes({0x12, 0x12, 0x12, 0x12, 0x08}) + int32(3) + bytes({0x13}) + nested + bytes({0x08}) +
                           int32(4);
  std::unique_ptr<icore::IObject> position(streamOf(data).readObject());
  ASSERT_NE(position, nullptr);
  EXPECT_EQ(xOf(position.get()), 3);
  EXPECT_EQ(yOf(position.get()), 4);
}

TEST_F(BinaryInputStreamTest, ADifferentMajorPackageVersionIsRefused) {
  std::unique_ptr<icore::IObject> minor(streamOf(header() + positionRecord("1.9.3", 1, 2)).readObject());
  EXPECT_NE(minor, nullptr);
  const IUString message =
      messageOf<IOException>([&] { streamOf(header() + positionRecord("2.0.0", 1, 2)).readObject(); });
  EXPECT_TRUE(message.startsWith(icore::qvxFormatMsg(81017, "com.example.catalog", "2.0.0", "1.2.0")))
      << message.toUtf8();
  // A version without a dot names no major version.
  EXPECT_THROW(streamOf(header() + positionRecord("1", 1, 2)).readObject(), IOException);
}

TEST_F(BinaryInputStreamTest, AnnotationsInEveryFormAreReadAndIgnored) {
  const std::string body = bytes({0x08}) + int32(5) + bytes({0x08}) + int32(6);
  const std::string descriptor = bytes({0x03}) + positionDescriptor();
  // The single byte 0x21 stands for the whole annotations part.
  std::unique_ptr<icore::IObject> skipped(
      streamOf(header() + descriptor + bytes({0x12, 0x12, 0x21}) + body).readObject());
  ASSERT_NE(skipped, nullptr);
  EXPECT_EQ(xOf(skipped.get()), 5);
  // Modeled annotations (one object, dropped) and generic ones (a namespace with a pair).
  const std::string annotation = bytes({0x03, 0x02}) + int32(0) + bytes({0x12, 0x12, 0x12, 0x12, 0x08}) + int32(9) +
                                 bytes({0x08}) + int32(9);
  const std::string annotated = bytes({0x1E}) + int32(1) + annotation + bytes({0x1F}) + int32(1) + bytes({0x20}) +
                                text("ns") + int32(1) + text("key") + text("value");
  std::unique_ptr<icore::IObject> full(
      streamOf(header() + descriptor + bytes({0x12, 0x12}) + annotated + body).readObject());
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(yOf(full.get()), 6);
  const IUString wrong =
      messageOf<IOException>([&] { streamOf(header() + descriptor + bytes({0x12, 0x12, 0x05}) + body).readObject(); });
  EXPECT_TRUE(mentions(wrong, "TC_ANNOTATIONS TC_NOT_SPECIFIED")) << wrong.toUtf8();
}

TEST_F(BinaryInputStreamTest, ALongIdentityIsConsumedAndDropped) {
  const std::string data = bytes({0x03}) + positionDescriptor() + bytes({0x12, 0x36}) + int32(0) + int32(42) +
                           bytes({0x12, 0x12, 0x08}) + int32(1) + bytes({0x08}) + int32(2);
  std::unique_ptr<icore::IObject> position(streamOf(header() + data).readObject());
  ASSERT_NE(position, nullptr);
  EXPECT_EQ(yOf(position.get()), 2);
}

TEST_F(BinaryInputStreamTest, ANullInputStreamIsRefused) {
  EXPECT_THROW(QVXBinaryInputStream(nullptr, &logger_, nullptr), icore::exception::IllegalArgumentException);
}

}  // namespace
