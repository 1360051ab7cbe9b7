// The text forms of the core primitive data types (the documented edge cases, round
// trips of extreme values, Base64 blobs) and the hashFunction family at its edges.
#include "icore/ICoreDatatypes.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "icore/HashFunctions.h"
#include "icore/IDatatype.h"
#include "icore/IEnumeration.h"
#include "icore/IcoreIPackage.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/StringIdentity.h"
#include "platform/WkDate.h"
#include "tests/support/AssertionCatcher.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file

IDatatype const& type(IDatatype* const& slot) {
  IcoreIPackage::iGetInstance();  // makes the data types
  return *slot;
}

template <typename T>
std::string toText(IDatatype* const& datatype, T const& value) {
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(type(datatype), &value, 0));
  return text ? text->toUtf8() : std::string("<null>");
}

template <typename T>
T fromText(IDatatype* const& datatype, const char* text) {
  void* parsed = ICoreDatatypes::primitiveFromString(type(datatype), IUString(text), nullptr);
  EXPECT_NE(parsed, nullptr);
  T value = *static_cast<T*>(parsed);
  ICoreDatatypes::deletePrimitive(type(datatype), parsed);
  return value;
}

template <typename T>
void expectRoundTrips(IDatatype* const& datatype, std::initializer_list<T> values) {
  for (T const& value : values) {
    EXPECT_EQ(fromText<T>(datatype, toText(datatype, value).c_str()), value) << toText(datatype, value);
  }
}

TEST(ICoreDatatypesTextTest, DocumentedEdgeCasesOfTheTextForms) {
  EXPECT_EQ(toText(ICoreDatatypes::I_BOOLEAN, IBOOLEAN{2}), "false");  // only exactly 1 is true
  EXPECT_EQ(toText(ICoreDatatypes::I_BOOLEAN, IBOOLEAN{1}), "true");
  EXPECT_EQ(fromText<IBOOLEAN>(ICoreDatatypes::I_BOOLEAN, "TRUE"), ITRUE);
  EXPECT_EQ(fromText<IBOOLEAN>(ICoreDatatypes::I_BOOLEAN, "yes"), IFALSE);
  EXPECT_EQ(toText(ICoreDatatypes::I_CHARACTER, char16_t{0}), "");
  EXPECT_EQ(fromText<char16_t>(ICoreDatatypes::I_CHARACTER, ""), 0);
  EXPECT_EQ(fromText<char16_t>(ICoreDatatypes::I_CHARACTER, "xyz"), u'x');
  EXPECT_EQ(toText(ICoreDatatypes::I_CHARACTER, static_cast<unsigned short>('A')), "A");
  EXPECT_EQ(fromText<std::int32_t>(ICoreDatatypes::I_INTEGER, ""), 0);
  EXPECT_EQ(fromText<std::int32_t>(ICoreDatatypes::I_INTEGER, "12abc"), 12);
  // Bytes and shorts are parsed as 32-bit integers and then truncated.
  EXPECT_EQ(fromText<char>(ICoreDatatypes::I_BYTE, "300"), char(44));
  EXPECT_EQ(fromText<std::int16_t>(ICoreDatatypes::I_SHORT, "70000"), std::int16_t{4464});
  EXPECT_EQ(toText(ICoreDatatypes::I_BYTE, '\xff'), "-1");
  EXPECT_EQ(toText(ICoreDatatypes::I_LONG, std::int64_t{LLONG_MIN}), "-9223372036854775808");
  EXPECT_EQ(fromText<double>(ICoreDatatypes::I_DOUBLE, ""), 0.0);
  EXPECT_TRUE(std::isinf(fromText<float>(ICoreDatatypes::I_FLOAT, "1e300")));
  EXPECT_EQ(toText(ICoreDatatypes::I_FLOAT, 0.5f), "0.500000");
  const std::pair<double, const char*> doubles[] = {{0.1, "0.1"},       {1e-5, "0.00001"}, {0.0001, "0.0001"},
                                                    {1e-16, "1e-16"},   {1e300, "1e+300"}, {123456.789, "123456.789"}};
  for (auto [value, text] : doubles) EXPECT_EQ(toText(ICoreDatatypes::I_DOUBLE, value), text);
}

