#include "utils/TXMLBufferedWriter.h"

#include <array>

#include "platform/IOutputStream.h"

namespace com::veltrana::qvx::utils {

namespace {

enum class EscapeContext { kAttribute, kText };

constexpr std::array<unsigned char, 256> escapeTable(EscapeContext context) {
  std::array<unsigned char, 256> table{};
  for (int c = 0; c < 0x20; ++c) table[static_cast<std::size_t>(c)] = 1;
  table['&'] = 1;
  table['<'] = 1;
  table['>'] = 1;
  if (context == EscapeContext::kAttribute) {
    table['"'] = 1;
  } else {
    table['\t'] = 0;
    table['\n'] = 0;
  }
  return table;
}

constexpr std::array<unsigned char, 256> kAttributeEscapes = escapeTable(EscapeContext::kAttribute);
constexpr std::array<unsigned char, 256> kTextEscapes = escapeTable(EscapeContext::kText);

}  // namespace

void TXMLBufferedWriter::writeEscapedAttribute(std::string_view value) { writeEscaped(value, kAttributeEscapes.data()); }

void TXMLBufferedWriter::writeEscapedText(std::string_view text) { writeEscaped(text, kTextEscapes.data()); }

void TXMLBufferedWriter::writeEscaped(std::string_view text, const unsigned char* needsEscape) {
  const char* run = text.data();
  const char* const end = run + text.size();
  const char* scan = run;
  while (scan != end) {
    const auto c = static_cast<unsigned char>(*scan);
    if (needsEscape[c] == 0) {
      ++scan;
      continue;
    }
    write(std::string_view(run, static_cast<std::size_t>(scan - run)));
    writeReference(c);
    run = ++scan;
  }
  write(std::string_view(run, static_cast<std::size_t>(end - run)));
}

void TXMLBufferedWriter::writeReference(unsigned char c) {
  switch (c) {
    case '&': write("&amp;"); return;
    case '<': write("&lt;"); return;
    case '>': write("&gt;"); return;
    case '"': write("&quot;"); return;
    default: break;
  }
  static constexpr char kHex[] = "0123456789ABCDEF";
  const char reference[] = {'&', '#', 'x', kHex[c >> 4], kHex[c & 0xF], ';'};
  write(std::string_view(reference, sizeof reference));
}

void TXMLBufferedWriter::writeLarge(std::string_view text) {
  flushBuffer();
  if (text.size() >= kBufferSize) {
    out_.write(text.data(), text.size());
    return;
  }
  std::memcpy(buffer_, text.data(), text.size());
  used_ = text.size();
}

void TXMLBufferedWriter::flushBuffer() {
  if (used_ == 0) return;
  const std::size_t pending = used_;
  used_ = 0;  // cleared first, so a throwing stream cannot get the bytes twice
  out_.write(buffer_, pending);
}

void TXMLBufferedWriter::flush() {
  flushBuffer();
  out_.flush();
}

}  // namespace com::veltrana::qvx::utils
