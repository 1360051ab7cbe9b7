#include "io/StreamReader.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <memory>

#include "icore/ICoreDatatypes.h"
#include "icore/QVXMsgCatalog.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"
#include "platform/WkLocale.h"

namespace com::veltrana::qvx::io {

using exception::IOException;

namespace {

// Strings and blobs are read in pieces of this size, so that the memory taken grows
// with the bytes that actually arrive, not with the length the stream claims.
constexpr std::size_t kReadChunk = 64 * 1024;

// Only the first 23 characters of a date text are parsed: the full form with
// milliseconds, "MM/DD/YYYY:HH24:MI:SS.ms".
constexpr std::size_t kDateTextLength = 23;

IUString withOffset(int number, std::int64_t offset) {
  return icore::qvxGetMsg(number) +
         IUString::format(IUString(" (binary stream offset %lld)"), static_cast<long long>(offset));
}

}  // namespace

StreamReader::StreamReader(std::istream* source, WkLocale* locale) : source_(source), locale_(locale) {}

StreamReader::~StreamReader() = default;

void StreamReader::checkStreamState(std::streamsize wanted, std::streamsize got) {
  if (got == wanted && source_->good()) return;
  failShortRead(wanted, got);
}

void StreamReader::failShortRead(std::streamsize wanted, std::streamsize got) {
  if (got != wanted) source_->setstate(std::ios_base::eofbit | std::ios_base::failbit);
  throw IOException(withOffset(80002, offset_));
}

void StreamReader::readExactly(char* target, std::size_t count) {
  std::streambuf* buffer = source_->rdbuf();
  const auto wanted = static_cast<std::streamsize>(count);
  const std::streamsize got = buffer != nullptr && source_->good() ? buffer->sgetn(target, wanted) : 0;
  offset_ += got;
  checkStreamState(wanted, got);
}

float StreamReader::readFloat() {
  const auto bits = readBigEndian<std::uint32_t>();
  float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

double StreamReader::readDouble() {
  const auto bits = readBigEndian<std::uint64_t>();
  double value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

int StreamReader::readCount() {
  const std::int64_t at = offset_;
  const int count = readInt();
  if (count < 0) throw IOException(icore::qvxFormatMsg(81018, count, static_cast<long long>(at)));
  return count;
}

void StreamReader::readBlock(std::size_t length, std::string& into) {
  into.clear();
  while (into.size() < length) {
    const std::size_t piece = std::min(kReadChunk, length - into.size());
    const std::size_t start = into.size();
    into.resize(start + piece);
    readExactly(&into[start], piece);
  }
}

void StreamReader::skip(std::size_t length) {
  char sink[4096];
  while (length > 0) {
    const std::size_t piece = std::min(sizeof sink, length);
    readExactly(sink, piece);
    length -= piece;
  }
}

char* StreamReader::readBytes(unsigned int& length) {
  const auto count = static_cast<std::size_t>(readCount());
  readBlock(count, scratch_);
  auto block = std::make_unique<char[]>(count);
  if (count > 0) std::memcpy(block.get(), scratch_.data(), count);
  length = static_cast<unsigned int>(count);
  return block.release();
}

void StreamReader::readAndIgnoreBlob() { skip(static_cast<std::size_t>(readCount())); }

void StreamReader::readAndIgnoreString() { skip(static_cast<std::size_t>(readCount())); }

IUString StreamReader::readString() {
  const auto count = static_cast<std::size_t>(readCount());
  char small[256];
  if (count <= sizeof small) {
    readExactly(small, count);
    return locale_->fromUtf8(small, count);
  }
  readBlock(count, scratch_);
  return locale_->fromUtf8(scratch_.data(), count);
}

void StreamReader::readString(std::u16string& into) {
  const auto count = static_cast<std::size_t>(readCount());
  readBlock(count, scratch_);
  into.clear();
  locale_->appendUtf16(into, scratch_.data(), count);
}

WkDate* StreamReader::readDate() {
  readString(dateText_);
  auto date = std::make_unique<WkDate>();
  icore::ICoreDatatypes::parsePrimitiveText(*icore::ICoreDatatypes::I_DATE, dateText_.data(),
                                            std::min(dateText_.size(), kDateTextLength), date.get());
  return date.release();
}

}  // namespace com::veltrana::qvx::io