TEST(ICoreDatatypesTextTest, ExtremeValuesRoundTrip) {
  expectRoundTrips(ICoreDatatypes::I_BYTE, {char{CHAR_MIN}, '\0', char{CHAR_MAX}});
  expectRoundTrips(ICoreDatatypes::I_SHORT, {std::int16_t{SHRT_MIN}, std::int16_t{-1}, std::int16_t{SHRT_MAX}});
  expectRoundTrips(ICoreDatatypes::I_INTEGER, {INT_MIN, -1, INT_MAX});
  expectRoundTrips(ICoreDatatypes::I_LONG, {std::int64_t{LLONG_MIN}, std::int64_t{-1}, std::int64_t{LLONG_MAX}});
  expectRoundTrips(ICoreDatatypes::I_DOUBLE, {0.1, 1e-5, -3.3e-5, 1e300, -2.5, 1e-15});
  expectRoundTrips(ICoreDatatypes::I_FLOAT, {0.5f, -1234.25f});
  expectRoundTrips(ICoreDatatypes::I_CHARACTER, {char16_t{0x263A}});
  expectRoundTrips(ICoreDatatypes::I_STRING, {IUString(u"gr\u00fc\u00dfe \U0001F600"), IUString()});
  EXPECT_TRUE(std::signbit(fromText<double>(ICoreDatatypes::I_DOUBLE, toText(ICoreDatatypes::I_DOUBLE, -0.0).c_str())));
  // Dates carry milliseconds; before 1970 they stay a positive offset from the second.
  EXPECT_EQ(toText(ICoreDatatypes::I_DATE, WkDate::fromTime(0, 7000000)), "01/01/1970:00:00:00.007");
  EXPECT_EQ(toText(ICoreDatatypes::I_DATE, WkDate::fromTime(-1, 999000000)), "12/31/1969:23:59:59.999");
  expectRoundTrips(ICoreDatatypes::I_DATE, {WkDate::fromTime(-1, 999000000), WkDate::fromTime(253402300799LL, 123000000)});
  const WkDate parsed = fromText<WkDate>(ICoreDatatypes::I_DATE, "01/31/2024:13:45:07.250");
  EXPECT_EQ(parsed, WkDate::fromTime(1706708707, 250000000));
  EXPECT_EQ(fromText<WkDate>(ICoreDatatypes::I_DATE, ""), WkDate());
}

std::string blobText(std::vector<char> const& bytes) {
  static const char kNoBytes[1] = {};  // an empty blob still has a buffer; null means no value
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(
      type(ICoreDatatypes::I_BLOB), bytes.empty() ? kNoBytes : bytes.data(), static_cast<unsigned int>(bytes.size())));
  return text ? text->toUtf8() : std::string("<null>");
}

// The decoded bytes, or "null" when the conversion gave no value.
std::string blobFromText(IUString const& text) {
  unsigned int length = 12345;
  std::unique_ptr<char[]> bytes(
      static_cast<char*>(ICoreDatatypes::primitiveFromString(type(ICoreDatatypes::I_BLOB), text, &length)));
  if (bytes == nullptr) return length == 0 ? "null" : "null with a length";
  return std::string(bytes.get(), length);
}

TEST(ICoreDatatypesTextTest, BlobsRoundTripThroughOneLineOfBase64) {
  for (std::size_t count : {0, 1, 2, 3, 45, 46, 100}) {
    std::vector<char> bytes(count);
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 37 + 11);
    const std::string text = blobText(bytes);
    EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos) << count;
    EXPECT_EQ(text.size(), (count + 2) / 3 * 4) << count;
    EXPECT_EQ(blobFromText(IUString(text.c_str())), std::string(bytes.begin(), bytes.end())) << count;
  }
  EXPECT_EQ(blobText({'\x0b'}), "Cw==");
  EXPECT_EQ(blobFromText(IUString("AQID\nBAUG\r\n")), std::string("\x01\x02\x03\x04\x05\x06"));
  EXPECT_EQ(blobFromText(IUString(" \n")), "");  // no Base64 character: an empty blob
  for (const char* malformed : {"AQI", "AQJ=", "A-_=", "AQ==AQ==x", "\xc3\xa4\xc3\xa4=="}) {
    EXPECT_EQ(blobFromText(IUString(malformed)), "null") << malformed;
  }
  EXPECT_EQ(blobFromText(IUString(u"AQ==\0AQ==", 9)), "null");
}

TEST(ICoreDatatypesTextTest, IdentitiesNullValuesAndForeignTypes) {
  const runtime::StringIdentity identity(IUString("order-17"));
  IUString const qualified = QVXRuntime::getInstance()->identityToString(&identity);
  IIdentity const* given = &identity;
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(type(ICoreDatatypes::I_IDENTITY), given, 0));
  EXPECT_EQ(text ? *text : IUString(), qualified);
  EXPECT_EQ(ICoreDatatypes::primitiveToString(type(ICoreDatatypes::I_INTEGER), nullptr, 0), nullptr);
  EXPECT_EQ(ICoreDatatypes::primitiveToString(type(ICoreDatatypes::I_BLOB), nullptr, 4), nullptr);
  // An enumeration is a data type too, but not a primitive one.
  IDatatype const& enumeration = *IcoreIPackage::iGetInstance()->getIClassKindIEnumeration();
  const int value = 1;
  EXPECT_EQ(ICoreDatatypes::primitiveToString(enumeration, &value, 0), nullptr);
  EXPECT_EQ(ICoreDatatypes::primitiveFromString(enumeration, IUString("1"), nullptr), nullptr);
  AssertionCatcher catcher;
  EXPECT_THROW(ICoreDatatypes::primitiveFromString(type(ICoreDatatypes::I_IDENTITY), qualified, nullptr), AssertionFailure);
}

