// Prints a stream dump as one JSON document:
//   {"header": {"offset", "version"}, "items": [...], "descriptors": [...],
//    "end": {"offset"} or null, "truncated": text or null, "fault": {"offset", "message"} or null}
// An item is an object record ({"offset", "kind", "handle", "class", "descriptor",
// "identity", "properties": {name: value or [values]}}), a list {"offset", "kind": "list",
// "elements": [...]} or a primitive item {"offset", "kind", "values": [...]}. Descriptors
// are collected apart, since the stream writes them in the middle of objects.
#pragma once
#include <cstdio>
#include <string>
#include <vector>

#include "tools/qvx/DumpSink.h"

namespace qvx_tool {

class JsonDumpSink : public DumpSink {
 public:
  explicit JsonDumpSink(std::FILE* out) : out_(out) {}
  void header(std::int64_t offset, std::string const& version) override;
  void descriptor(DumpDescriptor const& descriptor) override;
  void beginObject(DumpObject const& object) override;
  void endObject() override;
  void beginProperty(std::string const& name, bool multiValued) override;
  void endProperty() override;
  void value(DumpValue const& value) override;
  void beginList(std::int64_t offset, int count) override;
  void endList() override;
  void primitiveItem(std::int64_t offset, std::string const& kind, std::vector<DumpValue> const& values) override;
  void streamEnd(std::int64_t offset) override;
  // "end" stays null: the data has no end marker.
  void dataEnd(std::int64_t) override {}
  void truncatedOutput(std::string const& why) override;
  void fault(std::int64_t offset, std::string const& message) override;
  void finish() override;

 private:
  // Appends `text` as the next member or element of the innermost open container.
  void put(std::string const& text);
  // Opens a container ('{' or '[') as the next member or element.
  void open(std::string const& prefix, char bracket, bool isProperties = false);
  void close();
  void putKey(std::string const& name);

  std::FILE* out_;
  std::string header_ = "null";
  std::string items_;
  std::string descriptors_;
  std::string end_ = "null";
  std::string truncated_ = "null";
  std::string fault_ = "null";
  // Open containers of items_: their closing bracket and whether they hold anything yet.
  struct Open {
    char closing;
    bool empty;
    bool isKey;  // a "name": was just written, the next value needs no separator
    bool isProperties;  // the "properties" member of a concrete object, closed with it
  };
  std::vector<Open> open_;
};

}  // namespace qvx_tool
