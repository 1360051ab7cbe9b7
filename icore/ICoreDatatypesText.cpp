// The text forms of the core primitive data types (ICoreDatatypes::primitiveToString
// and primitiveFromString), which both serializers use for attribute values and
// stream strings. Numbers are formatted with std::to_chars, so the text does not
// depend on the C locale.
#include "icore/ICoreDatatypes.h"

#include <xercesc/util/Base64.hpp>

#include <algorithm>
#include <charconv>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "icore/IDatatype.h"
#include "icore/IIdentity.h"
#include "icore/IcoreIPackage.h"
#include "icore/internal/IdentityManager.h"
#include "platform/QvxAssert.h"
#include "platform/WkDate.h"
#include "platform/WkFloatFormat.h"
#include "platform/WkUString.h"

namespace com::veltrana::qvx::icore {

namespace {

// Values arrive as untyped pointers, sometimes to a type of the same size but another
// name (a character as unsigned short or char16_t), so they are copied out bytewise.
template <typename T>
T loadValue(void const* value) {
  T loaded;
  std::memcpy(&loaded, value, sizeof loaded);
  return loaded;
}

// Where the text forms are written: a UTF-8 std::string or a UTF-16 IUString, appended
// to in place. Every writer below goes through these three operations only.
void appendAscii(std::string& out, const char* text, std::size_t length) { out.append(text, length); }
void appendAscii(IUString& out, const char* text, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) out += static_cast<char16_t>(text[i]);
}
void appendUnits(std::string& out, const char16_t* text, std::size_t length) {
  WkUString::appendUtf16AsUtf8(out, text, length);
}
void appendUnits(IUString& out, const char16_t* text, std::size_t length) { out.append(text, length); }
template <typename Out>
void appendText(Out& out, IUString const& text) {
  appendUnits(out, text.data(), text.length());
}

template <typename Out, typename Integer>
void appendInteger(Out& out, Integer value) {
  char buffer[24];
  const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, value);
  appendAscii(out, buffer, static_cast<std::size_t>(result.ptr - buffer));
}

// "%.15lg", except that magnitudes in [1e-15, 1e-4) are written in fixed notation.
template <typename Out>
void appendDouble(Out& out, double value) {
  const double magnitude = std::fabs(value);
  if (magnitude >= 1e-15 && magnitude < 1e-4) {
    appendText(out, wkFtoaReformat(value));
    return;
  }
  char buffer[32];
  const std::to_chars_result result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
  appendAscii(out, buffer, static_cast<std::size_t>(result.ptr - buffer));
}

// "%f".
template <typename Out>
void appendFloat(Out& out, float value) {
  char buffer[64];  // FLT_MAX needs 39 digits before the point
  const std::to_chars_result result =
      std::to_chars(buffer, buffer + sizeof buffer, static_cast<double>(value), std::chars_format::fixed, 6);
  appendAscii(out, buffer, static_cast<std::size_t>(result.ptr - buffer));
}

// "MM/DD/YYYY:HH24:MI:SS.ms": the UTC text of the whole seconds with the separator
// between date and time made a colon, then the milliseconds.
template <typename Out>
void appendDate(Out& out, WkDate const& date) {
  const IUString seconds = convertTimeToUTCStr(date.toTime());
  const std::size_t space = seconds.find(u' ');
  if (space == IUString::npos) {
    appendText(out, seconds);
  } else {
    appendUnits(out, seconds.data(), space);
    appendAscii(out, ":", 1);
    appendUnits(out, seconds.data() + space + 1, seconds.length() - space - 1);
  }
  const int millis = date.getNanosecond() / 1000000;
  const char fraction[] = {'.', static_cast<char>('0' + millis / 100), static_cast<char>('0' + millis / 10 % 10),
                           static_cast<char>('0' + millis % 10)};
  appendAscii(out, fraction, sizeof fraction);
}

// The inverse of appendDate: the first 19 characters give the second (the character at
// 10 is the separator), the last three the milliseconds. Whatever does not parse
// counts as 0, so the empty string gives the epoch.
WkDate dateFromText(const char16_t* text, std::size_t length) {
  char16_t seconds[19];
  const std::size_t secondsLength = length < 19 ? length : 19;
  std::copy(text, text + secondsLength, seconds);
  if (secondsLength > 10) seconds[10] = u' ';
  WkDate date = WkDate::fromTime(convertUTCStrToTime(IUString(seconds, secondsLength)));
  const std::size_t millisStart = length >= 3 ? length - 3 : 0;
  date.AddToPart("MS", WkUString::parseInt(text + millisStart, length - millisStart));  // out of range: unchanged
  return date;
}

// Xerces allocates its Base64 results with ::operator new when no memory manager is
// given, so they are released with ::operator delete (not delete[]).
struct XercesBufferDelete {
  void operator()(XMLByte* buffer) const { ::operator delete(buffer); }
};
using XercesBuffer = std::unique_ptr<XMLByte, XercesBufferDelete>;

