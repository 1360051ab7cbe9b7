#include "utils/TXMLSAXModel.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <algorithm>
#include <exception>

#include "icore/QVXMsgCatalog.h"
#include "utils/TXMLDefaultErrorHandler.h"
#include "utils/TXMLElement.h"
#include "utils/TXMLEntityHandler.h"
#include "utils/TXMLParseException.h"
#include "utils/TXMLSAXHandler.h"
#include "utils/TXMLWrapperHelper.h"

namespace com::veltrana::qvx::utils {

namespace {

using xercesc::XMLUni;

// Thrown through the parser to end a parse after a handler failed. It derives from
// nothing the parser knows: the parser catches its own exception types (our
// SerializationException among them, being an XMLException) and would report them
// again as parse errors with the wrong text, but lets anything else pass after
// cleaning up. The handler's real exception is kept aside and rethrown afterwards.
struct ParseAborted {};

// Deep documents may expand no entity at all (no DOCTYPE is accepted), so any limit
// is only a backstop; a small one stops an attack within microseconds.
constexpr unsigned int kEntityExpansionLimit = 100;

IUString text(const XMLCh* units) { return units == nullptr ? IUString() : IUString(units); }

}  // namespace

// Adapts the parser's callbacks to the model's handlers. Every call into a handler is
// guarded: its exception is stored and the parse ended with ParseAborted.
class TXMLSAXModel::ParserBridge : public xercesc::DefaultHandler {
 public:
  ParserBridge(TXMLSAXHandler& handler, TXMLErrorHandler& errorHandler, TXMLEntityHandler* entityHandler)
      : handler_(handler), errorHandler_(errorHandler), entityHandler_(entityHandler) {}

  void setDocumentLocator(const xercesc::Locator* locator) override { locator_ = locator; }
  const xercesc::Locator* locator() const { return locator_; }

  void startDocument() override {
    guarded([this] { handler_.startDocument(); });
  }
  void endDocument() override {
    guarded([this] { handler_.endDocument(); });
  }

  void startElement(const XMLCh*, const XMLCh*, const XMLCh* qName, const xercesc::Attributes& attributes) override {
    element_.reset(qName);
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) element_.addAttribute(attributes.getQName(i), attributes.getValue(i));
    guarded([this] { handler_.startElement(element_); });
    rootSeen_ = true;
  }

  void endElement(const XMLCh*, const XMLCh*, const XMLCh* qName) override {
    guarded([this, qName] { handler_.endElement(qName); });
  }

  void characters(const XMLCh* chars, const XMLSize_t length) override {
    guarded([this, chars, length] { handler_.characters(chars, length); });
  }

  void warning(const xercesc::SAXParseException& failure) override {
    guarded([this, &failure] { errorHandler_.warning(convert(failure)); });
  }
  void error(const xercesc::SAXParseException& failure) override {
    ++errorCount_;
    guarded([this, &failure] { errorHandler_.error(convert(failure)); });
  }
  void fatalError(const xercesc::SAXParseException& failure) override {
    ++errorCount_;
    guarded([this, &failure] { errorHandler_.fatalError(convert(failure)); });
  }

  // Interchange documents never carry a document type declaration; refusing it here,
  // before its first declaration is read, shuts out every entity-based attack.
  void startDTD(const XMLCh*, const XMLCh*, const XMLCh*) override {
    ++errorCount_;
    guarded([this] { errorHandler_.fatalError(icore::qvxGetMsg(78066)); });
    throw ParseAborted{};  // even if the error handler let it pass
  }

  xercesc::InputSource* resolveEntity(const XMLCh* publicId, const XMLCh* systemId) override {
    std::string content;
    bool supplied = false;
    guarded([&] {
      supplied = entityHandler_ != nullptr &&
                 entityHandler_->resolveEntity(text(publicId), text(systemId), content) != IFALSE;
      if (!supplied) errorHandler_.fatalError(icore::qvxFormatMsg(78067, text(systemId)));
    });
    if (!supplied) throw ParseAborted{};
    auto* bytes = new XMLByte[content.size()];
    std::copy(content.begin(), content.end(), bytes);
    auto* source = new xercesc::MemBufInputSource(bytes, content.size(), systemId, true);
    return source;
  }

  // Reports a failure of the parser itself (thrown rather than reported) as fatal.
  void reportFailure(const IUString& message) {
    ++errorCount_;
    guarded([this, &message] {
      errorHandler_.fatalError(TXMLParseException(message, IUString(), lineNumber(), columnNumber()));
    });
  }

  bool rootSeen() const { return rootSeen_; }
  int errorCount() const { return errorCount_; }
  void rethrowHandlerFailure() const {
    if (failure_) std::rethrow_exception(failure_);
  }
  long lineNumber() const { return locator_ != nullptr ? static_cast<long>(locator_->getLineNumber()) : 0; }
  long columnNumber() const { return locator_ != nullptr ? static_cast<long>(locator_->getColumnNumber()) : 0; }

 private:
  template <typename Call>
  void guarded(Call&& call) {
    if (failure_) throw ParseAborted{};  // the parser called on after an abort
    try {
      call();
    } catch (...) {
      failure_ = std::current_exception();
      throw ParseAborted{};
    }
  }

  static TXMLParseException convert(const xercesc::SAXParseException& failure) {
    return TXMLParseException(text(failure.getMessage()), text(failure.getSystemId()),
                              static_cast<long>(failure.getLineNumber()),
                              static_cast<long>(failure.getColumnNumber()));
  }