// The appending forms must give the allocating form's text exactly, as UTF-8 and as
// UTF-16, after whatever the buffer already holds.
void expectAppendedTextAgrees(IDatatype* const& datatype, void const* value, unsigned int length = 0) {
  std::unique_ptr<IUString> made(ICoreDatatypes::primitiveToString(type(datatype), value, length));
  std::string utf8 = "before|";
  IUString utf16(u"before|");
  const bool appended = ICoreDatatypes::appendPrimitiveText(utf8, type(datatype), value, length);
  EXPECT_EQ(ICoreDatatypes::appendPrimitiveText(utf16, type(datatype), value, length), appended);
  EXPECT_EQ(appended, made != nullptr);
  const IUString expected = made != nullptr ? IUString(u"before|") + *made : IUString(u"before|");
  EXPECT_EQ(utf8, expected.toUtf8()) << type(datatype).getName().toUtf8();
  EXPECT_EQ(utf16, expected) << type(datatype).getName().toUtf8();
}

// Parsing into the caller's value must give what primitiveFromString makes; the same
// value is reused across texts, as a reader does.
template <typename T>
void expectParsedValueAgrees(IDatatype* const& datatype, std::initializer_list<const char16_t*> texts) {
  T reused{};
  for (const char16_t* text : texts) {
    const IUString source(text);
    ASSERT_TRUE(ICoreDatatypes::parsePrimitiveText(type(datatype), source.data(), source.length(), &reused));
    void* made = ICoreDatatypes::primitiveFromString(type(datatype), source, nullptr);
    ASSERT_NE(made, nullptr);
    const T expected = *static_cast<T*>(made);
    ICoreDatatypes::deletePrimitive(type(datatype), made);
    if constexpr (std::is_floating_point_v<T>) {
      EXPECT_TRUE(expected == reused || (std::isnan(expected) && std::isnan(reused))) << source.toUtf8();
      EXPECT_EQ(std::signbit(expected), std::signbit(reused)) << source.toUtf8();
    } else {
      EXPECT_TRUE(expected == reused) << source.toUtf8();
    }
  }
}

