#include "io/output/ObjectHandler.h"

#include <cstdint>
#include <memory>

#include "icore/IClass.h"
#include "icore/IDatatype.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IFactory.h"
#include "icore/IObjectInfo.h"
#include "icore/IObjectReflector.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "icore/internal/ClassTable.h"
#include "io/IdentityText.h"
#include "io/StreamLog.h"
#include "io/StreamMarkers.h"
#include "io/StreamWriter.h"
#include "io/exception/IOException.h"
#include "platform/QvxAssert.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::io::output {

using exception::IOException;
using icore::IClass;
using icore::IObject;
using icore::IObjectInfo;
using icore::IProperty;
using icore::internal::ClassTable;

namespace {

IObjectInfo const& infoOf(IObject const* object) { return *icore::IObjectReflector::getInstance()->getIObjectInfo(object); }

// Calls `visit(T{})` with the element type behind a pointer of primitive marker `marker`
// (blobs excepted, their length travels apart).
template <typename Visit>
void withPrimitiveType(char marker, Visit&& visit) {
  switch (marker) {
    case TC_BYTE: visit(char{}); return;
    case TC_BOOLEAN: visit(IBOOLEAN{}); return;
    case TC_SHORT: visit(std::int16_t{}); return;
    case TC_CHAR: visit(char16_t{}); return;
    case TC_INTEGER: visit(std::int32_t{}); return;
    case TC_LONG: visit(std::int64_t{}); return;
    case TC_FLOAT: visit(float{}); return;
    case TC_DOUBLE: visit(double{}); return;
    case TC_STRING: visit(IUString{}); return;
    case TC_DATE: visit(WkDate{}); return;
    default: QVX_ASSERT_FAIL("not a primitive marker of a fixed-size or text type");
  }
}

}  // namespace

ObjectHandler::ObjectHandler(StreamWriter* writer, utils::ILoggerUtils* logger)
    : writer_(writer), logger_(logger), handles_(logger), descriptors_(writer, &handles_, logger) {}

ObjectHandler::~ObjectHandler() = default;

void ObjectHandler::writeModeledObject(IObject const* object, int options) {
  options_ = options;
  if (!beginObjectRecord(object)) return;
  stack_.clear();
  stack_.push_back({&infoOf(object), &planFor(infoOf(object).getIClass()), 0, nullptr, 0});
  while (!stack_.empty()) {
    IObject const* nested = writeObjectData(stack_.back());
    if (nested == nullptr || !beginObjectRecord(nested)) continue;
    IObjectInfo const& info = infoOf(nested);
    stack_.push_back({&info, &planFor(info.getIClass()), 0, nullptr, 0});
  }
}

ObjectHandler::ClassPlan const& ObjectHandler::planFor(IClass const* objectClass) {
  if (objectClass == lastPlanClass_) return *lastPlan_;
  auto& slot = plans_[objectClass];
  if (slot == nullptr) {
    slot = std::make_unique<ClassPlan>();
    for (ClassTable::Entry const& entry : objectClass->getClassTable().entries()) {
      PropertyPlan plan{entry.property, PropertyKind::kReference, 0, entry.abstractProperty};
      if (entry.kind == icore::internal::PropertyKind::kPrimitive) {
        plan.kind = entry.multiValued ? PropertyKind::kPrimitiveCollection : PropertyKind::kPrimitive;
        plan.primitiveMarker = primitiveMarkerOf(entry.primitiveTypeId);
        QVX_ASSERT(plan.primitiveMarker != 0);
      } else if (entry.kind == icore::internal::PropertyKind::kEnumeration) {
        plan.kind = entry.multiValued ? PropertyKind::kEnumCollection : PropertyKind::kEnum;
      } else if (entry.multiValued) {
        plan.kind = PropertyKind::kReferenceCollection;
      }
      slot->properties.push_back(plan);
    }
  }
  lastPlanClass_ = objectClass;
  lastPlan_ = slot.get();
  return *slot;
}

