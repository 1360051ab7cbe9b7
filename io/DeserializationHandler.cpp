#include "io/DeserializationHandler.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IEnumeration.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IIdentity.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/exception/IdentityException.h"
#include "icore/exception/IllegalArgumentException.h"
#include "icore/exception/InstantiationException.h"
#include "icore/exception/NoSuchIPropertyException.h"
#include "icore/exception/UnresolvedProxyException.h"
#include "icore/exception/UnsupportedOperationException.h"
#include "icore/internal/IObjectInternal.h"
#include "icore/primitives/PrimitivesIPackage.h"
#include "icore/runtime/SeedRegistry.h"
#include "io/SerializationUtils.h"
#include "io/XMLDeserializer.h"
#include "io/exception/IOException.h"
#include "io/exception/SerializationException.h"
#include "platform/WkDate.h"
#include "platform/WkUString.h"
#include "utils/ILoggerUtils.h"
#include "utils/TXMLElement.h"
#include "utils/TXMLErrorHandler.h"

namespace com::veltrana::qvx::io {

using icore::IClass;
using icore::ICoreDatatypes;
using icore::IObject;
using icore::IObjectInfo;
using icore::IProperty;
using icore::QVXRuntime;
using icore::qvxFormatMsg;
using icore::qvxGetMsg;
using utils::ILogger;
using utils::TXMLAttribute;
using utils::TXMLElement;

namespace {

// The format's fixed names.
constexpr std::u16string_view kRoot = u"ozl:OZL";
constexpr std::u16string_view kAnnotations = u"ozl:annotations";
constexpr std::u16string_view kProxies = u"ozl:proxies";
constexpr std::u16string_view kCrc = u"ozl:crc";
constexpr std::u16string_view kBlobs = u"ozl:IBlobs";
constexpr std::u16string_view kId = u"ozl:id";
constexpr std::u16string_view kIdref = u"ozl:idref";
constexpr std::u16string_view kIid = u"ozl:iid";
constexpr std::u16string_view kType = u"xsi:type";
constexpr std::u16string_view kProxyType = u"ozl:proxy";
constexpr std::u16string_view kBlobType = u"ozl:IBlob";
constexpr std::u16string_view kObjectId = u"objectId";
constexpr std::u16string_view kProxyClass = u"type";
constexpr std::u16string_view kSpecVersionName = u"serializationSpecVersion";
constexpr std::u16string_view kSpecVersion = u"14.0";
constexpr std::u16string_view kXmlns = u"xmlns";
constexpr std::u16string_view kXmlnsPrefix = u"xmlns:";
constexpr std::u16string_view kVersionPrefix = u"version";
constexpr std::u16string_view kBlobIdPrefix = u"ID_";
constexpr std::u16string_view kSeedPrefix = u"smd:";

bool startsWith(std::u16string_view text, std::u16string_view prefix) {
  return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r'; }

// Calls `each` with every blank-separated word of `text`.
template <typename Each>
void forEachWord(std::u16string_view text, Each&& each) {
  std::size_t start = 0;
  while (start < text.size()) {
    while (start < text.size() && isBlank(text[start])) ++start;
    std::size_t end = start;
    while (end < text.size() && !isBlank(text[end])) ++end;
    if (end > start) each(text.substr(start, end - start));
    start = end;
  }
}

int hexValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return -1;
}

// Undoes the escaping of the format into `out`: "+" is a blank, "%XX" a byte of the
// UTF-8 form, "*" alone the empty string. False for a malformed escape.
bool unescapeInto(std::u16string_view text, IUString& out) {
  out.clear();
  if (text == u"*") return true;
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit == u'%') {
      if (i + 2 >= text.size()) return false;
      const int high = hexValue(text[i + 1]);
      const int low = hexValue(text[i + 2]);
      if (high < 0 || low < 0) return false;
      bytes += static_cast<char>(high * 16 + low);
      i += 2;
      continue;
    }
    if (!bytes.empty()) {
      out += IUString::fromUtf8(bytes);
      bytes.clear();
    }
    out += unit == u'+' ? u' ' : unit;
  }
  if (!bytes.empty()) out += IUString::fromUtf8(bytes);
  return true;
}

template <typename T>
void appendTo(void const* collection, void* value) {
  const_cast<IVector<T*>*>(static_cast<IVector<T*> const*>(collection))->append(static_cast<T*>(value));
}

// Appends a value made by primitiveFromString to a collection of its type.
void appendPrimitive(int typeId, void const* collection, void* value) {
  switch (typeId) {
    case ICoreDatatypes::BYTE_TYPE_ID: return appendTo<char>(collection, value);
    case ICoreDatatypes::BOOLEAN_TYPE_ID: return appendTo<IBOOLEAN>(collection, value);
    case ICoreDatatypes::CHARACTER_TYPE_ID: return appendTo<char16_t>(collection, value);
    case ICoreDatatypes::DATE_TYPE_ID: return appendTo<WkDate>(collection, value);
    case ICoreDatatypes::DOUBLE_TYPE_ID: return appendTo<double>(collection, value);
    case ICoreDatatypes::FLOAT_TYPE_ID: return appendTo<float>(collection, value);
    case ICoreDatatypes::INTEGER_TYPE_ID: return appendTo<std::int32_t>(collection, value);
    case ICoreDatatypes::LONG_TYPE_ID: return appendTo<std::int64_t>(collection, value);
    case ICoreDatatypes::SHORT_TYPE_ID: return appendTo<std::int16_t>(collection, value);
    case ICoreDatatypes::STRING_TYPE_ID: return appendTo<IUString>(collection, value);
    default: return;
  }
}

