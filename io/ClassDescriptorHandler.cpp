#include "io/ClassDescriptorHandler.h"

#include <memory>

#include "icore/IClass.h"
#include "icore/IObjectInfo.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "io/HandleManager.h"
#include "io/StreamLog.h"
#include "io/StreamMarkers.h"
#include "io/StreamReader.h"
#include "io/StreamWriter.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::io {

using exception::InvalidDataException;
using exception::IOException;

namespace {

// How many inherited property entries the descriptors of a stream may copy: a
// generous multiple of the bytes read, so real streams never come near it.
constexpr std::int64_t kInheritedEntriesPerByte = 16;
constexpr std::int64_t kInheritedEntriesAllowance = 64 * 1024;

IUString typeNameOf(icore::IProperty const& property) {
  icore::IType const* type = property.getType();
  return type != nullptr ? type->getQualifiedName() : IUString();
}

}  // namespace

ClassDescriptorHandler::ClassDescriptorHandler(StreamWriter* writer, HandleManager* handles,
                                               utils::ILoggerUtils* logger)
    : writer_(writer), handles_(handles), logger_(logger) {}

ClassDescriptorHandler::ClassDescriptorHandler(StreamReader* reader, HandleManager* handles,
                                               utils::ILoggerUtils* logger)
    : reader_(reader), handles_(handles), logger_(logger) {}

ClassDescriptorHandler::~ClassDescriptorHandler() = default;

// ---- output side ----

void ClassDescriptorHandler::writeClassDescriptor(icore::IObjectInfo const& object) {
  icore::IClass const* objectClass = object.getIClass();
  QVX_ASSERT(objectClass != nullptr);
  writeClassDescriptor(objectClass);
}

void ClassDescriptorHandler::writeClassDescriptor(icore::IClass const* objectClass) {
  // Headers go out from the class up its super classes until one is described already
  // or there is none; then the declared properties follow from the top class down, so
  // that each super class's descriptor is complete before its subclass's entries.
  std::vector<icore::IClass const*> opened;
  for (icore::IClass const* current = objectClass;;) {
    detail::logProgressf(*logger_, "Writing the class descriptor for the IClass: [%s]", current->getName());
    // A class has a handle exactly when its descriptor has been written in full.
    if (handles_->getHandle(current) >= 0) {
      writeClassDescriptorReference(current);
      break;
    }
    detail::logProgress(*logger_,
                        "The class descriptor is not already present in the stream. Writing the complete class "
                        "descriptor.");
    writeMarker(TC_CLASSDESC);
    writeClassDescriptorHandle(current);
    writer_->writeString(current->getQualifiedName());
    icore::IPackage const* package = current->getPackage();
    writer_->writeString(package != nullptr ? package->getVersion() : IUString());
    writer_->writeShort(static_cast<short>(current->getDeclaredProperties().size()));
    opened.push_back(current);
    icore::IClass const* superClass = current->getSuperClass();
    if (superClass == nullptr) {
      writeMarker(TC_NOT_SPECIFIED);
      break;
    }
    detail::logProgressf(*logger_, "Writing the super class for the IClass: [%s]", superClass->getName());
    current = superClass;
  }
  for (auto described = opened.rbegin(); described != opened.rend(); ++described) {
    writeDeclaredProperties(*described);
  }
}

void ClassDescriptorHandler::writeClassDescriptorReference(icore::IClass const* objectClass) {
  detail::logProgress(*logger_,
                      "The class descriptor is already present in the stream. Writing a reference to it.");
  writeMarker(TC_CLASSDESC_REFERENCE);
  writer_->writeInt(handles_->getHandle(objectClass));
}

void ClassDescriptorHandler::writeClassDescriptorHandle(icore::IClass const* objectClass) {
  int handle = handles_->getHandle(objectClass);
  if (handle < 0) handle = handles_->assignHandle(objectClass);
  detail::logProgressf(*logger_, "Writing handle for the class descriptor. Handle: [%d]", handle);
  writer_->writeInt(handle);
}

