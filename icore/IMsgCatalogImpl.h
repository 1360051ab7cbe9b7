// The message catalog of the library: the compiled-in texts of QVXMessageTexts, each of
// which a catalog file of the installation (WkMsgCatalog) may replace. Created by
// createQVXMsgCatalog; other code reaches it through qvxGetMsg.
#pragma once

#include "icore/IMsgCatalog.h"
#include "platform/WkMsgCatalog.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {

// Lookups, init and the prefix are guarded by the catalog's own lock, so one catalog
// serves every thread of the process.
class QVX_API IMsgCatalogImpl : public IMsgCatalog {
 public:
  IMsgCatalogImpl() = default;
  ~IMsgCatalogImpl() override;

  ISTATUS getMsg(int number, IUString& text) override;
  // Fails only for an empty name. A missing catalog file is not a failure: the
  // compiled-in texts stay in use.
  ISTATUS init(const IUString& name, const IUString& locale) override;
  void setMsgPrefix(IUString prefix) override;
  IUString getMsgPrefix() override;

  // The catalog file in use, empty when every text is the compiled-in one.
  IUString getCatalogFilePath();

 private:
  ISTATUS threadSafeGetMsg(int number, IUString& text);

  WkMutex lock_;
  IUString name_;
  IUString prefix_;
  WkMsgCatalog overrides_;
};

}  // namespace com::veltrana::qvx::icore