IObjectInfo& infoOf(IObject* object) { return *QVXRuntime::getInstance()->getIObjectInfo(object); }

icore::internal::IObjectInternal* internalOf(IObject* object) { return infoOf(object).getAssociatedObject(); }

// Runs `body` and reports the object model's exceptions (a value the model refuses,
// an identity it cannot read) as critical errors with their own text.
template <typename Handler, typename Body>
void reportingModelFailures(Handler& handler, Body&& body) {
  try {
    body();
  } catch (icore::exception::IllegalArgumentException& failure) {
    handler(failure.getMessage());
  } catch (const icore::exception::IdentityException& failure) {
    handler(failure.getMessage());
  } catch (const icore::exception::InstantiationException& failure) {
    handler(failure.getMessage());
  } catch (const icore::exception::UnresolvedProxyException& failure) {
    handler(failure.getMessage());
  } catch (const icore::exception::UnsupportedOperationException& failure) {
    handler(failure.getMessage());
  } catch (const icore::exception::NoSuchIPropertyException& failure) {
    handler(failure.getMessage());
  }
}

}  // namespace

DeserializationHandler::DeserializationHandler(utils::ILoggerUtils& logger, utils::TXMLErrorHandler& errorHandler,
                                               int options)
    : logger_(logger),
      errorHandler_(errorHandler),
      options_(options),
      logsProgress_(logger.isLoggable(ILogger::PROGRESS_LEVEL) != IFALSE) {}

DeserializationHandler::~DeserializationHandler() { deleteOwnedObjects(); }

template <typename... Args>
void DeserializationHandler::logMessage(ILogger::MsgLevel level, int number, const Args&... args) {
  if (logger_.isLoggable(level)) logger_.log(level, qvxFormatMsg(number, args...));
}

void DeserializationHandler::critical(const IUString& text) {
  errorHandler_.criticalException(text);
  throw exception::SerializationException(text);  // an error handler that let it pass
}

void DeserializationHandler::failWithIOException(const IUString& text) {
  if (logger_.isLoggable(ILogger::ERROR_LEVEL)) logger_.log(ILogger::ERROR_LEVEL, text);
  throw exception::IOException(text);
}

IUString DeserializationHandler::describe(IObject const* object) const {
  IObjectInfo const* info = QVXRuntime::getInstance()->getIObjectInfo(object);
  IClass const* objectClass = info->getIClass();
  if (objectClass->isIdentifiableClass() && info->getIdentity() != nullptr) {
    return QVXRuntime::getInstance()->identityToString(info->getIdentity());
  }
  return objectClass->getQualifiedName();
}

// ---------------------------------------------------------------------------------
// Elements

void DeserializationHandler::startElement(const TXMLElement& element) {
  characters_.clear();
  collectsCharacters_ = false;
  auto reportCritical = [this](const IUString& text) { critical(text); };
  reportingModelFailures(reportCritical, [this, &element] { handleStart(element); });
}

void DeserializationHandler::endElement(std::u16string_view qName) {
  if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78015, IUString(qName));
  if (annotationDepth_ > 0) {
    --annotationDepth_;
    return;
  }
  auto reportCritical = [this](const IUString& text) { critical(text); };
  reportingModelFailures(reportCritical, [this] { handleEnd(); });
}

void DeserializationHandler::characters(const char16_t* text, std::size_t length) {
  if (collectsCharacters_) characters_.append(text, length);
}

void DeserializationHandler::handleStart(const TXMLElement& element) {
  const std::u16string_view qName = element.getQName();
  if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78046);
  if (annotationDepth_ > 0) {
    ++annotationDepth_;
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78014);
    return;
  }
  if (stack_.empty()) {
    if (qName != kRoot) critical(qvxFormatMsg(78013, IUString(qName)));
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78011);
    readRoot(element);
    push(ItemKind::kRoot, nullptr, nullptr, nullptr);
    return;
  }
  if (qName == kAnnotations) {
    logMessage(ILogger::NOTICE_LEVEL, 78012);
    annotationDepth_ = 1;
    return;
  }
  if (isContainer(qName)) {
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78005);
    push(ItemKind::kContainer, nullptr, nullptr, nullptr);
    return;
  }
  KeyAttributes keys;
  for (const TXMLAttribute& attribute : element.getAttributes()) {
    const std::u16string_view name = attribute.getName();
    if (name == kId) keys.id = &attribute;
    else if (name == kType) keys.type = &attribute;
    else if (name == kIdref) keys.idref = &attribute;
  }
  if (keys.type != nullptr) {
    const std::u16string_view type = keys.type->getValue();
    if (type == kProxyType) return readProxy(element, keys);
    if (type == kBlobType) {
      logMessage(ILogger::NOTICE_LEVEL, 78010);
      if (keys.id == nullptr) critical(qvxFormatMsg(78013, IUString(qName)));
      push(ItemKind::kBlob, nullptr, nullptr, nullptr);
      stack_.back().blobId = keys.id->getValue();
      collectsCharacters_ = true;
      return;
    }
    if (XMLDeserializer::isBoxedPrimitiveType(IUString(type))) return readObject(element, keys, boxedClass(type));
  }
  const std::u16string_view typeName = keys.type != nullptr ? keys.type->getValue() : qName;
  if (keys.id != nullptr) {
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78006);
    ClassEntry const* entry = classForTypeName(typeName);
    if (entry == nullptr) critical(qvxFormatMsg(78069, IUString(typeName), IUString(qName)));
    return readObject(element, keys, entry);
  }
  if (keys.idref != nullptr) {
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78008);
    return readReferenceElement(qName, keys.idref->getValue());
  }
  if (ClassEntry const* entry = classForTypeName(typeName);
      entry != nullptr && entry->objectClass->isValueClass() != IFALSE) {
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78007);
    return readObject(element, keys, entry);
  }
  OpenItem const& parent = stack_.back();
  if (parent.entry != nullptr) {
    auto found = parent.entry->byName.find(qName);
    if (found != parent.entry->byName.end()) {
      if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78064);
      return readPropertyElement(found->second);
    }
  }
  critical(qvxFormatMsg(78013, IUString(qName)));
}

