#include "io/XMLSerializerDocument.h"

#include <algorithm>
#include <atomic>
#include <charconv>

#include "icore/IClass.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IEnumerationLiteral.h"
#include "icore/IFactory.h"
#include "icore/IIdentity.h"
#include "icore/IObjectInfo.h"
#include "icore/IPackage.h"
#include "icore/IProperty.h"
#include "icore/IRedefinability.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/IdentityExternalizer.h"
#include "icore/runtime/UUIDExternalizer.h"
#include "icore/runtime/UUIIdentity.h"
#include "io/Serializer.h"
#include "io/SerializationUtils.h"
#include "io/XMLSerializer.h"
#include "io/XMLSerializerValues.h"
#include "io/exception/IOException.h"
#include "platform/IOutputStream.h"
#include "platform/WkUString.h"
#include "utils/ILoggerUtils.h"

namespace com::veltrana::qvx::io {

using icore::ICoreDatatypes;
using icore::IObject;
using icore::IObjectInfo;
using icore::qvxFormatMsg;
using utils::ILogger;
using utils::TXMLName;
using utils::TXMLNode;

namespace {

constexpr std::string_view kXsiNamespaceUri = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kSerializationVersion = "14.0";
// Log lines indent two blanks per level up to this depth, so that a deep graph logged
// at progress level does not produce lines that grow without bound.
constexpr int kMaxLogIndent = 32;

// Blob ids rise across all documents of the process; atomic only so that two
// serializers on two threads cannot tear it.
std::atomic<std::uint32_t> gLastBlobId{0};

std::string utf8Of(IUString const& text) { return text.toUtf8(); }

std::string nameOf(TXMLName name) { return std::string(utils::TXMLDOMModel::getNameText(name)); }

bool hasColon(TXMLName name) { return utils::TXMLDOMModel::getNameText(name).find(':') != std::string_view::npos; }

// Multi-valued properties hand out the owner's IVector of element pointers; only the
// pointers are read here, whatever they point to.
IVector<void*> const& itemsOf(void const* collection) { return *static_cast<IVector<void*> const*>(collection); }

}  // namespace

enum class PropertyKind { kDatatype, kEnumeration, kReference, kContainment };

struct XMLSerializerDocument::PropertyPlan {
  icore::IProperty const* property;
  PropertyKind kind;
  bool isCollection;
  icore::IDatatype const* datatype;  // the data type or enumeration; null for classes
  int typeId;
  TXMLName name;
  TXMLName wrapperName;  // the element around an as-element value; null when written as attribute
  bool asElement;
  TXMLName itemName;  // items of a multi-valued containment: the declared type's name
  bool hasDefault;
  std::string defaultText;
};

struct XMLSerializerDocument::ClassPlan {
  icore::IClass const* objectClass;
  std::string typeName;  // prefix:ClassName
  TXMLName typeElementName;
  bool isSeeded;
  bool isIdentifiable;
  bool isValueClass;
  bool packagesListed;
  std::vector<PropertyPlan> properties;
};

struct XMLSerializerDocument::Frame {
  IObject* object;
  IObjectInfo* info;
  ClassPlan* plan;
  TXMLNode element;
  std::size_t nextProperty;
  // A multi-valued containment whose items are being written, or null, and its items.
  PropertyPlan const* openItems;
  IVector<void*> const* items;
  std::size_t nextItem;
  TXMLNode wrapper;
};

XMLSerializerDocument::XMLSerializerDocument(utils::ILoggerUtils& logger, bool loggerIsSilent)
    : logger_(logger),
      loggerIsSilent_(loggerIsSilent),
      runtime_(icore::QVXRuntime::getInstance()),
      uuidExternalizer_(icore::runtime::UUIDExternalizer::getInstance()),
      uuidPrefix_(utf8Of(uuidExternalizer_->getExternalizerId()) + ":") {
  // The only reset of the tree: a later document adds a new root to the same storage,
  // since the written-objects table keeps its keys there.
  dom_.createNewDOMTree();
  ozlId_ = dom_.internName("ozl:id");
  ozlIdref_ = dom_.internName("ozl:idref");
  xsiType_ = dom_.internName("xsi:type");
}

XMLSerializerDocument::~XMLSerializerDocument() = default;

ISTATUS XMLSerializerDocument::write(IOutputStream& out) {
  // A walk that an error broke off leaves its frames behind; they belong to no document.
  stack_.clear();
  depth_ = 0;
  root_ = dom_.addRootNode("ozl:OZL");
  writePendingObjects();
  writeProxies();
  writeBlobs();
  setRootAttributes();
  return output(out);
}

// ---------------------------------------------------------------------------------
// The walk

void XMLSerializerDocument::writePendingObjects() {
  // The list grows while it is walked: references bring in objects not contained.
  for (std::size_t index = 0; index < pending_.size(); ++index) {
    IObject* object = pending_[index];
    IObjectInfo* info = runtime_->getIObjectInfo(object);
    ClassPlan& plan = planOf(info->getIClass());
    idText_.clear();
    appendIdentity(*info, plan, idText_);
    if (isWritten(idText_, object)) {
      if (isLoggable(ILogger::PROGRESS_LEVEL)) logLine(ILogger::PROGRESS_LEVEL, qvxFormatMsg(79004, idText_));
      continue;
    }
    writeObjectTree(object, *info, plan, idText_);
  }
}

void XMLSerializerDocument::writeObjectTree(IObject* object, IObjectInfo& info, ClassPlan& plan, std::string_view id) {
  if (!beginObject(object, info, plan, root_, plan.typeElementName, id)) return;
  while (!stack_.empty()) step();
}

bool XMLSerializerDocument::beginObject(IObject* object, IObjectInfo& info, ClassPlan& plan, TXMLNode parent,
                                        TXMLName elementName, std::string_view id) {
  if (isSkippedSeed(plan)) return false;
  listPackages(plan);
  if (isLoggable(ILogger::PROGRESS_LEVEL)) {
    const std::string indentation = indent();
    logLine(ILogger::PROGRESS_LEVEL, qvxFormatMsg(79005, indentation, nameOf(elementName), std::string(id)));
    logLine(ILogger::PROGRESS_LEVEL,
            IUString::format("%s<%s id=\"%s\">", indentation, nameOf(elementName), std::string(id)));
  }
  ++depth_;
  TXMLNode element = parent.addChild(elementName);
  // Entered before any property, so that a cycle back to this object becomes a
  // reference. The tree's copy of the id serves as the key: the tree lives as long.
  if (plan.isValueClass) {
    written_.insert(id, object);
  } else {
    written_.insertStored(element.setAttribute(ozlId_, id), object);
  }
  if (!hasColon(elementName)) element.setAttribute(xsiType_, plan.typeName);
  stack_.push_back(Frame{object, &info, &plan, element, 0, nullptr, nullptr, 0, TXMLNode()});
  return true;
}

// One unit of work on the innermost open object: its next containment item or its
// next property, or closing it. Whatever pushes a new frame does so last, since the
// push may move the frame it came from.
void XMLSerializerDocument::step() {
  Frame& frame = stack_.back();
  if (frame.openItems != nullptr) {
    if (frame.nextItem == frame.items->size()) {
      frame.openItems = nullptr;
      return;
    }
    auto* item = static_cast<IObject*>((*frame.items)[frame.nextItem++]);
    if (item != nullptr) writeContained(item, frame.wrapper, frame.openItems->itemName);
    return;
  }
  if (frame.nextProperty == frame.plan->properties.size()) {
    endObject(frame);
    stack_.pop_back();
    return;
  }
  writeProperty(frame, frame.plan->properties[frame.nextProperty++]);
}

void XMLSerializerDocument::endObject(Frame const& frame) {
  --depth_;
  if (!isLoggable(ILogger::PROGRESS_LEVEL)) return;
  logLine(ILogger::PROGRESS_LEVEL, IUString::format("%s<\\%s >", indent(), std::string(frame.element.getNodeName())));
}

void XMLSerializerDocument::writeProperty(Frame& frame, PropertyPlan const& property) {
  switch (property.kind) {
    case PropertyKind::kDatatype:
      if (property.isCollection) {
        writeDatatypeList(frame, property);
      } else {
        writeDatatype(frame, property);
      }
      return;
    case PropertyKind::kEnumeration: writeEnumeration(frame, property); return;
    case PropertyKind::kReference: writeReferences(frame, property); return;
    case PropertyKind::kContainment: writeContainment(frame, property); return;
  }
}

void XMLSerializerDocument::writeDatatype(Frame& frame, PropertyPlan const& property) {
  unsigned int length = 0;
  void const* value = frame.info->get(*property.property, &length, ITRUE);
  if (value == nullptr) return;
  valueText_.clear();
  if (property.typeId == ICoreDatatypes::BLOB_TYPE_ID) {
    logProperty(property);
    appendBlobId(value, length, valueText_);
    putValue(frame.element, property, valueText_);
    return;
  }
  appendDatatypeText(property, value, length, valueText_);
  if (property.hasDefault && valueText_ == property.defaultText) return;
  logProperty(property);
  putValue(frame.element, property, valueText_);
}

void XMLSerializerDocument::writeDatatypeList(Frame& frame, PropertyPlan const& property) {
  // A list of blobs has no written form.
  if (property.typeId == ICoreDatatypes::BLOB_TYPE_ID) return;
  void const* collection = frame.info->get(*property.property, ITRUE);
  if (collection == nullptr || itemsOf(collection).isEmpty()) return;
  logProperty(property);
  TXMLNode wrapper;
  if (property.asElement) wrapper = property.wrapperName != nullptr ? frame.element.addChild(property.wrapperName) : frame.element;
  valueText_.clear();
  for (void* item : itemsOf(collection)) {
    if (item == nullptr) continue;
    itemText_.clear();
    appendDatatypeText(property, item, 0, itemText_);
    if (property.asElement) {
      wrapper.addChild(property.name).setNodeValue(itemText_);
      continue;
    }
    // The escaping leaves no blank in a string, so this only guards the list form.
    if (property.typeId == ICoreDatatypes::STRING_TYPE_ID && itemText_.find(' ') != std::string::npos) {
      fail(qvxFormatMsg(77012, property.property->getName(), itemText_));
    }
    if (!valueText_.empty()) valueText_.push_back(' ');
    valueText_ += itemText_;
  }
  if (!property.asElement && !valueText_.empty()) frame.element.setAttribute(property.name, valueText_);
}

void XMLSerializerDocument::writeEnumeration(Frame& frame, PropertyPlan const& property) {
  void const* value = frame.info->get(*property.property, IFALSE);
  if (value == nullptr) return;
  valueText_.clear();
  if (!property.isCollection) {
    appendEnumerationText(*property.datatype, static_cast<icore::IEnumerationLiteral const*>(value), valueText_);
    if (property.hasDefault && valueText_ == property.defaultText) return;
    logProperty(property);
    putValue(frame.element, property, valueText_);
    return;
  }
  for (void* item : itemsOf(value)) {
    if (item == nullptr) continue;
    if (!valueText_.empty()) valueText_.push_back(' ');
    appendEnumerationText(*property.datatype, static_cast<icore::IEnumerationLiteral const*>(item), valueText_);
  }
  if (valueText_.empty()) return;
  logProperty(property);
  frame.element.setAttribute(property.name, valueText_);
}

void XMLSerializerDocument::writeReferences(Frame& frame, PropertyPlan const& property) {
  void const* value = frame.info->get(*property.property, IFALSE);
  if (value == nullptr) return;
  valueText_.clear();
  if (!property.isCollection) {
    logProperty(property);
    appendReference(static_cast<IObject*>(const_cast<void*>(value)), valueText_);
    frame.element.setAttribute(property.name, valueText_);
    return;
  }
  IVector<void*> const& targets = itemsOf(value);
  if (targets.isEmpty()) return;
  logProperty(property);
  for (void* target : targets) {
    if (target == nullptr) continue;
    if (!valueText_.empty()) valueText_.push_back(' ');
    appendReference(static_cast<IObject*>(target), valueText_);
  }
  if (!valueText_.empty()) frame.element.setAttribute(property.name, valueText_);
}

void XMLSerializerDocument::writeContainment(Frame& frame, PropertyPlan const& property) {
  void const* value = frame.info->get(*property.property, IFALSE);
  if (value == nullptr) return;
  if (!property.isCollection) {
    logProperty(property);
    writeContained(static_cast<IObject*>(const_cast<void*>(value)), frame.element, property.name);
    return;
  }
  if (itemsOf(value).isEmpty()) return;
  logProperty(property);
  frame.wrapper = frame.element.addChild(property.name);
  frame.openItems = &property;
  frame.items = &itemsOf(value);
  frame.nextItem = 0;
}

void XMLSerializerDocument::writeContained(IObject* child, TXMLNode parent, TXMLName elementName) {
  IObjectInfo* info = runtime_->getIObjectInfo(child);
  ClassPlan& plan = planOf(info->getIClass());
  idText_.clear();
  if (info->isProxy()) {
    appendAddressId(*info, idText_);
    addReferenceElement(parent, elementName, idText_, plan);
    noteProxy(child, *info, idText_, true);
    return;
  }
  appendIdentity(*info, plan, idText_);
  if (isWritten(idText_, child)) {
    addReferenceElement(parent, elementName, idText_, plan);
    return;
  }
  beginObject(child, *info, plan, parent, elementName, idText_);
}

void XMLSerializerDocument::addReferenceElement(TXMLNode parent, TXMLName elementName, std::string_view id,
                                                ClassPlan const& plan) {
  TXMLNode element = parent.addChild(elementName);
  element.setAttribute(ozlIdref_, id);
  if (!hasColon(elementName)) element.setAttribute(xsiType_, plan.typeName);
}

void XMLSerializerDocument::putValue(TXMLNode element, PropertyPlan const& property, std::string_view text) {
  if (!property.asElement) {
    element.setAttribute(property.name, text);
    return;
  }
  TXMLNode wrapper = property.wrapperName != nullptr ? element.addChild(property.wrapperName) : element;
  wrapper.addChild(property.name).setNodeValue(text);
}

void XMLSerializerDocument::logProperty(PropertyPlan const& property) {
  if (!isLoggable(ILogger::NOTICE_LEVEL)) return;
  logLine(ILogger::NOTICE_LEVEL, qvxFormatMsg(79007, property.property->getName()));
}

// ---------------------------------------------------------------------------------
// Values and ids

void XMLSerializerDocument::appendDatatypeText(PropertyPlan const& property, void const* value, unsigned int length,
                                               std::string& out) {
  switch (property.typeId) {
    case ICoreDatatypes::STRING_TYPE_ID:
      XMLSerializerValues::appendEscaped(static_cast<IUString const*>(value)->view(), out);
      return;
    case ICoreDatatypes::CHARACTER_TYPE_ID:
      spareText_.clear();
      XMLSerializerValues::appendPrimitiveText(*property.datatype, value, length, spareText_);
      XMLSerializerValues::appendEscaped(std::string_view(spareText_), out);
      return;
    default: break;
  }
  if (XMLSerializerValues::appendPrimitiveText(*property.datatype, value, length, out)) return;
  // A data type of an application package: its factory gives the text.
  icore::IFactory* factory = const_cast<icore::IPackage*>(property.datatype->getPackage())->getFactory();
  std::unique_ptr<IUString> text(factory != nullptr ? factory->datatypeToString(*property.datatype, value) : nullptr);
  if (text != nullptr) WkUString::appendUtf16AsUtf8(out, text->data(), text->length());
}

void XMLSerializerDocument::appendBlobId(void const* bytes, unsigned int length, std::string& out) {
  const std::size_t idStart = out.size();
  out += "ID_";
  char digits[12];
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, ++gLastBlobId);
  out.append(digits, static_cast<std::size_t>(result.ptr - digits));
  std::string text;
  XMLSerializerValues::appendPrimitiveText(*ICoreDatatypes::I_BLOB, bytes, length, text);
  blobs_.emplace_back(out.substr(idStart), std::move(text));
}

