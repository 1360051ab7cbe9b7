#include "platform/IUString.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(IUStringTest, RoundTripsUtf8IncludingSurrogatePairs) {
  const char* text = "caf\xC3\xA9 \xF0\x9F\x98\x80 \xE2\x82\xAC";  // café 😀 €
  const IUString s(text);
  EXPECT_EQ(s.length(), 9u);  // the emoji takes two code units
  EXPECT_EQ(s[5], 0xD83D);
  EXPECT_EQ(s[6], 0xDE00);
  EXPECT_EQ(s.toUtf8(), text);
  EXPECT_EQ(IUString(u"caf\u00e9"), IUString("caf\xC3\xA9"));
}

TEST(IUStringTest, ReplacesMalformedUtf8WithoutReadingPastTheEnd) {
  // Stray continuation, overlong '/', encoded surrogate, truncated 3-byte sequence.
  const std::string bad("a\x80" "b\xC0\xAF" "c\xED\xA0\x80" "d\xE2\x82", 12);
  const IUString s(bad.data(), bad.size());
  EXPECT_EQ(s.str(), u"a\uFFFDb\uFFFD\uFFFDc\uFFFD\uFFFD\uFFFDd\uFFFD");
}

TEST(IUStringTest, ReplacesLoneSurrogatesWhenConvertingToUtf8) {
  const char16_t units[] = {u'x', 0xD800, u'y', 0xDC00};
  EXPECT_EQ(IUString(units, 4).toUtf8(), "x\xEF\xBF\xBDy\xEF\xBF\xBD");
}

TEST(IUStringTest, FormatsCatalogStyleArguments) {
  const IUString name("Table");
  EXPECT_EQ(IUString::format("Property %s of %s", IUString("rows"), name), IUString("Property rows of Table"));
  EXPECT_EQ(IUString::format("%d|%u|%lld|%c|%03d|%%", -5, 7u, -9000000000LL, u'Z', 7),
            IUString("-5|7|-9000000000|Z|007|%"));
  EXPECT_EQ(IUString::format("%.15lg", 0.1), IUString("0.1"));
  EXPECT_EQ(IUString::format("%s.%03d", IUString("12:00"), 7), IUString("12:00.007"));
}

TEST(IUStringTest, FormatKeepsConversionsWithoutArguments) {
  EXPECT_EQ(IUString::format("missing %s and %d", IUString("one")), IUString("missing one and %d"));
  EXPECT_EQ(IUString::format("100%"), IUString("100%"));
  EXPECT_EQ(IUString::format("%d", IUString("text")), IUString("text"));
}

TEST(IUStringTest, HashFollowsTheDocumentedRecurrence) {
  EXPECT_EQ(hashFunction(IUString("ab")), 97u * 131u + 98u);
  EXPECT_EQ(hashFunction(IUString()), 0u);
}

TEST(IUStringTest, ReplaceAllAndSearch) {
  IUString s("a:b:c");
  s.replaceAll(":", "::");
  EXPECT_EQ(s, IUString("a::b::c"));
  EXPECT_EQ(s.rfind(u':'), 5u);
  EXPECT_TRUE(s.startsWith("a::"));
  EXPECT_TRUE(s.endsWith("::c"));
  EXPECT_FALSE(IUString("x").endsWith("xx"));
}

}  // namespace
