// The message catalog interface: numbered message texts of one catalog, looked up by
// number. The library's catalog "qvxmsg" is created and reached through the functions
// of QVXMsgCatalog.h; this interface is what they hand out.
#pragma once

#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::icore {

class QVX_API IMsgCatalog {
 public:
  IMsgCatalog() = default;
  IMsgCatalog(const IMsgCatalog&) = delete;
  IMsgCatalog& operator=(const IMsgCatalog&) = delete;

  // Puts the text of message `number` (with the message prefix in front) into `text`.
  // A number that the catalog does not hold empties `text` and returns ISTATUS_FAILURE.
  virtual ISTATUS getMsg(int number, IUString& text) = 0;
  // Binds the catalog to the catalog `name` and the `locale` (empty: the process's
  // message locale), loading whatever texts the installation provides for them.
  virtual ISTATUS init(const IUString& name, const IUString& locale) = 0;
  // Plain text put in front of every text getMsg returns; empty by default. The texts
  // serve as format patterns, so a prefix should not contain '%'.
  virtual void setMsgPrefix(IUString prefix) = 0;
  virtual IUString getMsgPrefix() = 0;
  virtual ~IMsgCatalog();
};

}  // namespace com::veltrana::qvx::icore
