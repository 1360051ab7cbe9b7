// Numbers the class descriptors and objects of one binary stream, so that a second
// occurrence of either is written as a 4-byte handle. Descriptors and objects share one
// numbering, in the order in which they first occur.
//
// Output side: getHandle / assignHandle, handles 0, 1, 2, ... Input side: assign
// registers what the stream names under the handle it names; findObject and
// findClassDescriptor look a handle up by the kind of thing expected. The manager owns
// the class descriptors read (adoptClassDescriptor). Handles beyond the end of the
// table (left by records that were skipped) are kept apart, so that a large handle in a
// hostile stream never makes the table large.
#pragma once

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "io/ClassDescriptor.h"
#include "io/PointerHandleMap.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
}
namespace com::veltrana::qvx::icore {
class IClass;
class IObject;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

class QVX_API HandleManager {
 public:
  // `logger` is not owned.
  explicit HandleManager(utils::ILoggerUtils* logger);
  HandleManager(const HandleManager&) = delete;
  HandleManager& operator=(const HandleManager&) = delete;
  ~HandleManager();

  // The handle of `pointer` on the output side, or -1.
  int getHandle(void const* pointer) const { return handles_.find(pointer); }
  // The next handle for an object or a class; IOException 82001 when it has one.
  int assignHandle(icore::IObject const* object);
  int assignHandle(icore::IClass const* objectClass);

  // Input side. `handle` must not be negative. IOException 82002 when another object
  // (not both of value classes) or a descriptor holds the handle; 82003 for a
  // descriptor when something else holds it.
  void assign(icore::IObject* object, int handle);
  void assign(ClassDescriptor* descriptor, int handle);
  // Null when the handle holds nothing or not that kind of thing.
  icore::IObject* findObject(int handle) const;
  ClassDescriptor* findClassDescriptor(int handle) const;
  // The pointer stored under `handle` (null if none); `handle` must not be negative.
  void* getObject(int handle) const;
  // Forgets objects that no longer exist (the reader freed them after a failure).
  void release(std::unordered_set<icore::IObject const*> const& objects);

  // Takes ownership of a descriptor read from the stream.
  void adoptClassDescriptor(std::unique_ptr<ClassDescriptor> descriptor);

 private:
  enum class EntryKind { kNone, kObject, kClassDescriptor };
  struct Entry {
    void* pointer = nullptr;
    EntryKind kind = EntryKind::kNone;
  };

  int appendHandle(void const* pointer, IUString const& className);
  Entry lookup(int handle) const;
  Entry* slotFor(int handle);
  void store(int handle, Entry entry);

  utils::ILoggerUtils* logger_;
  std::vector<Entry> table_;
  std::unordered_map<int, Entry> beyondTable_;
  PointerHandleMap handles_;
  std::vector<std::unique_ptr<ClassDescriptor>> descriptors_;
};

}  // namespace com::veltrana::qvx::io
