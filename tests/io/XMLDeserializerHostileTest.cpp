// Malformed and hostile documents: each fails with the exception and message that
// names the fault, and no object of a failed read is left behind. Deep containment is
// read without recursion.
#include <gtest/gtest.h>

#include <string>

#include "icore/QVXMsgCatalog.h"
#include "tests/io/XMLDocumentSupport.h"

namespace {

using namespace xml_test;  // NOLINT: test file
using icore::qvxFormatMsg;
using icore::qvxGetMsg;

const std::string kShape =
    "<shp:Stencil ozl:id=\"smd:x:S.st\" name=\"st\"><shapes>"
    "<Shape ozl:id=\"smd:x:S.sq\" xsi:type=\"shp:Shape\" name=\"sq\" sides=\"4\" filled=\"true\" outline=\"SOLID\"/>"
    "</shapes></shp:Stencil>\n";

std::string drawing(const std::string& attributes, const std::string& content = "") {
  return "<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"d\" " + attributes + ">" + content + "</shp:Drawing>\n";
}

TEST(XMLDeserializerHostileTest, BadContentFailsWithTheMessageThatNamesIt) {
  shapes_test::loadShapesPackage();
  const struct {
    std::string body;
    IUString message;
  } cases[] = {
      {"<shp:Unknown/>\n", qvxFormatMsg(78013, IUString("shp:Unknown"))},
      {drawing("", "<nonsense/>"), qvxFormatMsg(78013, IUString("nonsense"))},
      {drawing("colour=\"red\""), qvxFormatMsg(78058, IUString("colour"), IUString("com.example.test.shapes.Drawing"))},
      {drawing("tags=\"ok %G1\""),
       qvxFormatMsg(78065, IUString("%G1"), IUString("tags"), IUString("com.example.test.shapes.Drawing"))},
      {drawing("tags=\"cut%4\""),
       qvxFormatMsg(78065, IUString("cut%4"), IUString("tags"), IUString("com.example.test.shapes.Drawing"))},
      {drawing("style=\"PLAID\""),
       qvxFormatMsg(78065, IUString("PLAID"), IUString("style"), IUString("com.example.test.shapes.Drawing"))},
      {drawing("data=\"ID_404\""), qvxFormatMsg(78072, IUString("ID_404"), IUString("data"))},
      {drawing("") + "<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"twin\"/>\n",
       qvxFormatMsg(78068, IUString("stringIdentity:d"))},
      // A drawing where a shape belongs.
      {drawing("background=\"stringIdentity:d\""),
       qvxFormatMsg(78070, IUString("background"), IUString("com.example.test.shapes.Drawing"),
                    IUString("stringIdentity:d"), IUString("com.example.test.shapes.Drawing"))},
      // An object contained twice, and an object that would contain itself.
      {drawing("", "<layers><Drawing ozl:id=\"stringIdentity:e\" xsi:type=\"shp:Drawing\" name=\"e\"/>"
                   "<Drawing ozl:idref=\"stringIdentity:e\" xsi:type=\"shp:Drawing\"/></layers>"),
       qvxFormatMsg(78071, IUString("stringIdentity:e"), IUString("layers"))},
      {drawing("", "<layers><Drawing ozl:idref=\"stringIdentity:d\" xsi:type=\"shp:Drawing\"/></layers>"),
       qvxFormatMsg(78071, IUString("stringIdentity:d"), IUString("layers"))},
      {drawing("", "<caption xsi:type=\"shp:Note\" text=\"a\"/><caption xsi:type=\"shp:Note\" text=\"b\"/>"),
       qvxFormatMsg(78071, IUString("com.example.test.shapes.Note"), IUString("caption"))},
      {drawing("layers=\"stringIdentity:d\""),
       qvxFormatMsg(78074, IUString("layers"), IUString("com.example.test.shapes.Drawing"))},
      {"<shp:Drawing ozl:id=\"stringIdentity:d\" xsi:type=\"shp:Nothing\"/>\n",
       qvxFormatMsg(78069, IUString("shp:Nothing"), IUString("shp:Drawing"))},
      {"<shp:Drawing ozl:id=\"nosuch:prefix\" name=\"d\"/>\n", qvxFormatMsg(74001, IUString("nosuch"))},
  };
  const int liveBefore = shapes_test::shapesLiveObjectCount();
  for (const auto& entry : cases) {
    // Objects before the fault are created (and must be freed) in every case.
    EXPECT_EQ(failureOf<SerializationException>(document(kShape + entry.body)), entry.message) << entry.body;
    EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore) << entry.body;
  }
}

