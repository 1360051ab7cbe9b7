// Reading XML interchange documents of the test package: every kind of property,
// references in any order, proxies, blobs, value-class and boxed objects, annotations,
// the version checks and the reader's options. Documents are written by hand.
#include "io/XMLDeserializer.h"

#include <gtest/gtest.h>

#include "icore/IIdentity.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/primitives/IString.h"
#include "tests/io/XMLDocumentSupport.h"

namespace {

using namespace xml_test;  // NOLINT: test file
using icore::IObject;
using icore::qvxFormatMsg;
using icore::qvxGetMsg;
using shapes_test::itemsOf;
using shapes_test::objectOf;
using shapes_test::valueOf;

std::string identityOf(IObject* object) {
  return icore::QVXRuntime::getInstance()->identityToString(shapes_test::infoOf(object)->getIdentity()).toUtf8();
}

const std::string kStencil =
    "<shp:Stencil ozl:id=\"smd:x.y:S.st\" name=\"st\">\n"
    "  <shapes>\n"
    "    <Shape ozl:id=\"smd:x.y:S.sq\" xsi:type=\"shp:Shape\" name=\"sq\" sides=\"4\" filled=\"true\" outline=\"DASHED\"/>\n"
    "    <Shape ozl:id=\"smd:x.y:S.c\" xsi:type=\"shp:Circle\" name=\"c\" sides=\"0\" filled=\"false\" "
    "outline=\"SOLID\" radius=\"3\"/>\n"
    "  </shapes>\n"
    "</shp:Stencil>\n";

// A drawing that refers forward and backward, contains a drawing and a note, and has a
// value in every primitive property; the stencil with its shapes comes after it.
const std::string kDrawings =
    "<shp:Drawing ozl:id=\"stringIdentity:d1\" name=\"first+drawing\" count=\"5\" ratio=\"0.1\" style=\"DOTTED\" "
    "when=\"12/31/2023:23:59:58.123\" flag=\"true\" initial=\"Q\" weight=\"2.5\" big=\"1099511627776\" small=\"-7\" "
    "octet=\"122\" tags=\"a b%2Bc * %C3%A9\" styles=\"DASHED SOLID\" scores=\"1.25 -2\" "
    "uses=\"smd:x.y:S.c smd:x.y:S.sq\" background=\"smd:x.y:S.sq\" partner=\"stringIdentity:d2\" "
    "links=\"stringIdentity:d2 stringIdentity:d1\" data=\"ID_7\">\n"
    "  <layers>\n"
    "    <Drawing ozl:id=\"stringIdentity:d2\" xsi:type=\"shp:Drawing\" name=\"inner\" count=\"0\" ratio=\"0\" "
    "flag=\"false\" initial=\"*\" weight=\"0\" big=\"0\" small=\"0\" octet=\"0\"/>\n"
    "  </layers>\n"
    "  <caption xsi:type=\"shp:Note\" text=\"hello+world\"/>\n"
    "  <ozl:annotations><shp:Drawing ozl:id=\"stringIdentity:ignored\"/><anything/></ozl:annotations>\n"
    "</shp:Drawing>\n" +
    kStencil + "<ozl:IBlobs>\n  <IBlob ozl:id=\"ID_7\" xsi:type=\"ozl:IBlob\">AQIDBA==</IBlob>\n</ozl:IBlobs>\n";

TEST(XMLDeserializerTest, EveryKindOfPropertyIsReadAndReferencesResolveInAnyOrder) {
  const int liveBefore = shapes_test::shapesLiveObjectCount();
  {
    Read result;
    read(result, document(kDrawings));
    ASSERT_EQ(result.objects->size(), 2u);
    IObject* drawing = result[0];
    IObject* stencil = result[1];
    EXPECT_EQ(identityOf(drawing), "stringIdentity:d1");
    EXPECT_EQ(identityOf(stencil), "smd:x.y:S.st");
    EXPECT_EQ(valueOf<IUString>(drawing, "name"), IUString("first drawing"));
    EXPECT_EQ(valueOf<std::int32_t>(drawing, "count"), 5);
    EXPECT_DOUBLE_EQ(valueOf<double>(drawing, "ratio"), 0.1);
    EXPECT_EQ(objectOf(drawing, "style"), static_cast<IObject*>(shapes_test::lineStyle(2)));
    EXPECT_EQ(valueOf<WkDate>(drawing, "when").getYear(), 2023);
    EXPECT_EQ(valueOf<IBOOLEAN>(drawing, "flag"), ITRUE);
    EXPECT_EQ(valueOf<char16_t>(drawing, "initial"), u'Q');
    EXPECT_FLOAT_EQ(valueOf<float>(drawing, "weight"), 2.5f);
    EXPECT_EQ(valueOf<std::int64_t>(drawing, "big"), std::int64_t{1} << 40);
    EXPECT_EQ(valueOf<std::int16_t>(drawing, "small"), -7);
    EXPECT_EQ(valueOf<char>(drawing, "octet"), 'z');
    std::string tags;
    for (IUString* tag : itemsOf<IUString>(drawing, "tags")) tags += "[" + tag->toUtf8() + "]";
    EXPECT_EQ(tags, "[a][b+c][][\xC3\xA9]");
    ASSERT_EQ(itemsOf<icore::IEnumerationLiteral>(drawing, "styles").size(), 2u);
    EXPECT_EQ(itemsOf<icore::IEnumerationLiteral>(drawing, "styles")[1], shapes_test::lineStyle(0));
    ASSERT_EQ(itemsOf<double>(drawing, "scores").size(), 2u);
    EXPECT_EQ(*itemsOf<double>(drawing, "scores")[1], -2.0);
    unsigned int length = 0;
    auto const* bytes = static_cast<const char*>(
        shapes_test::infoOf(drawing)->get(shapes_test::propertyOf(drawing, "data"), &length, IFALSE));
    ASSERT_EQ(length, 4u);
    EXPECT_EQ(std::string(bytes, 4), std::string("\x01\x02\x03\x04", 4));

    // Containment: the inner drawing and the note belong to the drawing.
    IObject* inner = itemsOf<IObject>(drawing, "layers")[0];
    EXPECT_EQ(identityOf(inner), "stringIdentity:d2");
    EXPECT_EQ(shapes_test::infoOf(inner)->getContainer(), drawing);
    EXPECT_EQ(valueOf<char16_t>(inner, "initial"), u'\0');
    IObject* caption = objectOf(drawing, "caption");
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(valueOf<IUString>(caption, "text"), IUString("hello world"));
    EXPECT_EQ(shapes_test::infoOf(caption)->getContainer(), drawing);

    // References, forward and backward, keep their order.
    IObject* square = itemsOf<IObject>(stencil, "shapes")[0];
    IObject* circle = itemsOf<IObject>(stencil, "shapes")[1];
    EXPECT_EQ(shapes_test::infoOf(circle)->getIClass()->getName(), IUString("Circle"));
    EXPECT_EQ(valueOf<std::int32_t>(circle, "radius"), 3);
    ASSERT_EQ(itemsOf<IObject>(drawing, "uses").size(), 2u);
    EXPECT_EQ(itemsOf<IObject>(drawing, "uses")[0], circle);
    EXPECT_EQ(itemsOf<IObject>(drawing, "uses")[1], square);
    EXPECT_EQ(objectOf(drawing, "background"), square);
    EXPECT_EQ(objectOf(drawing, "partner"), inner);
    ASSERT_EQ(itemsOf<IObject>(drawing, "links").size(), 2u);
    EXPECT_EQ(itemsOf<IObject>(drawing, "links")[1], drawing);
    EXPECT_TRUE(result.unreturned.empty());
  }
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore) << "the read objects were not all freed";
}