// Standard Base64 on one line. Xerces breaks its output every 60 characters and ends
// it with a newline; both are dropped. It returns null for empty input, which is
// handled here first.
template <typename Out>
bool appendBlob(Out& out, void const* bytes, unsigned int length) {
  if (length == 0) return true;
  XMLSize_t encodedLength = 0;
  XercesBuffer encoded(xercesc::Base64::encode(static_cast<XMLByte const*>(bytes), length, &encodedLength));
  if (encoded == nullptr) return false;
  const auto* text = reinterpret_cast<const char*>(encoded.get());
  std::size_t runStart = 0;
  for (std::size_t i = 0; i <= encodedLength; ++i) {
    if (i == encodedLength || text[i] == '\n' || text[i] == '\r') {
      appendAscii(out, text + runStart, i - runStart);
      runStart = i + 1;
    }
  }
  return true;
}

bool isBase64Blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Decodes Base64, skipping blanks and line breaks, into `bytes`. Text without any
// Base64 character gives no bytes; malformed text (a character outside the alphabet,
// missing or misplaced padding) gives false.
bool blobFromText(const char16_t* text, std::size_t length, std::string& bytes) {
  bytes.clear();
  std::string ascii;
  WkUString::appendUtf16AsUtf8(ascii, text, length);
  if (ascii.find('\0') != std::string::npos) return false;  // Xerces would stop there
  bool blank = true;
  for (char c : ascii) blank = blank && isBase64Blank(c);
  if (blank) return true;
  XMLSize_t decodedLength = 0;
  XercesBuffer decoded(xercesc::Base64::decode(reinterpret_cast<XMLByte const*>(ascii.c_str()), &decodedLength));
  if (decoded == nullptr || decodedLength > UINT_MAX) return false;
  bytes.assign(reinterpret_cast<const char*>(decoded.get()), decodedLength);
  return true;
}

// The blob of primitiveFromString: a new char[] buffer, empty but not null for blank
// text, null for malformed text.
char* newBlobFromText(IUString const& text, unsigned int* length) {
  if (length != nullptr) *length = 0;
  std::string bytes;
  if (!blobFromText(text.data(), text.length(), bytes)) return nullptr;
  auto buffer = std::make_unique<char[]>(bytes.size());
  std::memcpy(buffer.get(), bytes.data(), bytes.size());
  if (length != nullptr) *length = static_cast<unsigned int>(bytes.size());
  return buffer.release();
}

// ASCII case-insensitive, so "TRUE" and "True" count too.
bool isTrueText(const char16_t* text, std::size_t length) {
  static const char16_t kTrue[] = u"true";
  if (length != 4) return false;
  for (std::size_t i = 0; i < 4; ++i) {
    char16_t unit = text[i];
    if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit - u'A' + u'a');
    if (unit != kTrue[i]) return false;
  }
  return true;
}

// The float nearest to `value`; beyond the float range, an infinity of the same sign
// (a plain conversion would be undefined there).
float narrowToFloat(double value) {
  if (std::isfinite(value) && std::fabs(value) > static_cast<double>(FLT_MAX)) {
    return std::copysign(HUGE_VALF, static_cast<float>(std::copysign(1.0, value)));
  }
  return static_cast<float>(value);
}

void appendIdentity(std::string& out, IIdentity const* identity) {
  internal::IdentityManager::getInstance()->appendIdentityString(out, identity);
}
void appendIdentity(IUString& out, IIdentity const* identity) {
  out += internal::IdentityManager::getInstance()->identityToString(identity);
}

// The one writer of every text form, for both kinds of output.
template <typename Out>
bool appendPrimitive(Out& out, IDatatype const& datatype, void const* value, unsigned int length) {
  if (value == nullptr || !datatype.isPrimitive()) return false;
  switch (datatype.getTypeId()) {
    case ICoreDatatypes::BYTE_TYPE_ID: appendInteger(out, static_cast<int>(loadValue<signed char>(value))); return true;
    case ICoreDatatypes::BLOB_TYPE_ID: return appendBlob(out, value, length);
    case ICoreDatatypes::BOOLEAN_TYPE_ID: {
      const bool isTrue = loadValue<IBOOLEAN>(value) == 1;
      appendAscii(out, isTrue ? "true" : "false", isTrue ? 4 : 5);
      return true;
    }
    case ICoreDatatypes::CHARACTER_TYPE_ID: {
      const char16_t unit = loadValue<char16_t>(value);
      if (unit != 0) appendUnits(out, &unit, 1);
      return true;
    }
    case ICoreDatatypes::DATE_TYPE_ID: appendDate(out, *static_cast<WkDate const*>(value)); return true;
    case ICoreDatatypes::DOUBLE_TYPE_ID: appendDouble(out, loadValue<double>(value)); return true;
    case ICoreDatatypes::FLOAT_TYPE_ID: appendFloat(out, loadValue<float>(value)); return true;
    case ICoreDatatypes::INTEGER_TYPE_ID: appendInteger(out, loadValue<std::int32_t>(value)); return true;
    case ICoreDatatypes::LONG_TYPE_ID: appendInteger(out, loadValue<std::int64_t>(value)); return true;
    case ICoreDatatypes::SHORT_TYPE_ID: appendInteger(out, static_cast<int>(loadValue<std::int16_t>(value))); return true;
    case ICoreDatatypes::STRING_TYPE_ID: appendText(out, *static_cast<IUString const*>(value)); return true;
    case ICoreDatatypes::IIDENTITY_TYPE_ID: appendIdentity(out, static_cast<IIdentity const*>(value)); return true;
    default: return false;
  }
}

