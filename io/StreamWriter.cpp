#include "io/StreamWriter.h"

#include <cstdlib>
#include <ostream>

#include "icore/ICoreDatatypes.h"
#include "icore/QVXMsgCatalog.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"
#include "platform/WkLocale.h"

namespace com::veltrana::qvx::io {

using exception::IOException;

StreamWriter::StreamWriter(std::ostream* target, WkLocale* locale)
    : target_(target), locale_(locale), output_(new char[kOutputCapacity]) {
  initializeBuffer();
}

StreamWriter::~StreamWriter() {
  std::free(conversionBuffer_);
  conversionBuffer_ = nullptr;
}

void StreamWriter::initializeBuffer() {
  conversionCapacity_ = kInitialConversionCapacity;
  conversionBuffer_ = static_cast<char*>(std::malloc(static_cast<std::size_t>(conversionCapacity_)));
  if (conversionBuffer_ == nullptr) throw IOException(icore::qvxGetMsg(80009));
}

void StreamWriter::checkStreamState() {
  if (!target_->good()) throw IOException(icore::qvxGetMsg(80002));
}

void StreamWriter::putSlow(const char* bytes, std::size_t count) {
  flush();
  if (count >= kOutputCapacity) {
    // Large blocks go straight to the stream instead of through the buffer.
    if (target_->rdbuf()->sputn(bytes, static_cast<std::streamsize>(count)) != static_cast<std::streamsize>(count)) {
      target_->setstate(std::ios_base::badbit);
    }
    checkStreamState();
    return;
  }
  std::memcpy(output_.get(), bytes, count);
  used_ = count;
}

void StreamWriter::flush() {
  if (used_ > 0) {
    const auto count = static_cast<std::streamsize>(used_);
    if (target_->rdbuf() == nullptr || target_->rdbuf()->sputn(output_.get(), count) != count) {
      target_->setstate(std::ios_base::badbit);
    }
    used_ = 0;
  }
  checkStreamState();
}

void StreamWriter::writeFloat(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  putBigEndian(bits);
}

void StreamWriter::writeDouble(double value) {
  std::uint64_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  putBigEndian(bits);
}

void StreamWriter::writeBytes(const char* bytes, unsigned int count) {
  writeInt(static_cast<int>(count));
  if (count > 0) put(bytes, count);
}

void StreamWriter::writeString(const IUString& value) {
  const std::size_t needed = locale_->getUtf8Size(value.data(), value.length());
  if (needed > static_cast<std::size_t>(conversionCapacity_)) {
    if (needed > static_cast<std::size_t>(INT32_MAX)) throw IOException(icore::qvxGetMsg(80009));
    char* grown = static_cast<char*>(std::realloc(conversionBuffer_, needed));
    if (grown == nullptr) throw IOException(icore::qvxGetMsg(80009));
    conversionBuffer_ = grown;
    conversionCapacity_ = static_cast<int>(needed);
  }
  const std::size_t produced =
      locale_->toUtf8(value.data(), value.length(), conversionBuffer_, static_cast<std::size_t>(conversionCapacity_));
  writeInt(static_cast<int>(produced));
  put(conversionBuffer_, produced);
}

void StreamWriter::writeUtf8(const std::string& utf8) {
  if (utf8.size() > static_cast<std::size_t>(INT32_MAX)) throw IOException(icore::qvxGetMsg(80009));
  writeInt(static_cast<int>(utf8.size()));
  put(utf8.data(), utf8.size());
}

void StreamWriter::writeDate(const WkDate& value) {
  dateText_.clear();
  icore::ICoreDatatypes::appendPrimitiveText(dateText_, *icore::ICoreDatatypes::I_DATE, &value, 0);
  writeUtf8(dateText_);
}

}  // namespace com::veltrana::qvx::io
