#include "platform/IUString.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <type_traits>

#include "platform/WkUString.h"

IUString::IUString(const char* utf8) {
  if (utf8 != nullptr) WkUString::appendUtf8AsUtf16(text_, utf8, std::strlen(utf8));
}

IUString::IUString(const char* utf8, std::size_t length) {
  WkUString::appendUtf8AsUtf16(text_, utf8, length);
}

IUString::IUString(const char16_t* utf16) {
  if (utf16 != nullptr) text_ = utf16;
}

IUString::IUString(const char16_t* utf16, std::size_t length) : text_(utf16, length) {}

IUString::IUString(std::u16string utf16) : text_(std::move(utf16)) {}

IUString::IUString(std::u16string_view utf16) : text_(utf16) {}

IUString IUString::fromUtf8(std::string_view utf8) { return IUString(utf8.data(), utf8.size()); }

std::string IUString::toUtf8() const {
  std::string out;
  WkUString::appendUtf16AsUtf8(out, text_.data(), text_.size());
  return out;
}

IUString& IUString::replaceAll(const IUString& from, const IUString& to) {
  if (from.isEmpty()) return *this;
  std::u16string result;
  std::size_t start = 0;
  for (std::size_t hit = text_.find(from.text_); hit != npos; hit = text_.find(from.text_, start)) {
    result.append(text_, start, hit - start);
    result += to.text_;
    start = hit + from.text_.size();
  }
  if (start == 0) return *this;
  result.append(text_, start, npos);
  text_ = std::move(result);
  return *this;
}

IUString::FormatArg IUString::capture(const char* value) {
  FormatArg arg{FormatArg::Kind::kUtf8, {}};
  arg.asUtf8 = {value != nullptr ? value : "(null)", value != nullptr ? std::strlen(value) : 6};
  return arg;
}

