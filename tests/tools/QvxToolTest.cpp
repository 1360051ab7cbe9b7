// The qvx tool driven as a process: the demo, dump of known, truncated, corrupt and
// hostile streams, convert round trips, diff, describe, and the errors of bad input.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <regex>
#include <string>
#include <vector>

#include "tests/tools/ToolProcess.h"

namespace qvx_tool_test {
namespace {

constexpr int kSuccess = 0;
constexpr int kFailedCheck = 1;
constexpr int kInputError = 2;

class QvxToolTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    char pattern[] = "/tmp/qvx-tool-test-XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    scratch_ = pattern;
    demo_ = runTool({"demo", "--out", scratch_ + "/demo"}, scratch_);
  }
  static void TearDownTestSuite() { std::system(("rm -rf " + shellQuoted(scratch_)).c_str()); }

  static ToolResult run(std::vector<std::string> const& arguments) { return runTool(arguments, scratch_); }
  static std::string path(std::string const& name) { return scratch_ + "/" + name; }
  static std::string demoStream() { return scratch_ + "/demo/catalog.qvx"; }
  static std::string demoDocument() { return scratch_ + "/demo/catalog.xml"; }

  // A copy of the demo stream with the first occurrence of `from` replaced by `to`
  // (of the same length, so the stream stays well formed).
  static std::string patchedDemoStream(std::string const& name, std::string const& from, std::string const& to) {
    std::string bytes = readWholeFile(demoStream());
    std::size_t at = bytes.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) bytes.replace(at, from.size(), to);
    writeWholeFile(path(name), bytes);
    return path(name);
  }

  // A failure of input: status 2 and exactly one line on standard error naming `file`.
  static void expectInputError(ToolResult const& result, std::string const& file) {
    EXPECT_EQ(result.status, kInputError) << result.err;
    std::vector<std::string> lines = linesOf(result.err);
    ASSERT_EQ(lines.size(), 1U) << result.err;
    EXPECT_NE(lines[0].find(file), std::string::npos) << lines[0];
  }

  static std::size_t countMatches(std::string const& text, std::string const& pattern) {
    std::regex expression(pattern);
    return static_cast<std::size_t>(
        std::distance(std::sregex_iterator(text.begin(), text.end(), expression), std::sregex_iterator()));
  }

  static std::string scratch_;
  static ToolResult demo_;
};

std::string QvxToolTest::scratch_;
ToolResult QvxToolTest::demo_;

// A stream with one class of three properties (an int, a string list and a reference to
// its own class), two objects, a top-level int list with a null element and the end
// marker; `offsets` receives where each record starts.
struct KnownStream {
  StreamBytes bytes;
  std::size_t outer = 0, inner = 0, reference = 0, list = 0, end = 0;
};

KnownStream knownStream() {
  KnownStream stream;
  StreamBytes& b = stream.bytes;
  b.header();
  stream.outer = b.size();
  b.marker(0x03).marker(0x04).i32(0).text("p.Thing").text("1.0").i16(3).marker(0x12);
  b.marker(0x08).text("count").marker(0x18).marker(0x0D).text("tags").marker(0x13).text("p.Thing").text("next");
  b.marker(0x35).i32(1).marker(0x1D).text("id-1").marker(0x12).marker(0x12);
  b.marker(0x08).i32(42).marker(0x18).i32(2).text("a").text("b").marker(0x13);
  stream.inner = b.size();
  b.marker(0x03).marker(0x02).i32(0).marker(0x35).i32(2).marker(0x12).marker(0x12).marker(0x12);
  b.marker(0x08).i32(-7).marker(0x1B).marker(0x13);
  stream.reference = b.size();
  b.marker(0x11).i32(1);
  stream.list = b.size();
  b.marker(0x25).i32(2).marker(0x08).i32(5).marker(0x10);
  stream.end = b.size();
  b.marker(0x34);
  return stream;
}

// The offset as the dump shows it after a record.
std::string at(std::size_t offset) { return "  @" + std::to_string(offset); }

// A stream of `depth` objects, each the "next" of the one before, then a reference back
// to the first: a stack frame per object would overflow.
std::string deepChainStream(int depth) {
  StreamBytes b;
  b.header();
  b.marker(0x03).marker(0x04).i32(0).text("p.Node").text("1").i16(1).marker(0x12);
  b.marker(0x13).text("p.Node").text("next");
  for (int i = 0; i < depth; ++i) {
    if (i > 0) b.marker(0x03).marker(0x02).i32(0);
    b.marker(0x35).i32(i + 1).marker(0x12).marker(0x12).marker(0x12).marker(0x13);
  }
  b.marker(0x11).i32(1);
  return b.bytes();
}

