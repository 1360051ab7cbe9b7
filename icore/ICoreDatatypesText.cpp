// The text forms of the core primitive data types (ICoreDatatypes::primitiveToString
// and primitiveFromString), which both serializers use for attribute values and
// stream strings. Numbers are formatted with std::to_chars, so the text does not
// depend on the C locale.
#include "icore/ICoreDatatypes.h"

#include <xercesc/util/Base64.hpp>

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
#include "icore/QVXRuntime.h"
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

IUString* newAsciiText(const char* text, const char* end) {
  return new IUString(text, static_cast<std::size_t>(end - text));
}

template <typename Integer>
IUString* integerText(Integer value) {
  char buffer[24];
  const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return newAsciiText(buffer, result.ptr);
}

// "%.15lg", except that magnitudes in [1e-15, 1e-4) are written in fixed notation.
IUString* doubleText(double value) {
  const double magnitude = std::fabs(value);
  if (magnitude >= 1e-15 && magnitude < 1e-4) return new IUString(wkFtoaReformat(value));
  char buffer[32];
  const std::to_chars_result result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
  return newAsciiText(buffer, result.ptr);
}

// "%f".
IUString* floatText(float value) {
  char buffer[64];  // FLT_MAX needs 39 digits before the point
  const std::to_chars_result result =
      std::to_chars(buffer, buffer + sizeof buffer, static_cast<double>(value), std::chars_format::fixed, 6);
  return newAsciiText(buffer, result.ptr);
}

// "MM/DD/YYYY:HH24:MI:SS.ms": the UTC text of the whole seconds with the separator
// between date and time made a colon, then the milliseconds.
IUString* dateText(WkDate const& date) {
  std::u16string text = convertTimeToUTCStr(date.toTime()).str();
  const std::size_t space = text.find(u' ');
  if (space != std::u16string::npos) text[space] = u':';
  const int millis = date.getNanosecond() / 1000000;
  const char16_t fraction[] = {u'.', static_cast<char16_t>(u'0' + millis / 100),
                               static_cast<char16_t>(u'0' + millis / 10 % 10), static_cast<char16_t>(u'0' + millis % 10)};
  text.append(fraction, 4);
  return new IUString(std::move(text));
}

