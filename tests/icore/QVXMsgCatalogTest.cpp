// Tests of the message catalog: every number that the library uses has a text, each
// text takes the arguments its callers pass, lookups are thread-safe and create the
// catalog once, and catalog files override texts without being trusted.
#include "icore/QVXMsgCatalog.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "icore/IMsgCatalogImpl.h"
#include "icore/QVXMessageTexts.h"
#include "platform/WkMsgCatalog.h"

namespace com::veltrana::qvx::icore {
namespace {

namespace fs = std::filesystem;

// The conversions of a catalog text, one letter each ("sd" for "%s ... %d").
std::string conversionsOf(const std::u16string& text) {
  std::string letters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != u'%') continue;
    ++i;
    if (i < text.size() && text[i] == u'%') continue;
    while (i < text.size() && std::u16string_view(u"-+ #0123456789.hlzjt").find(text[i]) != std::u16string_view::npos) {
      ++i;
    }
    if (i < text.size()) letters += static_cast<char>(text[i]);
  }
  return letters;
}

// Every message number the library's code uses, with the arguments its callers pass
// (s: a name or text, d: an integer), in their order.
const std::map<int, std::string>& designedMessages() {
  static const std::map<int, std::string> messages = {
      {73000, "s"},  {73002, "s"},   {73003, ""},    {73004, ""},    {73005, "ss"},  {73006, "ss"},
      {73007, "s"},  {73008, "s"},   {73009, ""},    {73010, "ss"},  {73011, "ss"},  {74000, ""},
      {74001, "s"},  {74002, ""},    {75000, ""},    {75001, ""},    {75002, ""},    {75003, ""},
      {75004, ""},   {75007, ""},    {75008, ""},    {75009, "s"},   {75010, "s"},   {76000, "s"},
      {76004, "s"},  {76005, "s"},   {76006, "ss"},  {76011, "s"},   {76012, "ss"},  {76013, "s"},
      {77000, ""},   {77001, ""},    {77002, ""},    {77003, ""},    {77004, ""},    {77005, ""},
      {77006, ""},   {77007, ""},    {77008, ""},    {77009, "d"},   {77010, "s"},   {77011, "s"},
      {77012, "ss"}, {77013, ""},    {77014, "d"},   {78000, ""},    {78001, "s"},   {78002, ""},
      {78003, ""},   {78004, ""},    {78005, ""},    {78006, ""},    {78007, ""},    {78008, ""},
      {78009, ""},   {78010, ""},    {78011, ""},    {78012, ""},    {78013, "s"},   {78014, ""},
      {78015, "s"},  {78016, "s"},   {78018, ""},    {78029, ""},    {78043, ""},    {78044, ""},
      {78046, ""},   {78047, "ss"},  {78048, ""},    {78049, ""},    {78050, "ss"},  {78052, "sss"},
      {78053, ""},   {78054, ""},    {78055, ""},    {78056, "sss"}, {78057, ""},    {78058, "ss"},
      {78063, ""},   {78064, ""},    {79000, ""},    {79001, ""},    {79002, "s"},   {79003, "s"},
      {79004, "s"},  {79005, "sss"}, {79006, "sss"}, {79007, "s"},   {79009, "s"},   {79010, "ss"},
      {79012, "ss"}, {79013, ""},    {79014, ""},    {79015, ""},    {80001, ""},    {80002, ""},
      {80004, ""},   {80005, "s"},   {80006, "s"},   {80007, ""},    {80009, ""},    {81001, ""},
      {81002, "ss"}, {81003, ""},    {81004, "sd"},  {81005, ""},    {81006, ""},    {81007, ""},
      {81008, ""},   {81009, "ss"},  {81010, "ss"},  {81011, "ss"},  {81012, "d"},   {81013, ""},
      {81014, ""},   {81015, ""},    {81016, ""},    {81017, "sss"}, {82001, "sd"},  {82002, "dss"},
      {82003, "d"},
  };
  return messages;
}

