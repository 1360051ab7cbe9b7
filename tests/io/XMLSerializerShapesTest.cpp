// The XML serializer on the test package "com.example.test.shapes", loaded from its
// library: every primitive type and list in its written form, value-class objects,
// namespace prefixes that collide, ids that two objects share, and containment a
// hundred thousand levels deep.
#include <gtest/gtest.h>

#include "io/exception/IOException.h"
#include "tests/io/XmlWriteTestSupport.h"
#include "tests/support/TestPackageAccess.h"

namespace {

using namespace xml_write_test;  // NOLINT: test file
using namespace shapes_test;     // NOLINT: test file
using com::veltrana::qvx::io::exception::IOException;
using qvx_test::messageOf;

using Owned = std::unique_ptr<icore::IObject>;

// Gives a package another XML prefix for the length of a test.
class PrefixOverride {
 public:
  PrefixOverride(icore::IPackage* package, const char* prefix)
      : package_(package), saved_(package->getXMLPackageNsPrefix()) {
    package_->setXMLPackageNsPrefix(prefix);
  }
  ~PrefixOverride() { package_->setXMLPackageNsPrefix(saved_); }

 private:
  icore::IPackage* package_;
  IUString saved_;
};

// Has a property written as elements for the length of a test.
class AsElementOverride {
 public:
  AsElementOverride(icore::IProperty* property, const char* wrapper)
      : property_(property), savedWrapper_(property->getXMLPropertyElementName()) {
    property_->setXMLPropertyAsElement(ITRUE);
    property_->setXMLPropertyElementName(wrapper);
  }
  ~AsElementOverride() {
    property_->setXMLPropertyAsElement(IFALSE);
    property_->setXMLPropertyElementName(savedWrapper_);
  }