void XMLSerializerDocument::appendEnumerationText(icore::IDatatype const& enumeration,
                                                  icore::IEnumerationLiteral const* literal, std::string& out) {
  // A factory answers the same text for a literal every time, so it is asked once
  // per literal instead of allocating a string per value.
  auto found = literalTexts_.find(literal);
  if (found == literalTexts_.end()) {
    icore::IFactory* factory = const_cast<icore::IPackage*>(enumeration.getPackage())->getFactory();
    std::unique_ptr<IUString> text(factory != nullptr ? factory->datatypeToString(enumeration, literal) : nullptr);
    std::string escaped;
    XMLSerializerValues::appendEscaped(text != nullptr ? text->view() : literal->getName().view(), escaped);
    found = literalTexts_.emplace(literal, std::move(escaped)).first;
  }
  out += found->second;
}

void XMLSerializerDocument::appendReference(IObject* target, std::string& out) {
  IObjectInfo* info = runtime_->getIObjectInfo(target);
  idText_.clear();
  if (info->isProxy()) {
    appendAddressId(*info, idText_);
    out += idText_;
    noteProxy(target, *info, idText_, true);
    return;
  }
  ClassPlan& plan = planOf(info->getIClass());
  if ((options_ & Serializer::SKIP_REFERENCE) != 0 && plan.isIdentifiable) {
    if (isLoggable(ILogger::NOTICE_LEVEL)) {
      spareText_.clear();
      appendIdentity(*info, plan, spareText_);
      logLine(ILogger::NOTICE_LEVEL, qvxFormatMsg(79009, spareText_));
    }
    appendAddressId(*info, idText_);
    out += idText_;
    noteProxy(target, *info, idText_, false);
    return;
  }
  appendIdentity(*info, plan, idText_);
  out += idText_;
  if (isOpenObject(target)) return;
  // A seed that is not written anyway would only pass through the list for nothing.
  if (!isWritten(idText_, target) && !isSkippedSeed(plan)) pending_.append(target);
}

