#include "platform/WkLocale.h"

#include <gtest/gtest.h>

#include <string>

TEST(WkLocaleTest, SizesAndConvertsWholeCharactersOnly) {
  const WkLocale locale(WkLocale::kUtf8LocaleName);
  ASSERT_TRUE(locale.isValid());
  auto convert = [&locale](const std::u16string& text, std::size_t capacity) {
    std::string out(capacity, '\0');
    out.resize(locale.toUtf8(text.data(), text.size(), &out[0], capacity));
    return out;
  };
  const std::u16string text = u"a\u00e9\u20ac\U0001F600z";  // 1 + 2 + 3 + 4 + 1 bytes
  EXPECT_EQ(locale.getUtf8Size(text.data(), text.size()), 11u);
  EXPECT_EQ(convert(text, 11), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z");
  EXPECT_EQ(convert(text, 9), "a\xC3\xA9\xE2\x82\xAC");  // the emoji's 4 bytes do not fit in 3
  EXPECT_EQ(convert(text, 0), "");
  EXPECT_EQ(locale.fromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", 11).str(), text);
  // Lone surrogates (high before a letter, low, high at the very end) take 3 bytes each.
  const std::u16string invalid = {u'x', 0xD83D, u'y', 0xDE00, 0xD800};
  EXPECT_EQ(locale.getUtf8Size(invalid.data(), invalid.size()), 11u);
  EXPECT_EQ(convert(invalid, 11), "x\xEF\xBF\xBDy\xEF\xBF\xBD\xEF\xBF\xBD");
}

// The appending forms give what the buffer and allocating forms give, after what the
// caller's buffer already holds, and a reused buffer carries nothing over.
TEST(WkLocaleTest, AppendingFormsAgreeWithTheOthers) {
  const WkLocale locale(WkLocale::kUtf8LocaleName);
  const std::u16string texts[] = {u"", u"plain", u"a\u00e9\u20ac\U0001F600z", {u'x', 0xD83D, u'y', 0xDE00, 0xD800}};
  std::string reused;
  for (const std::u16string& text : texts) {
    std::string fixed(locale.getUtf8Size(text.data(), text.size()), '\0');
    fixed.resize(locale.toUtf8(text.data(), text.size(), &fixed[0], fixed.size()));
    std::string appended = "kept";
    locale.appendUtf8(appended, text.data(), text.size());
    EXPECT_EQ(appended, "kept" + fixed);
    reused.clear();
    locale.appendUtf8(reused, text.data(), text.size());
    EXPECT_EQ(reused, fixed);
  }
  // Well-formed and malformed UTF-8: a stray continuation byte, a truncated sequence,
  // an overlong form and an encoded surrogate.
  for (const std::string& bytes : {std::string("a\xC3\xA9z"), std::string("\x80"), std::string("\xE2\x82"),
                                  std::string("\xC0\xAF"), std::string("\xED\xA0\x80"), std::string("x\0y", 3)}) {
    std::u16string appended = u"kept";
    locale.appendUtf16(appended, bytes.data(), bytes.size());
    EXPECT_EQ(appended, u"kept" + locale.fromUtf8(bytes.data(), bytes.size()).str());
    EXPECT_EQ(locale.fromUtf8(bytes.data(), bytes.size()), IUString(bytes.data(), bytes.size()));
  }
}