bool DeserializationHandler::isContainer(std::u16string_view qName) const {
  if (qName == kProxies || qName == kCrc || qName == kBlobs) return true;
  OpenItem const& parent = stack_.back();
  if (parent.kind != ItemKind::kObject || parent.entry->byWrapperName.count(qName) == 0) return false;
  if (logsProgress_) logger_.log(ILogger::PROGRESS_LEVEL, qvxGetMsg(78018));
  return true;
}

void DeserializationHandler::push(ItemKind kind, IObject* object, ClassEntry const* entry, PropertySlot const* slot) {
  OpenItem item{kind, object, entry, slot, false, {}};
  if (object == nullptr && !stack_.empty()) {  // not an object: the nearest open object stays current
    item.object = stack_.back().object;
    item.entry = stack_.back().entry;
  }
  item.isTopLevel = kind == ItemKind::kObject && stack_.size() == 1;
  stack_.push_back(std::move(item));
}

void DeserializationHandler::handleEnd() {
  if (stack_.empty()) return;
  OpenItem& item = stack_.back();
  switch (item.kind) {
    case ItemKind::kRoot:
      finishDocument();
      break;
    case ItemKind::kPropertyElement:
      if (!characters_.empty()) {
        readsElementText_ = true;
        setPropertyText(item.object, *item.entry, *item.slot, characters_);
        readsElementText_ = false;
      }
      break;
    case ItemKind::kBlob:
      blobTexts_[item.blobId] = characters_;
      break;
    case ItemKind::kObject:
      if (item.isTopLevel) topLevel_.push_back(item.object);
      break;
    case ItemKind::kContainer:
    case ItemKind::kReference:
    case ItemKind::kProxy:
      break;
  }
  characters_.clear();
  collectsCharacters_ = false;
  stack_.pop_back();
}

void DeserializationHandler::readRoot(const TXMLElement& element) {
  bool specVersionSeen = false;
  std::u16string_view specVersion;
  std::unordered_map<std::u16string, std::u16string> versionByPrefix;
  for (const TXMLAttribute& attribute : element.getAttributes()) {
    const std::u16string_view name = attribute.getName();
    if (name == kXmlnsPrefix) critical(qvxGetMsg(78048));
    if (startsWith(name, kXmlnsPrefix)) {
      const std::u16string prefix(name.substr(kXmlnsPrefix.size()));
      const std::u16string uri(attribute.getValue());
      namespaceByPrefix_[prefix] = uri;
      prefixByNamespace_.emplace(uri, prefix);
    } else if (name == kSpecVersionName) {
      specVersionSeen = true;
      specVersion = attribute.getValue();
    } else if (startsWith(name, kVersionPrefix)) {
      versionByPrefix[std::u16string(name.substr(kVersionPrefix.size()))] = attribute.getValue();
    }
  }
  for (auto& [prefix, version] : versionByPrefix) {
    auto uri = namespaceByPrefix_.find(prefix);
    if (uri != namespaceByPrefix_.end()) versionByNamespace_[uri->second] = std::move(version);
  }
  checkSpecVersion(specVersionSeen, specVersion);
}

void DeserializationHandler::checkSpecVersion(bool seen, std::u16string_view version) {
  if (!seen) critical(qvxGetMsg(78049));
  if (version == kSpecVersion) return;
  const IUString text = qvxFormatMsg(78050, IUString(version), IUString(kSpecVersion));
  if (logger_.isLoggable(ILogger::WARNING_LEVEL)) logger_.log(ILogger::WARNING_LEVEL, text);
  if ((options_ & XMLDeserializer::IGNORE_SERIALIZER_VERSION_VALIDATION) == 0) failWithIOException(text);
}

void DeserializationHandler::readObject(const TXMLElement& element, const KeyAttributes& keys,
                                        ClassEntry const* entry) {
  std::unique_ptr<IObject> created(entry->objectClass->create());
  IObject* object = created.get();
  const bool identifiable = entry->objectClass->isIdentifiableClass() != IFALSE;
  // "ID_" ids stand for objects without an identity of their own.
  if (keys.id != nullptr && identifiable && !startsWith(keys.id->getValue(), kBlobIdPrefix)) {
    IUString const& text = unescaped(keys.id->getValue(), kId, entry->objectClass->getQualifiedName());
    icore::IIdentity const* identity = QVXRuntime::getInstance()->identityFromString(text);
    infoOf(object).setIdentity(identity);
  }
  OpenItem const& parent = stack_.back();
  if (parent.kind == ItemKind::kRoot) {
    owned_.push_back(object);
  } else {
    adoptChild(parent, element.getQName(), object);
  }
  created.release();
  if (keys.id != nullptr) enterId(keys.id->getValue(), object);
  setAttributes(object, *entry, element);
  push(ItemKind::kObject, object, entry, nullptr);
}