void XMLSerializerDocument::appendIdentity(IObjectInfo& info, ClassPlan const& plan, std::string& out) {
  if (!plan.isIdentifiable) {
    appendAddressId(info, out);
    return;
  }
  if (plan.isSeeded) {
    appendSeedIdentity(info, plan, out);
    return;
  }
  icore::IIdentity const* identity = info.getIdentity();
  if (identity == nullptr) {
    if ((options_ & Serializer::SKIP_IDENTITY_GENERATION) != 0) {
      appendAddressId(info, out);
      return;
    }
    identity = generateIdentity(info, plan);
  }
  appendIdentityText(*identity, out);
}

// Seeds are shared by many objects (every column refers to one of ten data types), and
// their ids take the slow, escaped path: each seed's text is made once.
void XMLSerializerDocument::appendSeedIdentity(IObjectInfo& info, ClassPlan const& plan, std::string& out) {
  auto known = seedIds_.find(&info);
  if (known == seedIds_.end()) {
    icore::IIdentity const* identity = info.getIdentity();
    if (identity == nullptr) fail(qvxFormatMsg(77010, plan.objectClass->getName()));
    std::string text;
    appendIdentityText(*identity, text);
    known = seedIds_.emplace(&info, std::move(text)).first;
  }
  out += known->second;
}

