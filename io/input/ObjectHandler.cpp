#include "io/input/ObjectHandler.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "icore/IClass.h"
#include "icore/IDatatype.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IFactory.h"
#include "icore/IIdentity.h"
#include "icore/IObjectInfo.h"
#include "icore/IObjectReflector.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IType.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/runtime/SeedRegistry.h"
#include "io/IdentityText.h"
#include "io/PropertyInfo.h"
#include "io/SerializationUtils.h"
#include "io/StreamLog.h"
#include "io/StreamMarkers.h"
#include "io/StreamReader.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "platform/WkDate.h"

namespace com::veltrana::qvx::io::input {

using exception::InvalidDataException;
using exception::IOException;
using icore::IClass;
using icore::IObject;
using icore::IObjectInfo;
using icore::IProperty;
using icore::internal::IObjectInternal;

namespace {

constexpr const char* kValueMarkers =
    "TC_BYTE TC_BOOLEAN TC_SHORT TC_INTEGER TC_LONG TC_FLOAT TC_DOUBLE TC_CHAR TC_STRING TC_BLOB TC_DATE TC_UDC "
    "TC_ENUM TC_PRIM_COLLECTION TC_ENUM_COLLECTION TC_UDC_COLLECTION";

IObjectInfo& infoOf(IObject const* object) { return *icore::IObjectReflector::getInstance()->getIObjectInfo(object); }
IObjectInternal* internalOf(IObject* object) { return static_cast<IObjectInternal*>(object); }

// The marker that opens a data entry of a property described by `info`.
char entryMarkerOf(PropertyInfo const& info) {
  if (!info.getIsCollection()) return info.getPropertyTypeMarker();
  switch (info.getPropertyTypeMarker()) {
    case TC_ENUM: return TC_ENUM_COLLECTION;
    case TC_UDC: return TC_UDC_COLLECTION;
    default: return TC_PRIM_COLLECTION;
  }
}

// How the registered `property` describes itself in a descriptor entry.
PropertyInfo describe(IProperty const& property) {
  PropertyInfo info;
  info.setIsCollection(property.isCollection());
  if (property.isPrimitive()) {
    info.setPropertyTypeMarker(primitiveMarkerOf(property.getType()->getTypeId()));
  } else {
    info.setPropertyTypeMarker(property.isEnum() ? TC_ENUM : TC_UDC);
  }
  return info;
}

bool agrees(PropertyInfo const& streamInfo, IProperty const& property) {
  const PropertyInfo registered = describe(property);
  return registered.getIsCollection() == streamInfo.getIsCollection() &&
         registered.getPropertyTypeMarker() == streamInfo.getPropertyTypeMarker();
}

bool isAncestorOrSelf(IObject const* candidate, IObject* object) {
  for (IObjectInternal const* current = internalOf(object); current != nullptr; current = current->iGetContainer()) {
    if (current == candidate) return true;
  }
  return false;
}

}  // namespace

ObjectHandler::ObjectHandler(StreamReader* reader, utils::ILoggerUtils* logger)
    : reader_(reader), logger_(logger), handles_(logger), descriptors_(reader, &handles_, logger) {}

ObjectHandler::~ObjectHandler() = default;

// ---- items and ownership ----

void ObjectHandler::beginItem() {
  created_.clear();
  stack_.clear();
}

std::vector<IObject*> ObjectHandler::uncontainedCreated() const {
  std::vector<IObject*> uncontained;
  for (IObject* object : created_) {
    if (internalOf(object)->iGetContainer() == nullptr) uncontained.push_back(object);
  }
  return uncontained;
}

std::vector<IObject*> ObjectHandler::endItem() {
  std::vector<IObject*> uncontained = uncontainedCreated();
  foreignRoots_.insert(uncontained.begin(), uncontained.end());
  created_.clear();
  return uncontained;
}

void ObjectHandler::abandonItem() {
  stack_.clear();
  handles_.release(std::unordered_set<IObject const*>(created_.begin(), created_.end()));
  // Objects that a container of this item holds go with their container; objects that
  // an earlier item's object holds stay with it.
  for (IObject* object : uncontainedCreated()) delete object;
  created_.clear();
}

// ---- object records ----

IObject* ObjectHandler::readModeledObject(int options) {
  options_ = options;
  return readModeledObject();
}

IObject* ObjectHandler::readModeledObject() {
  detail::logProgress(*logger_, "Beginning to read a non-null modeled object from the stream.");
  const std::size_t depth = stack_.size();
  IObject* object = readObjectRecord(false);
  readObjectComplete(depth);
  return object;
}

IObject* ObjectHandler::readModeledObjectReference() {
  detail::logProgress(*logger_, "Reading an object reference from the stream.");
  const std::int64_t at = reader_->getOffset();
  const int handle = reader_->readInt();
  IObject* object = lookUpObject(handle, at);
  detail::logProgressf(*logger_, "Read the object reference from the stream. Handle: [%d]", handle);
  return object;
}

IObject* ObjectHandler::lookUpObject(int handle, std::int64_t offset) {
  IObject* object = handle >= 0 ? handles_.findObject(handle) : nullptr;
  if (object == nullptr) detail::throwLoggedAt<IOException>(*logger_, offset, 81005);
  return object;
}

IObject* ObjectHandler::readObjectRecord(bool skip) {
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  switch (marker) {
    case TC_CLASSDESC: return readConcreteObject(descriptors_.readClassDescriptor(), skip);
    case TC_CLASSDESC_REFERENCE: return readConcreteObject(descriptors_.readClassDescriptorReference(), skip);
    case TC_PROXY: return readProxyObject(skip);
    case TC_SEEDED: return readSeededObject(skip);
    default: throwUnexpectedMarker(at, "TC_PROXY TC_SEEDED TC_CLASSDESC_REFERENCE TC_CLASSDESC", marker);
  }
}

IObject* ObjectHandler::readConcreteObject(ClassDescriptor* descriptor, bool skip) {
  ClassDescriptor::Binding const* binding = skip ? nullptr : &bindDescriptor(*descriptor);
  IObject* object = nullptr;
  if (!skip) {
    const std::int64_t at = reader_->getOffset();
    try {
      object = binding->objectClass->create();
    } catch (icore::exception::InstantiationException const& error) {
      throwCannotSet(at, error.getMessage());
    } catch (icore::exception::IllegalArgumentException& error) {
      throwCannotSet(at, error.getMessage());
    }
    created_.push_back(object);
  }
  const int handle = readObjectHandle(skip);
  if (object != nullptr && handle >= 0) handles_.assign(object, handle);
  readObjectIdentity(object, skip);
  stack_.emplace_back(Context(object, descriptor, binding));
  readAndIgnoreAnnotations();
  return object;
}

int ObjectHandler::readObjectHandle(bool skip) {
  if (readMarker() == TC_NOT_SPECIFIED) return -1;
  const std::int64_t at = reader_->getOffset();
  const int handle = reader_->readInt();
  detail::logProgressf(*logger_, "Reading the handle for the object. Handle: [%d]", handle);
  if (handle < 0 && !skip) detail::throwLoggedAt<IOException>(*logger_, at, 81005);
  return handle;
}

void ObjectHandler::readObjectIdentity(IObject* object, bool skip) {
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  if (marker == TC_NOT_SPECIFIED) return;
  if (marker == TC_LONG_IDENTITY) {
    reader_->readLong();
    return;
  }
  if (marker != TC_IDENTITY) throwUnexpectedMarker(at, "TC_IDENTITY TC_NOT_SPECIFIED", marker);
  if (skip) {
    reader_->readAndIgnoreString();
    return;
  }
  reader_->readString(identityText_);
  if (detail::isProgressLogged(*logger_)) {
    detail::logProgressf(*logger_, "Read the identity for the object. Identity: [%s]", IUString(identityText_));
  }
  IObjectInfo& info = infoOf(object);
  if (!info.getIClass()->isIdentifiableClass()) throwCannotSet(at, IUString("the class has no identity"));
  try {
    std::unique_ptr<icore::IIdentity const> identity(
        IdentityText::fromText(identityText_.data(), identityText_.size()));
    icore::IIdentity const* handed = identity.get();
    info.setIdentity(handed);
    identity.release();
  } catch (icore::exception::IdentityException const& error) {
    throwCannotSet(at, error.getMessage());
  }
}

IObject* ObjectHandler::readProxyObject(bool skip) {
  detail::logProgress(*logger_, "Reading a proxy object.");
  const std::int64_t at = reader_->getOffset();
  const int handle = reader_->readInt();
  if (skip) {
    reader_->readAndIgnoreString();
    reader_->readAndIgnoreString();
    stack_.emplace_back(Context(nullptr, nullptr, nullptr));
    readAndIgnoreAnnotations();
    return nullptr;
  }
  if (handle < 0) detail::throwLoggedAt<IOException>(*logger_, at, 81005);
  const IUString className = reader_->readString();
  IClass* objectClass = getIClassForName(className);
  const std::int64_t identityAt = reader_->getOffset();
  const IUString identityText = reader_->readString();
  IObject* proxy = nullptr;
  try {
    std::unique_ptr<icore::IIdentity const> identity(IdentityText::fromText(identityText));
    icore::IIdentity const* handed = identity.get();
    proxy = objectClass->createProxy(handed);
    identity.release();
  } catch (icore::exception::IdentityException const& error) {
    throwCannotSet(identityAt, error.getMessage());
  } catch (icore::exception::UnsupportedOperationException const& error) {
    throwCannotSet(identityAt, error.getMessage());
  } catch (icore::exception::IllegalArgumentException& error) {
    throwCannotSet(identityAt, error.getMessage());
  }
  if (proxy == nullptr) throwCannotSet(identityAt, IUString("the class makes no proxies"));
  created_.push_back(proxy);
  stack_.emplace_back(Context(proxy, nullptr, nullptr));
  readAndIgnoreAnnotations();
  handles_.assign(proxy, handle);
  detail::logProgressf(*logger_, "Read proxy object of type [%s]. Handle: [%d].", className, handle);
  return proxy;
}

IObject* ObjectHandler::readSeededObject(bool skip) {
  detail::logProgress(*logger_, "Reading a seeded object.");
  const std::int64_t at = reader_->getOffset();
  const int handle = reader_->readInt();
  if (skip) {
    reader_->readAndIgnoreString();
    return nullptr;
  }
  if (handle < 0) detail::throwLoggedAt<IOException>(*logger_, at, 81005);
  const std::int64_t identityAt = reader_->getOffset();
  const IUString identity = reader_->readString();
  IObject* seed = icore::QVXRuntime::getInstance()->getSeedRegistry().getObjectById(identity);
  if (seed == nullptr) detail::throwLoggedAt<IOException>(*logger_, identityAt, 81008);
  foreignRoots_.insert(seed);
  handles_.assign(seed, handle);
  detail::logProgressf(*logger_, "Read seede object with identity [%s]", identity);
  return seed;
}

// ---- annotations ----

void ObjectHandler::readAndIgnoreAnnotations() {
  detail::logProgress(*logger_, "Reading and ignoring any annotations associated with the object.");
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  if (marker == TC_ANNOTATIONS_SKIPPED) {
    detail::logProgress(*logger_,
                        "No annotations found in the stream. Annotations were skipped suring serialization.");
    return;
  }
  if (marker == TC_ANNOTATIONS) {
    const int count = reader_->readCount();
    detail::logProgressf(*logger_, "Reading and ignoring modeled annotations. Number of annotations: [%d].", count);
    // The annotation objects are read as dropped records on the stack; the generic
    // annotations follow once they are done.
    stack_.back().asContext()->setGenericAnnotationsPending(true);
    stack_.emplace_back(ContextList(ContextList::ElementKind::kAnnotation, nullptr, nullptr, count));
    return;
  }
  if (marker != TC_NOT_SPECIFIED) {
    detail::throwLoggedAt<IOException>(*logger_, at, 81004, "TC_ANNOTATIONS TC_NOT_SPECIFIED",
                                       static_cast<int>(marker));
  }
  detail::logProgress(*logger_, "No modeled annotations associated with the object.");
  readAndIgnoreGenericAnnotations();
}

void ObjectHandler::readAndIgnoreGenericAnnotations() {
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  if (marker == TC_GENERIC_ANNOTATIONS) {
    const int namespaces = reader_->readCount();
    detail::logProgressf(*logger_, "Read and ignoring generic annotations. Number of namespace: [%d]", namespaces);
    for (int space = 0; space < namespaces; ++space) {
      const std::int64_t namespaceAt = reader_->getOffset();
      const char namespaceMarker = readMarker();
      if (namespaceMarker != TC_NAMESPACE) {
        detail::throwLoggedAt<IOException>(*logger_, namespaceAt, 81004, "TC_NAMESPACE",
                                           static_cast<int>(namespaceMarker));
      }
      const IUString name = reader_->readString();
      const int pairs = reader_->readCount();
      detail::logProgressf(*logger_,
                           "Read and ignoring annotations associated with the namespace: [%s]. Number of "
                           "annotations: [%d].",
                           name, pairs);
      for (int pair = 0; pair < pairs; ++pair) {
        const IUString key = reader_->readString();
        const IUString value = reader_->readString();
        detail::logProgressf(*logger_, "Read and ignoring the following key value pair. Key: [%s]. Value: [%s].", key,
                             value);
      }
    }
  } else if (marker == TC_NOT_SPECIFIED) {
    detail::logProgress(*logger_, "No generic annotations associated with the object.");
  } else {
    detail::throwLoggedAt<IOException>(*logger_, at, 81004, "TC_GENERIC_ANNOTATIONS TC_NOT_SPECIFIED",
                                       static_cast<int>(marker));
  }
  detail::logProgress(*logger_, "Read all annotations associated with the object.");
}

// ---- the stack ----

void ObjectHandler::readObjectComplete(std::size_t depth) {
  while (stack_.size() > depth) {
    IContextInfo& top = stack_.back();
    if (top.isComplete()) {
      stack_.pop_back();
      continue;
    }
    if (Context* context = top.asContext()) {
      readContext(*context);
    } else {
      readContextList(*top.asContextList());
    }
  }
}

void ObjectHandler::readContext(Context& context) {
  if (context.isGenericAnnotationsPending()) {
    context.setGenericAnnotationsPending(false);
    readAndIgnoreGenericAnnotations();
    return;
  }
  if (context.getDescriptor() == nullptr) return;
  const std::size_t position = context.takeNextPosition();
  if (position == 0) detail::logProgress(*logger_, "Reading object data");
  PropertyInfo const& info = *context.getDescriptor()->getAllPropsInfo()[position];
  ClassDescriptor::Binding const* binding = context.getBinding();
  // The context may move when the value pushes a new entry: take what is needed first.
  IProperty const* property = binding != nullptr ? binding->properties[position] : nullptr;
  const bool conflicting = binding != nullptr && binding->conflicting[position];
  readPropertyValue(context.getObject(), info, property, conflicting);
}

void ObjectHandler::readContextList(ContextList& list) {
  const ContextList::ElementKind kind = list.getElementKind();
  IObject* owner = list.getOwner();
  IProperty const* property = list.getProperty();
  const int index = list.takeNextIndex();
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  if (kind == ContextList::ElementKind::kAnnotation) {
    detail::logProgressf(*logger_, "Read and ignoring modeled annotation at index: [%d]", index);
    if (marker != TC_OBJECT) {
      detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81004, "TC_OBJECT", static_cast<int>(marker));
    }
    readObjectRecord(true);
    return;
  }
  const bool dropped = property == nullptr;
  switch (marker) {
    case TC_NULL: return;
    case TC_OBJ_REFERENCE: {
      const int handle = reader_->readInt();
      if (!dropped) attachObject(owner, *property, lookUpObject(handle, at), false);
      return;
    }
    case TC_OBJECT: {
      IObject* element = readObjectRecord(dropped);
      if (!dropped) attachObject(owner, *property, element, true);
      return;
    }
    default: throwUnexpectedMarker(at, "TC_NULL TC_OBJ_REFERENCE TC_OBJECT", marker);
  }
}