TEST_F(QvxToolTest, DemoWritesBothFormsAndReadsTheBinaryStreamBackEqual) {
  // Exit status 1 when a copy that was read back differs from the original.
  EXPECT_EQ(demo_.status, demo_.out.find(" differs: ") == std::string::npos ? kSuccess : kFailedCheck) << demo_.out;
  EXPECT_TRUE(demo_.err.empty()) << "progress or errors in a pipe: " << demo_.err;
  EXPECT_NE(demo_.out.find("catalog(2, 10, 5, 1)"), std::string::npos) << demo_.out;
  EXPECT_NE(demo_.out.find("demo's own fixed key"), std::string::npos) << demo_.out;
  // 1 catalog, 2 schemas, 20 tables, 100 columns, 20 foreign keys and the rest of the
  // graph: the same count in every row, and the read row says equal.
  std::smatch build;
  ASSERT_TRUE(std::regex_search(demo_.out, build, std::regex("build +([0-9]+)")));
  std::regex readBinary("read binary +" + build[1].str() + " +([0-9]+) .* equal");
  std::smatch read;
  ASSERT_TRUE(std::regex_search(demo_.out, read, readBinary)) << demo_.out;
  EXPECT_EQ(std::stoul(read[1].str()), readWholeFile(demoStream()).size());
  EXPECT_EQ(readWholeFile(demoDocument()).compare(0, 5, "<?xml"), 0);
}

TEST_F(QvxToolTest, DumpOfAKnownStreamShowsEveryRecordWithItsOffsetAsTextAndJson) {
  KnownStream stream = knownStream();
  writeWholeFile(path("known.qvx"), stream.bytes.bytes());
  ToolResult result = run({"dump", path("known.qvx")});
  ASSERT_EQ(result.status, kSuccess) << result.err;
  std::string expected =
      "header: format version \"14.0.0\"  @0\n"
      "class descriptor #0 p.Thing, package version 1.0, no super class" + at(stream.outer + 1) + "\n"
      "  count: int\n"
      "  tags: string[]\n"
      "  next: reference p.Thing\n"
      "object #1 p.Thing (descriptor #0) identity \"id-1\"" + at(stream.outer) + "\n"
      "  count = 42\n"
      "  tags = [ \"a\", \"b\" ]\n"
      "  next = object #2 p.Thing (descriptor #0)" + at(stream.inner) + "\n"
      "      count = -7\n"
      "      next = reference #1" + at(stream.reference) + "\n"
      "int[]: 5, null" + at(stream.list) + "\n"
      "end of stream" + at(stream.end) + "\n";
  EXPECT_EQ(result.out, expected);

  // The JSON dump has the same content.
  result = run({"dump", "--json", path("known.qvx")});
  ASSERT_EQ(result.status, kSuccess) << result.err;
  std::string inner = "{\"offset\": " + std::to_string(stream.inner) +
                      ", \"kind\": \"object\", \"handle\": 2, \"class\": \"p.Thing\", \"descriptor\": 0, "
                      "\"properties\": {\"count\": -7, \"next\": {\"offset\": " +
                      std::to_string(stream.reference) + ", \"kind\": \"reference\", \"handle\": 1}}}";
  expected =
      "{\"header\": {\"offset\": 0, \"version\": \"14.0.0\"},\n"
      " \"items\": [{\"offset\": " + std::to_string(stream.outer) +
      ", \"kind\": \"object\", \"handle\": 1, \"class\": \"p.Thing\", \"descriptor\": 0, \"identity\": \"id-1\", "
      "\"properties\": {\"count\": 42, \"tags\": [\"a\", \"b\"], \"next\": " + inner + "}}, "
      "{\"offset\": " + std::to_string(stream.list) + ", \"kind\": \"int[]\", \"values\": [5, null]}],\n"
      " \"descriptors\": [{\"offset\": " + std::to_string(stream.outer + 1) +
      ", \"handle\": 0, \"class\": \"p.Thing\", \"packageVersion\": \"1.0\", \"super\": null, \"properties\": "
      "[{\"name\": \"count\", \"kind\": \"int\"}, {\"name\": \"tags\", \"kind\": \"string[]\"}, "
      "{\"name\": \"next\", \"kind\": \"reference\", \"type\": \"p.Thing\"}]}],\n"
      " \"end\": {\"offset\": " + std::to_string(stream.end) + "},\n"
      " \"truncated\": null,\n"
      " \"fault\": null}\n";
  EXPECT_EQ(result.out, expected);
}