void XMLSerializerDocument::appendIdentityText(icore::IIdentity const& identity, std::string& out) {
  icore::runtime::IdentityExternalizer* externalizer = identity.getIdentityExternalizer();
  if (externalizer == uuidExternalizer_) {
    // The usual case, written from the 16 bytes without the externalizer's IUString.
    if (auto const* uuid = dynamic_cast<icore::runtime::UUIIdentity const*>(&identity)) {
      unsigned char bytes[icore::runtime::UUIIdentity::kByteCount];
      uuid->getBytes(bytes);
      static constexpr char kHex[] = "0123456789abcdef";
      char text[icore::runtime::UUIIdentity::kTextLength];
      char* next = text;
      for (std::size_t i = 0; i < sizeof bytes; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) *next++ = '-';
        *next++ = kHex[bytes[i] >> 4];
        *next++ = kHex[bytes[i] & 0xF];
      }
      out += uuidPrefix_;
      out.append(text, sizeof text);
      return;
    }
  }
  // Throws IdentityException (74000) for an identity without externalizer.
  const IUString qualified = runtime_->identityToString(&identity);
  if (externalizer == uuidExternalizer_) {
    WkUString::appendUtf16AsUtf8(out, qualified.data(), qualified.length());
  } else {
    XMLSerializerValues::appendEscaped(qualified.view(), out);
  }
}

