#include "platform/StdOutputStream.h"

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace {

// Records the size of each bulk write it receives, to see how the bytes are handed over.
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
};

TEST(StdOutputStreamTest, HandsTheStreamWholeBufferChunksInOrder) {
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
    const std::string large(5000, 'L');  // goes whole, after the pending bytes
    out.write(large.data(), large.size());
    out.getStream() << "|direct";
    out << "tail";
    expected += large + "|direct" + "tail";
  }  // the destructor hands over what is still buffered
  EXPECT_EQ(sink.writes, (std::vector<std::size_t>{4096, 4096, 1808, 5000, 7, 4}));
  EXPECT_EQ(sink.data, expected);
}

// 85 euro signs fill 255 bytes, so the emoji straddles the 256-byte pieces in which
// IUString text is converted; a lone surrogate at the end is replaced.
TEST(StdOutputStreamTest, WritesAroundTheBufferSizeKeepOrderAndSurrogatePairs) {
  const IUString text(std::u16string(85, u'\u20AC') + u"\U0001F600" + std::u16string(200, u'\u00e9') + u'\xD800');
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
      out << text;
      expected += text.toUtf8();
    }
    EXPECT_EQ(target.str(), expected) << "buffer size " << bufferSize;
  }
}

}  // namespace