// Sets (or with nullopt unsets) an environment variable for one scope.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, std::optional<std::string> value) : name_(name) {
    if (const char* old = getenv(name)) previous_ = old;
    if (value) {
      setenv(name, value->c_str(), 1);
    } else {
      unsetenv(name);
    }
  }
  ~ScopedEnv() {
    if (previous_) {
      setenv(name_, previous_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  const char* name_;
  std::optional<std::string> previous_;
};

class TempDir {
 public:
  TempDir() {
    std::string pattern = (fs::temp_directory_path() / "qvx-msg-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TempDir() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  const fs::path& path() const { return path_; }
  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
  }

 private:
  fs::path path_;
};

// The compiled-in text of `number` as an IUString (empty when there is none).
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
      std::stringstream content;
      content << in.rdbuf();
      const std::string source = content.str();
      for (std::sregex_iterator it(source.begin(), source.end(), call), end; it != end; ++it) {
        usedAt.emplace(std::stoi((*it)[1].str()), entry.path().lexically_relative(root).string());
      }
    }
  }
  ASSERT_FALSE(usedAt.empty()) << "the scan found no message use at all under " << root;
  ASSERT_TRUE(usedAt.count(77013)) << "the logger's use of 77013 was not found";
  for (const auto& [number, file] : usedAt) {
    EXPECT_FALSE(qvxGetMsg(number).isEmpty()) << "message " << number << " used in " << file << " has no text";
  }
}

TEST(QVXMsgCatalogTest, EachTextTakesExactlyTheArgumentsItsCallersPass) {
  for (const auto& [number, expected] : designedMessages()) {
    const IUString text = compiledText(number);
    ASSERT_FALSE(text.isEmpty()) << "no text for message " << number;
    EXPECT_EQ(conversionsOf(text.str()), expected) << "message " << number << ": " << text.toUtf8();
    EXPECT_EQ(qvxGetMsg(number), text) << number;
  }
  // And the table holds nothing else: a text for a number no caller uses is stale.
  EXPECT_EQ(detail::qvxMessageTextCount(), designedMessages().size());
  for (std::size_t i = 0; i < detail::qvxMessageTextCount(); ++i) {
    EXPECT_TRUE(designedMessages().count(detail::qvxMessageTexts()[i].number))
        << "unexpected message " << detail::qvxMessageTexts()[i].number;
  }
}

TEST(QVXMsgCatalogTest, UnknownNumberFailsAndLeavesAnEmptyText) {
  EXPECT_TRUE(qvxGetMsg(73001).isEmpty());
  EXPECT_TRUE(qvxGetMsg(-1).isEmpty());
  IMsgCatalog* catalog = createQVXMsgCatalog("qvxmsg");
  ASSERT_NE(catalog, nullptr);
  IUString text("stale");
  EXPECT_EQ(catalog->getMsg(99999, text), ISTATUS_FAILURE);
  EXPECT_TRUE(text.isEmpty());
  EXPECT_EQ(catalog->getMsg(73007, text), ISTATUS_SUCCESS);
  EXPECT_EQ(text, compiledText(73007));
}

TEST(QVXMsgCatalogTest, PrefixIsPutInFrontOfFoundTextsOnly) {
  IMsgCatalogImpl catalog;
  ASSERT_EQ(catalog.init("qvxmsg", "C"), ISTATUS_SUCCESS);
  catalog.setMsgPrefix("QVX: ");
  IUString text;
  ASSERT_EQ(catalog.getMsg(74001, text), ISTATUS_SUCCESS);
  EXPECT_EQ(text, IUString("QVX: ") + compiledText(74001));
  EXPECT_EQ(catalog.getMsg(12345, text), ISTATUS_FAILURE);
  EXPECT_TRUE(text.isEmpty());
  EXPECT_EQ(IMsgCatalogImpl().init("", ""), ISTATUS_FAILURE);
}

