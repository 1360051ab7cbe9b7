// The XML reader's error handler: a parser error or a critical error of the reader is
// logged at error level and ends the read with io::exception::SerializationException
// carrying the formatted message. Warnings are logged and the read goes on.
#pragma once

#include "utils/TXMLDefaultErrorHandler.h"

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
}

namespace com::veltrana::qvx::io {

class DeserializationErrorHandler : public utils::TXMLDefaultErrorHandler {
 public:
  explicit DeserializationErrorHandler(utils::ILoggerUtils& logger);
  ~DeserializationErrorHandler() override;

  void warning(const utils::TXMLParseException& exception) override;
  void fatalError(const utils::TXMLParseException& exception) override;
  void fatalError(const IUString& text) override;

 private:
  utils::ILoggerUtils& logger_;
};

}  // namespace com::veltrana::qvx::io