void ClassDescriptorHandler::writeDeclaredProperties(icore::IClass const* objectClass) {
  detail::logProgress(*logger_, "Writing the declared properties of the IClass.");
  for (icore::IProperty const* property : objectClass->getDeclaredProperties()) writePropertyType(*property);
}

void ClassDescriptorHandler::writePropertyType(icore::IProperty const& property) {
  const bool isCollection = property.isCollection() != IFALSE;
  if (property.isPrimitive()) {
    isCollection ? writePrimCollectionPropType(property) : writePrimitivePropType(property);
  } else if (property.isEnum()) {
    isCollection ? writeEnumCollectionPropType(property) : writeEnumPropType(property);
  } else {
    isCollection ? writeRefCollectionPropType(property) : writeReferencePropType(property);
  }
  writer_->writeString(property.getName());
}

namespace {

char primitiveMarkerOfProperty(icore::IProperty const& property) {
  icore::IType const* type = property.getType();
  const char marker = type != nullptr ? primitiveMarkerOf(type->getTypeId()) : 0;
  QVX_ASSERT(marker != 0);
  return marker;
}

}  // namespace

void ClassDescriptorHandler::writePrimitivePropType(icore::IProperty const& property) {
  detail::logProgressf(*logger_, "Writing the type information for single-valued primitive property: [%s]",
                       property.getQualifiedName());
  writeMarker(primitiveMarkerOfProperty(property));
}

void ClassDescriptorHandler::writePrimCollectionPropType(icore::IProperty const& property) {
  detail::logProgressf(*logger_, "Writing the type information for multi-valued primitive property: [%s]",
                       property.getQualifiedName());
  writeMarker(TC_PRIM_COLLECTION);
  writeMarker(primitiveMarkerOfProperty(property));
}

void ClassDescriptorHandler::writeEnumPropType(icore::IProperty const& property) {
  detail::logProgressf(*logger_, "Writing the type information for single-valued enum property: [%s]",
                       property.getQualifiedName());
  writeMarker(TC_ENUM);
  writer_->writeString(typeNameOf(property));
}

void ClassDescriptorHandler::writeEnumCollectionPropType(icore::IProperty const& property) {
  detail::logProgressf(*logger_, "Writing the type information for multi-valued enum property: [%s]",
                       property.getQualifiedName());
  writeMarker(TC_ENUM_COLLECTION);
  writer_->writeString(typeNameOf(property));
}

void ClassDescriptorHandler::writeReferencePropType(icore::IProperty const& property) {
  detail::logProgressf(*logger_, "Writing the type information for single-valued reference property: [%s]",
                       property.getQualifiedName());
  writeMarker(TC_UDC);
  writer_->writeString(typeNameOf(property));
}

void ClassDescriptorHandler::writeRefCollectionPropType(icore::IProperty const& property) {
  detail::logProgressf(*logger_, "Writing the type information for multi-valued reference property: [%s]",
                       property.getQualifiedName());
  writeMarker(TC_UDC_COLLECTION);
  writer_->writeString(typeNameOf(property));
}

void ClassDescriptorHandler::writeMarker(char marker) { writer_->writeByte(marker); }

// ---- input side ----

ClassDescriptor* ClassDescriptorHandler::readClassDescriptor() {
  // Nested super class descriptors are read header by header; their property entries
  // follow from the innermost outwards (the order in which they were written).
  std::vector<ClassDescriptor*> opened;
  ClassDescriptor* superClass = nullptr;
  for (;;) {
    opened.push_back(readClassDescriptorHeader());
    const std::int64_t at = reader_->getOffset();
    const char marker = readMarker();
    if (marker == TC_CLASSDESC) continue;
    if (marker == TC_CLASSDESC_REFERENCE) {
      superClass = readClassDescriptorReference();
    } else if (marker != TC_NOT_SPECIFIED) {
      detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81004,
                                                  "TC_CLASSDESC TC_CLASSDESC_REFERENCE TC_NOT_SPECIFIED",
                                                  static_cast<int>(marker));
    }
    break;
  }
  for (auto descriptor = opened.rbegin(); descriptor != opened.rend(); ++descriptor) {
    inheritProperties(**descriptor, superClass);
    readPropertiesInfo(**descriptor);
    superClass = *descriptor;
  }
  return opened.front();
}