bool ObjectHandler::beginObjectRecord(IObject const* object) {
  IObjectInfo const& info = infoOf(object);
  IClass const* objectClass = info.getIClass();
  QVX_ASSERT(objectClass != nullptr);
  detail::logProgressf(*logger_, "Beginning to write a non-null object of type: [%s]", objectClass->getName());
  if (handles_.getHandle(object) >= 0) {
    writeObjectReference(object, objectClass);
    return false;
  }
  detail::logProgress(*logger_, "The object is not already present in the stream. Writing the complete object.");
  writeMarker(TC_OBJECT);
  if (info.isProxy()) {
    writeProxyObject(info);
    return false;
  }
  if (objectClass->isSeeded()) {
    writeSeededObject(info);
    return false;
  }
  writeConcreteObject(info);
  return true;
}

void ObjectHandler::writeObjectReference(IObject const* object, IClass const* objectClass) {
  detail::logProgress(*logger_, "Object already present in the stream. Writing a reference to it.");
  const int handle = handles_.getHandle(object);
  if (handle < 0) detail::throwLogged<IOException>(*logger_, 80005, objectClass->getQualifiedName());
  writeMarker(TC_OBJ_REFERENCE);
  writer_->writeInt(handle);
}

void ObjectHandler::writeProxyObject(IObjectInfo const& object) {
  detail::logProgressf(*logger_, "Writing a proxy object of type: [%s]", object.getIClass()->getName());
  writeMarker(TC_PROXY);
  writeObjectHandle(object.getAssociatedObject());
  writeProxyObjectTypeName(object);
  writeProxyObjectIdentity(object);
  writeAnnotations();
  detail::logProgress(*logger_, "Completed writing the proxy object.");
}

void ObjectHandler::writeProxyObjectTypeName(IObjectInfo const& object) {
  writer_->writeString(object.getIClass()->getQualifiedName());
}

void ObjectHandler::writeProxyObjectIdentity(IObjectInfo const& object) {
  identityText_.clear();
  IdentityText::appendText(identityText_, object.getIdentity());
  detail::logProgressf(*logger_, "Writing the identity of the proxy object. Identity: [%s]", identityText_);
  writer_->writeUtf8(identityText_);
}

void ObjectHandler::writeSeededObject(IObjectInfo const& object) {
  detail::logProgressf(*logger_, "Writing a seeded object of type: [%s]", object.getIClass()->getName());
  writeMarker(TC_SEEDED);
  writeObjectHandle(object.getAssociatedObject());
  writeSeededObjectIdentity(object);
}

void ObjectHandler::writeSeededObjectIdentity(IObjectInfo const& object) {
  const IUString identity = object.getIdentityString();
  if (identity.isEmpty()) detail::throwLogged<IOException>(*logger_, 80006, object.getIClass()->getQualifiedName());
  detail::logProgressf(*logger_, "Writing the identity of the seeded object. Identity: [%s]", identity);
  writer_->writeString(identity);
}

void ObjectHandler::writeConcreteObject(IObjectInfo const& object) {
  detail::logProgress(*logger_, "Writing a concrete object to the stream.");
  descriptors_.writeClassDescriptor(object);
  if (needsHandle(object.getIClass())) {
    writeMarker(TC_HANDLE);
    writeObjectHandle(object.getAssociatedObject());
  } else {
    writeMarker(TC_NOT_SPECIFIED);
  }
  writeObjectIdentity(object);
  writeAnnotations();
  detail::logProgress(*logger_, "Writing object data.");
}

bool ObjectHandler::needsHandle(IClass const* objectClass) const { return objectClass->isValueClass() == IFALSE; }

void ObjectHandler::writeObjectHandle(IObject const* object) {
  int handle = handles_.getHandle(object);
  if (handle < 0) handle = handles_.assignHandle(object);
  detail::logProgressf(*logger_, "Writing handle for the object. Handle: [%d]", handle);
  writer_->writeInt(handle);
}

void ObjectHandler::writeObjectIdentity(IObjectInfo const& object) {
  icore::IIdentity const* identity = object.getIClass()->isIdentifiableClass() ? object.getIdentity() : nullptr;
  if (identity == nullptr) {
    detail::logProgress(*logger_, "The object does not have an identity.");
    writeMarker(TC_NOT_SPECIFIED);
    return;
  }
  identityText_.clear();
  IdentityText::appendText(identityText_, identity);
  detail::logProgressf(*logger_, "Writing the identity of the object. Identity: [%s]", identityText_);
  writeMarker(TC_IDENTITY);
  writer_->writeUtf8(identityText_);
}

