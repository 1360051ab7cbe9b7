// The lowest layer of the binary object stream: single primitive values as bytes.
//
//   byte     1 byte as is            boolean  01 for exactly ITRUE (1), else 00
//   short    2 bytes, big-endian     char     2 bytes, one UTF-16 code unit, big-endian
//   int      4 bytes, big-endian     long     8 bytes, big-endian (two's complement)
//   float    4 bytes, IEEE 754 bits, big-endian;   double  8 bytes, likewise
//   bytes    int count n, then the n bytes
//   string   int byte count n, then n bytes in the locale's encoding (UTF-8), no terminator
//   date     a string holding the core date text form "MM/DD/YYYY:HH24:MI:SS.ms"
//
// Bytes are collected in a buffer of the writer's own and handed to the target stream
// in chunks through its stream buffer; flush() hands over the rest, and the binary output
// stream calls it at the end of each public operation, so the caller's stream then holds
// every item written. Strings are converted through a conversion buffer that only grows,
// so writing short strings allocates nothing. One thread at a time.
#pragma once

#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <memory>
#include <string>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

class WkDate;
class WkLocale;

namespace com::veltrana::qvx::io {

class QVX_API StreamWriter {
 public:
  // Neither `target` nor `locale` is owned; both must outlive the writer.
  StreamWriter(std::ostream* target, WkLocale* locale);
  StreamWriter(const StreamWriter&) = delete;
  StreamWriter& operator=(const StreamWriter&) = delete;
  ~StreamWriter();

  void writeByte(char value) { put(&value, 1); }
  void writeBoolean(IBOOLEAN value) { writeByte(value == ITRUE ? 1 : 0); }
  void writeShort(short value) { putBigEndian(static_cast<std::uint16_t>(value)); }
  void writeUnichar(unsigned short value) { putBigEndian(static_cast<std::uint16_t>(value)); }
  void writeInt(int value) { putBigEndian(static_cast<std::uint32_t>(value)); }
  void writeLong(std::int64_t value) { putBigEndian(static_cast<std::uint64_t>(value)); }
  void writeFloat(float value);
  void writeDouble(double value);
  void writeBytes(const char* bytes, unsigned int count);
  void writeString(const IUString& value);
  // A string whose UTF-8 bytes the caller already has.
  void writeUtf8(const std::string& utf8);
  void writeDate(const WkDate& value);

  // Hands every buffered byte to the target stream; IOException 80002 when the stream
  // refuses them.
  void flush();

 private:
  static constexpr std::size_t kOutputCapacity = 64 * 1024;
  static constexpr int kInitialConversionCapacity = 1024;

  void initializeBuffer();
  void checkStreamState();
  void put(const char* bytes, std::size_t count) {
    if (count > kOutputCapacity - used_) {
      putSlow(bytes, count);
      return;
    }
    std::memcpy(output_.get() + used_, bytes, count);
    used_ += count;
  }
  void putSlow(const char* bytes, std::size_t count);
  template <typename Unsigned>
  void putBigEndian(Unsigned value) {
    char bytes[sizeof(Unsigned)];
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i) {
      bytes[i] = static_cast<char>(value >> (8 * (sizeof(Unsigned) - 1 - i)));
    }
    put(bytes, sizeof bytes);
  }

  std::ostream* target_;
  WkLocale* locale_;
  // The text of a date, kept so that writing one allocates nothing per value.
  std::string dateText_;
  char* conversionBuffer_ = nullptr;
  int conversionCapacity_ = 0;
  std::unique_ptr<char[]> output_;
  std::size_t used_ = 0;
};

}  // namespace com::veltrana::qvx::io