  TXMLSAXHandler& handler_;
  TXMLErrorHandler& errorHandler_;
  TXMLEntityHandler* entityHandler_;
  const xercesc::Locator* locator_ = nullptr;
  TXMLElement element_;
  std::exception_ptr failure_;
  int errorCount_ = 0;
  bool rootSeen_ = false;
};

namespace {

// A reader hardened as the header describes, with every handler role taken by `bridge`.
std::unique_ptr<xercesc::SAX2XMLReader> createReader(xercesc::DefaultHandler& bridge, xercesc::SecurityManager& limits,
                                                     bool namespaces, bool validate) {
  std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
  reader->setContentHandler(&bridge);
  reader->setErrorHandler(&bridge);
  reader->setEntityResolver(&bridge);
  reader->setLexicalHandler(&bridge);
  reader->setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
  reader->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
  reader->setFeature(XMLUni::fgXercesLoadSchema, false);  // never follow schema location hints
  reader->setProperty(XMLUni::fgXercesSecurityManager, &limits);
  reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, namespaces);
  reader->setFeature(XMLUni::fgSAX2CoreNameSpacePrefixes, true);  // keep xmlns attributes
  reader->setFeature(XMLUni::fgSAX2CoreValidation, validate);
  reader->setFeature(XMLUni::fgXercesDynamic, false);
  reader->setFeature(XMLUni::fgXercesSchema, validate);
  reader->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, validate);
  return reader;
}

IUString describe(const xercesc::XMLException& failure) { return text(failure.getMessage()); }

}  // namespace

TXMLSAXModel::TXMLSAXModel(TXMLSAXHandler& handler)
    : handler_(handler), defaultErrorHandler_(std::make_unique<TXMLDefaultErrorHandler>()) {
  errorHandler_ = defaultErrorHandler_.get();
  errorHandler_->setModel(this);
}

TXMLSAXModel::~TXMLSAXModel() = default;

void TXMLSAXModel::setErrorHandler(TXMLErrorHandler* errorHandler) {
  errorHandler_ = errorHandler != nullptr ? errorHandler : defaultErrorHandler_.get();
  errorHandler_->setModel(this);
}

void TXMLSAXModel::setEntityHandler(TXMLEntityHandler* entityHandler) { entityHandler_ = entityHandler; }

void TXMLSAXModel::addSchema(const IUString& location, std::string content) {
  schemas_.emplace_back(location, std::move(content));
}

long TXMLSAXModel::getLineNumber() const { return activeBridge_ != nullptr ? activeBridge_->lineNumber() : 0; }

long TXMLSAXModel::getColumnNumber() const { return activeBridge_ != nullptr ? activeBridge_->columnNumber() : 0; }

template <typename Body>
int TXMLSAXModel::run(ParserBridge& bridge, Body&& body) {
  activeBridge_ = &bridge;
  try {
    body();
  } catch (const ParseAborted&) {
  } catch (const xercesc::XMLException& failure) {
    bridge.reportFailure(describe(failure));
  } catch (const xercesc::SAXException& failure) {
    bridge.reportFailure(text(failure.getMessage()));
  } catch (const xercesc::OutOfMemoryException&) {
    bridge.reportFailure(IUString("the XML parser ran out of memory"));
  } catch (...) {
    activeBridge_ = nullptr;
    throw;
  }
  activeBridge_ = nullptr;
  bridge.rethrowHandlerFailure();
  return bridge.errorCount() == 0 ? 0 : 1;
}

int TXMLSAXModel::parse(const char* data, std::size_t size, const IUString& systemId) {
  TXMLWrapperHelper::ensureXMLEnvironment();
  const bool validate = validationScheme_ == VALIDATION_SCHEMA && !schemas_.empty();
  ParserBridge bridge(handler_, *errorHandler_, entityHandler_);
  xercesc::SecurityManager limits;
  limits.setEntityExpansionLimit(kEntityExpansionLimit);
  std::unique_ptr<xercesc::SAX2XMLReader> reader = createReader(bridge, limits, validate, validate);
  return run(bridge, [&] {
    if (validate) {
      for (const auto& [location, content] : schemas_) {
        xercesc::MemBufInputSource schema(reinterpret_cast<const XMLByte*>(content.data()), content.size(),
                                          location.c_str());
        reader->loadGrammar(schema, xercesc::Grammar::SchemaGrammarType, true);
      }
    }
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(data), size, systemId.c_str());
    reader->parse(source);
  });
}

int TXMLSAXModel::parseRootElement(const char* data, std::size_t size, const IUString& systemId,
                                   TXMLSAXHandler& handler) {
  TXMLWrapperHelper::ensureXMLEnvironment();
  ParserBridge bridge(handler, *errorHandler_, entityHandler_);
  xercesc::SecurityManager limits;
  limits.setEntityExpansionLimit(kEntityExpansionLimit);
  std::unique_ptr<xercesc::SAX2XMLReader> reader = createReader(bridge, limits, false, false);
  xercesc::XMLPScanToken token;
  return run(bridge, [&] {
    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(data), size, systemId.c_str());
    bool more = reader->parseFirst(source, token);
    while (more && !bridge.rootSeen() && bridge.errorCount() == 0) more = reader->parseNext(token);
    reader->parseReset(token);
  });
}

}  // namespace com::veltrana::qvx::utils