icore::IIdentity const* XMLSerializerDocument::generateIdentity(IObjectInfo& info, ClassPlan const& plan) {
  std::unique_ptr<icore::IIdentity> made(runtime_->generateNewId());
  icore::IIdentity const* given = made.get();
  info.setIdentity(given);  // the object owns the identity from here on
  made.release();
  if (isLoggable(ILogger::PROGRESS_LEVEL)) {
    logLine(ILogger::PROGRESS_LEVEL,
            qvxFormatMsg(79010, runtime_->identityToString(given), plan.objectClass->getName()));
  }
  return given;
}

// "ID_" and the low 32 bits of the address of the object's runtime record: unique
// among the objects alive in this process, and only there.
void XMLSerializerDocument::appendAddressId(IObjectInfo const& info, std::string& out) {
  out += "ID_";
  char digits[12];
  const auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&info));
  const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, address);
  out.append(digits, static_cast<std::size_t>(result.ptr - digits));
}

// An object whose element is open was entered under its id when it was begun, so a
// reference to it (a contained object's back-reference, most often) needs no look-up.
bool XMLSerializerDocument::isOpenObject(IObject* object) const {
  const std::size_t depth = stack_.size();
  return (depth >= 1 && stack_[depth - 1].object == object) || (depth >= 2 && stack_[depth - 2].object == object);
}

