// Decodes a binary object stream without any package: the stream describes its classes,
// so the descriptors alone tell how to read each object's data. Every record is reported
// to a DumpSink in stream order. Nesting is walked with an explicit stack, and no count
// read from the input is allocated ahead, so hostile input neither overflows the stack
// nor exhausts memory. Decoding stops at the first fault, which is reported with its
// byte offset.
#pragma once
#include <cstdint>
#include <istream>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/qvx/DumpSink.h"

class WkLocale;

namespace com::veltrana::qvx::io {
class StreamReader;
}

namespace qvx_tool {

class StreamDump {
 public:
  struct Limits {
    // Objects nested deeper than this (top-level objects are at depth 0) are not printed.
    long maxDepth = std::numeric_limits<long>::max();
    // Printing stops after this many object records.
    long maxObjects = std::numeric_limits<long>::max();
  };

  StreamDump(std::istream& input, DumpSink& sink, Limits const& limits);
  StreamDump(const StreamDump&) = delete;
  StreamDump& operator=(const StreamDump&) = delete;
  ~StreamDump();

  // Decodes up to the end marker, the end of the input, a limit or a fault; returns
  // whether it got there without a fault.
  bool run();
  // Where and why the last run stopped at a fault.
  std::int64_t faultOffset() const { return faultOffset_; }
  std::string const& faultMessage() const { return faultMessage_; }

 private:
  struct Entry {
    std::string name;
    char marker = 0;  // the kind marker of the entry's values in object data
    char elementMarker = 0;  // for primitive collections: the primitive marker of each element
    std::string typeName;
  };
  struct Descriptor {
    int handle = -1;
    std::string className;
    std::vector<Entry> allEntries;  // super class first
  };
  struct Frame {
    Descriptor const* descriptor = nullptr;  // object data; null for a list of objects
    std::size_t nextEntry = 0;
    std::int64_t remaining = 0;  // elements left of a list
    long depth = 0;  // depth of the objects that this frame's values are
    bool visible = true;
    bool closesProperty = false;  // a list that is the value of a property, closed with it
  };

  void walk();
  void readHeader();
  void readTopItem();
  void step(Frame& frame);
  void stepList(Frame& frame);
  void stepObjectData(Frame& frame);
  void readEntryValue(Entry const& entry, char marker, Frame const& owner);
  // Reads the object record that `marker` starts; pushes a frame for a concrete object's
  // data, or reports the whole record.
  void readObjectRecord(char marker, long depth);
  void readConcreteObject(DumpObject& object, Descriptor const& descriptor, long depth);
  void readAnnotations();
  // Reports the descriptors read when `report` (they belong to a printed object).
  Descriptor const& readDescriptorChain(bool report);
  void readDeclaredEntries(Descriptor& descriptor, DumpDescriptor& reported, int count);
  Descriptor const& descriptorFor(int handle);
  std::vector<DumpValue> readPrimitiveList(char listMarker);
  DumpValue readValue(char marker);
  int readCount();
  [[noreturn]] void fail(std::string const& message);
  void reportFault(std::string const& message);
  bool isVisible(long depth) const;
  bool countObject();
  bool atEndOfInput();

  std::istream& input_;
  DumpSink& sink_;
  Limits limits_;
  std::unique_ptr<WkLocale> locale_;
  std::unique_ptr<com::veltrana::qvx::io::StreamReader> reader_;
  std::map<int, std::unique_ptr<Descriptor>> descriptors_;
  std::vector<Frame> frames_;
  std::int64_t inheritedEntries_ = 0;
  long objectsPrinted_ = 0;
  bool ended_ = false;
  bool stopped_ = false;
  std::int64_t faultOffset_ = -1;
  std::string faultMessage_;
};

}  // namespace qvx_tool