ClassDescriptor* ClassDescriptorHandler::readClassDescriptorHeader() {
  detail::logProgress(*logger_, "Beginning to read a complete class descriptor.");
  auto descriptor = std::make_unique<ClassDescriptor>();
  const int handle = readClassDescriptorHandle();
  descriptor->setHandle(handle);
  handles_->assign(descriptor.get(), handle);
  ClassDescriptor* read = descriptor.get();
  handles_->adoptClassDescriptor(std::move(descriptor));
  read->setIClassName(reader_->readString());
  read->setPackageVersion(reader_->readString());
  const std::int64_t at = reader_->getOffset();
  const short count = reader_->readShort();
  if (count < 0) detail::throwLoggedAt<IOException>(*logger_, at, 81018, static_cast<int>(count), at);
  read->setDeclPropCount(count);
  return read;
}

int ClassDescriptorHandler::readClassDescriptorHandle() {
  const std::int64_t at = reader_->getOffset();
  const int handle = reader_->readInt();
  detail::logProgressf(*logger_, "Read the handle for the class descriptor. Handle: [%d]", handle);
  if (handle < 0) detail::throwLoggedAt<IOException>(*logger_, at, 81012, handle);
  return handle;
}

void ClassDescriptorHandler::inheritProperties(ClassDescriptor& descriptor, ClassDescriptor* superClass) {
  if (superClass == nullptr) return;
  inheritedEntries_ += static_cast<std::int64_t>(superClass->getAllPropsInfo().size());
  const std::int64_t at = reader_->getOffset();
  if (inheritedEntries_ > at * kInheritedEntriesPerByte + kInheritedEntriesAllowance) {
    detail::throwLoggedAt<IOException>(*logger_, at, 81019, static_cast<long long>(at));
  }
  descriptor.setSuperClassDesc(superClass);
}

void ClassDescriptorHandler::readPropertiesInfo(ClassDescriptor& descriptor) {
  detail::logProgressf(*logger_, "Reading properties for the class descriptor of IClass: [%s]",
                       descriptor.getIClassName());
  for (int index = 0; index < descriptor.getDeclPropCount(); ++index) {
    auto property = std::make_unique<PropertyInfo>();
    const char marker = readMarker();
    if (marker == TC_PRIM_COLLECTION) {
      property->setIsCollection(ITRUE);
      property->setPropertyTypeMarker(readMarker());
    } else if (marker == TC_ENUM_COLLECTION || marker == TC_UDC_COLLECTION) {
      property->setIsCollection(ITRUE);
      property->setPropertyTypeMarker(marker == TC_ENUM_COLLECTION ? TC_ENUM : TC_UDC);
      property->setPropertyTypeName(reader_->readString());
    } else {
      property->setPropertyTypeMarker(marker);
      if (marker == TC_UDC || marker == TC_ENUM) property->setPropertyTypeName(reader_->readString());
    }
    property->setPropertyName(reader_->readString());
    detail::logProgressf(*logger_, "Read property information for the property: [%s]", property->getPropertyName());
    descriptor.addDeclaredProperty(std::move(property));
  }
}

ClassDescriptor* ClassDescriptorHandler::readClassDescriptorReference() {
  detail::logProgress(*logger_, "Reading a reference to a class descriptor.");
  const std::int64_t at = reader_->getOffset();
  const int handle = reader_->readInt();
  ClassDescriptor* descriptor = handle >= 0 ? handles_->findClassDescriptor(handle) : nullptr;
  if (descriptor == nullptr) detail::throwLoggedAt<IOException>(*logger_, at, 81012, handle);
  detail::logProgressf(*logger_, "Completed reading a class descriptor reference. Handle: [%d]", handle);
  return descriptor;
}

char ClassDescriptorHandler::readMarker() { return reader_->readByte(); }

}  // namespace com::veltrana::qvx::io
