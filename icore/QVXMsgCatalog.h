// Access to the library's message catalog: every error text that the library throws or
// logs is a numbered catalog message, formatted with the names involved.
//
// The texts are compiled into the library, so they are available with no files
// installed; a catalog file named by the "wk_qvxmsg_%s" convention may override them.
// Lookups are thread-safe.
#pragma once

#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class IMsgCatalog;

// Creates the process-wide catalog named `name` on the first call and returns it;
// later calls return the same catalog.
QVX_API IMsgCatalog* createQVXMsgCatalog(IUString name);
// Deletes the process-wide catalog; the next lookup creates it again. Only for the end
// of the process or a test: no other thread may be looking a text up meanwhile.
QVX_API void destroyQVXMsgCatalog();

// The text of message `number`, or the empty string when the catalog has none.
QVX_API IUString qvxGetMsg(int number);

// The text of message `number` formatted with `args` (see IUString::format).
template <typename... Args>
IUString qvxFormatMsg(int number, const Args&... args) {
  return IUString::format(qvxGetMsg(number), args...);
}

}  // namespace com::veltrana::qvx::icore