bool XMLSerializerDocument::isWritten(std::string_view id, IObject* object) {
  IObject* holder = written_.find(id);
  if (holder == nullptr) return false;
  if (holder == object) return true;
  fail(qvxFormatMsg(77011, std::string(id)));
}

void XMLSerializerDocument::noteProxy(IObject* proxy, IObjectInfo& info, std::string_view id, bool checkDuplicates) {
  if (isWritten(id, proxy)) return;
  if (checkDuplicates) checkDuplicateProxy(proxy, info);
  proxies_.append(proxy);
}

void XMLSerializerDocument::checkDuplicateProxy(IObject* proxy, IObjectInfo& info) {
  if ((options_ & Serializer::ALLOW_DUPLICATE_PROXYOBJECTS) != 0) return;
  icore::IIdentity const* identity = info.getIdentity();
  if (identity == nullptr) return;
  const std::string key = utf8Of(runtime_->identityToString(identity));
  IObject* holder = proxyIdentities_.find(key);
  if (holder == nullptr) {
    proxyIdentities_.insert(key, proxy);
    return;
  }
  if (holder != proxy) fail(qvxFormatMsg(77011, key));
}

bool XMLSerializerDocument::isSkippedSeed(ClassPlan const& plan) const {
  return plan.isSeeded && (options_ & Serializer::SERIALIZE_SEEDED_OBJECTS) == 0;
}

// ---------------------------------------------------------------------------------
// The rest of the document

void XMLSerializerDocument::writeProxies() {
  if (proxies_.isEmpty()) return;
  TXMLNode container = root_.addChild("ozl:proxies");
  for (std::size_t index = 0; index < proxies_.size(); ++index) writeProxy(proxies_[index], container);
}

void XMLSerializerDocument::writeProxy(IObject* proxy, TXMLNode container) {
  IObjectInfo* info = runtime_->getIObjectInfo(proxy);
  idText_.clear();
  appendAddressId(*info, idText_);
  if (isWritten(idText_, proxy)) {
    if (isLoggable(ILogger::PROGRESS_LEVEL)) logLine(ILogger::PROGRESS_LEVEL, qvxFormatMsg(79004, idText_));
    return;
  }
  ClassPlan& plan = planOf(info->getIClass());
  listPackage(plan.objectClass->getPackage());  // a proxy brings its own package only
  valueText_.clear();
  appendIdentity(*info, plan, valueText_);
  const bool logsProgress = isLoggable(ILogger::PROGRESS_LEVEL);
  if (logsProgress) {
    logLine(ILogger::PROGRESS_LEVEL, qvxFormatMsg(79006, indent(), "proxy", idText_));
    logLine(ILogger::PROGRESS_LEVEL, IUString::format("%s<%s id=\"%s\">", indent(), "proxy", idText_));
  }
  written_.insert(idText_, proxy);
  TXMLNode element = container.addChild("proxy");
  element.setAttribute(ozlId_, idText_);
  element.setAttribute("objectId", valueText_);
  element.setAttribute("type", plan.typeName);
  element.setAttribute(xsiType_, "ozl:proxy");
  if (logsProgress) logLine(ILogger::PROGRESS_LEVEL, IUString::format("%s<\\%s >", indent(), "proxy"));
}

