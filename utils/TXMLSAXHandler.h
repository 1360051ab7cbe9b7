// The content side of a SAX parse: start and end tags and character data, with names
// and texts as views into the parser's buffers (valid only during the call).
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {

class TXMLElement;

class QVX_API TXMLSAXHandler {
 public:
  TXMLSAXHandler() = default;
  TXMLSAXHandler(const TXMLSAXHandler&) = delete;
  TXMLSAXHandler& operator=(const TXMLSAXHandler&) = delete;
  virtual ~TXMLSAXHandler();

  virtual void startDocument();
  virtual void endDocument();
  virtual void startElement(const TXMLElement& element) = 0;
  virtual void endElement(std::u16string_view qName) = 0;
  // A run of character data; one text may arrive in several runs.
  virtual void characters(const char16_t* text, std::size_t length);
};

}  // namespace com::veltrana::qvx::utils
