// The XML layer in a process where nothing has started the XML parser: a
// SerializationException made first thing, and a parse, each start it themselves.
#include <gtest/gtest.h>

#include <string>

#include "io/exception/SerializationException.h"
#include "tests/support/FreshProcess.h"
#include "utils/TXMLElement.h"
#include "utils/TXMLSAXHandler.h"
#include "utils/TXMLSAXModel.h"

namespace {

using com::veltrana::qvx::io::exception::SerializationException;

class CountingHandler : public com::veltrana::qvx::utils::TXMLSAXHandler {
 public:
  void startElement(const com::veltrana::qvx::utils::TXMLElement&) override { ++elements; }
  void endElement(std::u16string_view) override {}
  int elements = 0;
};

TEST(TXMLSAXFreshProcessTest, ExceptionsAndParsesStartTheParserThemselves) {
  runInFreshProcess([](FreshProcessChecks& checks) {
    {
      SerializationException first(IUString("made before anything started the parser"));
      SerializationException copy(first);
      checks.expect(IUString(copy.getMessage()) == IUString("made before anything started the parser"),
                    "the message was lost");
    }
    try {
      throw SerializationException(IUString("%s went wrong"), IUString("this"));
    } catch (const xercesc::XMLException& caught) {
      checks.expect(std::u16string(caught.getType()) == u"SerializationException", "caught with the wrong type");
    }
    CountingHandler handler;
    com::veltrana::qvx::utils::TXMLSAXModel model(handler);
    const std::string text = "<r><a/></r>";
    checks.expect(model.parse(text.data(), text.size(), "fresh") == 0 && handler.elements == 2, "the parse failed");
  });
}

}  // namespace
