// What StreamDump finds in a binary stream, in stream order, for a printer to show: the
// header, class descriptors, object records with their property values, top-level
// primitive items, the end marker, and the fault where decoding stopped.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace qvx_tool {

// One printed value; `quoted` for text (strings, dates, blobs), not for numbers and booleans.
struct DumpValue {
  std::string text;
  bool quoted = false;
};

// A property as a class descriptor declares it: its kind ("byte" ... "date", "enum",
// "reference", each with "[]" when multi-valued) and, for enumerations and references,
// the qualified type name.
struct DumpPropertyEntry {
  std::string name;
  std::string kind;
  std::string typeName;
};

struct DumpDescriptor {
  std::int64_t offset = 0;
  int handle = -1;
  std::string className;
  std::string packageVersion;
  int superHandle = -1;  // -1: no super class
  std::vector<DumpPropertyEntry> declared;
};

// An object record: "object" (concrete), "proxy", "seed", "reference" or "null".
struct DumpObject {
  std::int64_t offset = 0;
  std::string kind;
  int handle = -1;  // -1: none (a null, or a value-class object)
  std::string className;
  int descriptorHandle = -1;
  std::string identity;
};

class DumpSink {
 public:
  virtual ~DumpSink() = default;
  virtual void header(std::int64_t offset, std::string const& version) = 0;
  virtual void descriptor(DumpDescriptor const& descriptor) = 0;
  // Followed by the object's properties (for "object") and always by endObject.
  virtual void beginObject(DumpObject const& object) = 0;
  virtual void endObject() = 0;
  // A property's values: single values, or the elements of a multi-valued one; object
  // values arrive as nested objects.
  virtual void beginProperty(std::string const& name, bool multiValued) = 0;
  virtual void endProperty() = 0;
  virtual void value(DumpValue const& value) = 0;
  // A top-level list of objects, its elements arriving as objects.
  virtual void beginList(std::int64_t offset, int count) = 0;
  virtual void endList() = 0;
  // A top-level primitive item ("int", "string", ...) or list of them ("int[]", ...).
  virtual void primitiveItem(std::int64_t offset, std::string const& kind, std::vector<DumpValue> const& values) = 0;
  virtual void streamEnd(std::int64_t offset) = 0;
  // The data ends after a complete item, without the end marker (which writers may omit).
  virtual void dataEnd(std::int64_t offset) = 0;
  // Printing stopped at a limit; the stream goes on beyond it.
  virtual void truncatedOutput(std::string const& why) = 0;
  virtual void fault(std::int64_t offset, std::string const& message) = 0;
  // Everything has been reported; close what is open.
  virtual void finish() = 0;
};

}  // namespace qvx_tool