void ObjectHandler::writeAnnotations() {
  // No modeled and no generic annotations.
  writeMarker(TC_NOT_SPECIFIED);
  writeMarker(TC_NOT_SPECIFIED);
}

IObject const* ObjectHandler::writeObjectData(Frame& frame) {
  if (frame.items != nullptr) {
    if (frame.nextItem < frame.items->size()) {
      IObject const* item = (*frame.items)[frame.nextItem++];
      if (item != nullptr) return item;
      writeMarker(TC_NULL);
      return nullptr;
    }
    frame.items = nullptr;
  }
  if (frame.nextProperty == frame.plan->properties.size()) {
    stack_.pop_back();
    return nullptr;
  }
  PropertyPlan const& plan = frame.plan->properties[frame.nextProperty++];
  void const* value = nullptr;
  unsigned int length = 0;
  if (!needSerialization(*frame.object, plan, value, length)) {
    detail::logProgressf(*logger_, "Property [%s] need not be serialized.", plan.property->getName());
    writeMarker(TC_PROPERTY_SKIPPED);
    return nullptr;
  }
  detail::logProgressf(*logger_, "Writing data for property: [%s]", plan.property->getName());
  writePropertyTypeMarker(plan);
  return writePropertyValue(frame, plan, value, length);
}

bool ObjectHandler::needSerialization(IObjectInfo const& object, PropertyPlan const& plan, void const*& value,
                                      unsigned int& length) const {
  if (plan.isAbstract) return false;
  switch (plan.kind) {
    case PropertyKind::kPrimitive: value = object.get(*plan.property, &length, ITRUE); return value != nullptr;
    case PropertyKind::kEnum:
    case PropertyKind::kReference: value = object.get(*plan.property, IFALSE); return value != nullptr;
    case PropertyKind::kPrimitiveCollection:
      // Elements of a blob collection carry no length, so such a collection cannot be
      // written.
      if (plan.primitiveMarker == TC_BLOB) return false;
      value = object.get(*plan.property, ITRUE);
      break;
    case PropertyKind::kEnumCollection:
    case PropertyKind::kReferenceCollection: value = object.get(*plan.property, IFALSE); break;
  }
  // Every element collection has the layout of IVector<void*>; only its size is asked.
  return value != nullptr && !static_cast<IVector<void*> const*>(value)->isEmpty();
}

void ObjectHandler::writePropertyTypeMarker(PropertyPlan const& plan) {
  switch (plan.kind) {
    case PropertyKind::kPrimitive: writePrimitivePropTypeMarker(plan.primitiveMarker); return;
    case PropertyKind::kPrimitiveCollection: writeMarker(TC_PRIM_COLLECTION); return;
    case PropertyKind::kEnum: writeMarker(TC_ENUM); return;
    case PropertyKind::kEnumCollection: writeMarker(TC_ENUM_COLLECTION); return;
    case PropertyKind::kReference: writeMarker(TC_UDC); return;
    case PropertyKind::kReferenceCollection: writeMarker(TC_UDC_COLLECTION); return;
  }
}

void ObjectHandler::writePrimitivePropTypeMarker(char primitiveMarker) { writeMarker(primitiveMarker); }

IObject const* ObjectHandler::writePropertyValue(Frame& frame, PropertyPlan const& plan, void const* value,
                                                 unsigned int length) {
  switch (plan.kind) {
    case PropertyKind::kPrimitive:
      detail::logProgress(*logger_, "Writing single-valued primitive property.");
      writePrimitiveValue(plan.primitiveMarker, value, length);
      return nullptr;
    case PropertyKind::kPrimitiveCollection:
      detail::logProgress(*logger_, "Writing multi-valued primitive property");
      writePrimitiveCollectionValue(plan.primitiveMarker, value);
      return nullptr;
    case PropertyKind::kEnum: writeEnumValue(*plan.property, value); return nullptr;
    case PropertyKind::kEnumCollection:
      detail::logProgress(*logger_, "Writing multi-valued enum property.");
      writeEnumCollectionValue(*plan.property, value);
      return nullptr;
    case PropertyKind::kReference:
      detail::logProgress(*logger_, "Writing single valued reference property.");
      return static_cast<IObject const*>(value);
    case PropertyKind::kReferenceCollection: {
      detail::logProgress(*logger_, "Writing multi-valued reference property.");
      auto const* items = static_cast<IVector<IObject*> const*>(value);
      detail::logProgressf(*logger_, "Writing the length info. Length: [%d]", static_cast<int>(items->size()));
      writer_->writeInt(static_cast<int>(items->size()));
      frame.items = items;
      frame.nextItem = 0;
      return nullptr;
    }
  }
  return nullptr;
}

