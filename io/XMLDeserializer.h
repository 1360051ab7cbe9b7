// Reads an XML interchange document from an input stream and returns the objects it
// describes, with their values set and their references resolved. The parse runs
// through the XML utility layer (TXMLSAXModel) with a DeserializationHandler, a
// DeserializationErrorHandler and a DeserializationEntityResolver made afresh for every
// deserialize call.
//
// Ownership: the caller owns the returned vector and the objects in it (free both with
// destroyDeserializedObjects). Objects the document holds outside the result (top-level
// objects of classes that are not identifiable, proxies that nothing contains) belong
// to the caller as well: takeUnreturnedObjects hands them over after a read. When a
// read fails, every object it created is deleted before the exception leaves.
// A deserializer is used by one thread at a time; the stream is not owned.
#pragma once

#include <istream>
#include <memory>
#include <vector>

#include "io/Deserializer.h"
#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

namespace com::veltrana::qvx::utils {
class ILogger;
class ILoggerUtils;
}  // namespace com::veltrana::qvx::utils

namespace com::veltrana::qvx::io {

class QVX_API XMLDeserializer : public Deserializer {
 public:
  static constexpr int IGNORE_SERIALIZER_VERSION_VALIDATION = 4;
  static constexpr int EXCLUDE_CONTAINED_OBJECTS = 8;

  // `logger` may be null: the deserializer then uses a silent QVXLogger of its own.
  // Throws IOException for a null stream (77000) or when the XML environment does not
  // start (77003).
  XMLDeserializer(std::istream* input, utils::ILogger* logger);
  XMLDeserializer(const XMLDeserializer&) = delete;
  XMLDeserializer& operator=(const XMLDeserializer&) = delete;
  ~XMLDeserializer() override;

  ISTATUS initialize();
  ISTATUS terminate();

  // Caller owns the result and the objects in it. Parse errors and malformed content
  // throw io::exception::SerializationException; a missing stream, an unloadable
  // package, a version mismatch or (with FAIL_ON_UNRESOLVED_REFERENCES) an unresolved
  // reference throw io::exception::IOException.
  IVector<icore::IObject*>* deserialize() override;
  IVector<icore::IObject*>* deserialize(int options) override;

  // The uncontained objects of the last read that are not in its result; the caller
  // owns them. Empty after a failed read and after the first call.
  std::vector<icore::IObject*> takeUnreturnedObjects();

  // Deletes the uncontained objects of `result` (with what they contain) and the
  // vector, and sets `result` to null.
  static void destroyDeserializedObjects(IVector<icore::IObject*>*& result);
  // "primitives:" followed by the name of one of the eleven boxed primitive classes.
  static IBOOLEAN isBoxedPrimitiveType(const IUString& typeName);

  utils::ILogger* getLogger() const;

 private:
  static IUString describeOptions(int options);
  std::string readInput();

  std::istream* input_;
  std::unique_ptr<utils::ILoggerUtils> logger_;
  std::vector<icore::IObject*> unreturned_;
  bool initialized_ = false;
};

}  // namespace com::veltrana::qvx::io