void XMLSerializerDocument::writeBlobs() {
  if (blobs_.empty()) return;
  TXMLNode container = root_.addChild("ozl:IBlobs");
  for (auto const& [id, text] : blobs_) {
    TXMLNode blob = container.addChild("IBlob");
    blob.setAttribute(ozlId_, id);
    blob.setAttribute(xsiType_, "ozl:IBlob");
    blob.setNodeValue(text);
  }
}

void XMLSerializerDocument::setRootAttributes() {
  const std::string ozlUri = utf8Of(IUString(SerializationUtils::OZL_NAMESPACE_URI));
  root_.setAttribute("xmlns:ozl", ozlUri);
  root_.setAttribute("xmlns:xsi", kXsiNamespaceUri);
  root_.setAttribute("serializationSpecVersion", kSerializationVersion);
  std::string schemaLocation = ozlUri + " OZL.xsd ";
  for (icore::IPackage const* package : packages_) {
    const std::string uri = utf8Of(SerializationUtils::getURI(package));
    root_.setAttribute("xmlns:" + prefixOf(package), uri);
    schemaLocation += uri + " " + utf8Of(package->getQualifiedName()) + ".xsd ";
  }
  for (icore::IPackage const* package : packages_) {
    root_.setAttribute("version" + prefixOf(package), utf8Of(package->getVersion()));
  }
  const std::size_t first = schemaLocation.find_first_not_of(' ');
  const std::size_t last = schemaLocation.find_last_not_of(' ');
  root_.setAttribute("xsi:schemaLocation", first == std::string::npos ? std::string()
                                                                      : schemaLocation.substr(first, last - first + 1));
}

ISTATUS XMLSerializerDocument::output(IOutputStream& out) const {
  try {
    out.write(XMLSerializer::HEADER_TEXT);
    out.write("\n");
  } catch (...) {  // whatever the stream throws, the document is not written
    return ISTATUS_FAILURE;
  }
  return dom_.outputXMLFile(out) == 0 ? ISTATUS_SUCCESS : ISTATUS_FAILURE;
}

// ---------------------------------------------------------------------------------
// Classes, packages and prefixes

XMLSerializerDocument::ClassPlan& XMLSerializerDocument::planOf(icore::IClass const* objectClass) {
  if (lastPlan_ != nullptr && lastPlan_->objectClass == objectClass) return *lastPlan_;
  std::unique_ptr<ClassPlan>& slot = plans_[objectClass];
  if (slot == nullptr) {
    auto plan = std::make_unique<ClassPlan>();
    plan->objectClass = objectClass;
    plan->typeName = prefixOf(objectClass->getPackage()) + ":" + utf8Of(objectClass->getName());
    plan->typeElementName = dom_.internName(plan->typeName);
    plan->isSeeded = objectClass->isSeeded() != IFALSE;
    plan->isIdentifiable = objectClass->isIdentifiableClass() != IFALSE;
    plan->isValueClass = objectClass->isValueClass() != IFALSE;
    plan->packagesListed = false;
    // Redefined properties are left out: the redefining one stands for them under the
    // same name, and an element cannot carry one attribute twice.
    for (icore::IProperty const* property : objectClass->getAllProperties(IFALSE)) {
      if (&property->getRedefinability() == &icore::IRedefinability::ABSTRACT_PROPERTY) continue;
      if (property->getType() == nullptr) continue;
      plan->properties.push_back(planProperty(*property));
    }
    slot = std::move(plan);
  }
  lastPlan_ = slot.get();
  return *slot;
}