 private:
  icore::IProperty* property_;
  IUString savedWrapper_;
};

Owned drawing(const char* name, int id) {
  Owned made(make("Drawing", name));
  identify(made.get(), fixedUuid(id).c_str());
  return made;
}

TEST(XMLSerializerShapesTest, EveryPrimitiveTypeAndListIsWrittenInItsStringForm) {
  Owned picture = drawing("pic ture", 1);
  fillValues(picture.get());
  icore::IObject* caption = make("Note");
  put(caption, "text", IUString("hello"));
  refer(picture.get(), "caption", caption);
  const std::string text = serializeToText({picture.get()});
  const std::string blobId = attributeAfter(text, "data");
  EXPECT_EQ(startTag(text, "<shp:Drawing "),
            "<shp:Drawing ozl:id=\"" + fixedUuid(1) +
                "\" name=\"pic+ture\" count=\"5\" ratio=\"0.1\" data=\"" + blobId +
                "\" style=\"DOTTED\" when=\"12/31/2023:23:59:58.123\" flag=\"true\" initial=\"Q\" weight=\"2.500000\" "
                "big=\"1099511627776\" small=\"-7\" octet=\"122\" tags=\"a b\" styles=\"DASHED\" scores=\"1.25\">");
  EXPECT_EQ(startTag(text, "<caption"), "<caption xsi:type=\"shp:Note\" text=\"hello\"/>");
  EXPECT_NE(text.find("<IBlob ozl:id=\"" + blobId + "\" xsi:type=\"ozl:IBlob\">AQIDBA==</IBlob>"), std::string::npos);
}

TEST(XMLSerializerShapesTest, PropertiesWrittenAsElementsGetTheirWrapperAndOneElementPerValue) {
  Owned picture = drawing("a<b", 4);
  fillValues(picture.get());
  AsElementOverride tags(shapesProperty("Drawing", "tags"), "tagList");
  AsElementOverride name(shapesProperty("Drawing", "name"), "");
  const std::string text = serializeToText({picture.get()});
  EXPECT_EQ(attributeAfter(text, "tags"), "<none>");
  EXPECT_NE(text.find("<tagList>\n<tags>a</tags>\n<tags>b</tags>\n</tagList>"), std::string::npos) << text;
  // Without a wrapper name the value element stands in the object element itself.
  EXPECT_NE(text.find("\">\n<name>a%3Cb</name>\n"), std::string::npos) << text;
}

TEST(XMLSerializerShapesTest, PrefixesThatCollideAreNumberedInTheOrderPackagesAreMet) {
  Owned picture = drawing("p", 2);
  icore::IPackage* shapes = loadShapesPackage();
  catalog_test::useTestEncryptionKey();
  auto table = std::make_unique<com::example::catalog::Table>();
  identify(table.get(), fixedUuid(3).c_str());
  table->setName("t");
  {
    PrefixOverride reserved(shapes, "xsi");
    const std::string text = serializeToText({picture.get()});
    EXPECT_NE(text.find("<xsi1:Drawing "), std::string::npos);
    EXPECT_EQ(attributeAfter(text, "xmlns:xsi1"), "http://com.example.test.shapes/1");
    EXPECT_EQ(attributeAfter(text, "versionxsi1"), "1.0.0");
  }
  {
    PrefixOverride reserved(shapes, "ozl");
    EXPECT_NE(serializeToText({picture.get()}).find("<ozl1:Drawing "), std::string::npos);
  }
  {
    PrefixOverride same(shapes, "cat");
    std::string text = serializeToText({table.get(), picture.get()});
    EXPECT_NE(text.find("<cat:Table "), std::string::npos);
    EXPECT_NE(text.find("<cat1:Drawing "), std::string::npos);
    EXPECT_NE(text.find("xmlns:cat=\"http://com.example.catalog/1\" xmlns:cat1=\"http://com.example.test.shapes/1\" "
                        "versioncat=\"1.2.0\" versioncat1=\"1.0.0\" xsi:schemaLocation=\"http://www.veltrana.com/qvx/OZL "
                        "OZL.xsd http://com.example.catalog/1 com.example.catalog.xsd http://com.example.test.shapes/1 "
                        "com.example.test.shapes.xsd\">"),
              std::string::npos)
        << text;
    text = serializeToText({picture.get(), table.get()});
    EXPECT_NE(text.find("<cat:Drawing "), std::string::npos);
    EXPECT_NE(text.find("<cat1:Table "), std::string::npos);
  }
  {
    PrefixOverride none(shapes, "");
    EXPECT_NE(serializeToText({picture.get()}).find("<shapes:Drawing "), std::string::npos);
  }
}

TEST(XMLSerializerShapesTest, TwoObjectsUnderOneIdFailTheWrite) {
  Owned first = drawing("a", 7);
  Owned second = drawing("b", 7);
  refer(first.get(), "partner", second.get());
  StringOutputStream out;
  com::veltrana::qvx::io::XMLSerializer serializer(&out, nullptr);
  EXPECT_EQ(messageOf<IOException>([&] { serializer.serialize(listOf({first.get()})); }).toUtf8(),
            msg(77011, fixedUuid(7)));
  EXPECT_EQ(out.text, "");
  // The serializer stays usable: what the failed walk began belongs to no document.
  Owned third = drawing("c", 8);
  serializer.serialize(listOf({third.get()}));
  EXPECT_EQ(countOf(out.text, "<shp:Drawing "), 1U);
  EXPECT_EQ(startTag(out.text, "<shp:Drawing ").find("<shp:Drawing ozl:id=\"" + fixedUuid(8) + "\" name=\"c\""), 0U);
  EXPECT_EQ(out.text.substr(out.text.size() - 14), "/>\n</ozl:OZL>\n");
}

TEST(XMLSerializerShapesTest, ContainmentAHundredThousandLevelsDeepIsWrittenWithoutRecursion) {
  constexpr int kDepth = 100000;
  Owned top(make("Drawing", "level"));
  icore::IObject* innermost = top.get();
  for (int level = 1; level < kDepth; ++level) innermost = adopt(innermost, "layers", make("Drawing", "level"));
  put(innermost, "count", 42);
  const std::string text = serializeToText({top.get()});
  EXPECT_EQ(countOf(text, "<Drawing "), static_cast<std::size_t>(kDepth - 1));
  EXPECT_EQ(countOf(text, "</layers>"), static_cast<std::size_t>(kDepth - 1));
  EXPECT_NE(text.find("count=\"42\""), std::string::npos);
  // Every level got an identity of its own on the way, and its container's as owner.
  EXPECT_EQ(countOf(text, "ozl:id=\"uuidV1:"), static_cast<std::size_t>(kDepth));
  EXPECT_EQ(countOf(text, " owner=\"uuidV1:"), static_cast<std::size_t>(kDepth - 1));
}

}  // namespace
