// Tests of the message catalog: every number that the library uses has a text, each
// text takes the arguments its callers pass, lookups are thread-safe and create the
// catalog once, and catalog files override texts without being trusted.
#include "icore/QVXMsgCatalog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "icore/IMsgCatalog.h"
#include "icore/QVXMessageTexts.h"
#include "tests/platform/TestScopes.h"

namespace com::veltrana::qvx::icore {
namespace {

namespace fs = std::filesystem;

// The conversions of a catalog text, one letter each ("sd" for "%s ... %d").
std::string conversionsOf(const IUString& text) {
  static const std::regex conversion("%(%|[-+ #0-9.hlzjt]*([a-zA-Z]))");
  const std::string utf8 = text.toUtf8();
  std::string letters;
  for (std::sregex_iterator it(utf8.begin(), utf8.end(), conversion), end; it != end; ++it) letters += (*it)[2].str();
  return letters;
}

// Every message number the library's code uses, with the arguments its callers pass
// (s: a name or text, d: an integer), in their order.
const std::map<int, std::string> kUsedMessages = {
    {73000, "s"}, {73002, "s"}, {73003, ""}, {73004, ""}, {73005, "ss"}, {73006, "ss"}, {73007, "s"}, {73008, "s"},
    {73009, ""}, {73010, "ss"}, {73011, "ss"}, {74000, ""}, {74001, "s"}, {74002, ""}, {75000, ""}, {75001, ""},
    {75002, ""}, {75003, ""}, {75004, ""}, {75007, ""}, {75008, ""}, {75009, "s"}, {75010, "s"}, {76000, "s"},
    {76004, "s"}, {76005, "s"}, {76006, "ss"}, {76011, "s"}, {76012, "ss"}, {76013, "s"}, {76014, "ss"}, {77000, ""}, {77001, ""},
    {77002, ""}, {77003, ""}, {77004, ""}, {77005, ""}, {77006, ""}, {77007, ""}, {77008, ""}, {77009, "d"},
    {77010, "s"}, {77011, "s"}, {77012, "ss"}, {77013, ""}, {77014, "d"}, {78000, ""}, {78001, "s"}, {78002, ""},
    {78003, ""}, {78004, ""}, {78005, ""}, {78006, ""}, {78007, ""}, {78008, ""}, {78009, ""}, {78010, ""},
    {78011, ""}, {78012, ""}, {78013, "s"}, {78014, ""}, {78015, "s"}, {78016, "s"}, {78018, ""}, {78029, ""},
    {78043, "s"}, {78044, "ss"}, {78046, ""}, {78047, "ss"}, {78048, ""}, {78049, ""}, {78050, "ss"}, {78052, "sss"},
    {78053, "s"}, {78054, "s"}, {78055, "s"}, {78056, "sss"}, {78057, ""}, {78058, "ss"}, {78063, "s"}, {78064, ""},
    {78065, "sss"}, {78066, ""}, {78067, "s"}, {78068, "s"}, {78069, "ss"}, {78070, "ssss"}, {78071, "ss"}, {78072, "ss"}, {78073, "sss"}, {78074, "ss"},
    {79000, ""}, {79001, ""}, {79002, "s"}, {79003, "s"}, {79004, "s"}, {79005, "sss"}, {79006, "sss"}, {79007, "s"},
    {79009, "s"}, {79010, "ss"}, {79012, "ss"}, {79013, ""}, {79014, ""}, {79015, ""}, {80001, ""}, {80002, ""},
    {80004, ""}, {80005, "s"}, {80006, "s"}, {80007, ""}, {80009, ""}, {81001, ""}, {81002, "ss"}, {81003, ""},
    {81004, "sd"}, {81005, ""}, {81006, ""}, {81007, ""}, {81008, ""}, {81009, "ss"}, {81010, "ss"}, {81011, "ss"},
    {81012, "d"}, {81013, ""}, {81014, ""}, {81015, ""}, {81016, ""}, {81017, "sss"}, {81018, "dd"}, {81019, "d"},
    {82001, "sd"}, {82002, "dss"},
    {82003, "d"},
};

// The compiled-in text of `number` (empty when there is none).
IUString compiledText(int number) {
  const char16_t* text = detail::findQVXMessageText(number);
  return text != nullptr ? IUString(text) : IUString();
}

TEST(QVXMsgCatalogTest, EveryNumberUsedInTheLibrarySourcesHasAText) {
  const fs::path root(QVX_SOURCE_DIR);
  const std::regex call(R"(qvx(?:Format|Get)Msg\s*\(\s*(\d+))");
  std::map<int, std::string> usedAt;
  for (const char* area : {"icore", "io", "utils", "platform", "examples", "tools"}) {
    if (!fs::exists(root / area)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(root / area)) {
      const std::string extension = entry.path().extension().string();
      if (!entry.is_regular_file() || (extension != ".h" && extension != ".cpp")) continue;
      std::ifstream in(entry.path());
      const std::string source{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
      for (std::sregex_iterator it(source.begin(), source.end(), call), end; it != end; ++it) {
        usedAt.emplace(std::stoi((*it)[1].str()), entry.path().lexically_relative(root).string());
      }
    }
  }
  ASSERT_TRUE(usedAt.count(77013)) << "the scan missed the logger's use of 77013 under " << root;
  for (const auto& [number, file] : usedAt) {
    EXPECT_FALSE(qvxGetMsg(number).isEmpty()) << "message " << number << " used in " << file << " has no text";
  }
}

TEST(QVXMsgCatalogTest, EachTextTakesTheArgumentsItsCallersPassAndNoOtherNumberHasOne) {
  for (const auto& [number, expected] : kUsedMessages) {
    const IUString text = compiledText(number);
    ASSERT_FALSE(text.isEmpty()) << "no text for message " << number;
    EXPECT_EQ(conversionsOf(text), expected) << "message " << number << ": " << text.toUtf8();
    EXPECT_EQ(qvxGetMsg(number), text) << number;
  }
  // A number without a text fails and leaves the text empty.
  EXPECT_TRUE(qvxGetMsg(73001).isEmpty());
  IUString text("stale");
  EXPECT_EQ(createQVXMsgCatalog("qvxmsg")->getMsg(-1, text), ISTATUS_FAILURE);
  EXPECT_TRUE(text.isEmpty());
  // And the table holds nothing else: a text for a number no caller uses is stale.
  EXPECT_EQ(detail::qvxMessageTextCount(), kUsedMessages.size());
  for (std::size_t i = 0; i < detail::qvxMessageTextCount(); ++i) {
    EXPECT_TRUE(kUsedMessages.count(detail::qvxMessageTexts()[i].number)) << detail::qvxMessageTexts()[i].number;
  }
}

TEST(QVXMsgCatalogTest, ConcurrentFirstUseCreatesOneCatalogAndAllThreadsAgree) {
  destroyQVXMsgCatalog();
  std::atomic<int> waiting{8};
  std::atomic<int> mismatches{0};
  std::vector<IMsgCatalog*> seen(8, nullptr);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < seen.size(); ++t) {
    threads.emplace_back([t, &waiting, &seen, &mismatches] {
      // Start together so that the first lookups race for the catalog's creation.
      for (--waiting; waiting.load() > 0;) std::this_thread::yield();
      for (int number : {73007, 77013, 81004, 82002, 12345}) mismatches += qvxGetMsg(number) != compiledText(number);
      seen[t] = createQVXMsgCatalog("qvxmsg");
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(mismatches.load(), 0);
  ASSERT_NE(seen[0], nullptr);
  for (IMsgCatalog* catalog : seen) EXPECT_EQ(catalog, seen[0]);
}

// The file is not trusted: lines that do not fit are skipped, the rest is loaded.
TEST(QVXMsgCatalogTest, CatalogFileOfTheLocaleOverridesSingleTexts) {
  TempDir dir;
  dir.write("wk_qvxmsg_xx_YY", "\xEF\xBB\xBF" "73007\tPackage name %s is taken.\r\n  # comment\n\n74001\n74002 \t \n"
                               "abc\tno number\n1234567890\ttoo many digits\n73008   two\\nlines \\\\ \\q\n"
                               "73009\tbad \xC3\x28 utf-8\n73010\tfirst\n73010\tthe later line wins");
  {
    ScopedEnv path("QVX_MSG_CATALOG_PATH", dir.path().c_str());
    ScopedEnv all("LC_ALL", "xx_YY.UTF-8");
    destroyQVXMsgCatalog();
    EXPECT_EQ(qvxFormatMsg(73007, "acme.sales"), IUString("Package name acme.sales is taken."));
    EXPECT_EQ(qvxGetMsg(73008), IUString("two\nlines \\ \\q"));
    EXPECT_EQ(qvxGetMsg(73009), IUString(u"bad \uFFFD( utf-8"));
    EXPECT_EQ(qvxGetMsg(73010), IUString("the later line wins"));
    EXPECT_EQ(qvxGetMsg(74001), compiledText(74001));
    EXPECT_EQ(qvxGetMsg(74002), compiledText(74002));
    destroyQVXMsgCatalog();
  }
  ScopedEnv path("QVX_MSG_CATALOG_PATH", nullptr);  // without the variable no file is read
  EXPECT_EQ(qvxGetMsg(73007), compiledText(73007));
}

TEST(QVXMsgCatalogTest, LocaleCannotLeadOutsideTheCatalogDirectory) {
  // With the locale "x/../../evil" a naive file name would reach <dir>/evil.
  TempDir dir;
  dir.write("evil", "73007\tread from outside the catalog directory");
  std::filesystem::create_directories(dir.path() / "catalogs" / "wk_qvxmsg_x");
  ScopedEnv path("QVX_MSG_CATALOG_PATH", (dir.path() / "catalogs").c_str());
  ScopedEnv all("LC_ALL", "x/../../evil");
  destroyQVXMsgCatalog();
  EXPECT_EQ(qvxGetMsg(73007), compiledText(73007));
  destroyQVXMsgCatalog();
}

}  // namespace
}  // namespace com::veltrana::qvx::icore
