// The read side of object records (layout in StreamMarkers.h and
// io/output/ObjectHandler.h). Objects are rebuilt without recursion: an explicit stack
// holds one entry per object or collection still being filled, so any nesting depth is
// safe. Each class descriptor is matched to the registered class and its properties once,
// on its first object (bindDescriptor); properties that the registered class lacks are
// read and dropped, object records inside them in skip mode (no class resolution, no
// object).
//
// Each object is attached to its owner as soon as it is created, before its own data is
// read, so that a child that names its container finds itself already in place.
// Containment is guarded against hostile streams: an object already read can be put into
// a containment only if it has no container, is neither a seed nor an uncontained object
// of an earlier item, and is not an ancestor of the new owner, so the rebuilt graph is
// always a forest and every object has one owner.
//
// Ownership: between beginItem and endItem the handler tracks the objects it creates.
// When reading fails, abandonItem frees the ones that no container holds (and with them
// what they contain) and forgets their handles. On success, endItem returns the created
// objects that no container holds; they belong to the caller of the stream.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "io/ClassDescriptorHandler.h"
#include "io/HandleManager.h"
#include "io/input/IContextInfo.h"
#include "platform/IUString.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
}
namespace com::veltrana::qvx::icore {
class IClass;
class IObject;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

class StreamReader;
class PropertyInfo;

namespace input {

class QVX_API ObjectHandler {
 public:
  // Neither argument is owned.
  ObjectHandler(StreamReader* reader, utils::ILoggerUtils* logger);
  ObjectHandler(const ObjectHandler&) = delete;
  ObjectHandler& operator=(const ObjectHandler&) = delete;
  ~ObjectHandler();

  // After TC_OBJECT: reads the whole record, nested records included.
  icore::IObject* readModeledObject(int options);
  // After TC_OBJ_REFERENCE: the object under the handle that follows (IOException 81005
  // when there is none).
  icore::IObject* readModeledObjectReference();

  void beginItem();
  // The created objects that no container holds, in creation order.
  std::vector<icore::IObject*> endItem();
  // Frees what the current item created (see above).
  void abandonItem();

  // Reads and drops the value after a boxed primitive marker (TC_BOXED_*) or TC_BLOB.
  void readAndIgnoreBoxedPrimitive(char marker);

 private:
  icore::IObject* readModeledObject();
  std::vector<icore::IObject*> uncontainedCreated() const;
  // Reads the start of an object record after TC_OBJECT (pushing a context when data
  // or annotations follow); null in skip mode.
  icore::IObject* readObjectRecord(bool skip);
  icore::IObject* readConcreteObject(ClassDescriptor* descriptor, bool skip);
  icore::IObject* readProxyObject(bool skip);
  icore::IObject* readSeededObject(bool skip);
  int readObjectHandle(bool skip);
  void readObjectIdentity(icore::IObject* object, bool skip);
  void readAndIgnoreAnnotations();
  void readAndIgnoreGenericAnnotations();
  void readObjectComplete(std::size_t depth);
  void readContext(Context& context);
  void readContextList(ContextList& list);
  void readPropertyValue(icore::IObject* owner, PropertyInfo const& info, icore::IProperty const* property,
                         bool conflicting);
  void readReferencePropValue(icore::IObject* owner, icore::IProperty const* property);
  void setPropertyValue(icore::IObject* owner, icore::IProperty const& property, void* value);
  void setBlobPropertyValue(icore::IObject* owner, icore::IProperty const& property, char* bytes,
                            unsigned int length);
  void readPrimitiveValue(char marker, icore::IObject* owner, icore::IProperty const* property);
  void readPrimitiveCollection(char marker, icore::IObject* owner, icore::IProperty const* property);
  void readEnumValue(icore::IObject* owner, icore::IProperty const* property);
  void readEnumCollection(icore::IObject* owner, icore::IProperty const* property);
  void attachObject(icore::IObject* owner, icore::IProperty const& property, icore::IObject* value, bool isNew);
  ClassDescriptor::Binding const& bindDescriptor(ClassDescriptor& descriptor);
  icore::IClass* getIClassForName(IUString const& qualifiedName);
  void checkPackageVersion(icore::IClass const& objectClass, IUString const& streamVersion);
  icore::IObject* lookUpObject(int handle, std::int64_t offset);
  char readMarker();
  [[noreturn]] void throwUnexpectedMarker(std::int64_t offset, const char* expected, char marker);
  [[noreturn]] void throwCannotSet(std::int64_t offset, IUString const& reason);

  StreamReader* reader_;
  utils::ILoggerUtils* logger_;
  HandleManager handles_;
  ClassDescriptorHandler descriptors_;
  int options_ = 0;
  std::vector<IContextInfo> stack_;
  std::vector<icore::IObject*> created_;
  // Objects that must never be put into a containment: the uncontained objects of
  // earlier items (the caller's or the stream's) and the seeds (the registry's).
  std::unordered_set<icore::IObject const*> foreignRoots_;
  // Reused for every identity read, which is parsed where it lies.
  std::u16string identityText_;
};

}  // namespace input
}  // namespace com::veltrana::qvx::io
