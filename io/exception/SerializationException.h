// Thrown by the XML reader when the XML parser reports an error. It derives from the
// parser's XMLException so that one handler catches it together with the parser's own
// exceptions. Objects of this class need the parser initialised while they exist.
//
// The parser's XMLException keeps only texts from its own catalog (code 120, under
// which this class files itself, has no placeholder), so the message is stored here and
// getMessage() of this class returns it. Caught as XMLException&, getMessage() yields the
// parser's catalog text and getType() the name "SerializationException".
#pragma once

#include <xercesc/util/XMLException.hpp>

#include <string>

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::io::exception {

class QVX_API SerializationException : public xercesc::XMLException {
 public:
  SerializationException();
  explicit SerializationException(const IUString& message);
  // Formats `pattern` with one argument, printf-style, as IUString::format does.
  SerializationException(const IUString& pattern, const IUString& argument);
  SerializationException(const SerializationException& other);
  SerializationException& operator=(const SerializationException& other);
  ~SerializationException() override;

  const XMLCh* getType() const override;
  const XMLCh* getMessage() const { return message_.c_str(); }
  // The message as the library's string type.
  IUString getMessageText() const { return IUString(message_); }

 private:
  std::u16string message_;
};

}  // namespace com::veltrana::qvx::io::exception