TEST(XMLDeserializerTest, MissingTargetsBecomeProxiesOrFailTheReadWhenAsked) {
  const std::string text = document(
      "<shp:Drawing ozl:id=\"stringIdentity:d1\" name=\"d\" partner=\"stringIdentity:far\" "
      "links=\"stringIdentity:far stringIdentity:d1 uuidV1:6ba7b810-9dad-11d1-80b4-00c04fd430c8\">\n"
      "  <layers><Drawing ozl:idref=\"ID_9\" xsi:type=\"shp:Drawing\"/>"
      "<Drawing ozl:idref=\"stringIdentity:gone\" xsi:type=\"shp:Drawing\"/></layers>\n"
      "</shp:Drawing>\n"
      "<ozl:proxies><proxy ozl:id=\"ID_9\" objectId=\"stringIdentity:held\" type=\"shp:Drawing\" "
      "xsi:type=\"ozl:proxy\"/></ozl:proxies>\n");
  const int liveBefore = shapes_test::shapesLiveObjectCount();
  {
    Read result;
    read(result, text);
    ASSERT_EQ(result.objects->size(), 1u);
    IObject* drawing = result[0];
    IObject* far = objectOf(drawing, "partner");
    ASSERT_NE(far, nullptr);
    EXPECT_EQ(shapes_test::infoOf(far)->isProxy(), ITRUE);
    EXPECT_EQ(identityOf(far), "stringIdentity:far");
    auto& links = itemsOf<IObject>(drawing, "links");
    ASSERT_EQ(links.size(), 3u);
    EXPECT_EQ(links[0], far) << "two references to one missing id share one proxy";
    EXPECT_EQ(identityOf(links[2]), "uuidV1:6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    // The contained proxy from the proxies section, and a contained one made for a
    // missing id; both belong to the drawing, in document order.
    auto& layers = itemsOf<IObject>(drawing, "layers");
    ASSERT_EQ(layers.size(), 2u);
    EXPECT_EQ(identityOf(layers[0]), "stringIdentity:held");
    EXPECT_EQ(identityOf(layers[1]), "stringIdentity:gone");
    EXPECT_EQ(shapes_test::infoOf(layers[0])->getContainer(), drawing);
    ASSERT_EQ(result.unreturned.size(), 2u) << "the uncontained proxies go to the caller";
  }
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore);
  const IUString message = failureOf<IOException>(text, XMLDeserializer::FAIL_ON_UNRESOLVED_REFERENCES);
  EXPECT_EQ(message.toUtf8(), qvxFormatMsg(78052, IUString("partner"), IUString("stringIdentity:d1"),
                                           IUString("stringIdentity:far")).toUtf8());
  EXPECT_EQ(shapes_test::shapesLiveObjectCount(), liveBefore) << "a failed read left objects behind";
}