TEST(ICoreDatatypesTextTest, AppendingAndInPlaceFormsAgreeWithTheAllocatingOnes) {
  for (char value : {char{CHAR_MIN}, '\0', char{CHAR_MAX}}) expectAppendedTextAgrees(ICoreDatatypes::I_BYTE, &value);
  for (IBOOLEAN value : {IBOOLEAN{0}, IBOOLEAN{1}, IBOOLEAN{2}, IBOOLEAN{-1}}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_BOOLEAN, &value);
  }
  for (char16_t value : {char16_t{0}, u'A', char16_t{0xE9}, char16_t{0xD800}, char16_t{0xFFFF}}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_CHARACTER, &value);
  }
  for (const WkDate& value : {WkDate(), WkDate::fromTime(-1, 999000000), WkDate::fromTime(253402300799LL, 123000000)}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_DATE, &value);
  }
  for (double value : {0.0, -0.0, 1e-15, 9.99e-5, 1e-4, 1e300, -2.5, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_DOUBLE, &value);
  }
  for (float value : {0.0F, FLT_MAX, -FLT_MIN, HUGE_VALF}) expectAppendedTextAgrees(ICoreDatatypes::I_FLOAT, &value);
  for (std::int32_t value : {INT_MIN, 0, INT_MAX}) expectAppendedTextAgrees(ICoreDatatypes::I_INTEGER, &value);
  for (std::int64_t value : {std::int64_t{LLONG_MIN}, std::int64_t{LLONG_MAX}}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_LONG, &value);
  }
  for (std::int16_t value : {std::int16_t{SHRT_MIN}, std::int16_t{SHRT_MAX}}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_SHORT, &value);
  }
  for (const IUString& value : {IUString(), IUString(u"gr\u00fc\u00dfe \U0001F600"), IUString(u"lone \xdc00")}) {
    expectAppendedTextAgrees(ICoreDatatypes::I_STRING, &value);
  }
  const std::vector<char> blob = {'\0', '\x7f', '\x80', '\xff', 'a', 'b', 'c'};
  for (unsigned int length = 0; length <= blob.size(); ++length) expectAppendedTextAgrees(ICoreDatatypes::I_BLOB, blob.data(), length);
  const runtime::StringIdentity identity(IUString(u"\u00e9t\u00e9:1"));
  expectAppendedTextAgrees(ICoreDatatypes::I_IDENTITY, &identity);
  expectAppendedTextAgrees(ICoreDatatypes::I_INTEGER, nullptr);

  expectParsedValueAgrees<char>(ICoreDatatypes::I_BYTE, {u"", u"300", u"-129", u" 12x"});
  expectParsedValueAgrees<IBOOLEAN>(ICoreDatatypes::I_BOOLEAN, {u"true", u"TRUE", u"", u"yes", u"true "});
  expectParsedValueAgrees<char16_t>(ICoreDatatypes::I_CHARACTER, {u"xyz", u"", u"\U0001F600"});
  expectParsedValueAgrees<WkDate>(ICoreDatatypes::I_DATE, {u"01/31/2024:13:45:07.250", u"", u"12/31/1969:23:59:59.999",
                                                          u"garbage", u"01/31/2024"});
  expectParsedValueAgrees<double>(ICoreDatatypes::I_DOUBLE, {u"", u"-0", u"1e309", u"nan", u"0x1p3", u" 2.5e-3x"});
  expectParsedValueAgrees<float>(ICoreDatatypes::I_FLOAT, {u"1e300", u"-1e-50", u"3.4028235e38"});
  expectParsedValueAgrees<std::int32_t>(ICoreDatatypes::I_INTEGER, {u"-2147483649", u"2147483648", u"+7", u"\uff17"});
  expectParsedValueAgrees<std::int64_t>(ICoreDatatypes::I_LONG, {u"-9223372036854775809", u"99999999999999999999"});
  expectParsedValueAgrees<std::int16_t>(ICoreDatatypes::I_SHORT, {u"70000", u"-32769"});
  // A long string then a short one: the reused string holds only the second.
  expectParsedValueAgrees<IUString>(ICoreDatatypes::I_STRING, {u"a rather longer text than the next", u"", u"x"});

  std::string bytes = "stale";
  const IUString base64(u"AQID\nBAUG");
  EXPECT_TRUE(ICoreDatatypes::parsePrimitiveText(type(ICoreDatatypes::I_BLOB), base64.data(), base64.length(), &bytes));
  EXPECT_EQ(bytes, blobFromText(base64));
  const IUString malformed(u"AQI");
  EXPECT_FALSE(ICoreDatatypes::parsePrimitiveText(type(ICoreDatatypes::I_BLOB), malformed.data(), malformed.length(), &bytes));
  EXPECT_TRUE(bytes.empty());
  std::int32_t untouched = 5;
  IDatatype const& enumeration = *IcoreIPackage::iGetInstance()->getIClassKindIEnumeration();
  EXPECT_FALSE(ICoreDatatypes::parsePrimitiveText(enumeration, u"1", 1, &untouched));
  EXPECT_EQ(untouched, 5);
}

TEST(HashFunctionsTest, IntegersAreSignExtendedFloatsScaledAndEverythingTruncatedTo32Bits) {
  EXPECT_EQ(hashFunction(IUString("ab")), 12805u);
  EXPECT_EQ(hashFunction(char(-1)), 0xFFFFFFFFu);
  EXPECT_EQ(hashFunction(short(-2)), 0xFFFFFFFEu);
  EXPECT_EQ(hashFunction(std::int64_t{0x100000005LL}), 5u);
  EXPECT_EQ(hashFunction(reinterpret_cast<void const*>(std::uintptr_t{0xFFFFFFFF00000020})), 0x20u);
  EXPECT_EQ(hashFunction(0.5f), 500000u);
  EXPECT_EQ(hashFunction(-0.0000019), static_cast<std::uint32_t>(-1));  // -1.9 truncates to -1
  EXPECT_EQ(hashFunction(5000.0), static_cast<std::uint32_t>(5000000000LL & 0xFFFFFFFF));
  // Out of the 64-bit range the product is pinned to the nearest end; NaN hashes to 0.
  EXPECT_EQ(hashFunction(1e300), 0xFFFFFFFFu);
  EXPECT_EQ(hashFunction(-1e300), 0u);
  EXPECT_EQ(hashFunction(std::nan("")), 0u);
  WkDate date;
  date.setDate(2024, 1, 31);
  date.setTime(13, 45, 7, 250000000);
  EXPECT_EQ(hashFunction(date), 2024u + 1 + 31 + 13 + 45 + 7 + 250000000);
}

}  // namespace
