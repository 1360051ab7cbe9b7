#include "icore/QVXMsgCatalog.h"

#include <atomic>
#include <memory>

#include "icore/IMsgCatalogImpl.h"
#include "platform/QvxAssert.h"
#include "platform/WkMutex.h"

namespace com::veltrana::qvx::icore {

namespace {

// The process-wide catalog. Published through an atomic so that the lookup path
// reads it without taking the creation lock.
std::atomic<IMsgCatalog*> processCatalog{nullptr};

WkMutex& creationLock() {
  static WkMutex lock;
  return lock;
}

}  // namespace

IMsgCatalog* createQVXMsgCatalog(IUString name) {
  if (IMsgCatalog* existing = processCatalog.load(std::memory_order_acquire)) return existing;
  WkMutexGuard guard(creationLock());
  if (IMsgCatalog* existing = processCatalog.load(std::memory_order_relaxed)) return existing;
  auto catalog = std::make_unique<IMsgCatalogImpl>();
  if (catalog->init(name, IUString()) != ISTATUS_SUCCESS) return nullptr;
  processCatalog.store(catalog.get(), std::memory_order_release);
  return catalog.release();
}

void destroyQVXMsgCatalog() {
  WkMutexGuard guard(creationLock());
  delete processCatalog.exchange(nullptr, std::memory_order_acq_rel);
}

IUString qvxGetMsg(int number) {
  IMsgCatalog* catalog = processCatalog.load(std::memory_order_acquire);
  if (catalog == nullptr) catalog = createQVXMsgCatalog(IUString("qvxmsg"));
  QVX_ASSERT(catalog != nullptr);
  IUString text;
  if (catalog != nullptr) catalog->getMsg(number, text);
  return text;
}

}  // namespace com::veltrana::qvx::icore
