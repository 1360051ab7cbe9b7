#include "utils/TXMLWrapperHelper.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <mutex>

namespace com::veltrana::qvx::utils {

namespace {

using xercesc::XMLPlatformUtils;

// The process's own reference on the parser: taken on first use, given back when
// static objects are destroyed at exit.
class ProcessXMLEnvironment {
 public:
  ProcessXMLEnvironment() { XMLPlatformUtils::Initialize(); }
  ~ProcessXMLEnvironment() { XMLPlatformUtils::Terminate(); }
  ProcessXMLEnvironment(const ProcessXMLEnvironment&) = delete;
  ProcessXMLEnvironment& operator=(const ProcessXMLEnvironment&) = delete;
};

// The parser's own counting is not thread-safe; every Initialize and Terminate of the
// library goes through this lock.
std::mutex& environmentLock() {
  static std::mutex lock;
  return lock;
}

// References taken through initializeXMLEnvironment and not yet given back; an
// unpaired terminate must not take the process's own reference.
int hostReferences = 0;

void startProcessEnvironment() {
  static ProcessXMLEnvironment environment;
}

IUString describe(const xercesc::XMLException& failure) {
  char* text = xercesc::XMLString::transcode(failure.getMessage());
  IUString message(text == nullptr ? "" : text);
  xercesc::XMLString::release(&text);
  return message;
}

}  // namespace

ISTATUS TXMLWrapperHelper::initializeXMLEnvironment(IUString& error) {
  try {
    std::lock_guard<std::mutex> guard(environmentLock());
    startProcessEnvironment();
    XMLPlatformUtils::Initialize();
    ++hostReferences;
    return ISTATUS_SUCCESS;
  } catch (const xercesc::XMLException& failure) {
    error = describe(failure);
  } catch (...) {
    error = "the XML parser could not be started";
  }
  return ISTATUS_FAILURE;
}

ISTATUS TXMLWrapperHelper::initializeXMLEnvironment() {
  IUString ignored;
  return initializeXMLEnvironment(ignored);
}

void TXMLWrapperHelper::terminateXMLEnvironment() {
  std::lock_guard<std::mutex> guard(environmentLock());
  if (hostReferences == 0) return;
  --hostReferences;
  XMLPlatformUtils::Terminate();
}

xercesc::MemoryManager* TXMLWrapperHelper::ensureXMLEnvironment() {
  std::lock_guard<std::mutex> guard(environmentLock());
  startProcessEnvironment();
  return XMLPlatformUtils::fgMemoryManager;
}

}  // namespace com::veltrana::qvx::utils
