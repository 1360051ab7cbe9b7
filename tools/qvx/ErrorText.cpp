#include "tools/qvx/ErrorText.h"

#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <exception>

#include "icore/exception/EncryptionFailureException.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/NoSuchIPropertyException.h"
#include "icore/exception/SeedException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "io/exception/IOException.h"
#include "platform/IVectorException.h"
#include "platform/WkEncryptionError.h"

namespace qvx_tool {

namespace {

std::string oneLine(std::string text) {
  for (char& c : text) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  return text;
}

std::string xmlText(XMLCh const* text) {
  char* narrow = xercesc::XMLString::transcode(text);
  std::string result = narrow == nullptr ? "" : narrow;
  xercesc::XMLString::release(&narrow);
  return result;
}

}  // namespace

std::string currentExceptionText() {
  namespace ie = com::veltrana::qvx::icore::exception;
  namespace oe = com::veltrana::qvx::io::exception;
  try {
    throw;
  } catch (oe::IOException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::IllegalArgumentException& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::IdentityException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::InstantiationException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::NoSuchIPropertyException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::SeedException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::UnresolvedProxyException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::UnsupportedOperationException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (ie::EncryptionFailureException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (WkEncryptionError const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (IVectorException const& e) {
    return oneLine(e.getMessage().toUtf8());
  } catch (xercesc::XMLException const& e) {
    return oneLine(xmlText(e.getMessage()));
  } catch (std::exception const& e) {
    return oneLine(e.what());
  } catch (...) {
    return "an unknown error";
  }
}

}  // namespace qvx_tool
