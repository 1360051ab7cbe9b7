#include "utils/TXMLErrorHandler.h"

#include "utils/TXMLSAXModel.h"

namespace com::veltrana::qvx::utils {

// Anchors the vtable in the library.
TXMLErrorHandler::~TXMLErrorHandler() = default;

IUString TXMLErrorHandler::describePosition() const {
  if (model_ == nullptr || model_->getLineNumber() <= 0) return IUString();
  return IUString::format("line %d, column %d", model_->getLineNumber(), model_->getColumnNumber());
}

}  // namespace com::veltrana::qvx::utils
