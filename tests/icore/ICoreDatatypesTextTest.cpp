// The text forms of the core primitive data types: the documented edge cases, round
// trips of extreme values, and Base64 blobs (line breaks, padding, malformed input).
#include "icore/ICoreDatatypes.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/StringIdentity.h"
#include "platform/WkDate.h"
#include "tests/support/AssertionCatcher.h"

namespace {

using namespace com::veltrana::qvx::icore;

IDatatype const& type(IDatatype* const& slot) {
  IcoreIPackage::iGetInstance();  // makes the data types
  return *slot;
}

template <typename T>
std::string toText(IDatatype* const& datatype, T const& value) {
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(type(datatype), &value, 0));
  EXPECT_NE(text, nullptr);
  return text ? text->toUtf8() : std::string("<null>");
}

template <typename T>
T fromText(IDatatype* const& datatype, IUString const& text) {
  void* parsed = ICoreDatatypes::primitiveFromString(type(datatype), text, nullptr);
  EXPECT_NE(parsed, nullptr);
  T value = *static_cast<T*>(parsed);
  ICoreDatatypes::deletePrimitive(type(datatype), parsed);
  return value;
}

template <typename T>
T roundTrip(IDatatype* const& datatype, T const& value) {
  return fromText<T>(datatype, IUString(toText(datatype, value).c_str()));
}

TEST(ICoreDatatypesTextTest, DocumentedEdgeCases) {
  EXPECT_EQ(toText(ICoreDatatypes::I_BOOLEAN, IBOOLEAN{2}), "false");
  EXPECT_EQ(toText(ICoreDatatypes::I_BOOLEAN, IBOOLEAN{1}), "true");
  EXPECT_EQ(toText(ICoreDatatypes::I_CHARACTER, char16_t{0}), "");
  EXPECT_EQ(fromText<std::int32_t>(ICoreDatatypes::I_INTEGER, IUString()), 0);
  EXPECT_EQ(fromText<char16_t>(ICoreDatatypes::I_CHARACTER, IUString()), 0);
  EXPECT_EQ(fromText<char16_t>(ICoreDatatypes::I_CHARACTER, IUString("xyz")), u'x');
  EXPECT_EQ(fromText<double>(ICoreDatatypes::I_DOUBLE, IUString()), 0.0);
  EXPECT_EQ(fromText<IBOOLEAN>(ICoreDatatypes::I_BOOLEAN, IUString("true")), ITRUE);
  EXPECT_EQ(fromText<IBOOLEAN>(ICoreDatatypes::I_BOOLEAN, IUString("TRUE")), ITRUE);
  EXPECT_EQ(fromText<IBOOLEAN>(ICoreDatatypes::I_BOOLEAN, IUString("yes")), IFALSE);
  EXPECT_EQ(fromText<std::int32_t>(ICoreDatatypes::I_INTEGER, IUString("12abc")), 12);
}

TEST(ICoreDatatypesTextTest, DatesCarryMilliseconds) {
  WkDate epochPlus7 = WkDate::fromTime(0, 7000000);
  EXPECT_EQ(toText(ICoreDatatypes::I_DATE, epochPlus7), "01/01/1970:00:00:00.007");

  const WkDate parsed = fromText<WkDate>(ICoreDatatypes::I_DATE, IUString("01/31/2024:13:45:07.250"));
  EXPECT_EQ(parsed.getYear(), 2024);
  EXPECT_EQ(parsed.getMonth(), 1);
  EXPECT_EQ(parsed.getDay(), 31);
  EXPECT_EQ(parsed.getHour(), 13);
  EXPECT_EQ(parsed.getMinute(), 45);
  EXPECT_EQ(parsed.getSecond(), 7);
  EXPECT_EQ(parsed.getNanosecond(), 250000000);

  EXPECT_EQ(fromText<WkDate>(ICoreDatatypes::I_DATE, IUString()), WkDate());
  // Before 1970 the milliseconds stay a positive offset from the second.
  const WkDate beforeEpoch = WkDate::fromTime(-1, 999000000);
  EXPECT_EQ(toText(ICoreDatatypes::I_DATE, beforeEpoch), "12/31/1969:23:59:59.999");
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_DATE, beforeEpoch), beforeEpoch);
  const WkDate late = WkDate::fromTime(253402300799LL, 123000000);  // 12/31/9999 23:59:59.123
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_DATE, late), late);
}

