// The element handler of the XML reader: it owns all state of one parse of an XML
// interchange document and turns the document's elements into objects. Objects are
// created as their start tags arrive; references are collected and set at the end of
// the document, where targets missing from the document are looked up among the
// seeded objects or replaced by proxies. Blob values are set at the end as well,
// from the document's blob section.
//
// Ownership: until the parse succeeds the handler owns every object it created and
// deletes them (with what they contain) when it is destroyed, so a failed read leaves
// nothing behind. takeResult() hands the identifiable top-level objects to the caller;
// takeUnreturnedObjects() hands over the remaining uncontained objects (top-level
// objects of other classes and proxies that nothing contains), which the returned
// graph may refer to. Seeded objects found in the seed registry stay the registry's.
//
// The per-class tables (property by attribute or element name, the wrapper names of
// properties written as elements) are built once per class and parse, and type names
// are resolved to classes once per name, so the work per element does not depend on
// the size of the metamodel. Nothing recurses per element: open elements live on an
// explicit stack, so containment depth is bounded by memory only.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "io/UnresolvedRef.h"
#include "platform/IUString.h"
#include "platform/IVector.h"
#include "utils/ILogger.h"
#include "utils/TXMLSAXHandler.h"

namespace com::veltrana::qvx::icore {
class IClass;
class IEnumeration;
class IEnumerationLiteral;
class IObject;
class IObjectInfo;
class IPackage;
class IProperty;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
class TXMLAttribute;
class TXMLErrorHandler;
}  // namespace com::veltrana::qvx::utils

namespace com::veltrana::qvx::io {

class DeserializationHandler : public utils::TXMLSAXHandler {
 public:
  DeserializationHandler(utils::ILoggerUtils& logger, utils::TXMLErrorHandler& errorHandler, int options);
  ~DeserializationHandler() override;

  void startElement(const utils::TXMLElement& element) override;
  void endElement(std::u16string_view qName) override;
  void characters(const char16_t* text, std::size_t length) override;

  int getOptions() const { return options_; }
  // Sizes the id table for a document of `bytes` bytes; only a hint.
  void expectDocumentSize(std::size_t bytes);
  // The identifiable top-level objects, in document order, in a new vector; the caller
  // owns vector and objects. Empty unless the document was read to its end.
  IVector<icore::IObject*>* takeResult();
  // The uncontained objects that are not in the result; the caller owns them.
  std::vector<icore::IObject*> takeUnreturnedObjects();

 private:
  enum class SlotKind {
    kSingleDatatype,
    kMultiDatatype,
    kSingleEnumeration,
    kMultiEnumeration,
    kSingleReference,
    kMultiReference,
    kSingleContainment,
    kMultiContainment
  };
  // How one property of a class is read.
  struct PropertySlot {
    icore::IProperty const* property;
    SlotKind kind;
    int typeId;                               // datatypes: the core type id
    icore::IEnumeration const* enumeration;   // enumerations
    icore::IClass const* targetClass;         // references and containments
  };
  struct ClassEntry {
    icore::IClass* objectClass;
    // Keys view the properties' own names, which live as long as the metamodel.
    std::unordered_map<std::u16string_view, PropertySlot> byName;
    std::unordered_map<std::u16string_view, PropertySlot const*> byWrapperName;
  };
  enum class ItemKind { kRoot, kContainer, kObject, kPropertyElement, kReference, kProxy, kBlob };
  // One open element.
  struct OpenItem {
    ItemKind kind;
    icore::IObject* object;       // kObject: the object read; otherwise the nearest open object (may be null)
    ClassEntry const* entry;      // the class entry of `object`
    PropertySlot const* slot;     // kPropertyElement: the property
    bool isTopLevel;              // kObject: a child of the root
    std::u16string blobId;        // kBlob
  };
  struct PendingBlob {
    icore::IObject* owner;
    icore::IProperty const* property;
    std::u16string blobId;
  };
  // The attributes that every element kind looks at first.
  struct KeyAttributes {
    const utils::TXMLAttribute* id = nullptr;
    const utils::TXMLAttribute* type = nullptr;
    const utils::TXMLAttribute* idref = nullptr;
  };

  void handleStart(const utils::TXMLElement& element);
  void handleEnd();
  void readRoot(const utils::TXMLElement& element);
  void checkSpecVersion(bool seen, std::u16string_view version);
  bool isContainer(std::u16string_view qName) const;
  void readObject(const utils::TXMLElement& element, const KeyAttributes& keys, ClassEntry const* entry);
  void readReferenceElement(std::u16string_view qName, std::u16string_view targetId);
  void readProxy(const utils::TXMLElement& element, const KeyAttributes& keys);
  void readPropertyElement(PropertySlot const& slot);
  void push(ItemKind kind, icore::IObject* object, ClassEntry const* entry, PropertySlot const* slot);

