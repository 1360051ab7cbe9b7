#include "io/HandleManager.h"

#include "icore/IClass.h"
#include "icore/IObjectInfo.h"
#include "icore/IObjectReflector.h"
#include "io/StreamLog.h"
#include "io/exception/IOException.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::io {

using exception::IOException;

namespace {

icore::IClass const* classOf(icore::IObject const* object) {
  return icore::IObjectReflector::getInstance()->getIObjectInfo(object)->getIClass();
}

IUString classNameOf(icore::IObject const* object) {
  icore::IClass const* objectClass = classOf(object);
  return objectClass != nullptr ? objectClass->getQualifiedName() : IUString();
}

}  // namespace

HandleManager::HandleManager(utils::ILoggerUtils* logger) : logger_(logger) {}

HandleManager::~HandleManager() = default;

int HandleManager::assignHandle(icore::IObject const* object) {
  return appendHandle(object, getHandle(object) >= 0 ? classNameOf(object) : IUString());
}

int HandleManager::assignHandle(icore::IClass const* objectClass) {
  return appendHandle(objectClass, getHandle(objectClass) >= 0 ? objectClass->getQualifiedName() : IUString());
}

int HandleManager::appendHandle(void const* pointer, IUString const& className) {
  const int handle = static_cast<int>(table_.size());
  const int existing = handles_.insert(pointer, handle);
  if (existing >= 0) detail::throwLogged<IOException>(*logger_, 82001, className, existing);
  table_.push_back({const_cast<void*>(pointer), EntryKind::kObject});
  return handle;
}

HandleManager::Entry HandleManager::lookup(int handle) const {
  QVX_ASSERT(handle >= 0);
  if (handle < 0) return {};
  if (static_cast<std::size_t>(handle) < table_.size()) return table_[static_cast<std::size_t>(handle)];
  const auto found = beyondTable_.find(handle);
  return found != beyondTable_.end() ? found->second : Entry{};
}

HandleManager::Entry* HandleManager::slotFor(int handle) {
  if (static_cast<std::size_t>(handle) < table_.size()) return &table_[static_cast<std::size_t>(handle)];
  if (static_cast<std::size_t>(handle) == table_.size()) {
    table_.push_back(Entry{});
    // Entries that were kept apart because they lay beyond the end may now follow.
    for (auto next = beyondTable_.find(static_cast<int>(table_.size())); next != beyondTable_.end();
         next = beyondTable_.find(static_cast<int>(table_.size()))) {
      table_.push_back(next->second);
      beyondTable_.erase(next);
    }
    return &table_[static_cast<std::size_t>(handle)];
  }
  return &beyondTable_[handle];
}

void HandleManager::assign(icore::IObject* object, int handle) {
  QVX_ASSERT(object != nullptr && handle >= 0);
  const Entry stored = lookup(handle);
  if (stored.kind == EntryKind::kClassDescriptor) {
    detail::throwLogged<IOException>(*logger_, 82002, handle,
                                     static_cast<ClassDescriptor*>(stored.pointer)->getIClassName(),
                                     classNameOf(object));
  }
  if (stored.kind == EntryKind::kObject && stored.pointer != object) {
    auto* storedObject = static_cast<icore::IObject*>(stored.pointer);
    icore::IClass const* storedClass = classOf(storedObject);
    icore::IClass const* newClass = classOf(object);
    if (storedClass != nullptr && newClass != nullptr && storedClass->isValueClass() && newClass->isValueClass()) {
      return;
    }
    detail::throwLogged<IOException>(*logger_, 82002, handle, classNameOf(storedObject), classNameOf(object));
  }
  if (stored.pointer == object && logger_->isLoggable(utils::ILogger::WARNING_LEVEL)) {
    logger_->log(utils::ILogger::WARNING_LEVEL,
                 IUString::format(IUString("Handle is being reassigned to object of type [%s]."), classNameOf(object)));
  }
  *slotFor(handle) = {object, EntryKind::kObject};
}

void HandleManager::assign(ClassDescriptor* descriptor, int handle) {
  QVX_ASSERT(descriptor != nullptr && handle >= 0);
  const Entry stored = lookup(handle);
  if (stored.kind != EntryKind::kNone && stored.pointer != descriptor) {
    detail::throwLogged<IOException>(*logger_, 82003, handle);
  }
  if (stored.pointer == descriptor && logger_->isLoggable(utils::ILogger::WARNING_LEVEL)) {
    logger_->log(utils::ILogger::WARNING_LEVEL, "Handle is being reassigned to a class descriptor.");
  }
  *slotFor(handle) = {descriptor, EntryKind::kClassDescriptor};
}

icore::IObject* HandleManager::findObject(int handle) const {
  const Entry entry = lookup(handle);
  return entry.kind == EntryKind::kObject ? static_cast<icore::IObject*>(entry.pointer) : nullptr;
}

ClassDescriptor* HandleManager::findClassDescriptor(int handle) const {
  const Entry entry = lookup(handle);
  return entry.kind == EntryKind::kClassDescriptor ? static_cast<ClassDescriptor*>(entry.pointer) : nullptr;
}

void* HandleManager::getObject(int handle) const { return lookup(handle).pointer; }

void HandleManager::release(std::unordered_set<icore::IObject const*> const& objects) {
  const auto forget = [&objects](Entry& entry) {
    if (entry.kind == EntryKind::kObject && objects.count(static_cast<icore::IObject const*>(entry.pointer)) > 0) {
      entry = Entry{};
    }
  };
  for (Entry& entry : table_) forget(entry);
  for (auto& slot : beyondTable_) forget(slot.second);
}

void HandleManager::adoptClassDescriptor(std::unique_ptr<ClassDescriptor> descriptor) {
  descriptors_.push_back(std::move(descriptor));
}

}  // namespace com::veltrana::qvx::io