// ---- property values ----

void ObjectHandler::readPropertyValue(IObject* owner, PropertyInfo const& info, IProperty const* property,
                                      bool conflicting) {
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  if (marker == TC_PROPERTY_SKIPPED) return;
  if (marker != entryMarkerOf(info) || (property != nullptr && conflicting)) {
    throwUnexpectedMarker(at, kValueMarkers, marker);
  }
  if (property == nullptr) {
    detail::logProgressf(*logger_, "Reading and ignoring value for the property: [%s].", info.getPropertyName());
    owner = nullptr;
  } else {
    detail::logProgressf(*logger_, "Reading value for the property: [%s].", info.getPropertyName());
  }
  switch (marker) {
    case TC_PRIM_COLLECTION: readPrimitiveCollection(info.getPropertyTypeMarker(), owner, property); return;
    case TC_ENUM: readEnumValue(owner, property); return;
    case TC_ENUM_COLLECTION: readEnumCollection(owner, property); return;
    case TC_UDC: readReferencePropValue(owner, property); return;
    case TC_UDC_COLLECTION: {
      const int count = reader_->readCount();
      stack_.emplace_back(ContextList(ContextList::ElementKind::kReference, owner, property, count));
      return;
    }
    default: readPrimitiveValue(marker, owner, property); return;
  }
}

