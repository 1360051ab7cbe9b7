#include "platform/StdOutputStream.h"

#include <cstring>
#include <ostream>

StdOutputStream::StdOutputStream(std::ostream& stream, std::size_t bufferSize)
    : stream_(stream), buffer_(new char[bufferSize > 0 ? bufferSize : 1]), capacity_(bufferSize > 0 ? bufferSize : 1) {}

StdOutputStream::~StdOutputStream() {
  try {
    drainBuffer();
  } catch (...) {
    // An ostream set to throw must not take the program down from a destructor;
    // the caller sees the failure in the stream's state.
  }
}

void StdOutputStream::write(const char* bytes, std::size_t count) {
  if (count == 0) return;  // bytes may then be null, which memcpy does not allow
  if (count <= capacity_ - used_) {
    std::memcpy(buffer_.get() + used_, bytes, count);
    used_ += count;
    return;
  }
  drainBuffer();
  if (count >= capacity_) {
    stream_.write(bytes, static_cast<std::streamsize>(count));
    return;
  }
  std::memcpy(buffer_.get(), bytes, count);
  used_ = count;
}

void StdOutputStream::flush() {
  drainBuffer();
  stream_.flush();
}

std::ostream& StdOutputStream::getStream() {
  drainBuffer();
  return stream_;
}

bool StdOutputStream::good() const { return stream_.good(); }

void StdOutputStream::drainBuffer() {
  if (used_ == 0) return;
  const std::size_t pending = used_;
  used_ = 0;  // cleared first, so a throwing ostream cannot make the bytes go out twice
  stream_.write(buffer_.get(), static_cast<std::streamsize>(pending));
}