void DeserializationHandler::readReferenceElement(std::u16string_view qName, std::u16string_view targetId) {
  OpenItem const& parent = stack_.back();
  PropertySlot const& slot = containmentSlotFor(parent, qName);
  auto known = objectsById_.find(targetId);
  if (known != objectsById_.end()) {
    attach(parent.object, slot, known->second, UnresolvedRef::kAppend, false);
  } else if (slot.kind == SlotKind::kMultiContainment) {
    // Reserve the item's place so that the collection keeps the document's order.
    auto const* items = static_cast<IVector<IObject*> const*>(infoOf(parent.object).get(*slot.property, IFALSE));
    if (items == nullptr) critical(qvxFormatMsg(78054, slot.property->getName()));
    const_cast<IVector<IObject*>*>(items)->append(nullptr);
    unresolved_.push_back({parent.object, slot.property, keep(targetId), items->size() - 1});
  } else {
    unresolved_.push_back({parent.object, slot.property, keep(targetId), UnresolvedRef::kAppend});
  }
  push(ItemKind::kReference, nullptr, nullptr, nullptr);
}

void DeserializationHandler::readProxy(const TXMLElement& element, const KeyAttributes& keys) {
  if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78009);
  const TXMLAttribute* objectId = element.findAttribute(kObjectId);
  const TXMLAttribute* className = element.findAttribute(kProxyClass);
  if (keys.id == nullptr || objectId == nullptr || className == nullptr) {
    critical(qvxFormatMsg(78013, IUString(element.getQName())));
  }
  ClassEntry const* entry = classForTypeName(className->getValue());
  if (entry == nullptr) critical(qvxFormatMsg(78069, IUString(className->getValue()), IUString(element.getQName())));
  IObject* proxy = createProxy(*entry->objectClass, objectId->getValue());
  if (proxy == nullptr) {
    critical(qvxFormatMsg(78065, IUString(objectId->getValue()), IUString(kObjectId), entry->objectClass->getName()));
  }
  enterId(keys.id->getValue(), proxy);
  push(ItemKind::kProxy, nullptr, nullptr, nullptr);
}

void DeserializationHandler::readPropertyElement(PropertySlot const& slot) {
  push(ItemKind::kPropertyElement, nullptr, nullptr, &slot);
  collectsCharacters_ = slot.kind == SlotKind::kSingleDatatype || slot.kind == SlotKind::kMultiDatatype ||
                        slot.kind == SlotKind::kSingleEnumeration || slot.kind == SlotKind::kMultiEnumeration;
}

// ---------------------------------------------------------------------------------
// Classes

DeserializationHandler::ClassEntry const* DeserializationHandler::classForTypeName(std::u16string_view typeName) {
  auto cached = classByTypeName_.find(typeName);
  if (cached != classByTypeName_.end()) return cached->second;
  IClass* objectClass = resolveClass(typeName);
  ClassEntry const* entry = objectClass != nullptr ? entryFor(objectClass) : nullptr;
  typeNames_.emplace_back(typeName);
  classByTypeName_.emplace(typeNames_.back(), entry);
  return entry;
}

DeserializationHandler::ClassEntry const* DeserializationHandler::boxedClass(std::u16string_view typeName) {
  icore::primitives::PrimitivesIPackage* primitives = icore::primitives::PrimitivesIPackage::iGetInstance();
  auto* type = primitives->getType(IUString(typeName.substr(typeName.find(u':') + 1)));
  return entryFor(static_cast<IClass*>(type));
}

// The class that a "prefix:Name" (or "package.Name") type name denotes, or null when the
// name names no package or the package has no such class.
IClass* DeserializationHandler::resolveClass(std::u16string_view typeName) {
  std::size_t separator = typeName.rfind(u':');
  if (separator == std::u16string_view::npos) separator = typeName.rfind(u'.');
  if (separator == std::u16string_view::npos || separator == 0 || separator + 1 == typeName.size()) return nullptr;
  const std::u16string prefix(typeName.substr(0, separator));
  auto uri = namespaceByPrefix_.find(prefix);
  const IUString packageName =
      uri != namespaceByPrefix_.end() ? SerializationUtils::getPackageNameFromURI(IUString(uri->second)) : IUString(prefix);
  if (packageName.isEmpty()) return nullptr;
  icore::IPackage* package = findPackage(packageName);
  if (package == nullptr) return nullptr;
  icore::IType* type = package->getType(IUString(typeName.substr(separator + 1)));
  if (type == nullptr || type->isClass() == IFALSE) return nullptr;
  checkPackageVersion(*package);
  return static_cast<IClass*>(type);
}

icore::IPackage* DeserializationHandler::findPackage(IUString const& packageName) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  if (icore::IPackage* package = runtime->getIPackageForName(packageName)) return package;
  if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78043, packageName);
  IUString error;
  if (QVXRuntime::loadPackageLibrary(packageName, error) != ISTATUS_SUCCESS) {
    failWithIOException(qvxFormatMsg(78044, packageName, error));
  }
  return runtime->getIPackageForName(packageName);
}

void DeserializationHandler::checkPackageVersion(icore::IPackage const& package) {
  if (!checkedPackages_.insert(&package).second) return;
  auto declared = versionByNamespace_.find(SerializationUtils::getURI(&package).str());
  if (declared == versionByNamespace_.end()) {
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78057);
    return;
  }
  const IUString documentVersion(declared->second);
  IUString const& ownVersion = package.getVersion();
  // A version without a dot has no major part; it matches nothing.
  const bool comparable = documentVersion.find(u'.') != IUString::npos && ownVersion.find(u'.') != IUString::npos;
  if (comparable && SerializationUtils::getPackageMajorVersion(documentVersion) ==
                        SerializationUtils::getPackageMajorVersion(ownVersion)) {
    return;
  }
  failWithIOException(qvxFormatMsg(78056, package.getQualifiedName(), documentVersion, ownVersion));
}

