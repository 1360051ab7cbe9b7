#include "io/XMLDeserializer.h"

#include <array>
#include <string_view>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/QVXLogger.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "io/DeserializationEntityResolver.h"
#include "io/DeserializationErrorHandler.h"
#include "io/DeserializationHandler.h"
#include "io/SerializationUtils.h"
#include "io/exception/IOException.h"
#include "utils/ILoggerUtils.h"
#include "utils/TXMLElement.h"
#include "utils/TXMLSAXHandler.h"
#include "utils/TXMLSAXModel.h"
#include "utils/TXMLWrapperHelper.h"

namespace com::veltrana::qvx::io {

using icore::IObject;
using icore::qvxGetMsg;
using utils::ILogger;

namespace {

const IUString kSystemId(u"XMLDeserializer input");

// Keeps the root element's xsi:schemaLocation, the only thing the schema look-up needs.
class SchemaLocationReader : public utils::TXMLSAXHandler {
 public:
  void startElement(const utils::TXMLElement& element) override {
    if (const utils::TXMLAttribute* location = element.findAttribute(u"xsi:schemaLocation")) {
      schemaLocation_ = IUString(location->getValue());
    }
  }
  void endElement(std::u16string_view) override {}
  const IUString& schemaLocation() const { return schemaLocation_; }

 private:
  IUString schemaLocation_;
};

}  // namespace

XMLDeserializer::XMLDeserializer(std::istream* input, ILogger* logger) : input_(input) {
  const bool ownsLogger = logger == nullptr;
  if (ownsLogger) logger = new icore::QVXLogger(IUString("XMLDeserializer"));
  logger_ = std::make_unique<utils::ILoggerUtils>(logger, ownsLogger ? ITRUE : IFALSE);
  if (input_ == nullptr) {
    if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(77001));
    throw exception::IOException(qvxGetMsg(77000));
  }
  if (initialize() != ISTATUS_SUCCESS) throw exception::IOException(qvxGetMsg(77003));
}

XMLDeserializer::~XMLDeserializer() { terminate(); }

ISTATUS XMLDeserializer::initialize() {
  if (initialized_) return ISTATUS_SUCCESS;
  if (utils::TXMLWrapperHelper::initializeXMLEnvironment() != ISTATUS_SUCCESS) return ISTATUS_FAILURE;
  initialized_ = true;
  return ISTATUS_SUCCESS;
}

ISTATUS XMLDeserializer::terminate() {
  if (initialized_) utils::TXMLWrapperHelper::terminateXMLEnvironment();
  initialized_ = false;
  return ISTATUS_SUCCESS;
}

ILogger* XMLDeserializer::getLogger() const { return logger_->getLogger(); }

IVector<IObject*>* XMLDeserializer::deserialize() { return deserialize(0); }

IVector<IObject*>* XMLDeserializer::deserialize(int options) {
  if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(78000));
  if (input_ == nullptr) throw exception::IOException(qvxGetMsg(77002));
  unreturned_.clear();
  DeserializationErrorHandler errorHandler(*logger_);
  DeserializationEntityResolver entityResolver(*logger_);
  DeserializationHandler handler(*logger_, errorHandler, options);
  if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) {
    logger_->log(ILogger::PROGRESS_LEVEL,
                 options != 0 ? icore::qvxFormatMsg(78001, describeOptions(options)) : qvxGetMsg(78002));
  }
  utils::TXMLSAXModel model(handler);
  model.setErrorHandler(&errorHandler);
  model.setEntityHandler(&entityResolver);
  const std::string document = readInput();
  handler.expectDocumentSize(document.size());
  if (SerializationUtils::getValidation() != IFALSE) {
    model.setValidationScheme(utils::TXMLSAXModel::VALIDATION_SCHEMA);
    SchemaLocationReader root;
    model.parseRootElement(document.data(), document.size(), kSystemId, root);
    entityResolver.addSchemasNamedBy(root.schemaLocation(), model);
  } else {
    model.setValidationScheme(utils::TXMLSAXModel::VALIDATION_NONE);
  }
  if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(78003));
  if (model.parse(document.data(), document.size(), kSystemId) != 0) {
    if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(77004));
    throw exception::IOException(qvxGetMsg(77004));
  }
  if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(78004));
  IVector<IObject*>* result = handler.takeResult();
  unreturned_ = handler.takeUnreturnedObjects();
  return result;
}

std::vector<IObject*> XMLDeserializer::takeUnreturnedObjects() { return std::move(unreturned_); }

// The whole document, read in large chunks: the parser gets it in one buffer, and the
// schema look-up reads its root element first.
std::string XMLDeserializer::readInput() {
  std::string document;
  std::array<char, 65536> chunk;
  std::streambuf* source = input_->rdbuf();
  if (source == nullptr) return document;
  for (std::streamsize got; (got = source->sgetn(chunk.data(), chunk.size())) > 0;) {
    document.append(chunk.data(), static_cast<std::size_t>(got));
  }
  return document;
}

IUString XMLDeserializer::describeOptions(int options) {
  static const std::pair<int, const char*> kNames[] = {
      {IGNORE_UNKNOWN_ANNOTATIONS, "IGNORE_UNKNOWN_ANNOTATIONS "},
      {FAIL_ON_UNRESOLVED_REFERENCES, "FAIL_ON_UNRESOLVED_REFERENCES "},
      {IGNORE_SERIALIZER_VERSION_VALIDATION, "IGNORE_SERIALIZER_VERSION_VALIDATION "},
      {EXCLUDE_CONTAINED_OBJECTS, "EXCLUDE_CONTAINED_OBJECTS "},
  };
  IUString names;
  for (const auto& [bit, name] : kNames) {
    if ((options & bit) != 0) names += IUString(name);
  }
  return names;
}

void XMLDeserializer::destroyDeserializedObjects(IVector<IObject*>*& result) {
  if (result == nullptr) return;
  std::vector<IObject*> uncontained;
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  for (IObject* object : *result) {
    if (object != nullptr && runtime->getIObjectInfo(object)->getContainer() == nullptr) uncontained.push_back(object);
  }
  delete result;
  result = nullptr;
  for (IObject* object : uncontained) delete object;
}

IBOOLEAN XMLDeserializer::isBoxedPrimitiveType(const IUString& typeName) {
  static constexpr std::u16string_view kPrefix = u"primitives:";
  static constexpr std::u16string_view kBoxed[] = {u"IString", u"IInteger", u"ICharacter", u"IBoolean",
                                                   u"IShort",  u"ILong",    u"IFloat",     u"IDouble",
                                                   u"IDate",   u"IByte",    u"IBlob"};
  const std::u16string_view name = typeName.view();
  if (name.compare(0, kPrefix.size(), kPrefix) != 0) return IFALSE;
  for (std::u16string_view boxed : kBoxed) {
    if (name.substr(kPrefix.size()) == boxed) return ITRUE;
  }
  return IFALSE;
}

}  // namespace com::veltrana::qvx::io
