#include "platform/StdOutputStream.h"

#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

// A stream buffer that records each bulk write it receives, to check how the
// output stream hands over its bytes.
class RecordingBuffer : public std::streambuf {
 public:
  std::string data;
  std::vector<std::size_t> writes;

 protected:
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    data.append(bytes, static_cast<std::size_t>(count));
    writes.push_back(static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
      data.push_back(traits_type::to_char_type(c));
      writes.push_back(1);
    }
    return c;
  }
};

TEST(StdOutputStreamTest, ManySmallWritesReachTheStreamInWholeBufferChunks) {
  RecordingBuffer sink;
  std::ostream target(&sink);
  std::string expected;
  {
    StdOutputStream out(target, 4096);
    for (int i = 0; i < 10000; ++i) {
      const char byte = static_cast<char>('a' + i % 26);
      out.write(&byte, 1);
      expected.push_back(byte);
    }
    EXPECT_EQ(sink.writes, (std::vector<std::size_t>{4096, 4096}));
    out.flush();
  }
  EXPECT_EQ(sink.writes, (std::vector<std::size_t>{4096, 4096, 1808}));
  EXPECT_EQ(sink.data, expected);
}

TEST(StdOutputStreamTest, MixedWriteSizesAroundTheBufferSizeKeepOrder) {
  // A tiny buffer, so pieces shorter than, equal to and longer than it alternate.
  for (std::size_t bufferSize : {1u, 7u, 8u, 64u}) {
    std::ostringstream target;
    std::string expected;
    {
      StdOutputStream out(target, bufferSize);
      for (std::size_t length = 0; length < 40; ++length) {
        const std::string piece(length, static_cast<char>('A' + length % 26));
        out.write(piece.data(), piece.size());
        expected += piece;
      }
      out.write(nullptr, 0);
    }  // the destructor hands over what is still buffered
    EXPECT_EQ(target.str(), expected) << "buffer size " << bufferSize;
  }
}

TEST(StdOutputStreamTest, GetStreamHandsOverPendingBytesFirst) {
  std::ostringstream target;
  StdOutputStream out(target);
  out << "head;";
  EXPECT_EQ(target.str(), "");
  out.getStream() << "direct;";
  out << "tail";
  out.flush();
  EXPECT_EQ(target.str(), "head;direct;tail");
}

TEST(StdOutputStreamTest, WritesTextAsUtf8WithoutSplittingSurrogatePairs) {
  // 85 euro signs fill 255 bytes, so the emoji straddles the 256-byte pieces in
  // which IUString text is converted.
  std::u16string text(85, u'\u20AC');
  text += u"\U0001F600";
  text += std::u16string(200, u'\u00e9');
  text.push_back(0xD800);  // a lone surrogate at the end is replaced
  const IUString value(text);
  std::ostringstream target;
  {
    StdOutputStream out(target, 100);
    out << value;
  }
  EXPECT_EQ(target.str(), value.toUtf8());
  EXPECT_EQ(target.str().size(), 85u * 3 + 4 + 200u * 2 + 3);
}

TEST(StdOutputStreamTest, StreamsNumbersAndNarrowText) {
  std::ostringstream target;
  {
    StdOutputStream out(target);
    const char* none = nullptr;
    out << "Id\t =" << 42 << '\n' << LLONG_MIN << ' ' << ULLONG_MAX << ' ' << -1L << ' ' << 0u << none
        << std::string_view("|view") << IUString(u"|\u00e9");
    out.write("|end");
  }
  EXPECT_EQ(target.str(), "Id\t =42\n-9223372036854775808 18446744073709551615 -1 0|view|\xC3\xA9|end");
}

}  // namespace
