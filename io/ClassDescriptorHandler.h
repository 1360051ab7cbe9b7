// Writes and reads the class descriptors of a binary stream (layout in StreamMarkers.h):
//
//   04 handle:int className:string packageVersion:string declaredCount:short
//      super: (04 descriptor | 02 handle | 12) then one entry per declared property:
//   single primitive   marker(05..0F) name        primitive collection  18 marker name
//   enumeration        14 enumName name           enumeration collection 19 enumName name
//   reference          13 className name          reference collection  1A className name
//
// A class is described in full once per stream, later as 02 and its handle. Descriptor
// chains are written and read with loops, not recursion, so a hostile chain of super
// class descriptors cannot exhaust the stack.
#pragma once

#include <cstdint>
#include <vector>

#include "io/ClassDescriptor.h"
#include "io/PropertyInfo.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
}
namespace com::veltrana::qvx::icore {
class IClass;
class IObjectInfo;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::io {

class HandleManager;
class StreamReader;
class StreamWriter;

class QVX_API ClassDescriptorHandler {
 public:
  using ClassDescriptor = io::ClassDescriptor;
  using PropertyInfo = io::PropertyInfo;

  // Output side. Nothing passed in is owned.
  ClassDescriptorHandler(StreamWriter* writer, HandleManager* handles, utils::ILoggerUtils* logger);
  // Input side. Nothing passed in is owned.
  ClassDescriptorHandler(StreamReader* reader, HandleManager* handles, utils::ILoggerUtils* logger);
  ClassDescriptorHandler(const ClassDescriptorHandler&) = delete;
  ClassDescriptorHandler& operator=(const ClassDescriptorHandler&) = delete;
  ~ClassDescriptorHandler();

  void writeClassDescriptor(icore::IObjectInfo const& object);
  void writeClassDescriptor(icore::IClass const* objectClass);

  // After TC_CLASSDESC: a complete descriptor, which the handle manager owns.
  ClassDescriptor* readClassDescriptor();
  // After TC_CLASSDESC_REFERENCE: the descriptor under the handle that follows
  // (IOException 81012 when there is none).
  ClassDescriptor* readClassDescriptorReference();

 private:
  void writeClassDescriptorReference(icore::IClass const* objectClass);
  void writeClassDescriptorHandle(icore::IClass const* objectClass);
  void writeDeclaredProperties(icore::IClass const* objectClass);
  void writePropertyType(icore::IProperty const& property);
  void writePrimitivePropType(icore::IProperty const& property);
  void writePrimCollectionPropType(icore::IProperty const& property);
  void writeEnumPropType(icore::IProperty const& property);
  void writeEnumCollectionPropType(icore::IProperty const& property);
  void writeReferencePropType(icore::IProperty const& property);
  void writeRefCollectionPropType(icore::IProperty const& property);
  void writeMarker(char marker);

  ClassDescriptor* readClassDescriptorHeader();
  int readClassDescriptorHandle();
  void readPropertiesInfo(ClassDescriptor& descriptor);
  void inheritProperties(ClassDescriptor& descriptor, ClassDescriptor* superClass);
  char readMarker();

  StreamWriter* writer_ = nullptr;
  StreamReader* reader_ = nullptr;
  HandleManager* handles_;
  utils::ILoggerUtils* logger_;
  // Property entries copied from super class descriptors so far; bounded by the input
  // read, so that many small descriptors inheriting from one large one cannot make the
  // reader allocate far more than the stream holds.
  std::int64_t inheritedEntries_ = 0;
};

}  // namespace com::veltrana::qvx::io