void ObjectHandler::readReferencePropValue(IObject* owner, IProperty const* property) {
  detail::logProgress(*logger_, "Reading value for single-valued reference property.");
  const std::int64_t at = reader_->getOffset();
  const char marker = readMarker();
  if (marker == TC_OBJ_REFERENCE) {
    const int handle = reader_->readInt();
    if (property != nullptr) attachObject(owner, *property, lookUpObject(handle, at), false);
    return;
  }
  if (marker != TC_OBJECT) throwUnexpectedMarker(at, "TC_OBJ_REFERENCE TC_OBJECT", marker);
  IObject* value = readObjectRecord(property == nullptr);
  if (property != nullptr) attachObject(owner, *property, value, true);
}

void ObjectHandler::attachObject(IObject* owner, IProperty const& property, IObject* value, bool isNew) {
  const std::int64_t at = reader_->getOffset();
  auto const* expected = static_cast<IClass const*>(property.getType());
  IObjectInternal* child = internalOf(value);
  if (expected == nullptr || child->instanceOf(*expected) == IFALSE) {
    throwCannotSet(at, IUString("an object of class ") + infoOf(value).getIClass()->getQualifiedName() +
                           IUString(" does not fit ") + property.getQualifiedName());
  }
  IObjectInternal* ownerObject = internalOf(owner);
  if (property.isContainer()) {
    // A container property only mirrors the containment on the other side: the owner is
    // put into that containment (already done when the container's side was read first).
    if (ownerObject->iGetContainer() == child) return;
    IProperty const* containment = property.getOppositeProperty();
    if (containment == nullptr || !containment->isContainment()) return;
    attachObject(value, *containment, owner, false);
    return;
  }
  if (property.isContainment()) {
    const bool placed = child->iGetContainer() == ownerObject && child->iGetContainmentProperty() == &property;
    if (placed) return;
    if (!isNew && (child->iGetContainer() != nullptr || foreignRoots_.count(value) > 0 || isAncestorOrSelf(value, owner))) {
      throwCannotSet(at, IUString("an object read earlier cannot be contained again"));
    }
  }
  if (property.isCollection()) {
    auto* items = static_cast<IVector<IObject*>*>(const_cast<void*>(infoOf(owner).get(property, IFALSE)));
    if (items == nullptr) throwCannotSet(at, IUString("the object has no collection for ") + property.getName());
    items->append(value);
  } else {
    setPropertyValue(owner, property, value);
  }
  if (property.isContainment()) child->iSetContainer(ownerObject, &property);
}

