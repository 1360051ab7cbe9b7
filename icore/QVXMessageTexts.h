// The compiled-in texts of the "qvxmsg" message catalog: one English text per message
// number, with printf-style placeholders for the names the throwing or logging code
// passes. Implementation detail of the catalog (IMsgCatalogImpl); other code asks
// qvxGetMsg / qvxFormatMsg.
#pragma once

#include <cstddef>

#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore::detail {

struct QVXMessageText {
  int number;
  const char16_t* text;
};

// The whole table, sorted by number (checked at compile time).
QVX_API const QVXMessageText* qvxMessageTexts();
QVX_API std::size_t qvxMessageTextCount();

// The text of `number`, or null when the table has none. A binary search, no allocation.
QVX_API const char16_t* findQVXMessageText(int number);

}  // namespace com::veltrana::qvx::icore::detail
