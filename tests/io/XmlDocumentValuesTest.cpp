// Value text of the XML document: the escaping of strings, and the primitive string
// forms written straight to UTF-8, which must be exactly what
// ICoreDatatypes::primitiveToString gives for the same value.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IcoreIPackage.h"
#include "io/XMLSerializerValues.h"
#include "platform/IStatus.h"
#include "platform/WkDate.h"

namespace {

using com::veltrana::qvx::icore::ICoreDatatypes;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::IDatatype;
using com::veltrana::qvx::io::XMLSerializerValues;

std::string escaped(const std::u16string& text) {
  std::string out;
  XMLSerializerValues::appendEscaped(std::u16string_view(text), out);
  return out;
}

TEST(XmlDocumentValuesTest, EscapingKeepsLettersDigitsAndFourMarksAndEncodesEverythingElse) {
  EXPECT_EQ(escaped(u"a b+c"), "a+b%2Bc");
  EXPECT_EQ(escaped(u"\u00e9"), "%C3%A9");
  EXPECT_EQ(escaped(u""), "*");
  EXPECT_EQ(escaped(u"AZaz09-.:_"), "AZaz09-.:_");
  EXPECT_EQ(escaped(u"100%"), "100%25");
  EXPECT_EQ(escaped(u"*"), "%2A");  // the marker of the empty string is itself escaped
  EXPECT_EQ(escaped(u"<a href=\"x\">&'"), "%3Ca+href%3D%22x%22%3E%26%27");
  EXPECT_EQ(escaped(u"tab\there\nline"), "tab%09here%0Aline");
  EXPECT_EQ(escaped(std::u16string(1, u'\0')), "%00");
  EXPECT_EQ(escaped(u"\U0001F600x\u20AC"), "%F0%9F%98%80x%E2%82%AC");  // a pair stays one character
}

TEST(XmlDocumentValuesTest, EscapingUtf8BytesGivesTheSameAsEscapingTheirUtf16) {
  const std::u16string text = u"Gr\u00fc\u00dfe aus K\u00f6ln \U0001F600 & 100% *";
  std::string fromUtf8;
  XMLSerializerValues::appendEscaped(std::string_view(IUString(text).toUtf8()), fromUtf8);
  EXPECT_EQ(fromUtf8, escaped(text));
  std::string empty;
  XMLSerializerValues::appendEscaped(std::string_view(), empty);
  EXPECT_EQ(empty, "*");
}

TEST(XmlDocumentValuesTest, LongTextWithManyNonAsciiRunsIsEscapedWhole) {
  std::u16string text;
  std::string expected;
  for (int i = 0; i < 500; ++i) {
    text += u"\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9"
            u"\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9x";
    for (int j = 0; j < 35; ++j) expected += "%C3%A9";
    expected += "x";
  }
  EXPECT_EQ(escaped(text), expected);
}

class XmlDocumentPrimitiveTextTest : public testing::Test {
 protected:
  void SetUp() override { IcoreIPackage::iGetInstance(); }