void ObjectHandler::setPropertyValue(IObject* owner, IProperty const& property, void* value) {
  const std::int64_t at = reader_->getOffset();
  try {
    infoOf(owner).set(property, value, property.isPrimitive() ? ITRUE : IFALSE);
  } catch (icore::exception::IllegalArgumentException& error) {
    throwCannotSet(at, error.getMessage());
  } catch (icore::exception::UnresolvedProxyException const& error) {
    throwCannotSet(at, error.getMessage());
  } catch (icore::exception::IdentityException const& error) {
    throwCannotSet(at, error.getMessage());
  }
}

void ObjectHandler::setBlobPropertyValue(IObject* owner, IProperty const& property, char* bytes, unsigned int length) {
  const std::int64_t at = reader_->getOffset();
  try {
    infoOf(owner).set(property, bytes, length, ITRUE);
  } catch (icore::exception::IllegalArgumentException& error) {
    throwCannotSet(at, error.getMessage());
  } catch (icore::exception::UnresolvedProxyException const& error) {
    throwCannotSet(at, error.getMessage());
  }
}

namespace {

// The value types of the primitive markers: each reads one value in its encoding.
// (Booleans and integers share a C++ type, so the marker picks the reader.)
struct ByteValue { using type = char; static type read(StreamReader& reader) { return reader.readByte(); } };
struct BooleanValue { using type = IBOOLEAN; static type read(StreamReader& reader) { return reader.readBoolean(); } };
struct ShortValue { using type = std::int16_t; static type read(StreamReader& reader) { return reader.readShort(); } };
struct CharValue {
  using type = char16_t;
  static type read(StreamReader& reader) { return static_cast<char16_t>(reader.readUnichar()); }
};
struct IntValue { using type = std::int32_t; static type read(StreamReader& reader) { return reader.readInt(); } };
struct LongValue { using type = std::int64_t; static type read(StreamReader& reader) { return reader.readLong(); } };
struct FloatValue { using type = float; static type read(StreamReader& reader) { return reader.readFloat(); } };
struct DoubleValue { using type = double; static type read(StreamReader& reader) { return reader.readDouble(); } };
struct StringValue { using type = IUString; static type read(StreamReader& reader) { return reader.readString(); } };

// Calls `visit` with the value type of primitive marker `marker`; false for a marker
// that has none (blob, date, or not a primitive marker).
template <typename Visit>
bool withValueType(char marker, Visit&& visit) {
  switch (marker) {
    case TC_BYTE: visit(ByteValue{}); return true;
    case TC_BOOLEAN: visit(BooleanValue{}); return true;
    case TC_SHORT: visit(ShortValue{}); return true;
    case TC_CHAR: visit(CharValue{}); return true;
    case TC_INTEGER: visit(IntValue{}); return true;
    case TC_LONG: visit(LongValue{}); return true;
    case TC_FLOAT: visit(FloatValue{}); return true;
    case TC_DOUBLE: visit(DoubleValue{}); return true;
    case TC_STRING: visit(StringValue{}); return true;
    default: return false;
  }
}

}  // namespace

