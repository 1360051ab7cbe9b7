// Starting and stopping the XML parser library. The parser is started once per process
// on first use by any class of the library and stopped at exit; calls from hosts nest
// on top of that (the parser counts them), so every class that touches the parser works
// whatever the caller did first, on any thread.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class MemoryManager;
XERCES_CPP_NAMESPACE_END

namespace com::veltrana::qvx::utils {

class QVX_API TXMLWrapperHelper {
 public:
  // Starts the parser (once per process) and takes one more reference on it. Returns
  // ISTATUS_FAILURE with the parser's text in `error` when it cannot start.
  static ISTATUS initializeXMLEnvironment(IUString& error);
  static ISTATUS initializeXMLEnvironment();
  // Gives back a reference taken by initializeXMLEnvironment. The process's own
  // reference keeps the parser running until exit.
  static void terminateXMLEnvironment();

  // Makes sure the parser is running and returns its memory manager; for code that
  // creates parser objects (exceptions included) before anything else started it.
  static XERCES_CPP_NAMESPACE::MemoryManager* ensureXMLEnvironment();
};

}  // namespace com::veltrana::qvx::utils
