// The Unicode string used at every interface of the library: a sequence of UTF-16
// code units, compared exactly (code unit by code unit, case-sensitive). It is built
// from UTF-8 (`const char*`) or UTF-16 (`const char16_t*`) text and converts back to
// UTF-8 with toUtf8(); malformed input is replaced as WkUString documents.
//
// format() is the printf-style operation behind every catalog message:
//   %s  an IUString, a UTF-8 `const char*` or a std::string
//   %d %i %u %x %X %o  integers of any width (the h/l/ll/z length modifiers are accepted)
//   %c  a character (a char16_t code unit or a char)
//   %f %e %g %a  floating point, with flags, width and precision as printf has them
//   %%  a percent sign
// Flags, width and precision take at most 16 characters, and a width or precision at
// most 3 digits; a longer one is not taken as a conversion and stays as written.
// A conversion whose argument is missing is copied into the result as written, so a
// message with too few arguments shows where they are missing; surplus arguments are
// ignored. An argument of another kind than its conversion asks for is printed in
// its own natural form rather than reinterpreted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/QvxExport.h"

class QVX_API IUString {
 public:
  static constexpr std::size_t npos = std::u16string::npos;

  IUString() = default;
  IUString(const char* utf8);  // NOLINT: implicit, so literals read naturally
  IUString(const char* utf8, std::size_t length);
  IUString(const char16_t* utf16);  // NOLINT
  IUString(const char16_t* utf16, std::size_t length);
  IUString(std::u16string utf16);  // NOLINT
  explicit IUString(std::u16string_view utf16);
  static IUString fromUtf8(std::string_view utf8);

  std::string toUtf8() const;
  const std::u16string& str() const { return text_; }
  std::u16string_view view() const { return text_; }
  const char16_t* c_str() const { return text_.c_str(); }
  const char16_t* data() const { return text_.data(); }
  std::size_t length() const { return text_.size(); }
  bool isEmpty() const { return text_.empty(); }
  char16_t operator[](std::size_t index) const { return text_[index]; }

  IUString& operator+=(const IUString& other) {
    text_ += other.text_;
    return *this;
  }
  IUString& operator+=(char16_t unit) {
    text_ += unit;
    return *this;
  }
  IUString& append(const char16_t* units, std::size_t count) {
    text_.append(units, count);
    return *this;
  }
  void clear() { text_.clear(); }
  void reserve(std::size_t capacity) { text_.reserve(capacity); }

  std::size_t find(char16_t unit, std::size_t from = 0) const { return text_.find(unit, from); }
  std::size_t find(const IUString& part, std::size_t from = 0) const { return text_.find(part.text_, from); }
  std::size_t rfind(char16_t unit, std::size_t from = npos) const { return text_.rfind(unit, from); }
  IUString substr(std::size_t position, std::size_t count = npos) const {
    return IUString(text_.substr(position, count));
  }
  bool startsWith(const IUString& prefix) const {
    return text_.compare(0, prefix.text_.size(), prefix.text_) == 0;
  }
  bool endsWith(const IUString& suffix) const {
    return text_.size() >= suffix.text_.size() &&
           text_.compare(text_.size() - suffix.text_.size(), npos, suffix.text_) == 0;
  }
  // Replaces every occurrence of `from` (which must not be empty) by `to`.
  IUString& replaceAll(const IUString& from, const IUString& to);

  friend bool operator==(const IUString& a, const IUString& b) { return a.text_ == b.text_; }
  friend bool operator!=(const IUString& a, const IUString& b) { return a.text_ != b.text_; }
  friend bool operator<(const IUString& a, const IUString& b) { return a.text_ < b.text_; }
  friend IUString operator+(IUString a, const IUString& b) { return a += b; }

  // One argument of format(), captured without copying strings.
  struct FormatArg {
    enum class Kind { kSigned, kUnsigned, kFloating, kUtf16, kUtf8, kChar };
    struct Utf8Text {
      const char* text;
      std::size_t length;
    };
    Kind kind;
    union {
      long long asSigned;
      unsigned long long asUnsigned;
      double asFloating;
      const IUString* asUtf16;
      Utf8Text asUtf8;
      char16_t asChar;
    };
  };

  template <typename... Args>
  static IUString format(const IUString& pattern, const Args&... args) {
    const FormatArg captured[sizeof...(Args) + 1] = {capture(args)...};
    return formatArgs(pattern, captured, sizeof...(Args));
  }
  static IUString formatArgs(const IUString& pattern, const FormatArg* args, std::size_t count);

 private:
  static FormatArg capture(const IUString& value) {
    FormatArg arg{FormatArg::Kind::kUtf16, {}};
    arg.asUtf16 = &value;
    return arg;
  }
  static FormatArg capture(const char* value);
  static FormatArg capture(const std::string& value) {
    FormatArg arg{FormatArg::Kind::kUtf8, {}};
    arg.asUtf8 = {value.data(), value.size()};
    return arg;
  }
  static FormatArg capture(char value) {
    FormatArg arg{FormatArg::Kind::kChar, {}};
    arg.asChar = static_cast<unsigned char>(value);
    return arg;
  }
  static FormatArg capture(char16_t value) {
    FormatArg arg{FormatArg::Kind::kChar, {}};
    arg.asChar = value;
    return arg;
  }
  template <typename T, typename = std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>>
  static FormatArg capture(T value) {
    FormatArg arg{FormatArg::Kind::kSigned, {}};
    if constexpr (std::is_floating_point_v<T>) {
      arg.kind = FormatArg::Kind::kFloating;
      arg.asFloating = value;
    } else if constexpr (std::is_enum_v<T> || std::is_signed_v<T>) {
      arg.asSigned = static_cast<long long>(value);
    } else {
      arg.kind = FormatArg::Kind::kUnsigned;
      arg.asUnsigned = static_cast<unsigned long long>(value);
    }
    return arg;
  }

  std::u16string text_;
};

// String hash: h = h * 131 + unit over the code units, kept to 31 bits. Every hash
// container keyed by IUString uses it.
QVX_API std::uint32_t hashFunction(const IUString& key);

namespace std {
template <>
struct hash<IUString> {
  size_t operator()(const IUString& key) const noexcept { return ::hashFunction(key); }
};
}  // namespace std
