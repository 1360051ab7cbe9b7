#include "io/XMLSerializer.h"

#include <typeinfo>

#include "icore/IClass.h"
#include "icore/IObjectInfo.h"
#include "icore/QVXLogger.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IllegalArgumentException.h"
#include "io/XMLSerializerDocument.h"
#include "io/exception/IOException.h"
#include "utils/ILoggerUtils.h"
#include "utils/TXMLWrapperHelper.h"

namespace com::veltrana::qvx::io {

using icore::qvxFormatMsg;
using icore::qvxGetMsg;
using icore::exception::IllegalArgumentException;
using io::exception::IOException;
using utils::ILogger;

const char* const XMLSerializer::HEADER_TEXT = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Veltrana proprietary -->";

namespace {

template <typename Exception>
[[noreturn]] void logAndThrow(utils::ILoggerUtils& logger, const IUString& message) {
  logger.log(ILogger::ERROR_LEVEL, message);
  throw Exception(message);
}

}  // namespace

XMLSerializer::XMLSerializer(IOutputStream* out, utils::ILogger* logger)
    : out_(out), logger_(std::make_unique<utils::ILoggerUtils>()) {
  if (logger != nullptr) {
    logger_->setLogger(logger, IFALSE);
  } else {
    logger_->setLogger(new icore::QVXLogger(IUString("XMLSerializer")), ITRUE);
  }
  IUString error;
  if (utils::TXMLWrapperHelper::initializeXMLEnvironment(error) != ISTATUS_SUCCESS) {
    logAndThrow<IOException>(*logger_, qvxGetMsg(77006));
  }
  environmentStarted_ = true;
  // A QVXLogger swallows every message whatever its level says, so nothing is lost
  // when the text of the per-object and per-property lines is never built. A class
  // derived from it may write, hence the exact type.
  ILogger* used = logger_->getLogger();
  const bool silent = typeid(*used) == typeid(icore::QVXLogger);
  document_ = std::make_unique<XMLSerializerDocument>(*logger_, silent);
}

XMLSerializer::~XMLSerializer() {
  document_.reset();
  if (environmentStarted_) utils::TXMLWrapperHelper::terminateXMLEnvironment();
}

utils::ILogger* XMLSerializer::getLogger() const { return logger_->getLogger(); }

IUString XMLSerializer::getOptionsString(int options) {
  static const struct {
    int bit;
    const char* name;
  } kNamedOptions[] = {{SKIP_ANNOTATIONS, "SKIP_ANNOTATIONS"},
                       {SKIP_REFERENCE, "SKIP_REFERENCE"},
                       {SERIALIZE_SEEDED_OBJECTS, "SERIALIZE_SEEDED_OBJECTS"},
                       {ALLOW_DUPLICATE_PROXYOBJECTS, "ALLOW_DUPLICATE_PROXYOBJECTS"}};
  IUString text;
  for (const auto& option : kNamedOptions) {
    if ((options & option.bit) == 0) continue;
    if (!text.isEmpty()) text += u' ';
    text += IUString(option.name);
  }
  return text;
}

void XMLSerializer::serialize(const IVector<icore::IObject*>& objects, int options) {
  options_ = options;
  if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) {
    logger_->log(ILogger::PROGRESS_LEVEL, qvxFormatMsg(79002, getOptionsString(options)));
  }
  serialize(objects);
  if (logger_->isLoggable(ILogger::PROGRESS_LEVEL)) {
    logger_->log(ILogger::PROGRESS_LEVEL, qvxFormatMsg(79003, getOptionsString(options)));
  }
}

void XMLSerializer::serialize(const IVector<icore::IObject*>& objects) {
  const bool withoutOptions = options_ == 0;
  const bool logsProgress = withoutOptions && logger_->isLoggable(ILogger::PROGRESS_LEVEL);
  if (logsProgress) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(79000));
  if (objects.isEmpty()) logAndThrow<IllegalArgumentException>(*logger_, qvxGetMsg(77005));
  appendListedObjects(objects);
  document_->setOptions(options_);
  if (out_ == nullptr || document_->write(*out_) != ISTATUS_SUCCESS) {
    logAndThrow<IOException>(*logger_, qvxGetMsg(77007));
  }
  if (logsProgress) logger_->log(ILogger::PROGRESS_LEVEL, qvxGetMsg(79001));
}

void XMLSerializer::appendListedObjects(const IVector<icore::IObject*>& objects) {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  for (std::size_t index = 0; index < objects.size(); ++index) {
    icore::IObjectInfo* info = runtime->getIObjectInfo(objects[index]);
    if (info == nullptr) logAndThrow<IllegalArgumentException>(*logger_, qvxGetMsg(77008));
    icore::IClass const* objectClass = info->getIClass();
    if (objectClass == nullptr || !objectClass->isIdentifiableClass()) {
      logAndThrow<IllegalArgumentException>(*logger_, qvxFormatMsg(77009, static_cast<int>(index)));
    }
    if (info->isProxy()) {
      logAndThrow<IllegalArgumentException>(*logger_, qvxFormatMsg(77014, static_cast<int>(index)));
    }
    document_->appendPending(objects[index]);
  }
}

}  // namespace com::veltrana::qvx::io
