// The writer of the XML interchange document: a list of model objects, with everything
// they contain and reference, becomes one document on an output stream. It builds the
// whole element tree in memory (utils/TXMLGenerate) and writes it at the end in one
// piece, so a failure during the walk leaves the stream untouched.
#pragma once

#include <memory>

#include "io/Serializer.h"
#include "platform/IUString.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"

class IOutputStream;

namespace com::veltrana::qvx::utils {
class ILogger;
class ILoggerUtils;
}  // namespace com::veltrana::qvx::utils

namespace com::veltrana::qvx::io {

class XMLSerializerDocument;

// One serializer writes one document: its tables (objects written, proxies, blobs,
// packages and prefixes) are kept from one serialize call to the next, so objects that
// an earlier call wrote appear in a later document only as references. The stream and
// a given logger are not owned and must outlive the serializer. After a failed call the
// objects that its walk reached count as written too. Not synchronised; the
// objects must not change while they are written. Containment of any depth is written
// without recursion.
class QVX_API XMLSerializer : public Serializer {
 public:
  // What comes before the element tree, followed by an end of line.
  static const char* const HEADER_TEXT;

  // With a null `logger` the serializer makes its own silent QVXLogger named
  // "XMLSerializer". Throws IOException (77006) when the XML environment cannot start.
  // A null `out` is accepted here; serialize then fails with 77007.
  XMLSerializer(IOutputStream* out, utils::ILogger* logger);
  XMLSerializer(const XMLSerializer&) = delete;
  XMLSerializer& operator=(const XMLSerializer&) = delete;
  ~XMLSerializer() override;

  // Writes the document for `objects` (top-level objects, in order). Throws
  // IllegalArgumentException for an empty list (77005), an object without runtime
  // record (77008), of a class that is not identifiable (77009) or a proxy (77014);
  // IOException when the output fails (77007), for a seeded object without identity
  // (77010) and for two objects under one id (77011).
  void serialize(const IVector<icore::IObject*>& objects) override;
  // Takes the option bits of Serializer for this and later calls, then writes as above.
  void serialize(const IVector<icore::IObject*>& objects, int options) override;

  utils::ILogger* getLogger() const;

  // The names of the set options 1, 2, 4 and 8, in that order, separated by blanks,
  // e.g. "SKIP_REFERENCE SERIALIZE_SEEDED_OBJECTS"; empty when none is set.
  static IUString getOptionsString(int options);

 private:
  void appendListedObjects(const IVector<icore::IObject*>& objects);

  IOutputStream* out_;
  std::unique_ptr<utils::ILoggerUtils> logger_;
  std::unique_ptr<XMLSerializerDocument> document_;
  int options_ = 0;
  bool environmentStarted_ = false;
};

}  // namespace com::veltrana::qvx::io