void ObjectHandler::writePrimitiveValue(char primitiveMarker, void const* value, unsigned int length) {
  switch (primitiveMarker) {
    case TC_BYTE: writer_->writeByte(*static_cast<char const*>(value)); return;
    case TC_BOOLEAN: writer_->writeBoolean(*static_cast<IBOOLEAN const*>(value)); return;
    case TC_SHORT: writer_->writeShort(*static_cast<std::int16_t const*>(value)); return;
    case TC_CHAR: writer_->writeUnichar(*static_cast<char16_t const*>(value)); return;
    case TC_INTEGER: writer_->writeInt(*static_cast<std::int32_t const*>(value)); return;
    case TC_LONG: writer_->writeLong(*static_cast<std::int64_t const*>(value)); return;
    case TC_FLOAT: writer_->writeFloat(*static_cast<float const*>(value)); return;
    case TC_DOUBLE: writer_->writeDouble(*static_cast<double const*>(value)); return;
    case TC_STRING: writer_->writeString(*static_cast<IUString const*>(value)); return;
    case TC_BLOB: writer_->writeBytes(static_cast<char const*>(value), length); return;
    case TC_DATE: writer_->writeDate(*static_cast<WkDate const*>(value)); return;
    default: QVX_ASSERT_FAIL("not a primitive marker");
  }
}

void ObjectHandler::writePrimitiveCollectionValue(char primitiveMarker, void const* items) {
  withPrimitiveType(primitiveMarker, [&](auto element) {
    using Element = decltype(element);
    auto const& values = *static_cast<IVector<Element*> const*>(items);
    detail::logProgressf(*logger_, "Writing the length info. Length: [%d]", static_cast<int>(values.size()));
    writer_->writeInt(static_cast<int>(values.size()));
    for (Element const* value : values) {
      // A null element has no encoding of its own; it is written as the type's zero.
      const Element zero{};
      writePrimitiveValue(primitiveMarker, value != nullptr ? value : &zero, 0);
    }
  });
}

std::string const& ObjectHandler::literalText(IProperty const& property, void const* literal) {
  auto found = literalTexts_.find(literal);
  if (found != literalTexts_.end()) return found->second;
  auto const* enumeration = static_cast<icore::IDatatype const*>(property.getType());
  icore::IFactory* factory = const_cast<icore::IPackage*>(enumeration->getPackage())->getFactory();
  const std::unique_ptr<IUString> text(factory->datatypeToString(*enumeration, literal));
  return literalTexts_.emplace(literal, text != nullptr ? text->toUtf8() : std::string()).first->second;
}

void ObjectHandler::writeEnumValue(IProperty const& property, void const* literal) {
  std::string const& text = literalText(property, literal);
  detail::logProgressf(*logger_, "Writing single-valued enum property. Value: [%s].", text);
  writer_->writeUtf8(text);
}

void ObjectHandler::writeEnumCollectionValue(IProperty const& property, void const* literals) {
  auto const& values = *static_cast<IVector<icore::IEnumerationLiteral*> const*>(literals);
  detail::logProgressf(*logger_, "Writing the length info. Length: [%d]", static_cast<int>(values.size()));
  writer_->writeInt(static_cast<int>(values.size()));
  for (icore::IEnumerationLiteral const* literal : values) writer_->writeUtf8(literalText(property, literal));
}

void ObjectHandler::writeMarker(char marker) { writer_->writeByte(marker); }

}  // namespace com::veltrana::qvx::io::output
