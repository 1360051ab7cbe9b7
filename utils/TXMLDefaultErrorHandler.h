// The error handler that ends a parse at the first error: warnings are ignored, errors
// and fatal errors throw io::exception::SerializationException with the parser's
// formatted message or the reported text.
#pragma once

#include "utils/TXMLErrorHandler.h"

namespace com::veltrana::qvx::utils {

class QVX_API TXMLDefaultErrorHandler : public TXMLErrorHandler {
 public:
  TXMLDefaultErrorHandler() = default;
  ~TXMLDefaultErrorHandler() override;

  void warning(const TXMLParseException& exception) override;
  void error(const TXMLParseException& exception) override;
  void fatalError(const TXMLParseException& exception) override;
  void fatalError(const IUString& text) override;
  // Treated as a fatal error with that text.
  void criticalException(const IUString& text) override;
};

}  // namespace com::veltrana::qvx::utils
