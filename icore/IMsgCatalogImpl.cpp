#include "icore/IMsgCatalogImpl.h"

#include <utility>

#include "icore/QVXMessageTexts.h"

namespace com::veltrana::qvx::icore {

IMsgCatalogImpl::~IMsgCatalogImpl() = default;

ISTATUS IMsgCatalogImpl::getMsg(int number, IUString& text) { return threadSafeGetMsg(number, text); }

ISTATUS IMsgCatalogImpl::threadSafeGetMsg(int number, IUString& text) {
  WkMutexGuard guard(lock_);
  if (overrides_.getMessage(number, text)) {
    if (!prefix_.isEmpty()) text = prefix_ + text;
    return ISTATUS_SUCCESS;
  }
  const char16_t* compiled = detail::findQVXMessageText(number);
  if (compiled == nullptr) {
    text.clear();
    return ISTATUS_FAILURE;
  }
  text = prefix_.isEmpty() ? IUString(compiled) : prefix_ + IUString(compiled);
  return ISTATUS_SUCCESS;
}

ISTATUS IMsgCatalogImpl::init(const IUString& name, const IUString& locale) {
  if (name.isEmpty()) return ISTATUS_FAILURE;
  WkMutexGuard guard(lock_);
  name_ = name;
  overrides_.open(name, locale);
  return ISTATUS_SUCCESS;
}

void IMsgCatalogImpl::setMsgPrefix(IUString prefix) {
  WkMutexGuard guard(lock_);
  prefix_ = std::move(prefix);
}

IUString IMsgCatalogImpl::getMsgPrefix() {
  WkMutexGuard guard(lock_);
  return prefix_;
}

IUString IMsgCatalogImpl::getCatalogFilePath() {
  WkMutexGuard guard(lock_);
  return overrides_.getPath();
}

}  // namespace com::veltrana::qvx::icore