// A new value of type T parsed by parsePrimitiveText.
template <typename T>
void* newParsedValue(IDatatype const& datatype, IUString const& text) {
  auto value = std::make_unique<T>();
  ICoreDatatypes::parsePrimitiveText(datatype, text.data(), text.length(), value.get());
  return value.release();
}

}  // namespace

void ICoreDatatypes::checkInitialised() {
  // Through the package singleton, not the plain flag: its acquire load orders this
  // thread after the thread that built the data types.
  IcoreIPackage::iGetInstance();
  QVX_ASSERT(m_bInitialised);
}

bool ICoreDatatypes::appendPrimitiveText(std::string& utf8Out, IDatatype const& datatype, void const* value,
                                         unsigned int length) {
  checkInitialised();
  return appendPrimitive(utf8Out, datatype, value, length);
}

bool ICoreDatatypes::appendPrimitiveText(IUString& out, IDatatype const& datatype, void const* value,
                                         unsigned int length) {
  checkInitialised();
  return appendPrimitive(out, datatype, value, length);
}

IUString* ICoreDatatypes::primitiveToString(IDatatype const& datatype, void const* value, unsigned int length) {
  auto text = std::make_unique<IUString>();
  return appendPrimitiveText(*text, datatype, value, length) ? text.release() : nullptr;
}

bool ICoreDatatypes::parsePrimitiveText(IDatatype const& datatype, const char16_t* text, std::size_t length,
                                        void* valueOut) {
  checkInitialised();
  if (valueOut == nullptr || !datatype.isPrimitive()) return false;
  switch (datatype.getTypeId()) {
    case BYTE_TYPE_ID: *static_cast<char*>(valueOut) = static_cast<char>(WkUString::parseInt(text, length)); return true;
    case BLOB_TYPE_ID: return blobFromText(text, length, *static_cast<std::string*>(valueOut));
    case BOOLEAN_TYPE_ID: *static_cast<IBOOLEAN*>(valueOut) = isTrueText(text, length) ? ITRUE : IFALSE; return true;
    case CHARACTER_TYPE_ID: *static_cast<char16_t*>(valueOut) = length == 0 ? u'\0' : text[0]; return true;
    case DATE_TYPE_ID: *static_cast<WkDate*>(valueOut) = dateFromText(text, length); return true;
    case DOUBLE_TYPE_ID: *static_cast<double*>(valueOut) = WkUString::parseDouble(text, length); return true;
    case FLOAT_TYPE_ID: *static_cast<float*>(valueOut) = narrowToFloat(WkUString::parseDouble(text, length)); return true;
    case INTEGER_TYPE_ID: *static_cast<std::int32_t*>(valueOut) = WkUString::parseInt(text, length); return true;
    case LONG_TYPE_ID: *static_cast<std::int64_t*>(valueOut) = WkUString::parseLong(text, length); return true;
    case SHORT_TYPE_ID:
      *static_cast<std::int16_t*>(valueOut) = static_cast<std::int16_t>(WkUString::parseInt(text, length));
      return true;
    case STRING_TYPE_ID: {
      auto& target = *static_cast<IUString*>(valueOut);
      target.clear();
      target.append(text, length);
      return true;
    }
    case IIDENTITY_TYPE_ID:
      QVX_ASSERT_FAIL("identities are parsed by the identity manager, not as a primitive");
      return false;
    default: return false;
  }
}

void* ICoreDatatypes::primitiveFromString(IDatatype const& datatype, IUString const& text, unsigned int* length) {
  if (!datatype.isPrimitive()) return nullptr;
  switch (datatype.getTypeId()) {
    case BYTE_TYPE_ID: return newParsedValue<char>(datatype, text);
    case BLOB_TYPE_ID: return newBlobFromText(text, length);
    case BOOLEAN_TYPE_ID: return newParsedValue<IBOOLEAN>(datatype, text);
    case CHARACTER_TYPE_ID: return newParsedValue<char16_t>(datatype, text);
    case DATE_TYPE_ID: return newParsedValue<WkDate>(datatype, text);
    case DOUBLE_TYPE_ID: return newParsedValue<double>(datatype, text);
    case FLOAT_TYPE_ID: return newParsedValue<float>(datatype, text);
    case INTEGER_TYPE_ID: return newParsedValue<std::int32_t>(datatype, text);
    case LONG_TYPE_ID: return newParsedValue<std::int64_t>(datatype, text);
    case SHORT_TYPE_ID: return newParsedValue<std::int16_t>(datatype, text);
    case STRING_TYPE_ID: return newParsedValue<IUString>(datatype, text);
    case IIDENTITY_TYPE_ID:
      QVX_ASSERT_FAIL("identities are parsed by the identity manager, not as a primitive");
      return nullptr;
    default: return nullptr;
  }
}

}  // namespace com::veltrana::qvx::icore
