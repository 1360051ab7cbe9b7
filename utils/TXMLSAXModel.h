// Runs one SAX parse of an XML document held in memory and hands what it meets to a
// TXMLSAXHandler, errors to a TXMLErrorHandler and requests for external resources to
// a TXMLEntityHandler. The parser is set up for documents from untrusted sources:
//   - a document type declaration is refused before any of it is processed, so no
//     entity can be declared (no external entities, no entity expansion bombs);
//   - nothing is ever fetched by the parser itself: external DTDs are not loaded,
//     default entity resolution is off, and schemas come only from addSchema or from
//     the entity handler;
//   - an entity expansion limit stays in place as a second line of defence.
// Without schemas to validate against, namespace processing is off and element and
// attribute names arrive exactly as written ("prefix:local"); the parser's namespace
// bookkeeping grows quadratically with nesting depth, this way the cost stays linear.
// With validation on and at least one schema added, names still arrive as written.
//
// An exception thrown by any handler ends the parse and leaves parse() unchanged; the
// parser's internal state is cleaned up first. A model is used by one thread at a time.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {

class TXMLEntityHandler;
class TXMLErrorHandler;
class TXMLSAXHandler;

class QVX_API TXMLSAXModel {
 public:
  // Validation schemes.
  static constexpr int VALIDATION_NONE = 1;    // documents are not validated
  static constexpr int VALIDATION_SCHEMA = 2;  // validated against the added schemas

  explicit TXMLSAXModel(TXMLSAXHandler& handler);
  TXMLSAXModel(const TXMLSAXModel&) = delete;
  TXMLSAXModel& operator=(const TXMLSAXModel&) = delete;
  ~TXMLSAXModel();

  // Not owned; null restores the default (TXMLDefaultErrorHandler).
  void setErrorHandler(TXMLErrorHandler* errorHandler);
  // Not owned; null refuses every external resource.
  void setEntityHandler(TXMLEntityHandler* entityHandler);
  void setValidationScheme(int scheme) { validationScheme_ = scheme; }
  int getValidationScheme() const { return validationScheme_; }
  // A schema document to validate against, under the system id `location` (the name
  // that imports and schema locations use for it).
  void addSchema(const IUString& location, std::string content);
  bool hasSchemas() const { return !schemas_.empty(); }

  // Parses the whole document. 0 when no error was reported; 1 when the error handler
  // was told of an error and let the parse go on.
  int parse(const char* data, std::size_t size, const IUString& systemId);
  // Parses up to and including the root element's start tag, which goes to `handler`
  // (a handler other than the model's own); the rest of the document is not read.
  // Same return values and error reporting as parse().
  int parseRootElement(const char* data, std::size_t size, const IUString& systemId, TXMLSAXHandler& handler);

  // Where the parse in progress stands (1-based); 0 outside a parse.
  long getLineNumber() const;
  long getColumnNumber() const;

 private:
  class ParserBridge;

  // Runs `body` (the parser's work) with the parser's exceptions turned into fatal
  // errors, and rethrows a handler's exception once the parser has let go.
  template <typename Body>
  int run(ParserBridge& bridge, Body&& body);

  TXMLSAXHandler& handler_;
  TXMLErrorHandler* errorHandler_;
  TXMLEntityHandler* entityHandler_ = nullptr;
  std::unique_ptr<TXMLErrorHandler> defaultErrorHandler_;
  int validationScheme_ = VALIDATION_NONE;
  std::vector<std::pair<IUString, std::string>> schemas_;
  ParserBridge* activeBridge_ = nullptr;  // the bridge of the parse in progress
};

}  // namespace com::veltrana::qvx::utils