TEST_F(QvxToolTest, DumpShowsListsNullsProxiesEnumerationsAndPrimitiveItems) {
  StreamBytes b;
  b.header();
  const std::size_t list = b.size();
  b.marker(0x1C).i32(3).marker(0x10);
  const std::size_t object = b.size();
  b.marker(0x03).marker(0x04).i32(0).text("p.A").text("1").i16(1).marker(0x12).marker(0x14).text("p.Color").text("color");
  b.marker(0x35).i32(1).marker(0x12).marker(0x12).marker(0x12).marker(0x14).text("RED");
  const std::size_t proxy = b.size();
  b.marker(0x03).marker(0x15).i32(2).text("p.A").text("id-9").marker(0x12).marker(0x12);
  const std::size_t boxed = b.size();
  b.marker(0x2F).i32(9);
  const std::size_t text = b.size();
  b.marker(0x0D).text("he said \"hi\"\n");
  writeWholeFile(path("list.qvx"), b.bytes());
  ToolResult result = run({"dump", path("list.qvx")});
  ASSERT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "header: format version \"14.0.0\"  @0\n"
                        "list of 3 objects" + at(list) + "\n"
                        "  null" + at(list + 5) + "\n"
                        "  class descriptor #0 p.A, package version 1, no super class" + at(object + 1) + "\n"
                        "    color: enum p.Color\n"
                        "  object #1 p.A (descriptor #0)" + at(object) + "\n"
                        "    color = \"RED\"\n"
                        "  proxy #2 p.A identity \"id-9\"" + at(proxy) + "\n"
                        "boxed int: 9" + at(boxed) + "\n"
                        "string: \"he said \\\"hi\\\"\\u000a\"" + at(text) + "\n"
                        "end of data, without end marker" + at(b.size()) + "\n");
}

TEST_F(QvxToolTest, DumpOfTheDemoStreamListsEveryColumnAndEndsAtTheEndMarker) {
  ToolResult text = run({"dump", demoStream()});
  ASSERT_EQ(text.status, kSuccess) << text.err;
  EXPECT_EQ(countMatches(text.out, "\nobject #[0-9]+ com\\.example\\.catalog\\.Catalog "), 1U);
  EXPECT_EQ(countMatches(text.out, "object #[0-9]+ com\\.example\\.catalog\\.Column "), 100U);
  EXPECT_EQ(countMatches(text.out, "class descriptor #[0-9]+ com\\.example\\.catalog\\.Column,"), 1U);
  std::string end = "end of stream  @" + std::to_string(readWholeFile(demoStream()).size() - 1) + "\n";
  EXPECT_EQ(text.out.substr(text.out.size() - end.size()), end);

  ToolResult json = run({"dump", "--json", demoStream()});
  ASSERT_EQ(json.status, kSuccess) << json.err;
  EXPECT_EQ(countMatches(json.out, "\"class\": \"com\\.example\\.catalog\\.Column\", \"descriptor\""), 100U);
  EXPECT_NE(json.out.find("\"fault\": null}"), std::string::npos);
}

TEST_F(QvxToolTest, DumpLimitsDepthAndObjectCount) {
  ToolResult shallow = run({"dump", "--depth", "0", demoStream()});
  ASSERT_EQ(shallow.status, kSuccess) << shallow.err;
  EXPECT_EQ(countMatches(shallow.out, "\n *object #"), 1U);
  EXPECT_NE(shallow.out.find("schemas = [ ..., ..."), std::string::npos) << shallow.out;

  ToolResult few = run({"dump", "--max-objects", "3", demoStream()});
  ASSERT_EQ(few.status, kSuccess) << few.err;
  EXPECT_EQ(countMatches(few.out, "\n *object #"), 3U);
  EXPECT_NE(few.out.find("stopped after 3 objects"), std::string::npos);

  expectInputError(run({"dump", "--depth", "-1", demoStream()}), "--depth");
}