TEST(XMLDeserializerHostileTest, MalformedXmlIsAParseErrorWithItsPosition) {
  shapes_test::loadShapesPackage();
  const int liveBefore = shapes_test::shapesLiveObjectCount();
  const std::string whole = document(kShape + drawing("count=\"3\""));
  const std::string broken[] = {
      whole.substr(0, whole.size() / 2),                       // truncated
      document(kShape + "<shp:Drawing ozl:id=\"a\" name=\"x\">"),  // unclosed element
      document(kShape + "<shp:Drawing ozl:id=\"a\" name=\"x\" name=\"y\"/>"),
      document(kShape + "<shp:Drawing ozl:id=\"a\" name=\"&bogus;\"/>"),
      document(kShape + "<shp:Drawing ozl:id=\"a\" name=\"<\"/>"),
      "",
      "not xml at all",
      std::string("<?xml version=\"1.0\"?><ozl:OZL>\xff\xfe</ozl:OZL>"),
  };
  for (const std::string& text : broken) {
    const IUString message = failureOf<SerializationException>(text);
    EXPECT_NE(message.find(IUString("line ")), IUString::npos) << message.toUtf8();
    EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore) << text;
  }
}

TEST(XMLDeserializerHostileTest, MalformedValuesOfLenientTypesReadAsFarAsTheyAreNumbers) {
  Read result;
  read(result, document(drawing("count=\"12abc\" ratio=\"x\" big=\"-\" small=\"99999999\" flag=\"TRUE\" "
                                "octet=\"300\" scores=\"1.5 oops\"")));
  ASSERT_EQ(result.objects->size(), 1u);
  EXPECT_EQ(shapes_test::valueOf<std::int32_t>(result[0], "count"), 12);
  EXPECT_EQ(shapes_test::valueOf<double>(result[0], "ratio"), 0.0);
  EXPECT_EQ(shapes_test::valueOf<std::int64_t>(result[0], "big"), 0);
  EXPECT_EQ(shapes_test::valueOf<IBOOLEAN>(result[0], "flag"), ITRUE);
  EXPECT_EQ(shapes_test::valueOf<char>(result[0], "octet"), static_cast<char>(300 & 0xff));
  EXPECT_EQ(shapes_test::itemsOf<double>(result[0], "scores").size(), 2u);
}

// Drawings nested `depth` levels deep through their "layers".
std::string nestedDrawings(int depth) {
  std::string text;
  text.reserve(static_cast<std::size_t>(depth) * 110);
  text += "<shp:Drawing ozl:id=\"stringIdentity:n0\" name=\"n\">";
  for (int level = 1; level < depth; ++level) {
    text += "<layers><Drawing ozl:id=\"stringIdentity:n" + std::to_string(level) +
            "\" xsi:type=\"shp:Drawing\" name=\"n\">";
  }
  for (int level = 1; level < depth; ++level) text += "</Drawing></layers>";
  return text + "</shp:Drawing>\n";
}

TEST(XMLDeserializerHostileTest, ContainmentAHundredThousandLevelsDeepIsRead) {
  constexpr int kDepth = 100000;
  const int liveBefore = shapes_test::shapesLiveObjectCount();
  {
    Read result;
    read(result, document(nestedDrawings(kDepth)));
    ASSERT_EQ(result.objects->size(), 1u);
    EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore + kDepth);
    icore::IObject* deepest = result[0];
    int depth = 1;
    while (!shapes_test::itemsOf<icore::IObject>(deepest, "layers").isEmpty()) {
      deepest = shapes_test::itemsOf<icore::IObject>(deepest, "layers")[0];
      ++depth;
    }
    EXPECT_EQ(depth, kDepth);
  }
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore);
  // A failure at the bottom frees the whole chain.
  std::string broken = nestedDrawings(kDepth);
  broken.insert(broken.find("</Drawing>"), "<nonsense/>");
  EXPECT_EQ(failureOf<SerializationException>(document(broken)), qvxFormatMsg(78013, IUString("nonsense")));
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore);
}

}  // namespace
