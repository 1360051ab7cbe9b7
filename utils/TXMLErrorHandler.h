// Receives the errors of one parse: the parser's own (warnings, errors, fatal errors)
// and the texts that a content handler reports as critical. An implementation decides
// whether the parse goes on: throwing from any operation ends it with that exception.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {

class TXMLParseException;
class TXMLSAXModel;

class QVX_API TXMLErrorHandler {
 public:
  TXMLErrorHandler() = default;
  TXMLErrorHandler(const TXMLErrorHandler&) = delete;
  TXMLErrorHandler& operator=(const TXMLErrorHandler&) = delete;
  virtual ~TXMLErrorHandler();

  virtual void warning(const TXMLParseException& exception) = 0;
  virtual void error(const TXMLParseException& exception) = 0;
  virtual void fatalError(const TXMLParseException& exception) = 0;
  // A fatal error that has a text only (a refused construct, a failure outside the
  // parser's own checks).
  virtual void fatalError(const IUString& text) = 0;
  // A content handler's own verdict that the document cannot be read.
  virtual void criticalException(const IUString& text) = 0;

  // The model that parses, so that messages can say where the parse stands; set by
  // TXMLSAXModel::setErrorHandler. May be null.
  void setModel(const TXMLSAXModel* model) { model_ = model; }

 protected:
  // "line L, column C" of the parse in progress, or empty outside a parse.
  IUString describePosition() const;

 private:
  const TXMLSAXModel* model_ = nullptr;
};

}  // namespace com::veltrana::qvx::utils