TEST_F(QvxToolTest, DumpOfEveryTruncationNamesTheOffsetAndFails) {
  KnownStream stream = knownStream();
  std::string bytes = stream.bytes.bytes();
  for (std::size_t length = 1; length < bytes.size(); ++length) {
    writeWholeFile(path("cut.qvx"), bytes.substr(0, length));
    ToolResult result = run({"dump", path("cut.qvx")});
    if (length == stream.outer || length == stream.list || length == stream.end) {
      // Cut between items: a stream whose writer left out the end marker.
      EXPECT_EQ(result.status, kSuccess) << length << ": " << result.err;
      EXPECT_NE(result.out.find("end of data, without end marker  @" + std::to_string(length)), std::string::npos);
      continue;
    }
    EXPECT_EQ(result.status, kFailedCheck) << length;
    std::vector<std::string> lines = linesOf(result.err);
    ASSERT_EQ(lines.size(), 1U) << length << ": " << result.err;
    std::smatch offset;
    ASSERT_TRUE(std::regex_search(lines[0], offset, std::regex("cut\\.qvx: byte offset ([0-9]+)"))) << lines[0];
    EXPECT_LE(std::stoul(offset[1].str()), length);
    EXPECT_NE(result.out.find("FAULT at byte offset " + offset[1].str()), std::string::npos) << result.out;
  }
}

