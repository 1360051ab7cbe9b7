// The write side of object records in a binary stream (layout in StreamMarkers.h): an
// object already written becomes 11 and its handle; a proxy 03 15 handle class identity
// 12 12; a seeded object 03 17 handle seedIdentity; any other object 03, its class
// descriptor, its handle part, identity part, annotations part (always 12 12) and one
// data entry per property of IClass::getAllProperties (redefined ones kept).
//
// Nested objects are written with an explicit stack of frames, one per object whose
// data is being written, so any depth of nesting is safe. What the writer needs of a
// class (its properties and how each is written) is worked out once per class, and the
// text of identities and enumeration literals is written without allocating per value.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "io/ClassDescriptorHandler.h"
#include "io/HandleManager.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
}
namespace com::veltrana::qvx::icore {
class IClass;
class IObject;
class IObjectInfo;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

class StreamWriter;

namespace output {

class QVX_API ObjectHandler {
 public:
  // Neither argument is owned.
  ObjectHandler(StreamWriter* writer, utils::ILoggerUtils* logger);
  ObjectHandler(const ObjectHandler&) = delete;
  ObjectHandler& operator=(const ObjectHandler&) = delete;
  ~ObjectHandler();

  // Writes the record of `object` (not null) and of every object it leads to that is
  // not yet in the stream.
  void writeModeledObject(icore::IObject const* object, int options);

 private:
  enum class PropertyKind { kPrimitive, kPrimitiveCollection, kEnum, kEnumCollection, kReference, kReferenceCollection };
  struct PropertyPlan {
    icore::IProperty const* property;
    PropertyKind kind;
    char primitiveMarker;  // for the primitive kinds
    bool isAbstract;
  };
  struct ClassPlan {
    std::vector<PropertyPlan> properties;
  };
  // One object whose data is being written; `items` walks a reference collection.
  struct Frame {
    icore::IObjectInfo const* object;
    ClassPlan const* plan;
    std::size_t nextProperty;
    IVector<icore::IObject*> const* items;
    std::size_t nextItem;
  };

  ClassPlan const& planFor(icore::IClass const* objectClass);
  // Writes the start of an object record; true when it is a concrete object whose
  // data must follow.
  bool beginObjectRecord(icore::IObject const* object);
  void writeObjectReference(icore::IObject const* object, icore::IClass const* objectClass);
  void writeConcreteObject(icore::IObjectInfo const& object);
  void writeProxyObject(icore::IObjectInfo const& object);
  void writeProxyObjectTypeName(icore::IObjectInfo const& object);
  void writeProxyObjectIdentity(icore::IObjectInfo const& object);
  void writeSeededObject(icore::IObjectInfo const& object);
  void writeSeededObjectIdentity(icore::IObjectInfo const& object);
  void writeObjectHandle(icore::IObject const* object);
  void writeObjectIdentity(icore::IObjectInfo const& object);
  void writeAnnotations();
  // Writes the next data entry of the frame's object; returns an object whose record
  // must now be written, or null.
  icore::IObject const* writeObjectData(Frame& frame);
  bool needSerialization(icore::IObjectInfo const& object, PropertyPlan const& plan, void const*& value,
                         unsigned int& length) const;
  bool needsHandle(icore::IClass const* objectClass) const;
  void writePropertyTypeMarker(PropertyPlan const& plan);
  void writePrimitivePropTypeMarker(char primitiveMarker);
  icore::IObject const* writePropertyValue(Frame& frame, PropertyPlan const& plan, void const* value,
                                           unsigned int length);
  void writePrimitiveValue(char primitiveMarker, void const* value, unsigned int length);
  void writePrimitiveCollectionValue(char primitiveMarker, void const* items);
  // The UTF-8 text of `literal`, asked of the enumeration's factory once per literal.
  std::string const& literalText(icore::IProperty const& property, void const* literal);
  void writeEnumValue(icore::IProperty const& property, void const* literal);
  void writeEnumCollectionValue(icore::IProperty const& property, void const* literals);
  void writeMarker(char marker);

  StreamWriter* writer_;
  utils::ILoggerUtils* logger_;
  HandleManager handles_;
  ClassDescriptorHandler descriptors_;
  int options_ = 0;
  std::unordered_map<icore::IClass const*, std::unique_ptr<ClassPlan>> plans_;
  icore::IClass const* lastPlanClass_ = nullptr;
  ClassPlan const* lastPlan_ = nullptr;
  std::vector<Frame> stack_;
  std::unordered_map<void const*, std::string> literalTexts_;
  // Reused for every identity written.
  std::string identityText_;
};

}  // namespace output
}  // namespace com::veltrana::qvx::io
