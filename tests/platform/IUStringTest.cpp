#include "platform/IUString.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

TEST(IUStringTest, Utf8RoundTripKeepsSurrogatePairsAndReplacesInvalidInput) {
  const char* text = "caf\xC3\xA9 \xF0\x9F\x98\x80 \xE2\x82\xAC";  // café 😀 €
  EXPECT_EQ(IUString(text).str(), u"caf\u00e9 \U0001F600 \u20AC");
  EXPECT_EQ(IUString(text).toUtf8(), text);
  // Stray continuation, overlong '/', encoded surrogate, truncated 3-byte sequence.
  const std::string bad("a\x80" "b\xC0\xAF" "c\xED\xA0\x80" "d\xE2\x82", 12);
  EXPECT_EQ(IUString(bad.data(), bad.size()).str(), u"a\uFFFDb\uFFFD\uFFFDc\uFFFD\uFFFD\uFFFDd\uFFFD");
  const char16_t loneSurrogates[] = {u'x', 0xD800, u'y', 0xDC00};
  EXPECT_EQ(IUString(loneSurrogates, 4).toUtf8(), "x\xEF\xBF\xBDy\xEF\xBF\xBD");
}

TEST(IUStringTest, FormatFillsConversionsAndKeepsThoseWithoutArguments) {
  EXPECT_EQ(IUString::format("Property %s of %s", IUString("rows"), "Table"), IUString("Property rows of Table"));
  EXPECT_EQ(IUString::format("%d|%u|%lld|%c|%03d|%%|%.15lg", -5, 7u, -9000000000LL, u'Z', 7, 0.1),
            IUString("-5|7|-9000000000|Z|007|%|0.1"));
  EXPECT_EQ(IUString::format("missing %s and %d", IUString("one")), IUString("missing one and %d"));
  EXPECT_EQ(IUString::format("100%"), IUString("100%"));
  EXPECT_EQ(IUString::format("%d", IUString("text")), IUString("text"));
}

// Message patterns come from an editable catalog file: an over-long conversion or an unknown
// letter is left as text instead of reaching snprintf.
TEST(IUStringTest, FormatKeepsOverlongAndUnknownConversionsAsWritten) {
  const IUString overlong("%-----------------------------------------------d|%.9999f|%p|%2d");
  EXPECT_EQ(IUString::format(overlong, 5), IUString("%-----------------------------------------------d|%.9999f|%p| 5"));
  EXPECT_EQ(IUString::format("%.3f|%-5d|", 1.0, 42), IUString("1.000|42   |"));
}

// Formatted strings are kept by objects for as long as they live, so a result carries no
// spare capacity; the per-thread buffer behind format() must give each thread its own
// text, also after a huge message has been formatted and the buffer let go.
TEST(IUStringTest, FormatResultsFitTheirTextExactlyOnEveryThread) {
  const auto formatMany = [](int thread, std::vector<IUString>& out) {
    for (int i = 0; i < 200; ++i) {
      out.push_back(IUString::format("thread %d item %d of a longer name", thread, i));
      if (i == 100) out.push_back(IUString::format("%s", std::string(100000, 'w')));
    }
  };
  std::vector<IUString> first;
  std::vector<IUString> second;
  std::thread other([&] { formatMany(2, second); });
  formatMany(1, first);
  other.join();
  ASSERT_EQ(first.size(), 201u);
  ASSERT_EQ(second.size(), 201u);
  EXPECT_EQ(first[200], IUString("thread 1 item 199 of a longer name"));
  EXPECT_EQ(second[5], IUString("thread 2 item 5 of a longer name"));
  EXPECT_EQ(second[101].length(), 100000u);
  for (IUString const& text : first) EXPECT_EQ(text.str().capacity(), text.length());
  EXPECT_EQ(IUString::format("col_%d", 3), IUString("col_3"));
}