DeserializationHandler::ClassEntry const* DeserializationHandler::entryFor(IClass* objectClass) {
  std::unique_ptr<ClassEntry>& entry = entries_[objectClass];
  if (entry) return entry.get();
  entry = std::make_unique<ClassEntry>();
  entry->objectClass = objectClass;
  // A name means the redefining property where one redefines another, so the list
  // without redefined properties goes first; the full list adds what it lacks.
  for (IBOOLEAN keepRedefined : {IFALSE, ITRUE}) {
    for (IProperty const* property : objectClass->getAllProperties(keepRedefined)) {
      auto [slot, isNew] = entry->byName.emplace(property->getName().view(), slotFor(*property));
      if (isNew && property->getXMLPropertyAsElement() != IFALSE && !property->getXMLPropertyElementName().isEmpty()) {
        entry->byWrapperName.emplace(property->getXMLPropertyElementName().view(), &slot->second);
      }
    }
  }
  return entry.get();
}

DeserializationHandler::PropertySlot DeserializationHandler::slotFor(IProperty const& property) {
  PropertySlot slot{&property, SlotKind::kSingleDatatype, 0, nullptr, nullptr};
  icore::IType const* type = property.getType();
  const bool many = property.isCollection() != IFALSE;
  if (type != nullptr && type->isClass() != IFALSE) {
    slot.targetClass = static_cast<IClass const*>(type);
    if (property.isContainment() != IFALSE) {
      slot.kind = many ? SlotKind::kMultiContainment : SlotKind::kSingleContainment;
    } else {
      slot.kind = many ? SlotKind::kMultiReference : SlotKind::kSingleReference;
    }
  } else if (type != nullptr && type->isEnum() != IFALSE) {
    slot.enumeration = static_cast<icore::IEnumeration const*>(type);
    slot.kind = many ? SlotKind::kMultiEnumeration : SlotKind::kSingleEnumeration;
  } else {
    slot.typeId = type != nullptr ? type->getTypeId() : -1;
    slot.kind = many ? SlotKind::kMultiDatatype : SlotKind::kSingleDatatype;
  }
  return slot;
}

// ---------------------------------------------------------------------------------
// Values

void DeserializationHandler::setAttributes(IObject* object, ClassEntry const& entry, const TXMLElement& element) {
  for (const TXMLAttribute& attribute : element.getAttributes()) {
    const std::u16string_view name = attribute.getName();
    if (name == kId || name == kType || name == kIdref || name == kIid || name == kXmlns ||
        startsWith(name, kXmlnsPrefix)) {
      continue;
    }
    auto found = entry.byName.find(name);
    if (found == entry.byName.end()) {
      critical(qvxFormatMsg(78058, IUString(name), entry.objectClass->getQualifiedName()));
    }
    PropertySlot const& slot = found->second;
    if (slot.kind == SlotKind::kSingleContainment || slot.kind == SlotKind::kMultiContainment) {
      critical(qvxFormatMsg(78074, IUString(name), entry.objectClass->getQualifiedName()));
    }
    setPropertyText(object, entry, slot, attribute.getValue());
  }
}

void DeserializationHandler::setPropertyText(IObject* object, ClassEntry const& entry, PropertySlot const& slot,
                                             std::u16string_view text) {
  IObjectInfo& info = infoOf(object);
  IProperty const& property = *slot.property;
  switch (slot.kind) {
    case SlotKind::kSingleDatatype:
      return setSingleDatatype(info, entry, slot, text);
    case SlotKind::kMultiDatatype:
      forEachWord(text, [&](std::u16string_view word) { appendDatatype(info, entry, slot, word); });
      return;
    case SlotKind::kSingleEnumeration:
      info.set(property, literalFor(entry, slot, text), 0, IFALSE);
      return;
    case SlotKind::kMultiEnumeration: {
      auto const* literals = static_cast<IVector<icore::IEnumerationLiteral*> const*>(info.get(property, IFALSE));
      if (literals == nullptr) critical(qvxFormatMsg(78054, property.getName()));
      forEachWord(text, [&](std::u16string_view word) {
        const_cast<IVector<icore::IEnumerationLiteral*>*>(literals)->append(literalFor(entry, slot, word));
      });
      return;
    }
    case SlotKind::kSingleReference:
    case SlotKind::kMultiReference:
      forEachWord(text, [&](std::u16string_view id) {
        unresolved_.push_back({object, &property, keep(id), UnresolvedRef::kAppend});
      });
      return;
    case SlotKind::kSingleContainment:
    case SlotKind::kMultiContainment:
      critical(qvxFormatMsg(78074, property.getName(), entry.objectClass->getQualifiedName()));
  }
}

IUString const& DeserializationHandler::unescaped(std::u16string_view text, std::u16string_view propertyName,
                                                  IUString const& className) {
  if (!unescapeInto(text, scratch_)) badValue(text, propertyName, className);
  return scratch_;
}

