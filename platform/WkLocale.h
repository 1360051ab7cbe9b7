// A character-set converter named by a locale, used by the binary streams and the
// XML escaping to turn strings into bytes and back. The only locale the platform
// supports is "_.UTF-8@" (any language, UTF-8); conversions follow WkUString's
// replacement policy, so malformed input never fails.
#pragma once

#include <cstddef>
#include <string>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

// A WkLocale built from any other name is not valid: isValid() is false and its
// conversions report an assertion failure (using an unsupported locale is a
// programming error) and then convert as UTF-8 anyway, which is the documented
// fallback when the assertion handler returns.
//
// Immutable after construction, so one locale may be shared between threads.
class QVX_API WkLocale {
 public:
  static constexpr const char* kUtf8LocaleName = "_.UTF-8@";

  explicit WkLocale(const IUString& name);

  bool isValid() const { return isValid_; }
  const IUString& getName() const { return name_; }

  // The number of UTF-8 bytes that toUtf8 produces for the same input.
  std::size_t getUtf8Size(const char16_t* text, std::size_t length) const;
  // Converts `length` UTF-16 code units into out[0, outCapacity) and returns the bytes
  // written, without allocating. Size the buffer with getUtf8Size; a smaller one gets
  // only the characters that fit whole (never a partial sequence).
  std::size_t toUtf8(const char16_t* text, std::size_t length, char* out, std::size_t outCapacity) const;
  // Appends the UTF-8 form of `length` UTF-16 code units to `out`. A caller that keeps
  // one buffer (clearing it between strings) allocates only while it grows.
  void appendUtf8(std::string& out, const char16_t* text, std::size_t length) const;
  // Appends the UTF-16 form of `length` bytes of UTF-8 text to `out`, likewise.
  void appendUtf16(std::u16string& out, const char* text, std::size_t length) const;
  // The string of `length` bytes of UTF-8 text (appendUtf16 into a new string).
  IUString fromUtf8(const char* text, std::size_t length) const;

 private:
  void checkValid() const;

  IUString name_;
  bool isValid_;
};