// The inverse of dateText: the first 19 characters give the second (the character at
// 10 is the separator), the last three the milliseconds. Whatever does not parse
// counts as 0, so the empty string gives the epoch.
WkDate* dateFromText(IUString const& text) {
  std::u16string seconds = text.substr(0, 19).str();
  if (seconds.size() > 10) seconds[10] = u' ';
  auto date = std::make_unique<WkDate>(WkDate::fromTime(convertUTCStrToTime(IUString(std::move(seconds)))));
  const std::size_t millisStart = text.length() >= 3 ? text.length() - 3 : 0;
  const int millis = WkUString::parseInt(text.data() + millisStart, text.length() - millisStart);
  date->AddToPart("MS", millis);  // a result outside WkDate's range leaves the date as it is
  return date.release();
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
IUString* blobText(void const* bytes, unsigned int length) {
  auto text = std::make_unique<IUString>();
  if (length == 0) return text.release();
  XMLSize_t encodedLength = 0;
  XercesBuffer encoded(xercesc::Base64::encode(static_cast<XMLByte const*>(bytes), length, &encodedLength));
  if (encoded == nullptr) return nullptr;
  text->reserve(encodedLength);
  for (XMLSize_t i = 0; i < encodedLength; ++i) {
    const XMLByte unit = encoded.get()[i];
    if (unit != '\n' && unit != '\r') *text += static_cast<char16_t>(unit);
  }
  return text.release();
}

bool isBase64Blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Decodes Base64, skipping blanks and line breaks. Text without any Base64 character
// gives an empty, non-null buffer; malformed text (a character outside the alphabet,
// missing or misplaced padding) gives null. The length is 0 in both cases.
char* blobFromText(IUString const& text, unsigned int* length) {
  if (length != nullptr) *length = 0;
  const std::string ascii = text.toUtf8();
  if (ascii.find('\0') != std::string::npos) return nullptr;  // Xerces would stop there
  bool blank = true;
  for (char c : ascii) blank = blank && isBase64Blank(c);
  if (blank) return new char[0];
  XMLSize_t decodedLength = 0;
  XercesBuffer decoded(xercesc::Base64::decode(reinterpret_cast<XMLByte const*>(ascii.c_str()), &decodedLength));
  if (decoded == nullptr || decodedLength > UINT_MAX) return nullptr;
  auto bytes = std::make_unique<char[]>(decodedLength);
  std::memcpy(bytes.get(), decoded.get(), decodedLength);
  if (length != nullptr) *length = static_cast<unsigned int>(decodedLength);
  return bytes.release();
}

// ASCII case-insensitive, so "TRUE" and "True" count too.
bool isTrueText(IUString const& text) {
  static const char16_t kTrue[] = u"true";
  if (text.length() != 4) return false;
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

}  // namespace

IUString* ICoreDatatypes::primitiveToString(IDatatype const& datatype, void const* value, unsigned int length) {
  // Through the package singleton, not the plain flag: its acquire load orders this
  // thread after the thread that built the data types.
  IcoreIPackage::iGetInstance();
  QVX_ASSERT(m_bInitialised);
  if (value == nullptr || !datatype.isPrimitive()) return nullptr;
  switch (datatype.getTypeId()) {
    case BYTE_TYPE_ID: return integerText(static_cast<int>(loadValue<signed char>(value)));
    case BLOB_TYPE_ID: return blobText(value, length);
    case BOOLEAN_TYPE_ID: return new IUString(loadValue<IBOOLEAN>(value) == 1 ? "true" : "false");
    case CHARACTER_TYPE_ID: {
      const char16_t unit = loadValue<char16_t>(value);
      return unit == 0 ? new IUString() : new IUString(std::u16string(1, unit));
    }
    case DATE_TYPE_ID: return dateText(*static_cast<WkDate const*>(value));
    case DOUBLE_TYPE_ID: return doubleText(loadValue<double>(value));
    case FLOAT_TYPE_ID: return floatText(loadValue<float>(value));
    case INTEGER_TYPE_ID: return integerText(loadValue<std::int32_t>(value));
    case LONG_TYPE_ID: return integerText(loadValue<std::int64_t>(value));
    case SHORT_TYPE_ID: return integerText(static_cast<int>(loadValue<std::int16_t>(value)));
    case STRING_TYPE_ID: return new IUString(*static_cast<IUString const*>(value));
    case IIDENTITY_TYPE_ID:
      return new IUString(QVXRuntime::getInstance()->identityToString(static_cast<IIdentity const*>(value)));
    default: return nullptr;
  }
}

void* ICoreDatatypes::primitiveFromString(IDatatype const& datatype, IUString const& text, unsigned int* length) {
  // Through the package singleton, not the plain flag: its acquire load orders this
  // thread after the thread that built the data types.
  IcoreIPackage::iGetInstance();
  QVX_ASSERT(m_bInitialised);
  if (!datatype.isPrimitive()) return nullptr;
  const char16_t* units = text.data();
  const std::size_t count = text.length();
  switch (datatype.getTypeId()) {
    case BYTE_TYPE_ID: return new char(static_cast<char>(WkUString::parseInt(units, count)));
    case BLOB_TYPE_ID: return blobFromText(text, length);
    case BOOLEAN_TYPE_ID: return new IBOOLEAN(isTrueText(text) ? ITRUE : IFALSE);
    case CHARACTER_TYPE_ID: return new char16_t(text.isEmpty() ? u'\0' : text[0]);
    case DATE_TYPE_ID: return dateFromText(text);
    case DOUBLE_TYPE_ID: return new double(WkUString::parseDouble(units, count));
    case FLOAT_TYPE_ID: return new float(narrowToFloat(WkUString::parseDouble(units, count)));
    case INTEGER_TYPE_ID: return new std::int32_t(WkUString::parseInt(units, count));
    case LONG_TYPE_ID: return new std::int64_t(WkUString::parseLong(units, count));
    case SHORT_TYPE_ID: return new std::int16_t(static_cast<std::int16_t>(WkUString::parseInt(units, count)));
    case STRING_TYPE_ID: return new IUString(text);
    case IIDENTITY_TYPE_ID:
      QVX_ASSERT_FAIL("identities are parsed by the identity manager, not as a primitive");
      return nullptr;
    default: return nullptr;
  }
}

}  // namespace com::veltrana::qvx::icore
