#include "platform/WkLocale.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/QvxAssert.h"
#include "tests/support/AssertionCatcher.h"

namespace {

const WkLocale& utf8Locale() {
  static const WkLocale locale(WkLocale::kUtf8LocaleName);
  return locale;
}

std::string convert(const std::u16string& text, std::size_t capacity) {
  std::string out(capacity, '\0');
  out.resize(utf8Locale().toUtf8(text.data(), text.size(), &out[0], capacity));
  return out;
}

TEST(WkLocaleTest, SizesAndConvertsSurrogatePairs) {
  const std::u16string text = u"a\u00e9\u20ac\U0001F600z";  // 1 + 2 + 3 + 4 + 1 bytes
  ASSERT_TRUE(utf8Locale().isValid());
  EXPECT_EQ(utf8Locale().getUtf8Size(text.data(), text.size()), 11u);
  EXPECT_EQ(convert(text, 11), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z");
  EXPECT_EQ(utf8Locale().fromUtf8("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", 11).str(), text);
}

TEST(WkLocaleTest, ShortBufferGetsOnlyWholeCharacters) {
  const std::u16string text = u"a\u00e9\U0001F600";
  EXPECT_EQ(convert(text, 6), "a\xC3\xA9");  // the emoji's 4 bytes do not fit in the last 3
  EXPECT_EQ(convert(text, 2), "a");
  EXPECT_EQ(convert(text, 0), "");
}

TEST(WkLocaleTest, InvalidInputIsReplacedAndSizedConsistently) {
  // A lone high surrogate before a letter and at the very end, a lone low surrogate.
  const std::u16string text = {u'x', 0xD83D, u'y', 0xDE00, 0xD800};
  const std::size_t size = utf8Locale().getUtf8Size(text.data(), text.size());
  EXPECT_EQ(size, 2u + 3u * 3u);
  EXPECT_EQ(convert(text, size), "x\xEF\xBF\xBDy\xEF\xBF\xBD\xEF\xBF\xBD");

  EXPECT_EQ(utf8Locale().fromUtf8("\xC3", 1).str(), u"\uFFFD");
  EXPECT_EQ(utf8Locale().fromUtf8("\xF0\x9F\x98", 3).str(), u"\uFFFD");
  EXPECT_EQ(utf8Locale().fromUtf8(nullptr, 0).length(), 0u);
}

int fallbackAssertions = 0;
void countAssertion(const char*, int, const char*) { ++fallbackAssertions; }

TEST(WkLocaleTest, UnsupportedLocaleAssertsThenConvertsAsUtf8) {
  const WkLocale latin1("en_US.ISO-8859-1");
  EXPECT_FALSE(latin1.isValid());
  const char16_t e = 0xE9;
  {
    AssertionCatcher catcher;
    EXPECT_THROW(latin1.getUtf8Size(&e, 1), AssertionFailure);
  }
  fallbackAssertions = 0;
  const QvxAssertionHandler previous = qvxSetAssertionHandler(&countAssertion);
  char out[4];
  const std::size_t written = latin1.toUtf8(&e, 1, out, sizeof out);
  qvxSetAssertionHandler(previous);
  EXPECT_EQ(fallbackAssertions, 1);
  EXPECT_EQ(std::string(out, written), "\xC3\xA9");
}

}  // namespace