TEST(QVXMsgCatalogTest, ConcurrentFirstUseCreatesOneCatalogAndAllThreadsAgree) {
  destroyQVXMsgCatalog();
  constexpr int kThreads = 8;
  constexpr int kRounds = 200;
  std::atomic<int> waiting{kThreads};
  std::vector<IMsgCatalog*> seen(kThreads, nullptr);
  std::atomic<int> mismatches{0};
  const std::vector<int> numbers = {73007, 77013, 81004, 82002, 12345};
  std::vector<IUString> expected;
  for (int number : numbers) expected.push_back(compiledText(number));

  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t, &waiting, &seen, &mismatches, &numbers, &expected] {
      // Start together so that the first lookups race for the catalog's creation.
      waiting.fetch_sub(1);
      while (waiting.load() > 0) std::this_thread::yield();
      for (int round = 0; round < kRounds; ++round) {
        const std::size_t k = static_cast<std::size_t>(round + t) % numbers.size();
        if (qvxGetMsg(numbers[k]) != expected[k]) mismatches.fetch_add(1);
      }
      seen[static_cast<std::size_t>(t)] = createQVXMsgCatalog("qvxmsg");
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(mismatches.load(), 0);
  ASSERT_NE(seen[0], nullptr);
  for (IMsgCatalog* catalog : seen) EXPECT_EQ(catalog, seen[0]);
}

TEST(QVXMsgCatalogTest, CatalogFileOfTheLocaleOverridesSingleTexts) {
  TempDir dir;
  dir.write("wk_qvxmsg_xx_YY",
            "# reworded for the test locale\n"
            "73007\tPackage name %s is taken.\n"
            "not a number\tignored\n"
            "74001\n");
  {
    ScopedEnv path("QVX_MSG_CATALOG_PATH", dir.path().string());
    ScopedEnv all("LC_ALL", std::string("xx_YY.UTF-8"));
    destroyQVXMsgCatalog();
    EXPECT_EQ(qvxFormatMsg(73007, "acme.sales"), IUString("Package name acme.sales is taken."));
    EXPECT_EQ(qvxGetMsg(74001), compiledText(74001));
    EXPECT_EQ(qvxGetMsg(73008), compiledText(73008));
    destroyQVXMsgCatalog();
  }
  // Without the variable no file is read.
  ScopedEnv path("QVX_MSG_CATALOG_PATH", std::nullopt);
  EXPECT_EQ(qvxGetMsg(73007), compiledText(73007));
}

TEST(WkMsgCatalogTest, MalformedLinesAreSkippedAndTheRestIsLoaded) {
  TempDir dir;
  std::string bytes = "\xEF\xBB\xBF" "100\tfirst line after a BOM\r\n";
  bytes += "  # indented comment\n";
  bytes += "\n";
  bytes += "abc\tno number\n";
  bytes += "101\n";                     // no text
  bytes += "102 \t \n";                 // blank text
  bytes += "-103\tsigned\n";
  bytes += "1234567890\ttoo many digits\n";
  bytes += "104x\tjunk after the number\n";
  bytes += "105   two\\nlines \\t tab \\\\ backslash \\q kept\n";
  bytes += "106\tbad \xC3\x28 utf-8\n";
  bytes += std::string("107\tnul\0inside\n", 15);
  bytes += "100\tthe later line wins\n";
  bytes += "108\tlast line without newline";
  dir.write("catalog", bytes);

  WkMsgCatalog catalog;
  ASSERT_TRUE(catalog.loadFile(IUString::fromUtf8((dir.path() / "catalog").string())));
  EXPECT_EQ(catalog.size(), 5u);
  IUString text;
  ASSERT_TRUE(catalog.getMessage(100, text));
  EXPECT_EQ(text, IUString("the later line wins"));
  ASSERT_TRUE(catalog.getMessage(105, text));
  EXPECT_EQ(text, IUString("two\nlines \t tab \\ backslash \\q kept"));
  ASSERT_TRUE(catalog.getMessage(106, text));
  EXPECT_EQ(text, IUString(u"bad \uFFFD( utf-8"));
  ASSERT_TRUE(catalog.getMessage(107, text));
  EXPECT_EQ(text.length(), 10u);
  ASSERT_TRUE(catalog.getMessage(108, text));
  EXPECT_EQ(text, IUString("last line without newline"));
  text = "untouched";
  for (int missing : {101, 102, 103, 104}) EXPECT_FALSE(catalog.getMessage(missing, text)) << missing;
  EXPECT_EQ(text, IUString("untouched"));
}

