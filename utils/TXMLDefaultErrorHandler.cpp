#include "utils/TXMLDefaultErrorHandler.h"

#include "io/exception/SerializationException.h"
#include "utils/TXMLParseException.h"

namespace com::veltrana::qvx::utils {

TXMLDefaultErrorHandler::~TXMLDefaultErrorHandler() = default;

void TXMLDefaultErrorHandler::warning(const TXMLParseException&) {}

void TXMLDefaultErrorHandler::error(const TXMLParseException& exception) { fatalError(exception); }

void TXMLDefaultErrorHandler::fatalError(const TXMLParseException& exception) {
  fatalError(exception.getFormattedMessage());
}

void TXMLDefaultErrorHandler::fatalError(const IUString& text) {
  throw io::exception::SerializationException(text);
}

void TXMLDefaultErrorHandler::criticalException(const IUString& text) { fatalError(text); }

}  // namespace com::veltrana::qvx::utils
