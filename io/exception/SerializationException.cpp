#include "io/exception/SerializationException.h"

#include <xercesc/util/XMLExceptMsgs.hpp>

#include "utils/TXMLWrapperHelper.h"

namespace com::veltrana::qvx::io::exception {

namespace {
// The parser's code under which this exception files itself.
constexpr auto kParserCode = static_cast<xercesc::XMLExcepts::Codes>(120);
const XMLCh kTypeName[] = u"SerializationException";
}  // namespace

// The parser must be running before its exception base is built: the base allocates
// through the parser's memory manager.
SerializationException::SerializationException()
    : xercesc::XMLException(__FILE__, __LINE__, utils::TXMLWrapperHelper::ensureXMLEnvironment()) {}

SerializationException::SerializationException(const IUString& message)
    : xercesc::XMLException(__FILE__, __LINE__, utils::TXMLWrapperHelper::ensureXMLEnvironment()),
      message_(message.str()) {
  loadExceptText(kParserCode);
}

SerializationException::SerializationException(const IUString& pattern, const IUString& argument)
    : SerializationException(IUString::format(pattern, argument)) {}

SerializationException::SerializationException(const SerializationException& other) = default;

SerializationException& SerializationException::operator=(const SerializationException& other) = default;

SerializationException::~SerializationException() = default;

const XMLCh* SerializationException::getType() const { return kTypeName; }

}  // namespace com::veltrana::qvx::io::exception
