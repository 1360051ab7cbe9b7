// The writing side of the XML utility layer: building a tree through TXMLNode and
// writing it with TXMLGenerate. Escaping, attribute order, layout, chunked output,
// nesting deeper than any recursion could go, and failing streams.
#include <gtest/gtest.h>

#include <string>

#include "tests/io/XmlWriteTestSupport.h"
#include "utils/TXMLGenerate.h"
#include "utils/TXMLNode.h"

namespace {

using com::veltrana::qvx::utils::TXMLGenerate;
using com::veltrana::qvx::utils::TXMLName;
using com::veltrana::qvx::utils::TXMLNode;
using xml_write_test::FailingOutputStream;
using xml_write_test::StringOutputStream;

std::string output(const TXMLGenerate& document) {
  StringOutputStream out;
  EXPECT_EQ(document.outputXMLFile(out), 0);
  return out.text;
}

TEST(TXMLGenerateTest, AttributesKeepTheOrderInWhichTheyWereFirstSet) {
  TXMLGenerate document;
  TXMLNode root = document.addRootNode("r");
  root.setAttribute("zeta", "1");
  root.setAttribute("alpha", "2");
  root.setAttribute("mid", "3");
  root.setAttribute("zeta", "4");  // keeps its place, takes the new value
  EXPECT_EQ(output(document), "<r zeta=\"4\" alpha=\"2\" mid=\"3\"/>\n");
  EXPECT_EQ(root.getAttribute("zeta"), "4");
  EXPECT_EQ(root.getAttribute("none").data(), nullptr);
  root.setAttribute("empty", "");
  EXPECT_NE(root.getAttribute("empty").data(), nullptr);  // empty, but set
}

TEST(TXMLGenerateTest, MarkupCharactersAreEscapedInAttributesAndText) {
  TXMLGenerate document;
  TXMLNode root = document.addRootNode("r");
  root.setAttribute("a", "x&y<z>\"q'\t\n\r\x01" "end");
  root.addChild("t").setNodeValue("1 < 2 & 3 > 2 \"ok\"\tline\nnext\r\x1f" "\xc3\xa9");
  EXPECT_EQ(output(document),
            "<r a=\"x&amp;y&lt;z&gt;&quot;q'&#x09;&#x0A;&#x0D;&#x01;end\">\n"
            "<t>1 &lt; 2 &amp; 3 &gt; 2 \"ok\"\tline\nnext&#x0D;&#x1F;\xc3\xa9</t>\n</r>\n");
}

TEST(TXMLGenerateTest, ElementsNestOneToALineWithTextBeforeChildren) {
  TXMLGenerate document;
  TXMLNode root = document.addRootNode("ns:root");
  TXMLNode first = root.addChild("first");
  first.setNodeValue("text");
  first.addChild("inner");
  root.addChild("second").addChild("deeper").setNodeValue("v");
  root.addChild("third");
  EXPECT_EQ(output(document),
            "<ns:root>\n<first>text\n<inner/>\n</first>\n<second>\n<deeper>v</deeper>\n</second>\n<third/>\n</ns:root>\n");
  EXPECT_EQ(root.getFirstChild().getNextSibling().getFirstChild().getNodeValue(), "v");
  EXPECT_EQ(first.getFirstChild().getParent().getNodeName(), "first");
}

TEST(TXMLGenerateTest, NamesAreInternedOncePerDocument) {
  TXMLGenerate document;
  TXMLName name = document.internName("item");
  EXPECT_EQ(document.internName(std::string("it") + "em"), name);
  EXPECT_NE(document.internName("items"), name);
  TXMLNode root = document.addRootNode("r");
  root.addChild(name);
  root.addChild("item");
  EXPECT_EQ(output(document), "<r>\n<item/>\n<item/>\n</r>\n");
}

TEST(TXMLGenerateTest, AChainOfTwoHundredThousandElementsIsWrittenWithoutRecursion) {
  constexpr int kDepth = 200000;
  TXMLGenerate document;
  TXMLName name = document.internName("n");
  TXMLNode node = document.addRootNode("n");
  for (int i = 1; i < kDepth; ++i) node = node.addChild(name);
  node.setNodeValue("leaf");
  const std::string text = output(document);
  EXPECT_EQ(xml_write_test::countOf(text, "<n>"), static_cast<std::size_t>(kDepth));
  EXPECT_EQ(xml_write_test::countOf(text, "</n>"), static_cast<std::size_t>(kDepth));
  EXPECT_NE(text.find("<n>leaf</n>\n</n>\n"), std::string::npos);
}

TEST(TXMLGenerateTest, OutputReachesTheStreamInLargeChunksAndIsFlushed) {
  TXMLGenerate document;
  TXMLNode root = document.addRootNode("r");
  for (int i = 0; i < 20000; ++i) root.addChild("e").setAttribute("v", std::to_string(i));
  const std::string big(100000, 'b');  // larger than the writer's buffer: goes out whole
  root.addChild("big").setNodeValue(big);
  StringOutputStream out;
  ASSERT_EQ(document.outputXMLFile(out), 0);
  EXPECT_NE(out.text.find("<e v=\"19999\"/>\n<big>" + big + "</big>"), std::string::npos);
  EXPECT_GT(out.text.size(), 300000U);
  EXPECT_LE(out.writes, static_cast<int>(out.text.size() / (16 * 1024)) + 2);
  EXPECT_EQ(out.flushes, 1);
}

TEST(TXMLGenerateTest, AFailingStreamOrAMissingRootIsReportedAsNonZero) {
  TXMLGenerate document;
  StringOutputStream out;
  EXPECT_NE(document.outputXMLFile(out), 0);
  EXPECT_TRUE(document.getRootNode().isNull());
  document.addRootNode("r").setNodeValue("x");
  FailingOutputStream failing;
  EXPECT_NE(document.outputXMLFile(failing), 0);
  // The document is intact and can still be written elsewhere.
  EXPECT_EQ(output(document), "<r>x</r>\n");
}

TEST(TXMLGenerateTest, ANewTreeStartsEmptyAndReusesNothingOfTheOld) {
  TXMLGenerate document;
  document.addRootNode("old").setAttribute("a", "1");
  const std::size_t used = document.getMemoryBytes();
  EXPECT_GT(used, 0U);
  document.createNewDOMTree();
  EXPECT_TRUE(document.getRootNode().isNull());
  document.addRootNode("new");
  EXPECT_EQ(output(document), "<new/>\n");
  // A second root replaces the first as the document.
  document.addRootNode("newer").addChild("c");
  EXPECT_EQ(output(document), "<newer>\n<c/>\n</newer>\n");
}

TEST(TXMLGenerateTest, TreeMemoryGrowsWithTheContentNotPerAllocation) {
  TXMLGenerate document;
  TXMLNode root = document.addRootNode("r");
  constexpr int kElements = 50000;
  for (int i = 0; i < kElements; ++i) {
    TXMLNode element = root.addChild("element");
    element.setAttribute("id", "uuidV1:00000000-0000-1000-8000-000000000001");
    element.setAttribute("name", "col_1");
  }
  const std::size_t written = output(document).size();
  // Records and values live in 64 KB pages with no per-allocation overhead: even for
  // elements this small (73 bytes of text each) the tree stays near twice the text.
  EXPECT_LT(document.getMemoryBytes(), written * 5 / 2);
}

}  // namespace