void ObjectHandler::readPrimitiveValue(char marker, IObject* owner, IProperty const* property) {
  const std::int64_t at = reader_->getOffset();
  if (marker == TC_BLOB) {
    if (property == nullptr) {
      reader_->readAndIgnoreBlob();
      return;
    }
    unsigned int length = 0;
    const std::unique_ptr<char[]> bytes(reader_->readBytes(length));
    setBlobPropertyValue(owner, *property, bytes.get(), length);
    return;
  }
  if (marker == TC_DATE) {
    const std::unique_ptr<WkDate> date(reader_->readDate());
    if (property == nullptr) return;
    if (date == nullptr) throwCannotSet(at, IUString("the date text cannot be read"));
    setPropertyValue(owner, *property, date.get());
    return;
  }
  const bool known = withValueType(marker, [&](auto valueType) {
    auto value = decltype(valueType)::read(*reader_);
    if (property != nullptr) setPropertyValue(owner, *property, &value);
  });
  if (!known) detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81006);
}

void ObjectHandler::readPrimitiveCollection(char marker, IObject* owner, IProperty const* property) {
  const int count = reader_->readCount();
  detail::logProgressf(*logger_, "Reading value for multi-valued primitive collection. Element count: [%d]", count);
  const std::int64_t at = reader_->getOffset();
  void* items = property != nullptr ? const_cast<void*>(infoOf(owner).get(*property, ITRUE)) : nullptr;
  if (property != nullptr && items == nullptr) throwCannotSet(at, IUString("the object has no collection"));
  // Elements are appended as they arrive, so a count that the data does not back
  // allocates nothing ahead.
  auto appendAll = [&](auto valueType) {
    using Value = typename decltype(valueType)::type;
    auto* values = static_cast<IVector<Value*>*>(items);
    for (int index = 0; index < count; ++index) {
      auto value = std::make_unique<Value>(decltype(valueType)::read(*reader_));
      if (values != nullptr) values->append(value.release());
    }
  };
  switch (marker) {
    case TC_DATE: {
      auto* values = static_cast<IVector<WkDate*>*>(items);
      for (int index = 0; index < count; ++index) {
        std::unique_ptr<WkDate> date(reader_->readDate());
        if (values == nullptr) continue;
        if (date == nullptr) throwCannotSet(at, IUString("the date text cannot be read"));
        values->append(date.release());
      }
      return;
    }
    case TC_BLOB:
      // Elements of a blob collection would carry no length: such a property can only be
      // dropped.
      if (property != nullptr) detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81006);
      for (int index = 0; index < count; ++index) reader_->readAndIgnoreBlob();
      return;
    default:
      if (!withValueType(marker, appendAll)) detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81006);
  }
}