XMLSerializerDocument::PropertyPlan XMLSerializerDocument::planProperty(icore::IProperty const& property) {
  icore::IType const* type = property.getType();
  PropertyPlan plan{};
  plan.property = &property;
  plan.isCollection = property.isCollection() != IFALSE;
  plan.typeId = type->getTypeId();
  plan.name = dom_.internName(utf8Of(property.getName()));
  if (type->isClass()) {
    plan.kind = property.isContainment() ? PropertyKind::kContainment : PropertyKind::kReference;
    plan.itemName = dom_.internName(utf8Of(type->getName()));
    return plan;
  }
  plan.kind = type->isEnum() ? PropertyKind::kEnumeration : PropertyKind::kDatatype;
  plan.datatype = static_cast<icore::IDatatype const*>(type);
  plan.asElement = property.getXMLPropertyAsElement() != IFALSE;
  if (plan.asElement && !property.getXMLPropertyElementName().isEmpty()) {
    plan.wrapperName = dom_.internName(utf8Of(property.getXMLPropertyElementName()));
  }
  // An empty literal means no default: an empty string is written as "*" all the same.
  plan.hasDefault = !plan.isCollection && !property.getDefaultValueLiteral().isEmpty() &&
                    plan.typeId != ICoreDatatypes::BLOB_TYPE_ID;
  if (plan.hasDefault) plan.defaultText = writtenDefault(property, plan);
  return plan;
}

// The default literal in the form a value is written in, so that the comparison with
// a value is one of texts.
std::string XMLSerializerDocument::writtenDefault(icore::IProperty const& property, PropertyPlan const& plan) {
  IUString const& literal = property.getDefaultValueLiteral();
  std::string text;
  const bool escaped = plan.kind == PropertyKind::kEnumeration || plan.typeId == ICoreDatatypes::STRING_TYPE_ID ||
                       plan.typeId == ICoreDatatypes::CHARACTER_TYPE_ID;
  if (escaped) {
    XMLSerializerValues::appendEscaped(literal.view(), text);
    return text;
  }
  if (plan.typeId == ICoreDatatypes::DOUBLE_TYPE_ID || plan.typeId == ICoreDatatypes::FLOAT_TYPE_ID) {
    void* value = ICoreDatatypes::primitiveFromString(*plan.datatype, literal, nullptr);
    XMLSerializerValues::appendPrimitiveText(*plan.datatype, value, 0, text);
    ICoreDatatypes::deletePrimitive(*plan.datatype, value);
    return text;
  }
  return utf8Of(literal);
}

void XMLSerializerDocument::listPackages(ClassPlan& plan) {
  if (plan.packagesListed) return;
  for (icore::IClass const* listed = plan.objectClass; listed != nullptr; listed = listed->getSuperClass()) {
    listPackage(listed->getPackage());
  }
  plan.packagesListed = true;
}

void XMLSerializerDocument::listPackage(icore::IPackage const* package) {
  if (listedPackages_.insert(package).second) packages_.append(package);
}

std::string const& XMLSerializerDocument::prefixOf(icore::IPackage const* package) {
  const auto known = prefixes_.find(package);
  if (known != prefixes_.end()) return known->second;
  IUString const& preferred = package->getXMLPackageNsPrefix();
  const std::string first = utf8Of(preferred.isEmpty() ? package->getName() : preferred);
  std::string candidate = first;
  int counter = 1;
  if (candidate == "xsi" || candidate == "ozl") {
    candidate = first + "1";
    counter = 2;
  }
  while (true) {
    const auto holder = prefixHolders_.find(candidate);
    if (holder == prefixHolders_.end()) {
      prefixHolders_.emplace(candidate, package);
      break;
    }
    if (holder->second->getQualifiedName() == package->getQualifiedName()) break;  // shared
    candidate = first + std::to_string(counter++);
  }
  return prefixes_.emplace(package, std::move(candidate)).first->second;
}

// ---------------------------------------------------------------------------------
// Logging

bool XMLSerializerDocument::isLoggable(int level) const {
  return !loggerIsSilent_ && logger_.isLoggable(static_cast<ILogger::MsgLevel>(level));
}

std::string XMLSerializerDocument::indent() const {
  return std::string(static_cast<std::size_t>(std::min(depth_, kMaxLogIndent)) * 2, ' ');
}

void XMLSerializerDocument::logLine(int level, IUString const& text) {
  logger_.log(static_cast<ILogger::MsgLevel>(level), text);
}

void XMLSerializerDocument::fail(IUString const& message) {
  logger_.log(ILogger::ERROR_LEVEL, message);
  throw exception::IOException(message);
}

}  // namespace com::veltrana::qvx::io