TEST_F(QvxToolTest, DumpOfACorruptMarkerStopsThereAndKeepsWhatCameBefore) {
  KnownStream stream = knownStream();
  std::string bytes = stream.bytes.bytes();
  bytes[stream.list] = 0x7F;  // no marker has this value
  writeWholeFile(path("corrupt.qvx"), bytes);
  ToolResult result = run({"dump", path("corrupt.qvx")});
  EXPECT_EQ(result.status, kFailedCheck);
  EXPECT_NE(result.out.find("next = reference #1"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("unexpected marker 127 at byte offset " + std::to_string(stream.list)), std::string::npos)
      << result.out;
  EXPECT_EQ(linesOf(result.err).size(), 1U);
}

TEST_F(QvxToolTest, DumpOfAVeryDeepChainNeitherRecursesNorPrintsBelowTheDepth) {
  writeWholeFile(path("deep.qvx"), deepChainStream(200000));
  ToolResult result = run({"dump", "--depth", "2", path("deep.qvx")});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(countMatches(result.out, "object #"), 3U);
  EXPECT_EQ(countMatches(result.out, "next = \\.\\.\\."), 1U);
}

TEST_F(QvxToolTest, ProgressShowsOnATerminalOnlyNeverInAPipe) {
  // The deep chain keeps the dump busy long enough for progress shown at once.
  writeWholeFile(path("busy.qvx"), deepChainStream(300000));
  setenv("QVX_PROGRESS_AFTER_MS", "0", 1);
  ToolResult piped = run({"dump", "--depth", "0", path("busy.qvx")});
  EXPECT_EQ(piped.status, kSuccess);
  EXPECT_EQ(piped.err, "");
  if (std::system("command -v script >/dev/null") == 0) {
    // script(1) gives the tool a terminal; what the terminal showed lands in the log.
    std::string command = "script -qec " +
                          shellQuoted(shellQuoted(QVX_TOOL_PATH) + " dump --depth 0 " + shellQuoted(path("busy.qvx")) +
                                      " >/dev/null") +
                          " " + shellQuoted(path("terminal.log")) + " >/dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_NE(readWholeFile(path("terminal.log")).find("decoding " + path("busy.qvx") + " ... "), std::string::npos);
  }
  unsetenv("QVX_PROGRESS_AFTER_MS");
}

TEST_F(QvxToolTest, DumpRejectsHostileCountsWithoutAllocatingThem) {
  StreamBytes hugeList;
  hugeList.header().marker(0x1C).i32(0x7FFFFFFF).marker(0x10);
  writeWholeFile(path("huge.qvx"), hugeList.bytes());
  ToolResult result = run({"dump", path("huge.qvx")});
  EXPECT_EQ(result.status, kFailedCheck);
  EXPECT_NE(result.err.find("byte offset"), std::string::npos) << result.err;

  StreamBytes negative;
  negative.header().marker(0x0D).i32(-5);
  writeWholeFile(path("negative.qvx"), negative.bytes());
  EXPECT_EQ(run({"dump", path("negative.qvx")}).status, kFailedCheck);
}

TEST_F(QvxToolTest, AnUnknownSeedIsAnInputError) {
  std::string file = patchedDemoStream("seed.qvx", "types.VARCHAR", "types.VARCHAX");
  expectInputError(run({"convert", file, path("seed.xml")}), "seed.qvx");
  EXPECT_EQ(run({"dump", file}).status, kSuccess);  // the stream itself is well formed
}

TEST_F(QvxToolTest, MutatedStreamsGiveAStatusAndOneLineNeverACrash) {
  std::string original = readWholeFile(demoStream());
  std::uint32_t random = 12345;
  auto next = [&random] { return random = random * 1103515245U + 12345U; };
  for (int mutant = 0; mutant < 25; ++mutant) {
    std::string bytes = original;
    for (int flips = 1 + next() % 4; flips > 0; --flips) bytes[next() % bytes.size()] = static_cast<char>(next() >> 16);
    if (mutant % 3 == 0) bytes.resize(next() % bytes.size());
    writeWholeFile(path("mutant.qvx"), bytes);
    ToolResult dump = run({"dump", path("mutant.qvx")});
    EXPECT_TRUE(dump.status == kSuccess || dump.status == kFailedCheck || dump.status == kInputError) << mutant;
    EXPECT_LE(linesOf(dump.err).size(), 1U) << mutant << ": " << dump.err;
    ToolResult convert = run({"convert", path("mutant.qvx"), path("mutant.xml")});
    EXPECT_TRUE(convert.status == kSuccess || convert.status == kInputError) << mutant << ": " << convert.err;
    EXPECT_LE(linesOf(convert.err).size(), 1U) << mutant << ": " << convert.err;
  }
}

TEST_F(QvxToolTest, ConvertRoundTripsInBothFormsDiffEqualWithTheOriginal) {
  ToolResult convert = run({"convert", demoStream(), path("copy.bin"), "--to", "binary"});
  ASSERT_EQ(convert.status, kSuccess) << convert.err;
  EXPECT_EQ(readWholeFile(path("copy.bin")), readWholeFile(demoStream()));
  ToolResult diff = run({"diff", demoStream(), path("copy.bin")});
  EXPECT_EQ(diff.status, kSuccess) << diff.err;
  EXPECT_EQ(diff.out, "");

  ASSERT_EQ(run({"convert", demoStream(), path("copy.xml")}).status, kSuccess);
  EXPECT_EQ(readWholeFile(path("copy.xml")), readWholeFile(demoDocument()));
  ToolResult back = run({"convert", path("copy.xml"), path("back.qvx")});
  ASSERT_EQ(back.status, kSuccess) << back.err;
  diff = run({"diff", path("back.qvx"), demoDocument()});
  EXPECT_EQ(diff.status, kSuccess) << diff.out << diff.err;
  EXPECT_EQ(diff.out, "");
}

TEST_F(QvxToolTest, DiffOfMixedFormsComparesValuesAsTheDocumentWritesThemUnlessExact) {
  ToolResult mixed = run({"diff", demoStream(), demoDocument()});
  EXPECT_EQ(mixed.status, kSuccess) << mixed.out << mixed.err;
  EXPECT_EQ(mixed.out, "");
  // The workload's selectivity 1/3 needs 17 digits; the document keeps 15.
  ToolResult exact = run({"diff", "--exact", demoStream(), demoDocument()});
  EXPECT_EQ(exact.status, kFailedCheck);
  std::vector<std::string> lines = linesOf(exact.out);
  EXPECT_EQ(lines.size(), 20U) << exact.out;
  for (std::string const& line : lines) EXPECT_NE(line.find("].selectivity: 0.33333333333333331 != "), std::string::npos);
}

TEST_F(QvxToolTest, DiffReportsAChangedValueByItsPath) {
  std::string changed = patchedDemoStream("changed.qvx", "col_0", "col_X");
  ToolResult diff = run({"diff", demoStream(), changed});
  EXPECT_EQ(diff.status, kFailedCheck) << diff.err;
  std::vector<std::string> lines = linesOf(diff.out);
  ASSERT_EQ(lines.size(), 1U) << diff.out;
  EXPECT_NE(lines[0].find("catalog/schemas[0]/tables[0]/columns[0].name"), std::string::npos) << lines[0];
  EXPECT_NE(lines[0].find("col_X"), std::string::npos) << lines[0];
}

TEST_F(QvxToolTest, TwoDemoRunsDifferOnlyInIdentitiesAndTheirPasswordsCompareInClear) {
  run({"demo", "--out", path("second")});
  ASSERT_FALSE(readWholeFile(path("second") + "/catalog.qvx").empty());
  std::string second = path("second") + "/catalog.qvx";
  ToolResult strict = run({"diff", demoStream(), second});
  EXPECT_EQ(strict.status, kFailedCheck);
  std::vector<std::string> lines = linesOf(strict.out);
  EXPECT_GE(lines.size(), 100U);  // at least every column has its own identity
  for (std::string const& line : lines) EXPECT_NE(line.find(": identity uuidV1:"), std::string::npos) << line;
  EXPECT_EQ(lines[0].rfind("catalog: identity ", 0), 0U) << lines[0];
  ToolResult lenient = run({"diff", "--ignore-identities", demoStream(), second});
  EXPECT_EQ(lenient.status, kSuccess) << lenient.out << lenient.err;
  EXPECT_EQ(lenient.out, "");
}

TEST_F(QvxToolTest, DescribeShowsAClassWithItsPropertiesAndAPackageWithItsClasses) {
  ToolResult table = run({"describe", "com.example.catalog.Table"});
  ASSERT_EQ(table.status, kSuccess) << table.err;
  std::vector<std::string> lines = linesOf(table.out);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0], "class com.example.catalog.Table extends com.example.catalog.NamedElement (SECOND_CLASS, identifiable)");
  EXPECT_NE(table.out.find("    4 columns : com.example.catalog.Column [0..*] containment opposite table\n"),
            std::string::npos)
      << table.out;
  EXPECT_NE(table.out.find("    2 kind : com.example.catalog.TableKind [0..1] default \"TABLE\"\n"), std::string::npos);

  ToolResult package = run({"describe", "com.example.catalog"});
  ASSERT_EQ(package.status, kSuccess) << package.err;
  EXPECT_EQ(package.out.rfind("package com.example.catalog version ", 0), 0U) << package.out;
  EXPECT_NE(package.out.find("\nenumeration com.example.catalog.TableKind\n"), std::string::npos);

  expectInputError(run({"describe", "com.example.catalog.NoSuchClass"}), "com.example.catalog.NoSuchClass");
}