namespace {

icore::IEnumerationLiteral* literalFor(IProperty const& property, IUString const& text) {
  auto const* enumeration = static_cast<icore::IDatatype const*>(property.getType());
  icore::IFactory* factory = const_cast<icore::IPackage*>(enumeration->getPackage())->getFactory();
  return static_cast<icore::IEnumerationLiteral*>(factory->datatypeFromString(*enumeration, text));
}

}  // namespace

void ObjectHandler::readEnumValue(IObject* owner, IProperty const* property) {
  const std::int64_t at = reader_->getOffset();
  if (property == nullptr) {
    reader_->readAndIgnoreString();
    return;
  }
  const IUString text = reader_->readString();
  icore::IEnumerationLiteral* literal = literalFor(*property, text);
  if (literal == nullptr) throwCannotSet(at, IUString("no literal \"") + text + IUString("\""));
  setPropertyValue(owner, *property, literal);
}

void ObjectHandler::readEnumCollection(IObject* owner, IProperty const* property) {
  const int count = reader_->readCount();
  detail::logProgressf(*logger_, "Reading value for multi-valued enum collection. Element count: [%d]", count);
  const std::int64_t at = reader_->getOffset();
  IVector<icore::IEnumerationLiteral*>* literals =
      property != nullptr ? static_cast<IVector<icore::IEnumerationLiteral*>*>(
                                const_cast<void*>(infoOf(owner).get(*property, IFALSE)))
                          : nullptr;
  if (property != nullptr && literals == nullptr) throwCannotSet(at, IUString("the object has no collection"));
  for (int index = 0; index < count; ++index) {
    if (literals == nullptr) {
      reader_->readAndIgnoreString();
      continue;
    }
    const std::int64_t textAt = reader_->getOffset();
    const IUString text = reader_->readString();
    icore::IEnumerationLiteral* literal = literalFor(*property, text);
    if (literal == nullptr) throwCannotSet(textAt, IUString("no literal \"") + text + IUString("\""));
    literals->append(literal);
  }
}