void DeserializationHandler::setSingleDatatype(IObjectInfo& info, ClassEntry const& entry, PropertySlot const& slot,
                                               std::u16string_view text) {
  IProperty const& property = *slot.property;
  const char16_t* units = text.data();
  const std::size_t count = text.size();
  // The common types are parsed straight into a local, as primitiveFromString would
  // parse them, to spare an allocation per value.
  switch (slot.typeId) {
    case ICoreDatatypes::STRING_TYPE_ID: {
      IUString const& value = unescaped(text, property.getName().view(), entry.objectClass->getQualifiedName());
      info.set(property, const_cast<IUString*>(&value), 0, ITRUE);
      return;
    }
    case ICoreDatatypes::CHARACTER_TYPE_ID: {
      IUString const& value = unescaped(text, property.getName().view(), entry.objectClass->getQualifiedName());
      char16_t unit = value.isEmpty() ? u'\0' : value[0];
      info.set(property, &unit, 0, ITRUE);
      return;
    }
    case ICoreDatatypes::INTEGER_TYPE_ID: {
      std::int32_t value = WkUString::parseInt(units, count);
      info.set(property, &value, 0, ITRUE);
      return;
    }
    case ICoreDatatypes::LONG_TYPE_ID: {
      std::int64_t value = WkUString::parseLong(units, count);
      info.set(property, &value, 0, ITRUE);
      return;
    }
    case ICoreDatatypes::SHORT_TYPE_ID: {
      auto value = static_cast<std::int16_t>(WkUString::parseInt(units, count));
      info.set(property, &value, 0, ITRUE);
      return;
    }
    case ICoreDatatypes::DOUBLE_TYPE_ID: {
      double value = WkUString::parseDouble(units, count);
      info.set(property, &value, 0, ITRUE);
      return;
    }
    case ICoreDatatypes::BLOB_TYPE_ID:
      if (startsWith(text, kBlobIdPrefix)) {
        pendingBlobs_.push_back({info.getAssociatedObject(), &property, std::u16string(text)});
        return;
      }
      break;  // Base64 text in place of a blob id (an element's content)
    case ICoreDatatypes::BYTE_TYPE_ID:
    case ICoreDatatypes::BOOLEAN_TYPE_ID:
    case ICoreDatatypes::DATE_TYPE_ID:
    case ICoreDatatypes::FLOAT_TYPE_ID:
      break;
    default:
      critical(qvxFormatMsg(78055, property.getName()));
  }
  auto const& datatype = *static_cast<icore::IDatatype const*>(property.getType());
  unsigned int length = 0;
  void* value = ICoreDatatypes::primitiveFromString(datatype, IUString(text), &length);
  if (value == nullptr) {
    badValue(text, property.getName().view(), entry.objectClass->getQualifiedName());
  }
  // Every reflective set copies the value it is given, a boxed date's too.
  try {
    info.set(property, value, length, ITRUE);
  } catch (...) {
    SerializationUtils::freePrimitiveDatatypeBuffer(datatype, value);
    throw;
  }
  SerializationUtils::freePrimitiveDatatypeBuffer(datatype, value);
}

void DeserializationHandler::appendDatatype(IObjectInfo& info, ClassEntry const& entry, PropertySlot const& slot,
                                            std::u16string_view text) {
  IProperty const& property = *slot.property;
  icore::IType const* type = property.getType();
  if (type == nullptr || type->isClass() != IFALSE) critical(qvxFormatMsg(78053, property.getName()));
  if (slot.typeId == ICoreDatatypes::BLOB_TYPE_ID) critical(qvxFormatMsg(78063, property.getName()));
  if (slot.typeId < ICoreDatatypes::BYTE_TYPE_ID || slot.typeId > ICoreDatatypes::STRING_TYPE_ID) {
    critical(qvxFormatMsg(78055, property.getName()));
  }
  void const* collection = info.get(property, ITRUE);
  if (collection == nullptr) critical(qvxFormatMsg(78054, property.getName()));
  const bool escaped =
      slot.typeId == ICoreDatatypes::STRING_TYPE_ID || slot.typeId == ICoreDatatypes::CHARACTER_TYPE_ID;
  IUString const& valueText =
      escaped ? unescaped(text, property.getName().view(), entry.objectClass->getQualifiedName()) : (scratch_ = IUString(text));
  auto const& datatype = *static_cast<icore::IDatatype const*>(type);
  unsigned int length = 0;
  void* value = ICoreDatatypes::primitiveFromString(datatype, valueText, &length);
  try {
    appendPrimitive(slot.typeId, collection, value);
  } catch (...) {
    SerializationUtils::freePrimitiveDatatypeBuffer(datatype, value);
    throw;
  }
}

icore::IEnumerationLiteral* DeserializationHandler::literalFor(ClassEntry const& entry, PropertySlot const& slot,
                                                               std::u16string_view text) {
  IUString const& name = unescaped(text, slot.property->getName().view(), entry.objectClass->getQualifiedName());
  for (icore::IEnumerationLiteral* literal : slot.enumeration->getLiterals()) {
    if (literal->getName() == name) return literal;
  }
  badValue(text, slot.property->getName().view(), entry.objectClass->getQualifiedName());
}

// A value that cannot be read; the text of a property written as an element has a
// message of its own.
void DeserializationHandler::badValue(std::u16string_view text, std::u16string_view propertyName,
                                      IUString const& className) {
  if (readsElementText_) critical(qvxFormatMsg(78047, IUString(propertyName), IUString(text)));
  critical(qvxFormatMsg(78065, IUString(text), IUString(propertyName), className));
}

// ---------------------------------------------------------------------------------
// References and ownership