TEST_F(QvxToolTest, PackagesListsTheMappedCatalogWithItsVersion) {
  ToolResult packages = run({"packages"});
  ASSERT_EQ(packages.status, kSuccess) << packages.err;
  EXPECT_TRUE(std::regex_search(packages.out, std::regex("mapped packages[^\n]*\n  com\\.example\\.catalog  version [0-9]")))
      << packages.out;
}

TEST_F(QvxToolTest, MissingEmptyAndCorruptFilesAreInputErrorsNamingTheFile) {
  writeWholeFile(path("empty.qvx"), "");
  writeWholeFile(path("garbage.qvx"), "garbage\n");
  StreamBytes badVersion;
  badVersion.marker(0x01).text("13.0.0").marker(0x10);
  writeWholeFile(path("version.qvx"), badVersion.bytes());
  writeWholeFile(path("cut.qvx"), readWholeFile(demoStream()).substr(0, 3000));
  writeWholeFile(path("broken.xml"), "<?xml version=\"1.0\"?>\n<broken");
  expectInputError(run({"convert", path("broken.xml"), path("out.qvx")}), "broken.xml");
  for (std::string const& file : {path("missing.qvx"), path("empty.qvx"), path("garbage.qvx")}) {
    expectInputError(run({"dump", file}), file);
    expectInputError(run({"convert", file, path("out.xml")}), file);
    expectInputError(run({"diff", file, demoStream()}), file);
    expectInputError(run({"diff", demoStream(), file}), file);
  }
  for (std::string const& file : {path("version.qvx"), path("cut.qvx")}) {
    ToolResult convert = run({"convert", file, path("out.xml")});
    expectInputError(convert, file);
    EXPECT_NE(convert.err.find("offset"), std::string::npos) << convert.err;
  }
}

TEST_F(QvxToolTest, UsageErrorsExitWithTwoAndOneLine) {
  expectInputError(run({"dump"}), "qvx dump FILE");
  expectInputError(run({"convert", demoStream(), path("out.txt")}), "out.txt");
  expectInputError(run({"diff", demoStream(), demoStream(), "--unknown"}), "--unknown");
  expectInputError(run({"frobnicate"}), "frobnicate");
  for (std::string command : {"demo", "dump", "convert", "diff", "packages", "describe"}) {
    ToolResult help = run({command, "--help"});
    EXPECT_EQ(help.status, kSuccess) << command;
    EXPECT_EQ(help.out.rfind("qvx " + command, 0), 0U) << help.out;
  }
}

}  // namespace
}  // namespace qvx_tool_test
