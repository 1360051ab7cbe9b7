#include "tools/qvx/StreamDump.h"

#include <cmath>
#include <cstdio>

#include "io/StreamMarkers.h"
#include "io/StreamReader.h"
#include "io/exception/IOException.h"
#include "platform/WkLocale.h"

namespace qvx_tool {

namespace io = com::veltrana::qvx::io;

namespace {

// A fault of the stream's structure found by the walker itself.
struct StructureFault {
  std::string message;
};

char const* primitiveName(char marker) {
  static char const* const kNames[] = {"byte", "boolean", "short", "int",  "long", "float",
                                       "double", "char",  "string", "blob", "date"};
  return io::isPrimitiveMarker(marker) ? kNames[marker - io::TC_BYTE] : "?";
}

// The element marker of a top-level list marker (TC_BYTE_LIST .. TC_DATE_LIST).
char listElementMarker(char listMarker) {
  static char const kElements[] = {io::TC_BYTE,   io::TC_BOOLEAN, io::TC_SHORT, io::TC_INTEGER, io::TC_LONG,
                                   io::TC_FLOAT,  io::TC_DOUBLE,  io::TC_CHAR,  io::TC_STRING,  io::TC_DATE};
  return kElements[listMarker - io::TC_BYTE_LIST];
}

// The primitive marker of a boxed marker (TC_BOXED_BYTE .. TC_BOXED_CHAR).
char boxedValueMarker(char boxedMarker) {
  static char const kValues[] = {io::TC_BYTE, io::TC_BOOLEAN, io::TC_SHORT, io::TC_INTEGER,
                                 io::TC_LONG, io::TC_FLOAT,   io::TC_DOUBLE, io::TC_CHAR};
  return kValues[boxedMarker - io::TC_BOXED_BYTE];
}

std::string entryKind(char marker, char elementMarker) {
  switch (marker) {
    case io::TC_ENUM: return "enum";
    case io::TC_ENUM_COLLECTION: return "enum[]";
    case io::TC_UDC: return "reference";
    case io::TC_UDC_COLLECTION: return "reference[]";
    case io::TC_PRIM_COLLECTION: return std::string(primitiveName(elementMarker)) + "[]";
    default: return primitiveName(marker);
  }
}

std::string floatingText(double value, int digits) {
  if (!std::isfinite(value)) return std::isnan(value) ? "NaN" : (value > 0 ? "Infinity" : "-Infinity");
  char text[40];
  std::snprintf(text, sizeof text, "%.*g", digits, value);
  return text;
}

std::string markerText(char marker) { return std::to_string(static_cast<unsigned char>(marker)); }

}  // namespace

StreamDump::StreamDump(std::istream& input, DumpSink& sink, Limits const& limits)
    : input_(input),
      sink_(sink),
      limits_(limits),
      locale_(std::make_unique<WkLocale>(IUString(WkLocale::kUtf8LocaleName))),
      reader_(std::make_unique<io::StreamReader>(&input, locale_.get())) {}

StreamDump::~StreamDump() = default;

bool StreamDump::run() {
  faultOffset_ = -1;
  try {
    walk();
  } catch (StructureFault const& fault) {
    reportFault(fault.message);
  } catch (com::veltrana::qvx::io::exception::IOException const& error) {
    reportFault(error.getMessage().toUtf8());
  }
  sink_.finish();
  return faultOffset_ < 0;
}

void StreamDump::reportFault(std::string const& message) {
  faultOffset_ = reader_->getOffset();
  faultMessage_ = message;
  sink_.fault(faultOffset_, message);
}

void StreamDump::walk() {
  readHeader();
  while (!ended_ && !stopped_) {
    if (frames_.empty()) {
      if (atEndOfInput()) {
        sink_.dataEnd(reader_->getOffset());
        return;
      }
      readTopItem();
    } else {
      step(frames_.back());
    }
  }
}

bool StreamDump::atEndOfInput() { return input_.peek() == std::char_traits<char>::eof(); }

void StreamDump::fail(std::string const& message) { throw StructureFault{message}; }

int StreamDump::readCount() { return reader_->readCount(); }

bool StreamDump::isVisible(long depth) const { return depth <= limits_.maxDepth; }

// Counts a printed object record; false (and printing stops) past the limit.
bool StreamDump::countObject() {
  if (objectsPrinted_ >= limits_.maxObjects) {
    sink_.truncatedOutput("stopped after " + std::to_string(objectsPrinted_) + " objects (--max-objects)");
    stopped_ = true;
    return false;
  }
  ++objectsPrinted_;
  return true;
}

void StreamDump::readHeader() {
  if (atEndOfInput()) fail("the stream is empty");
  char marker = reader_->readByte();
  if (marker != io::TC_SERIALIZATION_START) fail("the stream does not start with the start marker 1, but " + markerText(marker));
  std::string version = reader_->readString().toUtf8();
  sink_.header(0, version);
  if (version != io::kStreamFormatVersion) fail("unsupported format version \"" + version + "\"");
}

void StreamDump::readTopItem() {
  const std::int64_t offset = reader_->getOffset();
  const char marker = reader_->readByte();
  if (marker == io::TC_NULL || marker == io::TC_OBJ_REFERENCE || marker == io::TC_OBJECT) {
    readObjectRecord(marker, 0);
  } else if (marker == io::TC_LIST_OF_OBJECTS) {
    const int count = readCount();
    sink_.beginList(offset, count);
    Frame list;
    list.remaining = count;
    frames_.push_back(list);
  } else if (io::isPrimitiveMarker(marker)) {
    sink_.primitiveItem(offset, primitiveName(marker), {readValue(marker)});
  } else if (marker >= io::TC_BYTE_LIST && marker <= io::TC_DATE_LIST) {
    std::vector<DumpValue> values = readPrimitiveList(marker);
    sink_.primitiveItem(offset, std::string(primitiveName(listElementMarker(marker))) + "[]", values);
  } else if (marker >= io::TC_BOXED_BYTE && marker <= io::TC_BOXED_CHAR) {
    const char valueMarker = boxedValueMarker(marker);
    sink_.primitiveItem(offset, std::string("boxed ") + primitiveName(valueMarker), {readValue(valueMarker)});
  } else if (marker == io::TC_STREAM_END) {
    sink_.streamEnd(offset);
    ended_ = true;
  } else {
    fail("unexpected marker " + markerText(marker) + " at byte offset " + std::to_string(offset) +
         " where a top-level item starts");
  }
}

std::vector<DumpValue> StreamDump::readPrimitiveList(char listMarker) {
  const char element = listElementMarker(listMarker);
  const int count = readCount();
  std::vector<DumpValue> values;
  for (int i = 0; i < count; ++i) {
    const char marker = reader_->readByte();
    if (marker == io::TC_NULL) {
      values.push_back({"null", false});
    } else if (marker == element) {
      values.push_back(readValue(element));
    } else {
      fail("list element " + std::to_string(i) + " has marker " + markerText(marker) + ", not " + markerText(element));
    }
  }
  return values;
}

DumpValue StreamDump::readValue(char marker) {
  switch (marker) {
    case io::TC_BYTE: return {std::to_string(static_cast<int>(reader_->readByte())), false};
    case io::TC_BOOLEAN: return {reader_->readBoolean() == ITRUE ? "true" : "false", false};
    case io::TC_SHORT: return {std::to_string(reader_->readShort()), false};
    case io::TC_INTEGER: return {std::to_string(reader_->readInt()), false};
    case io::TC_LONG: return {std::to_string(reader_->readLong()), false};
    case io::TC_FLOAT: {
      std::string text = floatingText(reader_->readFloat(), 9);
      return {text, !std::isdigit(static_cast<unsigned char>(text.back()))};
    }
    case io::TC_DOUBLE: {
      std::string text = floatingText(reader_->readDouble(), 17);
      return {text, !std::isdigit(static_cast<unsigned char>(text.back()))};
    }
    case io::TC_CHAR: return {std::to_string(reader_->readUnichar()), false};
    case io::TC_STRING:
    case io::TC_DATE: return {reader_->readString().toUtf8(), true};
    case io::TC_BLOB: {
      unsigned int length = 0;
      std::unique_ptr<char[]> bytes(reader_->readBytes(length));
      return {"blob of " + std::to_string(length) + " bytes", true};
    }
    default: fail("marker " + markerText(marker) + " is no primitive type");
  }
}

void StreamDump::readObjectRecord(char marker, long depth) {
  DumpObject object;
  object.offset = reader_->getOffset() - 1;
  const bool visible = isVisible(depth);
  if (visible && !countObject()) return;
  if (!visible && depth > 0 && isVisible(depth - 1)) sink_.value({"...", false});  // the property shows it is cut
  if (marker == io::TC_NULL || marker == io::TC_OBJ_REFERENCE) {
    object.kind = marker == io::TC_NULL ? "null" : "reference";
    if (marker == io::TC_OBJ_REFERENCE) object.handle = reader_->readInt();
  } else if (marker != io::TC_OBJECT) {
    fail("unexpected marker " + markerText(marker) + " where an object record starts");
  } else {
    const char form = reader_->readByte();
    if (form == io::TC_CLASSDESC || form == io::TC_CLASSDESC_REFERENCE) {
      Descriptor const& descriptor =
          form == io::TC_CLASSDESC ? readDescriptorChain(visible) : descriptorFor(reader_->readInt());
      readConcreteObject(object, descriptor, depth);
      return;
    }
    if (form != io::TC_PROXY && form != io::TC_SEEDED) {
      fail("unexpected marker " + markerText(form) + " after the object marker");
    }
    object.kind = form == io::TC_PROXY ? "proxy" : "seed";
    object.handle = reader_->readInt();
    if (form == io::TC_PROXY) object.className = reader_->readString().toUtf8();
    object.identity = reader_->readString().toUtf8();
    if (form == io::TC_PROXY) readAnnotations();
  }
  if (visible) {
    sink_.beginObject(object);
    sink_.endObject();
  }
}

void StreamDump::readConcreteObject(DumpObject& object, Descriptor const& descriptor, long depth) {
  object.kind = "object";
  object.className = descriptor.className;
  object.descriptorHandle = descriptor.handle;
  const char handleMarker = reader_->readByte();
  if (handleMarker != io::TC_NOT_SPECIFIED) object.handle = reader_->readInt();
  const char identityMarker = reader_->readByte();
  if (identityMarker == io::TC_IDENTITY) {
    object.identity = reader_->readString().toUtf8();
  } else if (identityMarker == io::TC_LONG_IDENTITY) {
    object.identity = std::to_string(reader_->readLong());
  } else if (identityMarker != io::TC_NOT_SPECIFIED) {
    fail("unexpected marker " + markerText(identityMarker) + " where an identity part starts");
  }
  readAnnotations();
  Frame data;
  data.descriptor = &descriptor;
  data.depth = depth + 1;
  data.visible = isVisible(depth);
  if (data.visible) sink_.beginObject(object);
  frames_.push_back(data);
}

// Skips an annotations part. Generic annotations are strings; modeled ones are object
// records, which no writer of this format produces and the dump does not decode.
void StreamDump::readAnnotations() {
  const char modeled = reader_->readByte();
  if (modeled == io::TC_ANNOTATIONS_SKIPPED) return;
  if (modeled != io::TC_NOT_SPECIFIED) {
    fail(modeled == io::TC_ANNOTATIONS ? "modeled annotations are not decoded by dump"
                                       : "unexpected marker " + markerText(modeled) + " where annotations start");
  }
  const char generic = reader_->readByte();
  if (generic == io::TC_NOT_SPECIFIED) return;
  if (generic != io::TC_GENERIC_ANNOTATIONS) {
    fail("unexpected marker " + markerText(generic) + " where generic annotations start");
  }
  const int namespaces = readCount();
  for (int n = 0; n < namespaces; ++n) {
    if (reader_->readByte() != io::TC_NAMESPACE) fail("a generic annotation namespace lacks its marker");
    reader_->readAndIgnoreString();
    const int pairs = readCount();
    for (int p = 0; p < pairs * 2; ++p) reader_->readAndIgnoreString();
  }
}

void StreamDump::step(Frame& frame) {
  if (frame.descriptor == nullptr) {
    stepList(frame);
  } else {
    stepObjectData(frame);
  }
}

void StreamDump::stepList(Frame& frame) {
  if (frame.remaining == 0) {
    const bool closesProperty = frame.closesProperty;
    const bool visible = frame.visible;
    frames_.pop_back();
    if (!visible) return;
    if (closesProperty) {
      sink_.endProperty();
    } else {
      sink_.endList();
    }
    return;
  }
  --frame.remaining;
  const long depth = frame.depth;
  const char marker = reader_->readByte();
  if (marker != io::TC_OBJECT && marker != io::TC_OBJ_REFERENCE && marker != io::TC_NULL) {
    fail("unexpected marker " + markerText(marker) + " where a list element starts");
  }
  readObjectRecord(marker, depth);  // may invalidate `frame`
}

void StreamDump::stepObjectData(Frame& frame) {
  if (frame.nextEntry == frame.descriptor->allEntries.size()) {
    const bool visible = frame.visible;
    frames_.pop_back();
    if (visible) sink_.endObject();
    return;
  }
  Entry const& entry = frame.descriptor->allEntries[frame.nextEntry++];
  const char marker = reader_->readByte();
  if (marker == io::TC_PROPERTY_SKIPPED) return;
  if (marker != entry.marker) {
    fail("property \"" + entry.name + "\" of " + frame.descriptor->className + " has marker " + markerText(marker) +
         " where its class descriptor gives " + markerText(entry.marker));
  }
  readEntryValue(entry, marker, frame);  // may invalidate `frame`
}

void StreamDump::readEntryValue(Entry const& entry, char marker, Frame const& owner) {
  const bool visible = owner.visible;
  const long depth = owner.depth;
  const bool multiValued =
      marker == io::TC_PRIM_COLLECTION || marker == io::TC_ENUM_COLLECTION || marker == io::TC_UDC_COLLECTION;
  if (visible) sink_.beginProperty(entry.name, multiValued);
  if (marker == io::TC_UDC || marker == io::TC_UDC_COLLECTION) {
    Frame list;
    list.remaining = marker == io::TC_UDC ? 1 : readCount();
    list.depth = depth;
    list.visible = visible;
    list.closesProperty = true;
    frames_.push_back(list);  // closes the property when its elements are read
    return;
  }
  const char valueMarker = marker == io::TC_ENUM || marker == io::TC_ENUM_COLLECTION ? io::TC_STRING
                           : marker == io::TC_PRIM_COLLECTION                      ? entry.elementMarker
                                                                                   : marker;
  const int count = multiValued ? readCount() : 1;
  for (int i = 0; i < count; ++i) {
    DumpValue value = readValue(valueMarker);
    if (visible) sink_.value(value);
  }
  if (visible) sink_.endProperty();
}

StreamDump::Descriptor const& StreamDump::descriptorFor(int handle) {
  auto found = descriptors_.find(handle);
  if (found == descriptors_.end()) fail("no class descriptor has handle " + std::to_string(handle));
  return *found->second;
}

// A descriptor and the chain of super class descriptors written inside it, read with
// a loop: the descriptors waiting for their super class wait on a stack.
StreamDump::Descriptor const& StreamDump::readDescriptorChain(bool report) {
  struct Waiting {
    std::unique_ptr<Descriptor> descriptor;
    DumpDescriptor reported;
    int declaredCount;
  };
  std::vector<Waiting> waiting;
  Descriptor const* super = nullptr;
  for (;;) {
    Waiting current{std::make_unique<Descriptor>(), DumpDescriptor{}, 0};
    current.reported.offset = reader_->getOffset() - 1;
    current.reported.handle = reader_->readInt();
    current.descriptor->handle = current.reported.handle;
    current.descriptor->className = reader_->readString().toUtf8();
    current.reported.className = current.descriptor->className;
    current.reported.packageVersion = reader_->readString().toUtf8();
    current.declaredCount = reader_->readShort();
    if (current.declaredCount < 0) fail("a class descriptor declares a negative number of properties");
    const char superMarker = reader_->readByte();
    if (superMarker == io::TC_CLASSDESC) {
      waiting.push_back(std::move(current));
      continue;
    }
    if (superMarker == io::TC_CLASSDESC_REFERENCE) {
      super = &descriptorFor(reader_->readInt());
    } else if (superMarker != io::TC_NOT_SPECIFIED) {
      fail("unexpected marker " + markerText(superMarker) + " where a super class descriptor starts");
    }
    waiting.push_back(std::move(current));
    break;
  }
  // The innermost descriptor (last read) is complete first; each one is the super class
  // of the one that waits below it.
  while (!waiting.empty()) {
    Waiting current = std::move(waiting.back());
    waiting.pop_back();
    if (super != nullptr) {
      inheritedEntries_ += static_cast<std::int64_t>(super->allEntries.size());
      if (inheritedEntries_ > 64 * reader_->getOffset() + 4096) {
        fail("class descriptors inherit more properties than the stream can hold");
      }
      current.descriptor->allEntries = super->allEntries;
      current.reported.superHandle = super->handle;
    }
    readDeclaredEntries(*current.descriptor, current.reported, current.declaredCount);
    const int handle = current.reported.handle;
    if (descriptors_.count(handle) != 0) fail("handle " + std::to_string(handle) + " is given twice");
    if (report) sink_.descriptor(current.reported);
    super = current.descriptor.get();
    descriptors_[handle] = std::move(current.descriptor);
  }
  return *super;
}

void StreamDump::readDeclaredEntries(Descriptor& descriptor, DumpDescriptor& reported, int count) {
  for (int i = 0; i < count; ++i) {
    Entry entry;
    entry.marker = reader_->readByte();
    if (entry.marker == io::TC_PRIM_COLLECTION) {
      entry.elementMarker = reader_->readByte();
      if (!io::isPrimitiveMarker(entry.elementMarker)) {
        fail("a primitive collection property has element marker " + markerText(entry.elementMarker));
      }
    } else if (entry.marker == io::TC_ENUM || entry.marker == io::TC_ENUM_COLLECTION ||
               entry.marker == io::TC_UDC || entry.marker == io::TC_UDC_COLLECTION) {
      entry.typeName = reader_->readString().toUtf8();
    } else if (!io::isPrimitiveMarker(entry.marker)) {
      fail("unexpected marker " + markerText(entry.marker) + " where a property entry starts");
    }
    entry.name = reader_->readString().toUtf8();
    reported.declared.push_back({entry.name, entryKind(entry.marker, entry.elementMarker), entry.typeName});
    descriptor.allEntries.push_back(std::move(entry));
  }
}

}  // namespace qvx_tool