TEST(XMLDeserializerTest, PackageAndFormatVersionsAreChecked) {
  const std::string body = "<shp:Drawing ozl:id=\"stringIdentity:d1\" name=\"d\"/>\n";
  Read minorNewer;
  read(minorNewer, document(body, rootOpen("14.0", "1.7")));
  EXPECT_EQ(minorNewer.objects->size(), 1u) << "a minor version difference is accepted";
  EXPECT_EQ(failureOf<IOException>(document(body, rootOpen("14.0", "2.0.0"))),
            qvxFormatMsg(78056, IUString("com.example.test.shapes"), IUString("2.0.0"), IUString("1.0.0")));
  EXPECT_EQ(failureOf<IOException>(document(body, rootOpen("14.0", "7"))),
            qvxFormatMsg(78056, IUString("com.example.test.shapes"), IUString("7"), IUString("1.0.0")));
  Read undeclared;
  read(undeclared, document(body, rootOpen("14.0", nullptr)));
  EXPECT_EQ(undeclared.objects->size(), 1u) << "a package without a declared version is read";

  const IUString wrongFormat = qvxFormatMsg(78050, IUString("13.0"), IUString("14.0"));
  EXPECT_EQ(failureOf<IOException>(document(body, rootOpen("13.0"))), wrongFormat);
  Read ignored;
  read(ignored, document(body, rootOpen("13.0")), XMLDeserializer::IGNORE_SERIALIZER_VERSION_VALIDATION);
  EXPECT_EQ(ignored.objects->size(), 1u);
  EXPECT_EQ(failureOf<SerializationException>(document(body, rootOpen(nullptr))), qvxGetMsg(78049));
  EXPECT_EQ(failureOf<SerializationException>(
                document(body, "<ozl:OZL xmlns:=\"x\" serializationSpecVersion=\"14.0\" xmlns:shp=\"http://com.example.test.shapes/1\">")),
            qvxGetMsg(78048));
  const IUString unloadable = qvxFormatMsg(78044, IUString("nowhere"), IUString(""));
  EXPECT_TRUE(failureOf<IOException>(document("<nowhere:Thing ozl:id=\"stringIdentity:t\"/>")).startsWith(unloadable));
}

