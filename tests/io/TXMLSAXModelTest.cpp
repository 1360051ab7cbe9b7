// The SAX layer under the XML reader: what a handler sees (names as written, attributes
// in order, text in runs), how handler exceptions and parser errors come out, schema
// validation, and reading only the root element.
#include "utils/TXMLSAXModel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/exception/SerializationException.h"
#include "tests/support/ThrownMessage.h"
#include "utils/TXMLElement.h"
#include "utils/TXMLErrorHandler.h"
#include "utils/TXMLParseException.h"
#include "utils/TXMLSAXHandler.h"

namespace {

using com::veltrana::qvx::io::exception::SerializationException;
using namespace com::veltrana::qvx::utils;  // NOLINT: test file

// Writes what it is handed as one line per event.
class RecordingHandler : public TXMLSAXHandler {
 public:
  void startElement(const TXMLElement& element) override {
    std::string line = "<" + IUString(element.getQName()).toUtf8();
    for (const TXMLAttribute& attribute : element.getAttributes()) {
      line += " " + IUString(attribute.getName()).toUtf8() + "=" + IUString(attribute.getValue()).toUtf8();
    }
    events.push_back(line);
    if (throwAt == element.getQName()) throw SerializationException(IUString("refused by the handler"));
  }
  void endElement(std::u16string_view qName) override { events.push_back("</" + IUString(qName).toUtf8()); }
  void characters(const char16_t* text, std::size_t length) override {
    events.push_back("text:" + IUString(text, length).toUtf8());
  }
  std::vector<std::string> events;
  std::u16string throwAt;
};

// Keeps the errors instead of throwing.
class KeepingErrorHandler : public TXMLErrorHandler {
 public:
  void warning(const TXMLParseException& exception) override { kept.push_back("warning " + describe(exception)); }
  void error(const TXMLParseException& exception) override { kept.push_back("error " + describe(exception)); }
  void fatalError(const TXMLParseException& exception) override { kept.push_back("fatal " + describe(exception)); }
  void fatalError(const IUString& text) override { kept.push_back("fatal " + text.toUtf8()); }
  void criticalException(const IUString& text) override { kept.push_back("critical " + text.toUtf8()); }
  std::vector<std::string> kept;

 private:
  static std::string describe(const TXMLParseException& exception) {
    return std::to_string(exception.getLineNumber()) + ":" + std::to_string(exception.getColumnNumber());
  }
};

int parse(TXMLSAXModel& model, const std::string& text) { return model.parse(text.data(), text.size(), "test"); }

TEST(TXMLSAXModelTest, HandlerSeesNamesAsWrittenAttributesInOrderAndAllText) {
  RecordingHandler handler;
  TXMLSAXModel model(handler);
  const std::string text =
      "<?xml version=\"1.0\"?><p:root xmlns:p=\"urn:p\" b=\"2\" a=\"&lt;1&gt;\"><q:child q:x=\"y\"/>one &amp; two"
      "<![CDATA[<raw>]]></p:root>";
  ASSERT_EQ(parse(model, text), 0);
  std::string text16;
  for (const std::string& event : handler.events) {
    if (event.rfind("text:", 0) == 0) text16 += event.substr(5);
  }
  EXPECT_EQ(handler.events.front(), "<p:root xmlns:p=urn:p b=2 a=<1>");
  EXPECT_EQ(handler.events[1], "<q:child q:x=y") << "an undeclared prefix is no error: prefixes are not resolved";
  EXPECT_EQ(text16, "one & two<raw>");
  EXPECT_EQ(handler.events.back(), "</p:root");
}

TEST(TXMLSAXModelTest, AHandlersExceptionLeavesUnchangedAndTheModelReadsOnAfterwards) {
  RecordingHandler handler;
  handler.throwAt = u"stop";
  TXMLSAXModel model(handler);
  const IUString message =
      qvx_test::messageOf<SerializationException>([&] { parse(model, "<r><a/><stop/><never/></r>"); });
  EXPECT_EQ(message, IUString("refused by the handler")) << "the parser must not replace the handler's text";
  EXPECT_EQ(handler.events.back(), "<stop");
  handler.events.clear();
  handler.throwAt.clear();
  EXPECT_EQ(parse(model, "<r><stop/></r>"), 0);
  EXPECT_EQ(handler.events.size(), 4u);
}

TEST(TXMLSAXModelTest, ParseErrorsGoToTheErrorHandlerWithTheirPosition) {
  RecordingHandler handler;
  TXMLSAXModel model(handler);
  const IUString thrown = qvx_test::messageOf<SerializationException>([&] { parse(model, "<r>\n  <a></b></r>"); });
  EXPECT_NE(thrown.find(IUString("line 2, column")), IUString::npos) << thrown.toUtf8();

  KeepingErrorHandler keeper;
  model.setErrorHandler(&keeper);
  EXPECT_EQ(parse(model, "<r>\n  <a></b></r>"), 1) << "an error handler that lets errors pass gets a failed parse";
  ASSERT_EQ(keeper.kept.size(), 1u);
  EXPECT_EQ(keeper.kept[0].rfind("fatal 2:", 0), 0u) << keeper.kept[0];
  model.setErrorHandler(nullptr);
  EXPECT_THROW(parse(model, "<r>"), SerializationException) << "the default handler is back";
}

TEST(TXMLSAXModelTest, AddedSchemasValidateAndValidationErrorsAreErrors) {
  const std::string schema =
      "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:t\" "
      "elementFormDefault=\"qualified\"><xs:element name=\"r\"><xs:complexType>"
      "<xs:attribute name=\"n\" type=\"xs:int\"/></xs:complexType></xs:element></xs:schema>";
  RecordingHandler handler;
  TXMLSAXModel model(handler);
  KeepingErrorHandler keeper;
  model.setErrorHandler(&keeper);
  model.setValidationScheme(TXMLSAXModel::VALIDATION_SCHEMA);
  model.addSchema("t.xsd", schema);
  EXPECT_EQ(parse(model, "<t:r xmlns:t=\"urn:t\" n=\"5\"/>"), 0);
  EXPECT_TRUE(keeper.kept.empty());
  EXPECT_EQ(parse(model, "<t:r xmlns:t=\"urn:t\" n=\"five\"/>"), 1);
  ASSERT_FALSE(keeper.kept.empty());
  EXPECT_EQ(keeper.kept[0].rfind("error 1:", 0), 0u) << keeper.kept[0];
  keeper.kept.clear();
  model.setValidationScheme(TXMLSAXModel::VALIDATION_NONE);
  EXPECT_EQ(parse(model, "<t:r xmlns:t=\"urn:t\" n=\"five\"/>"), 0);
  EXPECT_TRUE(keeper.kept.empty());
}

TEST(TXMLSAXModelTest, ReadingTheRootElementStopsThere) {
  RecordingHandler content;
  RecordingHandler root;
  TXMLSAXModel model(content);
  const std::string text = "<?xml version=\"1.0\"?><!-- c --><r a=\"1\"><x/><unclosed></r>";
  EXPECT_EQ(model.parseRootElement(text.data(), text.size(), "t", root), 0);
  ASSERT_EQ(root.events.size(), 1u);
  EXPECT_EQ(root.events[0], "<r a=1");
  EXPECT_TRUE(content.events.empty());
}

}  // namespace