void ObjectHandler::readAndIgnoreBoxedPrimitive(char marker) {
  const std::int64_t at = reader_->getOffset();
  switch (marker) {
    case TC_BOXED_BYTE: reader_->readByte(); return;
    case TC_BOXED_BOOLEAN: reader_->readBoolean(); return;
    case TC_BOXED_SHORT: reader_->readShort(); return;
    case TC_BOXED_INTEGER: reader_->readInt(); return;
    case TC_BOXED_LONG: reader_->readLong(); return;
    case TC_BOXED_FLOAT: reader_->readFloat(); return;
    case TC_BOXED_DOUBLE: reader_->readDouble(); return;
    case TC_BOXED_CHAR: reader_->readUnichar(); return;
    case TC_BLOB: reader_->readAndIgnoreBlob(); return;
    default: detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81006);
  }
}

// ---- classes ----

ClassDescriptor::Binding const& ObjectHandler::bindDescriptor(ClassDescriptor& descriptor) {
  if (ClassDescriptor::Binding const* bound = descriptor.getBinding()) return *bound;
  auto binding = std::make_unique<ClassDescriptor::Binding>();
  binding->objectClass = getIClassForName(descriptor.getIClassName());
  checkPackageVersion(*binding->objectClass, descriptor.getPackageVersion());
  std::vector<PropertyInfo*> const& entries = descriptor.getAllPropsInfo();
  IVector<IProperty*> const& registered = binding->objectClass->getAllProperties(ITRUE);
  // A stream written by the registered class itself lists the same properties in the
  // same order; otherwise each entry is found by name.
  const bool samePositions =
      registered.size() == entries.size() &&
      std::equal(entries.begin(), entries.end(), registered.begin(),
                 [](PropertyInfo const* entry, IProperty const* property) {
                   return entry->getPropertyName() == property->getName();
                 });
  binding->properties.reserve(entries.size());
  binding->conflicting.reserve(entries.size());
  for (std::size_t index = 0; index < entries.size(); ++index) {
    IProperty const* property =
        samePositions ? registered[index] : binding->objectClass->getProperty(entries[index]->getPropertyName());
    binding->properties.push_back(property);
    binding->conflicting.push_back(property != nullptr && !agrees(*entries[index], *property));
  }
  descriptor.setBinding(std::move(binding));
  return *descriptor.getBinding();
}

