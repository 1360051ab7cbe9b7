// The primitive encodings of the binary stream: exact bytes, round trips, and how the
// reader meets short, malformed and oversized input.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <memory>
#include <sstream>

#include "io/StreamReader.h"
#include "io/StreamWriter.h"
#include "platform/WkDate.h"
#include "platform/WkLocale.h"
#include "tests/io/BinaryStreamTestSupport.h"

namespace {

using namespace binary_test;
using com::veltrana::qvx::icore::qvxGetMsg;
using com::veltrana::qvx::io::StreamReader;
using com::veltrana::qvx::io::StreamWriter;

class StreamWriterReaderTest : public ::testing::Test {
 protected:
  template <typename Write>
  std::string written(Write&& write) {
    std::ostringstream out;
    StreamWriter writer(&out, &locale_);
    write(writer);
    writer.flush();
    return out.str();
  }

  StreamReader& readerOf(const std::string& data) {
    in_ = std::make_unique<std::istringstream>(data);
    reader_ = std::make_unique<StreamReader>(in_.get(), &locale_);
    return *reader_;
  }

  WkLocale locale_{IUString(WkLocale::kUtf8LocaleName)};
  std::unique_ptr<std::istringstream> in_;
  std::unique_ptr<StreamReader> reader_;
};

TEST_F(StreamWriterReaderTest, NumbersAreBigEndianWithTheirExactWidths) {
  EXPECT_EQ(written([](StreamWriter& w) { w.writeInt(1); }), bytes({0, 0, 0, 1}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeShort(-2); }), bytes({0xFF, 0xFE}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeLong(1); }), bytes({0, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeDouble(1.0); }), bytes({0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeFloat(1.0F); }), bytes({0x3F, 0x80, 0, 0}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeUnichar(0x20AC); }), bytes({0x20, 0xAC}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeInt(-2); }), bytes({0xFF, 0xFF, 0xFF, 0xFE}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeLong(INT64_MIN); }), bytes({0x80, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(StreamWriterReaderTest, BooleansAreOneOnlyForTheExactTrueValue) {
  EXPECT_EQ(written([](StreamWriter& w) {
              w.writeBoolean(ITRUE);
              w.writeBoolean(IFALSE);
              w.writeBoolean(2);
              w.writeBoolean(-1);
            }),
            bytes({1, 0, 0, 0}));
  StreamReader& reader = readerOf(bytes({1, 2, 0, 0xFF}));
  EXPECT_EQ(reader.readBoolean(), ITRUE);
  EXPECT_EQ(reader.readBoolean(), IFALSE);
  EXPECT_EQ(reader.readBoolean(), IFALSE);
  EXPECT_EQ(reader.readBoolean(), IFALSE);
}

TEST_F(StreamWriterReaderTest, StringsAndBlobsCarryTheirByteCount) {
  EXPECT_EQ(written([](StreamWriter& w) { w.writeString(IUString()); }), bytes({0, 0, 0, 0}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeString(IUString(u"\u00e9a")); }), int32(3) + "\xC3\xA9" "a");
  EXPECT_EQ(written([](StreamWriter& w) { w.writeBytes(nullptr, 0); }), bytes({0, 0, 0, 0}));
  EXPECT_EQ(written([](StreamWriter& w) { w.writeBytes("\x01\x02", 2); }), bytes({0, 0, 0, 2, 1, 2}));

  StreamReader& reader = readerOf(bytes({0, 0, 0, 0}) + bytes({0, 0, 0, 0}) + text("x"));
  EXPECT_TRUE(reader.readString().isEmpty());
  unsigned int length = 99;
  std::unique_ptr<char[]> block(reader.readBytes(length));
  EXPECT_EQ(length, 0U);
  EXPECT_NE(block, nullptr);
  EXPECT_EQ(reader.readString(), IUString("x"));
}

TEST_F(StreamWriterReaderTest, ALongStringGrowsTheConversionBufferAndLaterStringsStillFit) {
  std::u16string wide(600, u'\u20AC');  // three UTF-8 bytes each: 1800 > 1024
  const std::string data = written([&](StreamWriter& w) {
    w.writeString(IUString(wide));
    w.writeString(IUString("short"));
    w.writeString(IUString(wide));
  });
  StreamReader& reader = readerOf(data);
  EXPECT_EQ(reader.readString(), IUString(wide));
  EXPECT_EQ(reader.readString(), IUString("short"));
  EXPECT_EQ(reader.readString(), IUString(wide));
  EXPECT_EQ(data.substr(0, 4), int32(1800));
}

TEST_F(StreamWriterReaderTest, EveryValueReadsBackAsWritten) {
  const std::string data = written([](StreamWriter& w) {
    w.writeByte('\x80');
    w.writeShort(std::numeric_limits<short>::min());
    w.writeUnichar(0xFFFF);
    w.writeInt(std::numeric_limits<int>::max());
    w.writeLong(-1234567890123LL);
    w.writeFloat(-0.0F);
    w.writeDouble(std::numeric_limits<double>::denorm_min());
    w.writeDouble(std::nan(""));
    w.writeString(IUString(u"\U0001F600 z"));
  });
  StreamReader& reader = readerOf(data);
  EXPECT_EQ(reader.readByte(), '\x80');
  EXPECT_EQ(reader.readShort(), std::numeric_limits<short>::min());
  EXPECT_EQ(reader.readUnichar(), 0xFFFF);
  EXPECT_EQ(reader.readInt(), std::numeric_limits<int>::max());
  EXPECT_EQ(reader.readLong(), -1234567890123LL);
  const float negativeZero = reader.readFloat();
  EXPECT_TRUE(negativeZero == 0.0F && std::signbit(negativeZero));
  EXPECT_EQ(reader.readDouble(), std::numeric_limits<double>::denorm_min());
  EXPECT_TRUE(std::isnan(reader.readDouble()));
  EXPECT_EQ(reader.readString(), IUString(u"\U0001F600 z"));
  EXPECT_EQ(reader.getOffset(), static_cast<std::int64_t>(data.size()));
}

TEST_F(StreamWriterReaderTest, DatesTravelAsTheirTextAndLongTextsAreCutTo23Characters) {
  const WkDate date = WkDate::fromTime(1705314600, 123000000);  // 01/15/2024:10:30:00.123
  const std::string data = written([&](StreamWriter& w) { w.writeDate(date); });
  EXPECT_EQ(data, text("01/15/2024:10:30:00.123"));
  std::unique_ptr<WkDate> back(readerOf(data).readDate());
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/15/2024:10:30:00.123"));

  std::unique_ptr<WkDate> cut(readerOf(text("01/15/2024:10:30:00.123 and more")).readDate());
  ASSERT_NE(cut, nullptr);
  EXPECT_EQ(cut->format("MM/DD/YYYY:HH24:MI:SS.ms"), IUString("01/15/2024:10:30:00.123"));
}

TEST_F(StreamWriterReaderTest, ShortInputThrowsBeforeAnyValueAndNamesTheOffset) {
  StreamReader& reader = readerOf(bytes({0, 0, 1}));
  const IUString message = messageOf<IOException>([&] { reader.readInt(); });
  EXPECT_TRUE(message.startsWith(qvxGetMsg(80002))) << message.toUtf8();
  EXPECT_TRUE(mentions(message, "offset 3")) << message.toUtf8();
  EXPECT_THROW(readerOf("").readByte(), IOException);
  EXPECT_THROW(readerOf(int32(5) + "abc").readString(), IOException);
  EXPECT_THROW(readerOf(int32(3) + "ab").readAndIgnoreBlob(), IOException);
}

TEST_F(StreamWriterReaderTest, NegativeAndUnbackedLengthsAreRejectedWithoutAllocatingThem) {
  const IUString negative = messageOf<IOException>([&] { readerOf(int32(-1) + "abc").readString(); });
  EXPECT_TRUE(mentions(negative, "-1")) << negative.toUtf8();
  unsigned int length = 0;
  EXPECT_THROW(readerOf(int32(-5)).readBytes(length), IOException);
  // A claimed length of 2 GB with 10 bytes behind it fails when the bytes run out; the
  // reader never takes more memory than the bytes that arrived.
  EXPECT_THROW(readerOf(int32(std::numeric_limits<int>::max()) + "0123456789").readString(), IOException);
  EXPECT_THROW(readerOf(int32(std::numeric_limits<int>::max()) + "0123456789").readBytes(length), IOException);
}

TEST_F(StreamWriterReaderTest, AFailingTargetStreamIsReportedWhenTheBytesAreHandedOver) {
  std::ostringstream out;
  out.setstate(std::ios_base::badbit);
  StreamWriter writer(&out, &locale_);
  writer.writeInt(7);
  const IUString message = messageOf<IOException>([&] { writer.flush(); });
  EXPECT_EQ(message, qvxGetMsg(80002));
}

TEST_F(StreamWriterReaderTest, ReaderTakesOnlyTheBytesOfEachValue) {
  std::istringstream in(bytes({0, 0, 0, 7}) + "rest");
  StreamReader reader(&in, &locale_);
  EXPECT_EQ(reader.readInt(), 7);
  std::string rest;
  in >> rest;
  EXPECT_EQ(rest, "rest");
}

}  // namespace
