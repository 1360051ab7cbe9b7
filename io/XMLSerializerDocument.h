// The document that an XMLSerializer builds: the walk over the object graph with its
// tables, the element tree, and the output of header and tree. Private to io/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "io/XMLSerializerIdTable.h"
#include "platform/IStatus.h"
#include "platform/IVector.h"
#include "utils/TXMLGenerate.h"

class IOutputStream;

namespace com::veltrana::qvx::icore {
class IClass;
class IDatatype;
class IEnumerationLiteral;
class IIdentity;
class IObject;
class IObjectInfo;
class IPackage;
class IProperty;
class QVXRuntime;
namespace runtime {
class IdentityExternalizer;
}
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::utils {
class ILoggerUtils;
}

namespace com::veltrana::qvx::io {

// Objects are walked depth first in property order with an explicit stack of frames, one
// per open object element, so containment of any depth needs no recursion. Per class,
// a plan (element name, flags, the serializable properties with their names interned
// and their default values in written form) is made when the first object of the class
// is met. The logger is not owned; with `loggerIsSilent` no log text is built at all.
class XMLSerializerDocument {
 public:
  XMLSerializerDocument(utils::ILoggerUtils& logger, bool loggerIsSilent);
  XMLSerializerDocument(const XMLSerializerDocument&) = delete;
  XMLSerializerDocument& operator=(const XMLSerializerDocument&) = delete;
  ~XMLSerializerDocument();

  void setOptions(int options) { options_ = options; }
  // Adds a top-level object to write; the caller has checked it.
  void appendPending(icore::IObject* object) { pending_.append(object); }

  // Writes every pending object not written yet, with the proxies and blobs they need,
  // as a new document to `out`. Returns ISTATUS_FAILURE when the output fails; throws
  // IOException for the graph's own faults (before anything is written to `out`).
  ISTATUS write(IOutputStream& out);

 private:
  struct PropertyPlan;
  struct ClassPlan;
  struct Frame;

  // The walk.
  void writePendingObjects();
  void writeObjectTree(icore::IObject* object, icore::IObjectInfo& info, ClassPlan& plan, std::string_view id);
  bool beginObject(icore::IObject* object, icore::IObjectInfo& info, ClassPlan& plan, utils::TXMLNode parent,
                   utils::TXMLName elementName, std::string_view id);
  void step();
  void endObject(Frame const& frame);
  void writeProperty(Frame& frame, PropertyPlan const& property);
  void writeDatatype(Frame& frame, PropertyPlan const& property);
  void writeDatatypeList(Frame& frame, PropertyPlan const& property);
  void writeEnumeration(Frame& frame, PropertyPlan const& property);
  void writeReferences(Frame& frame, PropertyPlan const& property);
  void writeContainment(Frame& frame, PropertyPlan const& property);
  void writeContained(icore::IObject* child, utils::TXMLNode parent, utils::TXMLName elementName);
  void addReferenceElement(utils::TXMLNode parent, utils::TXMLName elementName, std::string_view id,
                           ClassPlan const& plan);
  void putValue(utils::TXMLNode element, PropertyPlan const& property, std::string_view text);
  void logProperty(PropertyPlan const& property);

  // Values and ids.
  void appendDatatypeText(PropertyPlan const& property, void const* value, unsigned int length, std::string& out);
  void appendBlobId(void const* bytes, unsigned int length, std::string& out);
  void appendEnumerationText(icore::IDatatype const& enumeration, icore::IEnumerationLiteral const* literal,
                             std::string& out);
  void appendReference(icore::IObject* target, std::string& out);
  void appendIdentity(icore::IObjectInfo& info, ClassPlan const& plan, std::string& out);
  void appendSeedIdentity(icore::IObjectInfo& info, ClassPlan const& plan, std::string& out);
  void appendIdentityText(icore::IIdentity const& identity, std::string& out);
  icore::IIdentity const* generateIdentity(icore::IObjectInfo& info, ClassPlan const& plan);
  static void appendAddressId(icore::IObjectInfo const& info, std::string& out);
  bool isOpenObject(icore::IObject* object) const;
  bool isWritten(std::string_view id, icore::IObject* object);
  void noteProxy(icore::IObject* proxy, icore::IObjectInfo& info, std::string_view id, bool checkDuplicates);
  void checkDuplicateProxy(icore::IObject* proxy, icore::IObjectInfo& info);
  bool isSkippedSeed(ClassPlan const& plan) const;

  // The rest of the document.
  void writeProxies();
  void writeProxy(icore::IObject* proxy, utils::TXMLNode container);
  void writeBlobs();
  void setRootAttributes();
  ISTATUS output(IOutputStream& out) const;

  // Classes, packages and prefixes.
  ClassPlan& planOf(icore::IClass const* objectClass);
  PropertyPlan planProperty(icore::IProperty const& property);
  std::string writtenDefault(icore::IProperty const& property, PropertyPlan const& plan);
  void listPackages(ClassPlan& plan);
  void listPackage(icore::IPackage const* package);
  std::string const& prefixOf(icore::IPackage const* package);

  // Logging.
  bool isLoggable(int level) const;
  std::string indent() const;
  void logLine(int level, IUString const& text);
  [[noreturn]] void fail(IUString const& message);

  utils::ILoggerUtils& logger_;
  const bool loggerIsSilent_;
  icore::QVXRuntime* runtime_;
  icore::runtime::IdentityExternalizer* uuidExternalizer_;
  std::string uuidPrefix_;  // "uuidV1:"
  int options_ = 0;
  int depth_ = 0;

  utils::TXMLGenerate dom_;
  utils::TXMLNode root_;
  utils::TXMLName ozlId_;
  utils::TXMLName ozlIdref_;
  utils::TXMLName xsiType_;

  IVector<icore::IObject*> pending_{10, 200, 1000};
  IVector<icore::IObject*> proxies_{10, 200, 1000};
  XMLSerializerIdTable written_;
  XMLSerializerIdTable proxyIdentities_;
  std::vector<std::pair<std::string, std::string>> blobs_;  // blob id and Base64 text
  IVector<icore::IPackage const*> packages_{10, 200, 1000};
  std::unordered_set<icore::IPackage const*> listedPackages_;
  std::unordered_map<icore::IPackage const*, std::string> prefixes_;
  std::unordered_map<std::string, icore::IPackage const*> prefixHolders_;
  std::unordered_map<icore::IClass const*, std::unique_ptr<ClassPlan>> plans_;
  ClassPlan* lastPlan_ = nullptr;
  // The written text of each enumeration literal met, as the package factory gives it.
  std::unordered_map<icore::IEnumerationLiteral const*, std::string> literalTexts_;
  // The id of each seed met, by its runtime record (objects do not change while written).
  std::unordered_map<icore::IObjectInfo const*, std::string> seedIds_;

  std::vector<Frame> stack_;
  // Scratch buffers, reused so that values cost no allocation of their own.
  std::string idText_;
  std::string valueText_;
  std::string itemText_;
  std::string spareText_;
};

}  // namespace com::veltrana::qvx::io