DeserializationHandler::PropertySlot const& DeserializationHandler::containmentSlotFor(OpenItem const& parent,
                                                                                      std::u16string_view qName) {
  if (parent.kind == ItemKind::kPropertyElement && parent.slot->kind == SlotKind::kMultiContainment) {
    return *parent.slot;
  }
  if (parent.kind == ItemKind::kObject) {
    auto found = parent.entry->byName.find(qName);
    if (found != parent.entry->byName.end() && found->second.kind == SlotKind::kSingleContainment) {
      return found->second;
    }
  }
  critical(qvxFormatMsg(78013, IUString(qName)));
}

void DeserializationHandler::adoptChild(OpenItem const& parent, std::u16string_view qName, IObject* child) {
  attach(parent.object, containmentSlotFor(parent, qName), child, UnresolvedRef::kAppend, true);
}

std::u16string_view DeserializationHandler::keep(std::u16string_view text) {
  constexpr std::size_t kBlockUnits = 32768;
  if (text.size() > kBlockUnits - blockUsed_ || idBlocks_.empty()) {
    idBlocks_.push_back(std::make_unique<char16_t[]>(std::max(kBlockUnits, text.size())));
    blockUsed_ = 0;
  }
  char16_t* kept = idBlocks_.back().get() + blockUsed_;
  std::copy(text.begin(), text.end(), kept);
  blockUsed_ += text.size();
  return std::u16string_view(kept, text.size());
}

void DeserializationHandler::expectDocumentSize(std::size_t bytes) {
  // A serialized object takes a few hundred bytes; reserving for the likely count keeps
  // the id table from being rebuilt again and again as a large document is read.
  objectsById_.reserve(bytes / 256);
}

void DeserializationHandler::enterId(std::u16string_view id, IObject* object) {
  if (objectsById_.count(id) != 0) critical(qvxFormatMsg(78068, IUString(id)));
  objectsById_.emplace(keep(id), object);
}

// Sets `target` as the value (or an item) of `slot` on `owner`, after checking that it
// is of the property's class and, for a containment, that it is not contained already
// and does not contain `owner`: either would give an object two owners. A new object
// contains nothing yet, so the walk up the containers is spared for it (it would make
// reading deep containment quadratic).
void DeserializationHandler::attach(IObject* owner, PropertySlot const& slot, IObject* target, std::size_t position,
                                    bool isNew) {
  IObjectInfo& ownerInfo = infoOf(owner);
  IObjectInfo& targetInfo = infoOf(target);
  IProperty const& property = *slot.property;
  IClass const* targetClass = targetInfo.getIClass();
  if (targetClass->isTypeOf(*slot.targetClass) == IFALSE) {
    critical(qvxFormatMsg(78070, property.getName(), ownerInfo.getIClass()->getQualifiedName(), describe(target),
                          targetClass->getQualifiedName()));
  }
  const bool containment = slot.kind == SlotKind::kSingleContainment || slot.kind == SlotKind::kMultiContainment;
  if (containment) {
    bool refused = targetInfo.getContainer() != nullptr || (!isNew && rootOf(owner) == target);
    // A second value would push the first out of its container, ownerless.
    refused = refused || (slot.kind == SlotKind::kSingleContainment && ownerInfo.get(property, IFALSE) != nullptr);
    if (refused) critical(qvxFormatMsg(78071, describe(target), property.getName()));
  }
  if (property.isCollection() != IFALSE) {
    auto const* items = static_cast<IVector<IObject*> const*>(ownerInfo.get(property, IFALSE));
    if (items == nullptr) critical(qvxFormatMsg(78054, property.getName()));
    auto* writable = const_cast<IVector<IObject*>*>(items);
    if (position == UnresolvedRef::kAppend) {
      writable->append(target);
    } else {
      (*writable)[position] = target;
    }
  } else {
    ownerInfo.set(property, target, 0, IFALSE);
  }
  if (containment) targetInfo.getAssociatedObject()->iSetContainer(internalOf(owner), &property);
}

// The outermost container of `object`. Trees only ever grow by hanging a whole tree
// under another, so shortcuts to a former root stay correct and are followed on; they
// keep repeated look-ups from deep objects linear in total.
IObject const* DeserializationHandler::rootOf(IObject const* object) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::vector<IObject const*> path;
  for (;;) {
    auto shortcut = rootShortcuts_.find(object);
    IObject const* next =
        shortcut != rootShortcuts_.end() ? shortcut->second : runtime->getIObjectInfo(object)->getContainer();
    if (next == nullptr || next == object) break;
    path.push_back(object);
    object = next;
  }
  for (IObject const* visited : path) rootShortcuts_[visited] = object;
  return object;
}

void DeserializationHandler::resolveReferences() {
  if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78029);
  // Reserved slots whose target never turned up, per collection, removed at the end.
  std::vector<std::pair<IVector<IObject*>*, std::size_t>> emptySlots;
  for (UnresolvedRef const& ref : unresolved_) {
    PropertySlot const& slot = entryFor(const_cast<IClass*>(infoOf(ref.owner).getIClass()))
                                   ->byName.at(ref.property->getName().view());
    if (IObject* target = findTarget(ref, slot)) {
      attach(ref.owner, slot, target, ref.position, false);
      continue;
    }
    if ((options_ & Deserializer::FAIL_ON_UNRESOLVED_REFERENCES) != 0) {
      failWithIOException(qvxFormatMsg(78052, ref.property->getName(), describe(ref.owner), IUString(ref.targetId)));
    }
    if (ref.position != UnresolvedRef::kAppend) {
      auto const* items = static_cast<IVector<IObject*> const*>(infoOf(ref.owner).get(*ref.property, IFALSE));
      emptySlots.emplace_back(const_cast<IVector<IObject*>*>(items), ref.position);
    }
  }
  std::sort(emptySlots.begin(), emptySlots.end());
  for (auto slot = emptySlots.rbegin(); slot != emptySlots.rend(); ++slot) slot->first->removeAt(slot->second);
  unresolved_.clear();
}