  // Class lookup.
  ClassEntry const* classForTypeName(std::u16string_view typeName);
  ClassEntry const* boxedClass(std::u16string_view typeName);
  icore::IClass* resolveClass(std::u16string_view typeName);
  icore::IPackage* findPackage(IUString const& packageName);
  void checkPackageVersion(icore::IPackage const& package);
  ClassEntry const* entryFor(icore::IClass* objectClass);
  static PropertySlot slotFor(icore::IProperty const& property);

  // Values.
  void setAttributes(icore::IObject* object, ClassEntry const& entry, const utils::TXMLElement& element);
  void setPropertyText(icore::IObject* object, ClassEntry const& entry, PropertySlot const& slot,
                       std::u16string_view text);
  void setSingleDatatype(icore::IObjectInfo& info, ClassEntry const& entry, PropertySlot const& slot,
                         std::u16string_view text);
  void appendDatatype(icore::IObjectInfo& info, ClassEntry const& entry, PropertySlot const& slot,
                      std::u16string_view text);
  icore::IEnumerationLiteral* literalFor(ClassEntry const& entry, PropertySlot const& slot, std::u16string_view text);
  // `text` with the format's escaping undone, in a buffer reused by the next call;
  // a malformed escape is a critical error naming the property and class.
  IUString const& unescaped(std::u16string_view text, std::u16string_view propertyName, IUString const& className);

  // References and ownership.
  void attach(icore::IObject* owner, PropertySlot const& slot, icore::IObject* target, std::size_t position,
              bool isNew);
  void adoptChild(OpenItem const& parent, std::u16string_view qName, icore::IObject* child);
  PropertySlot const& containmentSlotFor(OpenItem const& parent, std::u16string_view qName);
  void enterId(std::u16string_view id, icore::IObject* object);
  icore::IObject const* rootOf(icore::IObject const* object);
  void resolveReferences();
  icore::IObject* findTarget(UnresolvedRef const& ref, PropertySlot const& slot);
  icore::IObject* createProxy(icore::IClass const& targetClass, std::u16string_view id);
  void setBlobs();
  void finishDocument();
  void deleteOwnedObjects();

  // Failures.
  [[noreturn]] void critical(const IUString& text);
  [[noreturn]] void badValue(std::u16string_view text, std::u16string_view propertyName, IUString const& className);
  [[noreturn]] void failWithIOException(const IUString& text);
  template <typename... Args>
  void logMessage(utils::ILogger::MsgLevel level, int number, const Args&... args);
  IUString describe(icore::IObject const* object) const;

  utils::ILoggerUtils& logger_;
  utils::TXMLErrorHandler& errorHandler_;
  const int options_;
  const bool logsProgress_;

  std::u16string characters_;
  bool collectsCharacters_ = false;
  bool readsElementText_ = false;  // setting the text of a property element
  int annotationDepth_ = 0;
  std::vector<OpenItem> stack_;

  std::unordered_map<std::u16string, std::u16string> namespaceByPrefix_;
  std::unordered_map<std::u16string, std::u16string> prefixByNamespace_;
  std::unordered_map<std::u16string, std::u16string> versionByNamespace_;
  std::unordered_set<icore::IPackage const*> checkedPackages_;

  std::deque<std::u16string> typeNames_;  // storage of the keys of classByTypeName_
  std::unordered_map<std::u16string_view, ClassEntry const*> classByTypeName_;
  std::unordered_map<icore::IClass const*, std::unique_ptr<ClassEntry>> entries_;

  // Ids, as written, are kept in blocks of the handler (keep): the table's keys and the
  // unresolved references view them without an allocation of their own.
  std::u16string_view keep(std::u16string_view text);
  std::vector<std::unique_ptr<char16_t[]>> idBlocks_;
  std::size_t blockUsed_ = 0;
  std::unordered_map<std::u16string_view, icore::IObject*> objectsById_;
  std::unordered_map<std::u16string_view, icore::IObject*> seedsById_;
  std::unordered_map<icore::IObject const*, icore::IObject const*> rootShortcuts_;
  std::vector<UnresolvedRef> unresolved_;
  std::vector<PendingBlob> pendingBlobs_;
  std::unordered_map<std::u16string, std::u16string> blobTexts_;

  // Objects created without a container, in creation order, until they are handed over.
  std::vector<icore::IObject*> owned_;
  std::vector<icore::IObject*> topLevel_;
  bool finished_ = false;

  IUString scratch_;  // reused for unescaped values
};

}  // namespace com::veltrana::qvx::io