TEST(XMLDeserializerTest, ObjectsWithoutIdentityAreReadButNotReturned) {
  const std::string text = document(
      "<shp:Note text=\"loose\"/>\n"
      "<primitives:IString xsi:type=\"primitives:IString\" value=\"boxed+text\"/>\n"
      "<primitives:IDate xsi:type=\"primitives:IDate\" value=\"01/31/2024:13:45:07.250\"/>\n"
      "<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"d\"/>\n");
  Read result;
  read(result, text);
  ASSERT_EQ(result.objects->size(), 1u);
  ASSERT_EQ(result.unreturned.size(), 3u);
  EXPECT_EQ(valueOf<IUString>(result.unreturned[0], "text"), IUString("loose"));
  auto* boxed = static_cast<icore::primitives::IString*>(result.unreturned[1]);
  EXPECT_EQ(boxed->getValue(), IUString("boxed text"));
  EXPECT_TRUE(XMLDeserializer::isBoxedPrimitiveType("primitives:IBlob"));
  EXPECT_FALSE(XMLDeserializer::isBoxedPrimitiveType("primitives:IObject"));
  EXPECT_FALSE(XMLDeserializer::isBoxedPrimitiveType("primitive:IString"));
}

TEST(XMLDeserializerTest, OptionsAreNamedInTheLogAndAMissingStreamIsRefused) {
  shapes_test::loadShapesPackage();
  RecordingLogger logger;
  std::istringstream input(document("<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"d\"/>\n"));
  XMLDeserializer reader(&input, &logger);
  EXPECT_EQ(reader.getLogger(), &logger);
  IVector<IObject*>* objects = reader.deserialize(XMLDeserializer::FAIL_ON_UNRESOLVED_REFERENCES |
                                                  XMLDeserializer::EXCLUDE_CONTAINED_OBJECTS);
  XMLDeserializer::destroyDeserializedObjects(objects);
  EXPECT_EQ(objects, nullptr);
  const std::string options =
      qvxFormatMsg(78001, IUString("FAIL_ON_UNRESOLVED_REFERENCES EXCLUDE_CONTAINED_OBJECTS ")).toUtf8();
  EXPECT_TRUE(logger.mentions(options));
  EXPECT_TRUE(logger.mentions(qvxFormatMsg(78016, IUString("stringIdentity:d")).toUtf8()));
  EXPECT_EQ(qvx_test::messageOf<IOException>([] { XMLDeserializer none(nullptr, nullptr); }), qvxGetMsg(77000));
}

TEST(XMLDeserializerTest, PropertiesWrittenAsElementsAndRedefinedPropertiesAreRead) {
  loadCatalogPackage();
  const auto schema = [](const std::string& description) {
    return catalogDocument(
        "<cat:Schema ozl:id=\"stringIdentity:s\" name=\"s\"><tables>"
        "<Table ozl:id=\"stringIdentity:v\" xsi:type=\"cat:View\" name=\"v\" kind=\"EXTERNAL\">"
        "<documentation><description>" + description + "</description></documentation>"
        "</Table></tables></cat:Schema>\n");
  };
  Read result;
  read(result, schema("A+view%2C+described"));
  ASSERT_EQ(result.objects->size(), 1u);
  icore::IObject* view = itemsOf<IObject>(result[0], "tables")[0];
  icore::IObjectInfo* info = shapes_test::infoOf(view);
  icore::IClass const* viewClass = info->getIClass();
  EXPECT_EQ(*static_cast<IUString const*>(info->get(*viewClass->getProperty("description"), ITRUE)),
            IUString("A view, described"));
  // "kind" names the view's own property, which redefines the table's.
  icore::IProperty const* kind = viewClass->getAllProperties(IFALSE)[viewClass->getAllProperties(IFALSE).size() - 1];
  ASSERT_EQ(kind->getName(), IUString("kind"));
  auto const* literal = static_cast<icore::IEnumerationLiteral const*>(info->get(*kind, IFALSE));
  ASSERT_NE(literal, nullptr);
  EXPECT_EQ(literal->getName(), IUString("EXTERNAL"));
  EXPECT_EQ(failureOf<SerializationException>(schema("bad%Zescape")),
            qvxFormatMsg(78047, IUString("description"), IUString("bad%Zescape")));
}

}  // namespace