namespace {

using Arg = IUString::FormatArg;

// One printf conversion: the text from '%' to the conversion letter, split into the
// parts that snprintf needs.
struct Conversion {
  std::size_t end = 0;   // index after the conversion letter
  std::string flags;     // flags, width and precision, e.g. "-08.3"
  char letter = 0;       // d, s, f, ...
};

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

bool isFlagOrWidth(char16_t unit) {
  return unit == u'-' || unit == u'+' || unit == u' ' || unit == u'#' || unit == u'.' || isDigit(unit);
}

// Patterns come from the message catalog file, which an installation may edit. These
// limits keep the printf pattern built from a conversion complete (a cut-off one is
// undefined behaviour) and a width or precision from asking snprintf for huge output.
constexpr std::size_t kMaxFlagsLength = 16;
constexpr std::size_t kMaxNumberDigits = 3;

// The formatting buffer of a thread keeps at most this many code units between calls.
constexpr std::size_t kKeptScratchCapacity = 4096;

bool isLengthModifier(char16_t unit) {
  return unit == u'h' || unit == u'l' || unit == u'L' || unit == u'q' || unit == u'j' ||
         unit == u'z' || unit == u't';
}

// Parses the conversion that starts at pattern[start] == '%'. Returns false when the
// text is not a complete conversion.
bool parseConversion(std::u16string_view pattern, std::size_t start, Conversion& out) {
  std::size_t i = start + 1;
  std::size_t digitRun = 0;
  while (i < pattern.size() && isFlagOrWidth(pattern[i])) {
    digitRun = isDigit(pattern[i]) ? digitRun + 1 : 0;
    if (digitRun > kMaxNumberDigits || out.flags.size() == kMaxFlagsLength) return false;
    out.flags.push_back(static_cast<char>(pattern[i++]));
  }
  while (i < pattern.size() && isLengthModifier(pattern[i])) ++i;
  if (i >= pattern.size() || pattern[i] > 0x7f) return false;
  out.letter = static_cast<char>(pattern[i]);
  if (std::strchr("diouxXcsfFeEgGaA", out.letter) == nullptr) return false;
  out.end = i + 1;
  return true;
}

void appendAscii(std::u16string& out, const char* text, int length) {
  for (int i = 0; i < length; ++i) out.push_back(static_cast<unsigned char>(text[i]));
}

// Plain decimal integers, the common case in names and messages, go through to_chars:
// two snprintf calls (the pattern, then the value) cost several times as much.
template <typename T>
bool appendPlainDecimal(std::u16string& out, const std::string& flags, char letter, T value) {
  if constexpr (std::is_integral_v<T>) {
    if (flags.empty() && (letter == 'd' || letter == 'i' || letter == 'u')) {
      char digits[24];
      const auto written = std::to_chars(digits, digits + sizeof digits, value);
      appendAscii(out, digits, static_cast<int>(written.ptr - digits));
      return true;
    }
  }
  return false;
}

// Prints one number with snprintf, using the conversion's flags and `letter`.
template <typename T>
void appendNumber(std::u16string& out, const std::string& flags, const char* lengthModifier, char letter, T value) {
  if (appendPlainDecimal(out, flags, letter, value)) return;
  char printfPattern[48];
  std::snprintf(printfPattern, sizeof printfPattern, "%%%s%s%c", flags.c_str(), lengthModifier, letter);
  char buffer[512];
  const int written = std::snprintf(buffer, sizeof buffer, printfPattern, value);
  if (written < 0) return;
  appendAscii(out, buffer, written < static_cast<int>(sizeof buffer) ? written : static_cast<int>(sizeof buffer) - 1);
}

void appendString(std::u16string& out, const Arg& arg) {
  if (arg.kind == Arg::Kind::kUtf16) {
    out += arg.asUtf16->str();
  } else {
    WkUString::appendUtf8AsUtf16(out, arg.asUtf8.text, arg.asUtf8.length);
  }
}

void appendNatural(std::u16string& out, const Arg& arg);

void appendInteger(std::u16string& out, const Conversion& c, const Arg& arg) {
  const bool isSignedLetter = c.letter == 'd' || c.letter == 'i';
  switch (arg.kind) {
    case Arg::Kind::kSigned:
      if (isSignedLetter) {
        appendNumber(out, c.flags, "ll", c.letter, arg.asSigned);
      } else {
        appendNumber(out, c.flags, "ll", c.letter, static_cast<unsigned long long>(arg.asSigned));
      }
      return;
    case Arg::Kind::kUnsigned:
      if (isSignedLetter) {
        appendNumber(out, c.flags, "ll", 'u', arg.asUnsigned);
      } else {
        appendNumber(out, c.flags, "ll", c.letter, arg.asUnsigned);
      }
      return;
    case Arg::Kind::kChar:
      appendNumber(out, c.flags, "", isSignedLetter ? 'd' : c.letter, static_cast<unsigned>(arg.asChar));
      return;
    case Arg::Kind::kFloating:
    case Arg::Kind::kUtf16:
    case Arg::Kind::kUtf8:
      appendNatural(out, arg);
      return;
  }
}

void appendFloating(std::u16string& out, const Conversion& c, const Arg& arg) {
  switch (arg.kind) {
    case Arg::Kind::kFloating:
      appendNumber(out, c.flags, "", c.letter, arg.asFloating);
      return;
    case Arg::Kind::kSigned:
      appendNumber(out, c.flags, "", c.letter, static_cast<double>(arg.asSigned));
      return;
    case Arg::Kind::kUnsigned:
      appendNumber(out, c.flags, "", c.letter, static_cast<double>(arg.asUnsigned));
      return;
    case Arg::Kind::kChar:
    case Arg::Kind::kUtf16:
    case Arg::Kind::kUtf8:
      appendNatural(out, arg);
      return;
  }
}

void appendNatural(std::u16string& out, const Arg& arg) {
  switch (arg.kind) {
    case Arg::Kind::kSigned:
      appendNumber(out, "", "ll", 'd', arg.asSigned);
      return;
    case Arg::Kind::kUnsigned:
      appendNumber(out, "", "ll", 'u', arg.asUnsigned);
      return;
    case Arg::Kind::kFloating:
      appendNumber(out, "", "", 'g', arg.asFloating);
      return;
    case Arg::Kind::kChar:
      out.push_back(arg.asChar);
      return;
    case Arg::Kind::kUtf16:
    case Arg::Kind::kUtf8:
      appendString(out, arg);
      return;
  }
}

void appendConversion(std::u16string& out, const Conversion& c, const Arg& arg) {
  switch (c.letter) {
    case 's':
      appendNatural(out, arg);
      return;
    case 'c':
      if (arg.kind == Arg::Kind::kSigned) {
        out.push_back(static_cast<char16_t>(arg.asSigned));
      } else if (arg.kind == Arg::Kind::kUnsigned) {
        out.push_back(static_cast<char16_t>(arg.asUnsigned));
      } else {
        appendNatural(out, arg);
      }
      return;
    case 'f': case 'F': case 'e': case 'E': case 'g': case 'G': case 'a': case 'A':
      appendFloating(out, c, arg);
      return;
    default:
      appendInteger(out, c, arg);
      return;
  }
}

}  // namespace

// The text is assembled in a per-thread buffer that keeps its capacity between calls,
// and the result is copied out at its exact length: a formatted name then costs one
// block of its own size (none when it fits the string's inline buffer) instead of
// carrying the growth slack of the assembly for as long as it lives.
IUString IUString::formatArgs(const IUString& pattern, const FormatArg* args, std::size_t count) {
  thread_local std::u16string scratch;
  std::u16string& out = scratch;
  out.clear();
  appendFormatted(out, pattern.view(), args, count);
  IUString result(out.data(), out.size());
  // A huge message must not stay pinned to the thread.
  if (out.capacity() > kKeptScratchCapacity) std::u16string().swap(out);
  return result;
}

void IUString::appendFormatted(std::u16string& out, std::u16string_view text, const FormatArg* args, std::size_t count) {
  std::size_t next = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t percent = text.find(u'%', i);
    if (percent == npos) {
      out.append(text.substr(i));
      break;
    }
    out.append(text.substr(i, percent - i));
    if (percent + 1 < text.size() && text[percent + 1] == u'%') {
      out.push_back(u'%');
      i = percent + 2;
      continue;
    }
    Conversion conversion;
    if (!parseConversion(text, percent, conversion) || next >= count) {
      // Not a conversion, or no argument left for it: keep the text as written.
      const std::size_t end = conversion.end != 0 ? conversion.end : percent + 1;
      out.append(text.substr(percent, end - percent));
      i = end;
      continue;
    }
    appendConversion(out, conversion, args[next++]);
    i = conversion.end;
  }
}

std::uint32_t hashFunction(const IUString& key) {
  std::uint32_t h = 0;
  for (const char16_t unit : key.view()) h = h * 131u + unit;
  return h & 0x7fffffffu;
}
