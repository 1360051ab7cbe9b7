#include "utils/TXMLSAXHandler.h"

namespace com::veltrana::qvx::utils {

// Anchors the vtable in the library.
TXMLSAXHandler::~TXMLSAXHandler() = default;

void TXMLSAXHandler::startDocument() {}
void TXMLSAXHandler::endDocument() {}
void TXMLSAXHandler::characters(const char16_t*, std::size_t) {}

}  // namespace com::veltrana::qvx::utils
