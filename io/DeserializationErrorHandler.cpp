#include "io/DeserializationErrorHandler.h"

#include "io/exception/SerializationException.h"
#include "utils/ILoggerUtils.h"
#include "utils/TXMLParseException.h"

namespace com::veltrana::qvx::io {

using utils::ILogger;

DeserializationErrorHandler::DeserializationErrorHandler(utils::ILoggerUtils& logger) : logger_(logger) {}

DeserializationErrorHandler::~DeserializationErrorHandler() = default;

void DeserializationErrorHandler::warning(const utils::TXMLParseException& exception) {
  if (logger_.isLoggable(ILogger::WARNING_LEVEL)) logger_.log(ILogger::WARNING_LEVEL, exception.getFormattedMessage());
}

void DeserializationErrorHandler::fatalError(const utils::TXMLParseException& exception) {
  fatalError(exception.getFormattedMessage());
}

// The thrown text is exactly the reported one; the log line also says where the parse
// stood, which the reader's own messages do not carry.
void DeserializationErrorHandler::fatalError(const IUString& text) {
  if (logger_.isLoggable(ILogger::ERROR_LEVEL)) {
    const IUString position = describePosition();
    logger_.log(ILogger::ERROR_LEVEL,
                position.isEmpty() ? IUString::format("%s", text) : IUString::format("%s (%s)", text, position));
  }
  throw exception::SerializationException(text);
}

}  // namespace com::veltrana::qvx::io