TEST(ICoreDatatypesTextTest, IntegersRoundTripAtTheirLimits) {
  for (char value : {char{CHAR_MIN}, '\xff', '\0', char{CHAR_MAX}}) {
    EXPECT_EQ(roundTrip(ICoreDatatypes::I_BYTE, value), value) << int(value);
  }
  EXPECT_EQ(toText(ICoreDatatypes::I_BYTE, '\xff'), "-1");
  for (std::int16_t value : {std::int16_t{SHRT_MIN}, std::int16_t{-1}, std::int16_t{SHRT_MAX}}) {
    EXPECT_EQ(roundTrip(ICoreDatatypes::I_SHORT, value), value);
  }
  EXPECT_EQ(toText(ICoreDatatypes::I_SHORT, std::int16_t{-32768}), "-32768");
  for (std::int32_t value : {INT_MIN, -1, INT_MAX}) EXPECT_EQ(roundTrip(ICoreDatatypes::I_INTEGER, value), value);
  for (std::int64_t value : {std::int64_t{LLONG_MIN}, std::int64_t{-1}, std::int64_t{LLONG_MAX}}) {
    EXPECT_EQ(roundTrip(ICoreDatatypes::I_LONG, value), value);
  }
  EXPECT_EQ(toText(ICoreDatatypes::I_LONG, std::int64_t{LLONG_MIN}), "-9223372036854775808");
  // Bytes and shorts are parsed as 32-bit integers and then truncated.
  EXPECT_EQ(fromText<char>(ICoreDatatypes::I_BYTE, IUString("300")), char(44));
  EXPECT_EQ(fromText<std::int16_t>(ICoreDatatypes::I_SHORT, IUString("70000")), std::int16_t{4464});
}

TEST(ICoreDatatypesTextTest, FloatingPointForms) {
  EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, 0.1), "0.1");
  EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, 1e-5), "0.00001");  // fixed below 1e-4
  EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, 0.0001), "0.0001");
  EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, 1e-16), "1e-16");
  EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, 1e300), "1e+300");
  EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, 123456.789), "123456.789");
  EXPECT_EQ(toText(ICoreDatatypes::I_FLOAT, 0.5f), "0.500000");
  for (double value : {0.1, 1e-5, -3.3e-5, 1e300, -2.5, 1e-15}) {
    EXPECT_EQ(roundTrip(ICoreDatatypes::I_DOUBLE, value), value) << value;
  }
  const double negativeZero = roundTrip(ICoreDatatypes::I_DOUBLE, -0.0);
  EXPECT_EQ(negativeZero, 0.0);
  EXPECT_TRUE(std::signbit(negativeZero));
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_FLOAT, 0.5f), 0.5f);
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_FLOAT, -1234.25f), -1234.25f);
  EXPECT_TRUE(std::isinf(fromText<float>(ICoreDatatypes::I_FLOAT, IUString("1e300"))));
}

TEST(ICoreDatatypesTextTest, StringsAndCharactersAreTakenAsTheyAre) {
  const IUString text(u"gr\u00fc\u00dfe \U0001F600");
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_STRING, text), text);
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_STRING, IUString()), IUString());
  EXPECT_EQ(roundTrip(ICoreDatatypes::I_CHARACTER, char16_t{0x263A}), char16_t{0x263A});
  // An ICharacter hands over an unsigned short; the text is the same code unit.
  EXPECT_EQ(toText(ICoreDatatypes::I_CHARACTER, static_cast<unsigned short>('A')), "A");
}

std::vector<char> bytesOf(std::size_t count) {
  std::vector<char> bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 37 + 11);
  return bytes;
}

