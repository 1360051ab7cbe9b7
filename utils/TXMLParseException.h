// An error that the XML parser reports: its text and where in the document it was met.
// A plain value, independent of the parser library, so it may outlive the parser.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {

class QVX_API TXMLParseException {
 public:
  TXMLParseException() = default;
  TXMLParseException(IUString message, IUString systemId, long lineNumber, long columnNumber);

  const IUString& getMessage() const { return message_; }
  const IUString& getSystemId() const { return systemId_; }
  long getLineNumber() const { return lineNumber_; }
  long getColumnNumber() const { return columnNumber_; }
  // "<system id>, line L, column C: <message>" (the system id is left out when empty).
  IUString getFormattedMessage() const;

 private:
  IUString message_;
  IUString systemId_;
  long lineNumber_ = 0;
  long columnNumber_ = 0;
};

}  // namespace com::veltrana::qvx::utils
