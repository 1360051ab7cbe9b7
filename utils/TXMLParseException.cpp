#include "utils/TXMLParseException.h"

#include <utility>

namespace com::veltrana::qvx::utils {

TXMLParseException::TXMLParseException(IUString message, IUString systemId, long lineNumber, long columnNumber)
    : message_(std::move(message)), systemId_(std::move(systemId)), lineNumber_(lineNumber), columnNumber_(columnNumber) {}

IUString TXMLParseException::getFormattedMessage() const {
  const IUString where = IUString::format("line %d, column %d: %s", lineNumber_, columnNumber_, message_);
  return systemId_.isEmpty() ? where : systemId_ + IUString(", ") + where;
}

}  // namespace com::veltrana::qvx::utils