  // Our text of the value must be primitiveToString's, byte for byte.
  static void expectSameText(IDatatype const* datatype, void const* value, unsigned int length = 0) {
    const std::unique_ptr<IUString> reference(ICoreDatatypes::primitiveToString(*datatype, value, length));
    ASSERT_NE(reference, nullptr);
    std::string ours;
    ASSERT_TRUE(XMLSerializerValues::appendPrimitiveText(*datatype, value, length, ours));
    EXPECT_EQ(ours, reference->toUtf8()) << datatype->getName().toUtf8();
  }
};

TEST_F(XmlDocumentPrimitiveTextTest, IntegersOfEveryWidthMatchTheReferenceForm) {
  for (int byte = -128; byte < 128; ++byte) {
    const char value = static_cast<char>(byte);
    expectSameText(ICoreDatatypes::I_BYTE, &value);
  }
  for (std::int16_t value : {std::int16_t{0}, std::int16_t{-1}, std::int16_t{32767}, std::int16_t{-32768}}) {
    expectSameText(ICoreDatatypes::I_SHORT, &value);
  }
  for (std::int32_t value : {0, 7, -7, INT32_MAX, INT32_MIN}) expectSameText(ICoreDatatypes::I_INTEGER, &value);
  for (std::int64_t value : {std::int64_t{0}, std::int64_t{1} << 40, INT64_MAX, INT64_MIN}) {
    expectSameText(ICoreDatatypes::I_LONG, &value);
  }
}

TEST_F(XmlDocumentPrimitiveTextTest, BooleansCharactersAndStringsMatchTheReferenceForm) {
  for (IBOOLEAN value : {IBOOLEAN{0}, IBOOLEAN{1}, IBOOLEAN{2}, IBOOLEAN{-1}}) {
    expectSameText(ICoreDatatypes::I_BOOLEAN, &value);
  }
  for (char16_t value : {u'\0', u'a', u' ', u'\u00e9', u'\u20ac'}) expectSameText(ICoreDatatypes::I_CHARACTER, &value);
  for (const char16_t* text : {u"", u"plain", u"a b", u"\u00e9\U0001F600"}) {
    const IUString value(text);
    expectSameText(ICoreDatatypes::I_STRING, &value);
  }
}

TEST_F(XmlDocumentPrimitiveTextTest, DoublesAndFloatsMatchTheReferenceFormIncludingTheSmallRange) {
  for (double value : {0.0, -0.0, 1.0, 0.25, 1.0 / 3.0, -2.5e-3, 1e-4, 5e-5, -1e-10, 1e-15, 9e-16, 1e15, 1.5e300,
                       DBL_MAX, DBL_MIN, std::numeric_limits<double>::infinity(), std::nan("")}) {
    expectSameText(ICoreDatatypes::I_DOUBLE, &value);
  }
  for (float value : {0.0F, 0.5F, -1.25F, 1e-7F, 3.4e38F, 123456.789F, -FLT_MAX}) {
    expectSameText(ICoreDatatypes::I_FLOAT, &value);
  }
}

TEST_F(XmlDocumentPrimitiveTextTest, DatesAcrossTheWholeRangeMatchTheReferenceForm) {
  const struct {
    int year, month, day, hour, minute, second, nanosecond;
  } dates[] = {{1970, 1, 1, 0, 0, 0, 7000000},  {2024, 1, 31, 13, 45, 7, 250000000}, {1, 1, 1, 0, 0, 0, 0},
               {9999, 12, 31, 23, 59, 59, 999999999}, {1969, 12, 31, 23, 59, 59, 1}, {2000, 2, 29, 12, 0, 0, 999000}};
  for (const auto& parts : dates) {
    WkDate date;
    ASSERT_EQ(date.setDate(parts.year, parts.month, parts.day), ISTATUS_SUCCESS);
    ASSERT_EQ(date.setTime(parts.hour, parts.minute, parts.second, parts.nanosecond), ISTATUS_SUCCESS);
    expectSameText(ICoreDatatypes::I_DATE, &date);
  }
}

TEST_F(XmlDocumentPrimitiveTextTest, BlobsGoThroughBase64OnOneLine) {
  std::string bytes;
  for (int i = 0; i < 200; ++i) bytes.push_back(static_cast<char>(i * 7));
  expectSameText(ICoreDatatypes::I_BLOB, bytes.data(), static_cast<unsigned int>(bytes.size()));
  std::string text;
  XMLSerializerValues::appendPrimitiveText(*ICoreDatatypes::I_BLOB, bytes.data(), 3, text);
  EXPECT_EQ(text, "AAcO");
  std::string empty;
  EXPECT_TRUE(XMLSerializerValues::appendPrimitiveText(*ICoreDatatypes::I_BLOB, bytes.data(), 0, empty));
  EXPECT_EQ(empty, "");
}

TEST_F(XmlDocumentPrimitiveTextTest, NullValuesGiveNoText) {
  std::string text = "kept";
  EXPECT_FALSE(XMLSerializerValues::appendPrimitiveText(*ICoreDatatypes::I_INTEGER, nullptr, 0, text));
  EXPECT_EQ(text, "kept");
}

}  // namespace