// The object a reference names: one of the document's, else a seeded object (never for
// a containment: the registry owns its objects), else a new proxy for the id. Null when
// none can be had.
IObject* DeserializationHandler::findTarget(UnresolvedRef const& ref, PropertySlot const& slot) {
  auto known = objectsById_.find(ref.targetId);
  if (known != objectsById_.end()) return known->second;
  const std::u16string_view id = ref.targetId;
  const bool containment = slot.kind == SlotKind::kSingleContainment || slot.kind == SlotKind::kMultiContainment;
  if (!containment && startsWith(id, kSeedPrefix)) {
    IUString const& seedId =
        unescaped(id.substr(kSeedPrefix.size()), ref.property->getName().view(), slot.targetClass->getQualifiedName());
    auto cached = seedsById_.find(id);
    if (cached != seedsById_.end()) return cached->second;
    try {
      if (IObject* seed = icore::runtime::SeedRegistry::getInstance()->getObjectById(seedId)) {
        seedsById_.emplace(id, seed);
        return seed;
      }
    } catch (const exception::IOException& failure) {
      logMessage(ILogger::WARNING_LEVEL, 78052, ref.property->getName(), describe(ref.owner), failure.getMessage());
    }
  }
  // Asked to fail on what the document lacks, the reader makes no proxy for it.
  if ((options_ & Deserializer::FAIL_ON_UNRESOLVED_REFERENCES) != 0) return nullptr;
  IObject* proxy = createProxy(*slot.targetClass, id);
  if (proxy != nullptr) objectsById_.emplace(ref.targetId, proxy);  // later references share it
  return proxy;
}

// A new proxy of `targetClass` for the identity written as `id`, owned by the handler
// until something contains it; null when the class or the id allows none.
IObject* DeserializationHandler::createProxy(IClass const& targetClass, std::u16string_view id) {
  if (targetClass.isIdentifiableClass() == IFALSE || targetClass.isAbstract() != IFALSE) return nullptr;
  IUString const& text = unescaped(id, kId, targetClass.getQualifiedName());
  IObject* proxy = nullptr;
  auto refuse = [](const IUString&) {};
  reportingModelFailures(refuse, [&] {
    icore::IIdentity const* identity = QVXRuntime::getInstance()->identityFromString(text);
    if (identity != nullptr) proxy = targetClass.createProxy(identity);
  });
  if (proxy != nullptr) owned_.push_back(proxy);
  return proxy;
}

void DeserializationHandler::setBlobs() {
  for (PendingBlob const& pending : pendingBlobs_) {
    auto text = blobTexts_.find(pending.blobId);
    if (text == blobTexts_.end()) {
      critical(qvxFormatMsg(78072, IUString(pending.blobId), pending.property->getName()));
    }
    unsigned int length = 0;
    std::unique_ptr<char[]> bytes(static_cast<char*>(
        ICoreDatatypes::primitiveFromString(*ICoreDatatypes::I_BLOB, IUString(text->second), &length)));
    if (!bytes) {
      critical(qvxFormatMsg(78065, IUString(pending.blobId), pending.property->getName(),
                            infoOf(pending.owner).getIClass()->getQualifiedName()));
    }
    infoOf(pending.owner).set(*pending.property, bytes.get(), length, ITRUE);
  }
  pendingBlobs_.clear();
}

void DeserializationHandler::finishDocument() {
  resolveReferences();
  setBlobs();
  finished_ = true;
}

IVector<IObject*>* DeserializationHandler::takeResult() {
  auto result = std::make_unique<IVector<IObject*>>(topLevel_.size() + 1, 200, 1000);
  if (!finished_) return result.release();
  for (IObject* object : topLevel_) {
    IObjectInfo& info = infoOf(object);
    if (info.getIClass()->isIdentifiableClass() == IFALSE || info.isProxy() != IFALSE) continue;
    if (logsProgress_) logMessage(ILogger::PROGRESS_LEVEL, 78016, describe(object));
    result->append(object);
  }
  // What is returned is the caller's now; the rest stays for takeUnreturnedObjects.
  const std::unordered_set<IObject*> returned(result->begin(), result->end());
  owned_.erase(std::remove_if(owned_.begin(), owned_.end(),
                              [&returned](IObject* object) { return returned.count(object) != 0; }),
               owned_.end());
  topLevel_.clear();
  return result.release();
}

std::vector<IObject*> DeserializationHandler::takeUnreturnedObjects() {
  std::vector<IObject*> unreturned;
  if (!finished_) return unreturned;
  for (IObject* object : owned_) {
    if (infoOf(object).getContainer() == nullptr) unreturned.push_back(object);
  }
  owned_.clear();
  return unreturned;
}

// Containers delete what they contain, so only objects without a container are deleted
// here; that decision is made for all of them before the first is deleted.
void DeserializationHandler::deleteOwnedObjects() {
  std::vector<IObject*> uncontained;
  for (IObject* object : owned_) {
    if (infoOf(object).getContainer() == nullptr) uncontained.push_back(object);
  }
  owned_.clear();
  for (IObject* object : uncontained) delete object;
}

}  // namespace com::veltrana::qvx::io