TEST(WkMsgCatalogTest, BinaryGarbageAndMissingFilesLeaveAnEmptyCatalog) {
  TempDir dir;
  std::string garbage;
  for (int i = 0; i < 4096; ++i) garbage += static_cast<char>((i * 7919) % 256);
  dir.write("garbage", garbage);
  WkMsgCatalog catalog;
  EXPECT_TRUE(catalog.loadFile(IUString::fromUtf8((dir.path() / "garbage").string())));
  IUString text;
  for (int number = 0; number < 1000; ++number) {
    if (!catalog.getMessage(number, text)) continue;
    EXPECT_FALSE(text.isEmpty()) << number;
  }
  EXPECT_FALSE(catalog.loadFile(IUString::fromUtf8((dir.path() / "missing").string())));
  EXPECT_EQ(catalog.size(), 0u);
  EXPECT_TRUE(catalog.getPath().isEmpty());
}

TEST(WkMsgCatalogTest, OpenFallsBackFromLocaleToLanguageToC) {
  TempDir dir;
  dir.write("wk_qvxmsg_xx", "1\tlanguage\n");
  dir.write("wk_qvxmsg_C", "1\tdefault\n");
  ScopedEnv path("QVX_MSG_CATALOG_PATH", dir.path().string());
  WkMsgCatalog catalog;
  IUString text;
  ASSERT_TRUE(catalog.open("qvxmsg", "xx_YY"));
  ASSERT_TRUE(catalog.getMessage(1, text));
  EXPECT_EQ(text, IUString("language"));
  // A directory in the way of a candidate is passed over like a missing file.
  fs::create_directory(dir.path() / "wk_qvxmsg_zz_ZZ");
  ASSERT_TRUE(catalog.open("qvxmsg", "zz_ZZ"));
  ASSERT_TRUE(catalog.getMessage(1, text));
  EXPECT_EQ(text, IUString("default"));
  // A locale that could leave the directory is never put into a path.
  fs::create_directory(dir.path() / "wk_qvxmsg_x");
  dir.write("outside", "1\tescaped\n");
  ASSERT_TRUE(catalog.open("qvxmsg", "x/../outside"));
  ASSERT_TRUE(catalog.getMessage(1, text));
  EXPECT_EQ(text, IUString("default"));
  EXPECT_FALSE(catalog.open("../qvxmsg", "xx"));
}

TEST(WkMsgCatalogTest, MessageLocaleComesFromTheEnvironmentWithoutCodeset) {
  ScopedEnv all("LC_ALL", std::nullopt);
  ScopedEnv messages("LC_MESSAGES", std::string("de_DE.UTF-8@euro"));
  ScopedEnv lang("LANG", std::string("fr_FR"));
  EXPECT_EQ(WkMsgCatalog::messageLocale(), IUString("de_DE"));
  ScopedEnv posix("LC_MESSAGES", std::string("POSIX"));
  EXPECT_EQ(WkMsgCatalog::messageLocale(), IUString("C"));
  ScopedEnv none("LC_MESSAGES", std::nullopt);
  EXPECT_EQ(WkMsgCatalog::messageLocale(), IUString("fr_FR"));
}

}  // namespace
}  // namespace com::veltrana::qvx::icore
