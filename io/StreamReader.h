// Reads the primitive encodings that StreamWriter writes (see StreamWriter.h), taking
// exactly the bytes each value needs from the source's stream buffer, since the caller's
// stream may hold more after the object stream.
//
// Input is not trusted: a short read throws IOException 80002 before anything is
// converted; a negative count or length throws IOException 81018; strings and blobs are
// collected in chunks as their bytes arrive, so a length that the data does not back
// never causes a large allocation. Every message ends with the byte offset at which the
// reader stood. One thread at a time.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

class WkDate;
class WkLocale;

namespace com::veltrana::qvx::io {

class QVX_API StreamReader {
 public:
  // Neither `source` nor `locale` is owned; both must outlive the reader.
  StreamReader(std::istream* source, WkLocale* locale);
  StreamReader(const StreamReader&) = delete;
  StreamReader& operator=(const StreamReader&) = delete;
  ~StreamReader();

  // Inline: markers, flags and booleans are read a byte at a time.
  char readByte() {
    std::streambuf* buffer = source_->rdbuf();
    if (buffer != nullptr && source_->good()) {
      const auto next = buffer->sbumpc();
      if (next != std::char_traits<char>::eof()) {
        ++offset_;
        return static_cast<char>(next);
      }
    }
    failShortRead(1, 0);
  }
  IBOOLEAN readBoolean() { return readByte() == 1 ? ITRUE : IFALSE; }
  short readShort() { return static_cast<short>(readBigEndian<std::uint16_t>()); }
  unsigned short readUnichar() { return readBigEndian<std::uint16_t>(); }
  int readInt() { return static_cast<int>(readBigEndian<std::uint32_t>()); }
  std::int64_t readLong() { return static_cast<std::int64_t>(readBigEndian<std::uint64_t>()); }
  float readFloat();
  double readDouble();
  // A new block of `length` bytes; the caller frees it with delete[].
  char* readBytes(unsigned int& length);
  void readAndIgnoreBlob();
  IUString readString();
  // A string into `into` (replacing its text), reusing its capacity.
  void readString(std::u16string& into);
  // Skips a string without converting it.
  void readAndIgnoreString();
  // A new date; the caller owns it.
  WkDate* readDate();

  // A count or length that precedes data: a non-negative int (IOException 81018).
  int readCount();

  // Bytes consumed from the source so far.
  std::int64_t getOffset() const { return offset_; }

 private:
  void checkStreamState(std::streamsize wanted, std::streamsize got);
  // IOException 80002 for a read that got `got` of `wanted` bytes.
  [[noreturn]] void failShortRead(std::streamsize wanted, std::streamsize got);
  void readExactly(char* target, std::size_t count);
  // The `length` bytes of a string or blob, grown as they arrive.
  void readBlock(std::size_t length, std::string& into);
  void skip(std::size_t length);
  // Byte by byte through the stream's inline buffer access: numbers are 2 to 8 bytes,
  // where one virtual bulk read per number costs more than the bytes.
  template <typename Unsigned>
  Unsigned readBigEndian() {
    Unsigned value = 0;
    for (std::size_t index = 0; index < sizeof(Unsigned); ++index) {
      value = static_cast<Unsigned>((value << 8) | static_cast<unsigned char>(readByte()));
    }
    return value;
  }

  std::istream* source_;
  WkLocale* locale_;
  std::int64_t offset_ = 0;
  std::string scratch_;
  std::u16string dateText_;
};

}  // namespace com::veltrana::qvx::io
