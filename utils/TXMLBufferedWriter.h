// The output end of the XML writing layer: collects markup in a fixed buffer and hands
// the caller's IOutputStream whole chunks, escaping attribute values and text by
// copying runs of characters that need no escape at once. Private to utils/.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

class IOutputStream;

namespace com::veltrana::qvx::utils {

// Escapes for well-formed XML 1.0: in attribute values & < > " and the tab, line
// feed and carriage return (as character references, so that a reader's
// normalisation of attribute blanks cannot change them); in text & < > and the
// carriage return. Other control characters below 0x20, which XML 1.0 does not allow
// at all, are written as character references too. Bytes from 0x80 pass through:
// values are UTF-8 already. The stream is not owned; flush() hands it what is
// buffered (the destructor does not, so a failed write is not retried).
class TXMLBufferedWriter {
 public:
  static constexpr std::size_t kBufferSize = 32 * 1024;

  explicit TXMLBufferedWriter(IOutputStream& out) : out_(out) {}
  TXMLBufferedWriter(const TXMLBufferedWriter&) = delete;
  TXMLBufferedWriter& operator=(const TXMLBufferedWriter&) = delete;

  void write(char c) {
    if (used_ == kBufferSize) flushBuffer();
    buffer_[used_++] = c;
  }
  void write(std::string_view text) {
    if (text.empty()) return;  // its data may be null, which memcpy does not allow
    if (text.size() <= kBufferSize - used_) {
      std::memcpy(buffer_ + used_, text.data(), text.size());
      used_ += text.size();
      return;
    }
    writeLarge(text);
  }
  void writeEscapedAttribute(std::string_view value);
  void writeEscapedText(std::string_view text);
  void flush();

 private:
  void writeEscaped(std::string_view text, const unsigned char* needsEscape);
  void writeReference(unsigned char c);
  void writeLarge(std::string_view text);
  void flushBuffer();

  IOutputStream& out_;
  std::size_t used_ = 0;
  char buffer_[kBufferSize];
};

}  // namespace com::veltrana::qvx::utils