std::string blobText(std::vector<char> const& bytes) {
  static const char kNoBytes[1] = {};  // an empty blob still has a buffer; null means no value
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(
      type(ICoreDatatypes::I_BLOB), bytes.empty() ? kNoBytes : bytes.data(), static_cast<unsigned int>(bytes.size())));
  EXPECT_NE(text, nullptr);
  return text ? text->toUtf8() : std::string();
}

// The decoded bytes; `isNull` tells whether the conversion gave a null value.
std::vector<char> blobFromText(IUString const& text, bool& isNull) {
  unsigned int length = 12345;
  std::unique_ptr<char[]> bytes(
      static_cast<char*>(ICoreDatatypes::primitiveFromString(type(ICoreDatatypes::I_BLOB), text, &length)));
  isNull = bytes == nullptr;
  if (isNull) {
    EXPECT_EQ(length, 0u);
    return {};
  }
  return std::vector<char>(bytes.get(), bytes.get() + length);
}

TEST(ICoreDatatypesTextTest, BlobsRoundTripThroughOneLineOfBase64) {
  for (std::size_t count : {0, 1, 2, 3, 45, 46, 100}) {
    const std::vector<char> bytes = bytesOf(count);
    const std::string text = blobText(bytes);
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << count;
    EXPECT_EQ(text.size(), (count + 2) / 3 * 4) << count;
    bool isNull = true;
    EXPECT_EQ(blobFromText(IUString(text.c_str()), isNull), bytes) << count;
    EXPECT_FALSE(isNull) << count;
  }
  const std::vector<char> one{'\x0b'};
  EXPECT_EQ(blobText(one), "Cw==");
}

TEST(ICoreDatatypesTextTest, BlobDecodingSkipsLineBreaksAndRejectsMalformedText) {
  bool isNull = true;
  EXPECT_EQ(blobFromText(IUString("AQID\nBAUG\r\n"), isNull), (std::vector<char>{1, 2, 3, 4, 5, 6}));
  EXPECT_FALSE(isNull);
  EXPECT_TRUE(blobFromText(IUString(" \n"), isNull).empty());
  EXPECT_FALSE(isNull);  // no Base64 characters: an empty blob
  for (const char* malformed : {"AQI", "AQJ=", "A-_=", "AQ==AQ==x", "\xc3\xa4\xc3\xa4=="}) {
    EXPECT_TRUE(blobFromText(IUString(malformed), isNull).empty()) << malformed;
    EXPECT_TRUE(isNull) << malformed;
  }
  EXPECT_TRUE(blobFromText(IUString(u"AQ==\0AQ==", 9), isNull).empty());
  EXPECT_TRUE(isNull);
}

TEST(ICoreDatatypesTextTest, IdentitiesUseTheIdentityManager) {
  const runtime::StringIdentity identity(IUString("order-17"));
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(
      type(ICoreDatatypes::I_IDENTITY), static_cast<IIdentity const*>(&identity), 0));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(*text, QVXRuntime::getInstance()->identityToString(&identity));

  AssertionCatcher catcher;
  EXPECT_THROW(ICoreDatatypes::primitiveFromString(type(ICoreDatatypes::I_IDENTITY), *text, nullptr),
               AssertionFailure);
}

TEST(ICoreDatatypesTextTest, NullValuesAndForeignTypesGiveNull) {
  EXPECT_EQ(ICoreDatatypes::primitiveToString(type(ICoreDatatypes::I_INTEGER), nullptr, 0), nullptr);
  EXPECT_EQ(ICoreDatatypes::primitiveToString(type(ICoreDatatypes::I_BLOB), nullptr, 4), nullptr);
  // An enumeration is a data type too, but not a primitive one.
  IDatatype const& enumeration = *IcoreIPackage::iGetInstance()->getIClassKindIEnumeration();
  const int value = 1;
  EXPECT_EQ(ICoreDatatypes::primitiveToString(enumeration, &value, 0), nullptr);
  EXPECT_EQ(ICoreDatatypes::primitiveFromString(enumeration, IUString("1"), nullptr), nullptr);
}

}  // namespace
