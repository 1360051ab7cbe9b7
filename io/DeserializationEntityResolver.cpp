#include "io/DeserializationEntityResolver.h"

#include <memory>
#include <vector>

#include "icore/QVXMsgCatalog.h"
#include "io/SerializationUtils.h"
#include "utils/ILoggerUtils.h"
#include "utils/TXMLSAXModel.h"

namespace com::veltrana::qvx::io {

using utils::ILogger;

namespace {

// A schema location is a plain resource name: anything up to the last "/" (a
// directory, a scheme and host) is ignored, so no location can reach outside the
// resource directories.
IUString resourceNameOf(const IUString& location) {
  const std::size_t slash = location.rfind(u'/');
  return slash == IUString::npos ? location : location.substr(slash + 1);
}

std::vector<IUString> splitAtBlanks(const IUString& text) {
  std::vector<IUString> words;
  std::size_t start = 0;
  const std::u16string& units = text.str();
  while (start < units.size()) {
    while (start < units.size() && (units[start] == u' ' || units[start] == u'\t' || units[start] == u'\n' ||
                                    units[start] == u'\r')) {
      ++start;
    }
    std::size_t end = start;
    while (end < units.size() && units[end] != u' ' && units[end] != u'\t' && units[end] != u'\n' &&
           units[end] != u'\r') {
      ++end;
    }
    if (end > start) words.push_back(text.substr(start, end - start));
    start = end;
  }
  return words;
}

}  // namespace

DeserializationEntityResolver::DeserializationEntityResolver(utils::ILoggerUtils& logger) : logger_(logger) {}

DeserializationEntityResolver::~DeserializationEntityResolver() = default;

bool DeserializationEntityResolver::readResource(const IUString& name, std::string& content, IUString& error) {
  if (name.isEmpty()) return false;
  IUString path = name;
  std::unique_ptr<char[]> bytes(SerializationUtils::readSchemaFile(path, error));
  if (!bytes) return false;
  content.assign(bytes.get());
  return true;
}

IBOOLEAN DeserializationEntityResolver::resolveEntity(const IUString&, const IUString& systemId, std::string& content) {
  IUString error;
  if (readResource(resourceNameOf(systemId), content, error)) return ITRUE;
  if (logger_.isLoggable(ILogger::WARNING_LEVEL)) logger_.log(ILogger::WARNING_LEVEL, icore::qvxFormatMsg(78067, systemId));
  return IFALSE;
}

void DeserializationEntityResolver::addSchemasNamedBy(const IUString& schemaLocation, utils::TXMLSAXModel& model) {
  const std::vector<IUString> words = splitAtBlanks(schemaLocation);
  for (std::size_t i = 0; i + 1 < words.size(); i += 2) {
    const IUString name = resourceNameOf(words[i + 1]);
    std::string content;
    IUString error;
    if (readResource(name, content, error)) {
      model.addSchema(name, std::move(content));
    } else if (logger_.isLoggable(ILogger::WARNING_LEVEL)) {
      logger_.log(ILogger::WARNING_LEVEL, icore::qvxFormatMsg(78073, name, words[i], error));
    }
  }
}

}  // namespace com::veltrana::qvx::io
