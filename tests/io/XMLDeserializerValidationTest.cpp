// Validation against the schemas that a document's xsi:schemaLocation names: those the
// resource resolver finds are used, the others are skipped with a warning, and with the
// validation switch off no schema is read at all. The schemas are small ones of the
// tests (tests/data/xml).
#include <gtest/gtest.h>

#include "icore/QVXMsgCatalog.h"
#include "io/ResourceResolver.h"
#include "io/SerializationUtils.h"
#include "tests/io/XMLDocumentSupport.h"

namespace {

using namespace xml_test;  // NOLINT: test file
using io::ResourceResolver;
using io::SerializationUtils;

IUString testSchemas(IUString const&) { return IUString(QVX_TEST_DATA_DIR "/xml"); }

std::string rootNaming(const char* shapesSchema) {
  return std::string(
             "<ozl:OZL xmlns:ozl=\"http://www.veltrana.com/qvx/OZL\" "
             "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" serializationSpecVersion=\"14.0\" "
             "xmlns:shp=\"http://com.example.test.shapes/1\" versionshp=\"1.0.0\" "
             "xsi:schemaLocation=\"http://www.veltrana.com/qvx/OZL OZL.xsd http://com.example.test.shapes/1 ") +
         shapesSchema + "\">\n";
}

std::string drawingCounting(const char* count) {
  return std::string("<shp:Drawing ozl:id=\"stringIdentity:d\" name=\"a+b\" count=\"") + count +
         "\"><layers><Drawing ozl:id=\"stringIdentity:e\" xsi:type=\"shp:Drawing\" name=\"e\"/></layers>"
         "</shp:Drawing>\n";
}

// Points the resource resolver at the test schemas and restores resolver and switch.
class XMLDeserializerValidationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ResourceResolver::registerQVXResourceResolver(&testSchemas);
    SerializationUtils::setValidation(ITRUE);
  }
  void TearDown() override {
    ResourceResolver::registerQVXResourceResolver(previousResolver_);
    SerializationUtils::setValidation(previousValidation_);
  }

 private:
  ResourceResolver::Resolver previousResolver_ = ResourceResolver::getQVXResourceResolver();
  IBOOLEAN previousValidation_ = SerializationUtils::getValidation();
};

TEST_F(XMLDeserializerValidationTest, FoundSchemasValidateAndAValidDocumentReadsAsWithout) {
  Read valid;
  read(valid, document(drawingCounting("12"), rootNaming("test-shapes.xsd")));
  ASSERT_EQ(valid.objects->size(), 1u);
  EXPECT_EQ(shapes_test::valueOf<std::int32_t>(valid[0], "count"), 12);
  EXPECT_EQ(shapes_test::valueOf<IUString>(valid[0], "name"), IUString("a b"));
  EXPECT_EQ(shapes_test::itemsOf<icore::IObject>(valid[0], "layers").size(), 1u);

  const IUString invalid = failureOf<SerializationException>(document(drawingCounting("many"), rootNaming("test-shapes.xsd")));
  EXPECT_NE(invalid.find(IUString("many")), IUString::npos) << invalid.toUtf8();
}

TEST_F(XMLDeserializerValidationTest, ASchemaNotFoundIsSkippedWithAWarning) {
  RecordingLogger logger;
  Read result;
  read(result, document(drawingCounting("many"), rootNaming("absent-shapes.xsd")), 0, &logger);
  ASSERT_EQ(result.objects->size(), 1u);
  EXPECT_EQ(shapes_test::valueOf<std::int32_t>(result[0], "count"), 0) << "read as far as it is a number";
  const std::string warning = icore::qvxFormatMsg(78073, IUString("absent-shapes.xsd"),
                                                  IUString("http://com.example.test.shapes/1"), IUString(""))
                                  .toUtf8();
  EXPECT_TRUE(logger.mentions(warning.substr(0, warning.size() - 2)));
}

TEST_F(XMLDeserializerValidationTest, WithTheSwitchOffNoSchemaIsUsed) {
  SerializationUtils::setValidation(IFALSE);
  Read result;
  read(result, document(drawingCounting("many"), rootNaming("test-shapes.xsd")));
  ASSERT_EQ(result.objects->size(), 1u);
}

}  // namespace
