// Decides which external resources a parse may read. The parser never fetches anything
// by itself: every external entity, DTD or schema document it would load is offered
// here, and what this handler does not supply is refused.
#pragma once

#include <string>

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {

class QVX_API TXMLEntityHandler {
 public:
  TXMLEntityHandler() = default;
  TXMLEntityHandler(const TXMLEntityHandler&) = delete;
  TXMLEntityHandler& operator=(const TXMLEntityHandler&) = delete;
  virtual ~TXMLEntityHandler();

  // Fills `content` with the bytes of the resource and returns true, or returns false
  // to refuse it. `publicId` may be empty.
  virtual IBOOLEAN resolveEntity(const IUString& publicId, const IUString& systemId, std::string& content) = 0;
};

}  // namespace com::veltrana::qvx::utils