IClass* ObjectHandler::getIClassForName(IUString const& qualifiedName) {
  const std::int64_t at = reader_->getOffset();
  const std::size_t dot = qualifiedName.rfind(u'.');
  const IUString packageName = dot == IUString::npos ? IUString() : qualifiedName.substr(0, dot);
  const IUString className = dot == IUString::npos ? qualifiedName : qualifiedName.substr(dot + 1);
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  icore::IPackage* package = runtime->getIPackageForName(packageName);
  if (package == nullptr) {
    IUString error;
    if (icore::QVXRuntime::loadPackageLibrary(packageName, error) != ISTATUS_SUCCESS) {
      detail::throwLoggedAt<IOException>(*logger_, at, 81009, packageName, error);
    }
    package = runtime->getIPackageForName(packageName);
    if (package == nullptr) detail::throwLoggedAt<IOException>(*logger_, at, 81010, qualifiedName, packageName);
  }
  icore::IType* type = package->getType(className);
  if (type == nullptr || !type->isClass()) {
    detail::throwLoggedAt<IOException>(*logger_, at, 81011, qualifiedName, packageName);
  }
  return static_cast<IClass*>(type);
}

void ObjectHandler::checkPackageVersion(IClass const& objectClass, IUString const& streamVersion) {
  icore::IPackage const* package = objectClass.getPackage();
  // A version without a dot names no major version, so it matches none.
  const bool comparable = streamVersion.find(u'.') != IUString::npos;
  if (comparable && SerializationUtils::getPackageMajorVersion(streamVersion) ==
                        SerializationUtils::getPackageMajorVersion(package->getVersion())) {
    return;
  }
  detail::throwLoggedAt<IOException>(*logger_, reader_->getOffset(), 81017, package->getQualifiedName(), streamVersion,
                                     package->getVersion());
}

// ---- helpers ----

char ObjectHandler::readMarker() { return reader_->readByte(); }

void ObjectHandler::throwUnexpectedMarker(std::int64_t offset, const char* expected, char marker) {
  detail::throwLoggedAt<InvalidDataException>(*logger_, offset, 81004, expected, static_cast<int>(marker));
}

void ObjectHandler::throwCannotSet(std::int64_t offset, IUString const& reason) {
  const IUString text = icore::qvxGetMsg(81007) + IUString(" ") + reason +
                        IUString::format(IUString(" (binary stream offset %lld)"), static_cast<long long>(offset));
  detail::logError(*logger_, text);
  throw InvalidDataException(text);
}

}  // namespace com::veltrana::qvx::io::input
