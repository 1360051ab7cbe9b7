// An IOutputStream over a caller's std::ostream, for writing documents to files and
// string streams. It collects small writes in a buffer of its own and hands the
// ostream whole chunks.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>

#include "platform/IOutputStream.h"
#include "platform/QvxExport.h"

// The ostream is the caller's: it is not owned and never closed, and it must
// outlive this object. The buffer is allocated once, at construction, and never
// grows; a write larger than the buffer goes to the ostream directly after the
// pending bytes. The destructor hands over pending bytes but does not flush the
// ostream itself; call flush() to do both. Errors of the ostream show in its
// state (good()) and, if it was set to throw, as its exceptions.
class QVX_API StdOutputStream : public IOutputStream {
 public:
  static constexpr std::size_t kDefaultBufferSize = 8192;

  explicit StdOutputStream(std::ostream& stream, std::size_t bufferSize = kDefaultBufferSize);
  ~StdOutputStream() override;
  StdOutputStream(const StdOutputStream&) = delete;
  StdOutputStream& operator=(const StdOutputStream&) = delete;

  using IOutputStream::write;
  void write(const char* bytes, std::size_t count) override;
  void flush() override;

  // The ostream, after handing it the pending bytes, for callers that write to it
  // directly (those writes then follow everything written here so far).
  std::ostream& getStream();
  bool good() const;

 private:
  void drainBuffer();

  std::ostream& stream_;
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_;
  std::size_t used_ = 0;
};
