#include "io/QVXBinaryInputStream.h"

#include <algorithm>
#include <istream>

#include "icore/IObject.h"
#include "icore/exception/IllegalArgumentException.h"
#include "io/StreamLog.h"
#include "io/StreamMarkers.h"
#include "io/StreamReader.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "io/input/ObjectHandler.h"
#include "platform/WkDate.h"
#include "platform/WkLocale.h"
#include "utils/ILoggerUtils.h"

namespace com::veltrana::qvx::io {

using exception::InvalidDataException;
using exception::IOException;
using icore::IObject;

namespace {

constexpr const char* kAllItemMarkers =
    "TC_OBJECT TC_NULL TC_OBJ_REFERENCE TC_LIST_OF_OBJECTS TC_INTEGER_LIST TC_SHORT_LIST TC_LONG_LIST TC_FLOAT_LIST "
    "TC_DOUBLE_LIST TC_BOOLEAN_LIST TC_CHAR_LIST TC_BYTE_LIST TC_STRING_LIST TC_DATE_LIST TC_BOXED_BYTE "
    "TC_BOXED_SHORT TC_BOXED_INTEGER TC_BOXED_LONG TC_BOXED_FLOAT TC_BOXED_DOUBLE TC_BOXED_BOOLEAN TC_BOXED_CHAR "
    "TC_BYTE TC_BOOLEAN TC_SHORT TC_INTEGER TC_LONG TC_FLOAT TC_DOUBLE TC_CHAR TC_STRING TC_BLOB TC_DATE "
    "TC_STREAM_END";

constexpr const char* kObjectItemMarkers =
    "TC_NULL TC_OBJ_REFERENCE TC_OBJECT TC_BOXED_BYTE TC_BOXED_BOOLEAN TC_BOXED_SHORT TC_BOXED_INTEGER "
    "TC_BOXED_LONG TC_BOXED_FLOAT TC_BOXED_DOUBLE TC_BOXED_CHAR ";

// The item type of `marker`, or -1 for a marker that starts no item.
int objectTypeOf(char marker) {
  switch (marker) {
    case TC_OBJECT:
    case TC_NULL:
    case TC_OBJ_REFERENCE: return QVXBinaryInputStream::OBJECT;
    case TC_LIST_OF_OBJECTS: return QVXBinaryInputStream::LIST_OF_OBJECTS;
    case TC_INTEGER_LIST: return QVXBinaryInputStream::LIST_OF_INTEGERS;
    case TC_SHORT_LIST: return QVXBinaryInputStream::LIST_OF_SHORTS;
    case TC_LONG_LIST: return QVXBinaryInputStream::LIST_OF_LONGS;
    case TC_FLOAT_LIST: return QVXBinaryInputStream::LIST_OF_FLOATS;
    case TC_DOUBLE_LIST: return QVXBinaryInputStream::LIST_OF_DOUBLES;
    case TC_BOOLEAN_LIST: return QVXBinaryInputStream::LIST_OF_BOOLEANS;
    case TC_CHAR_LIST: return QVXBinaryInputStream::LIST_OF_CHARS;
    case TC_BYTE_LIST: return QVXBinaryInputStream::LIST_OF_BYTES;
    case TC_STRING_LIST: return QVXBinaryInputStream::LIST_OF_STRINGS;
    case TC_DATE_LIST: return QVXBinaryInputStream::LIST_OF_DATES;
    case TC_BOXED_BYTE: return QVXBinaryInputStream::BOXED_BYTE;
    case TC_BOXED_SHORT: return QVXBinaryInputStream::BOXED_SHORT;
    case TC_BOXED_INTEGER: return QVXBinaryInputStream::BOXED_INTEGER;
    case TC_BOXED_LONG: return QVXBinaryInputStream::BOXED_LONG;
    case TC_BOXED_FLOAT: return QVXBinaryInputStream::BOXED_FLOAT;
    case TC_BOXED_DOUBLE: return QVXBinaryInputStream::BOXED_DOUBLE;
    case TC_BOXED_BOOLEAN: return QVXBinaryInputStream::BOXED_BOOLEAN;
    case TC_BOXED_CHAR: return QVXBinaryInputStream::BOXED_CHAR;
    case TC_STREAM_END: return QVXBinaryInputStream::STREAM_END;
    default:
      if (isPrimitiveMarker(marker)) return QVXBinaryInputStream::PRIMITIVE_BYTE + (marker - TC_BYTE);
      return -1;
  }
}

bool isBoxedMarker(char marker) { return marker >= TC_BOXED_BYTE && marker <= TC_BOXED_CHAR; }

// A list being read: frees its elements unless it is handed over.
template <typename T>
class PendingList {
 public:
  PendingList() : list_(new IVector<T*>()) {}
  PendingList(const PendingList&) = delete;
  PendingList& operator=(const PendingList&) = delete;
  ~PendingList() {
    if (list_ == nullptr) return;
    for (T* element : *list_) delete element;
  }
  IVector<T*>& get() { return *list_; }
  IVector<T*>* release() { return list_.release(); }

 private:
  std::unique_ptr<IVector<T*>> list_;
};

}  // namespace

QVXBinaryInputStream::QVXBinaryInputStream(std::istream* stream, utils::ILogger* logger, WkLocale* locale)
    : stream_(stream),
      ownLocale_(locale == nullptr ? std::make_unique<WkLocale>(IUString(WkLocale::kUtf8LocaleName)) : nullptr),
      locale_(locale != nullptr ? locale : ownLocale_.get()),
      logger_(detail::makeStreamLogger(logger, "QVXBinaryInputStream")) {
  if (stream_ == nullptr) {
    const IUString text = icore::qvxGetMsg(81001);
    detail::logError(*logger_, text);
    throw icore::exception::IllegalArgumentException(text);
  }
  reader_ = std::make_unique<StreamReader>(stream_, locale_);
  objectHandler_ = std::make_unique<input::ObjectHandler>(reader_.get(), logger_.get());
}

QVXBinaryInputStream::~QVXBinaryInputStream() {
  for (IObject* object : detached_) delete object;
}

void QVXBinaryInputStream::initStream() {
  detail::logProgress(*logger_,
                      "Initializing stream. Reading the serialization start marker and the stream format version.");
  const char marker = readMarker();
  if (marker != TC_SERIALIZATION_START) {
    detail::throwLoggedAt<InvalidDataException>(*logger_, reader_->getOffset() - 1, 81004, "TC_SERIALIZATION_START",
                                                static_cast<int>(marker));
  }
  const IUString version = reader_->readString();
  if (version != IUString(kStreamFormatVersion)) {
    detail::throwLoggedAt<InvalidDataException>(*logger_, reader_->getOffset(), 81002, version,
                                                kStreamFormatVersion);
  }
  isInitialized_ = true;
  detail::logProgress(*logger_, "Successfully initialized the stream.");
}

char QVXBinaryInputStream::readMarker() { return reader_->readByte(); }

char QVXBinaryInputStream::getNextMarker() {
  if (!isInitialized_) initStream();
  if (isMarkerWaiting_) {
    isMarkerWaiting_ = false;
    return waitingMarker_;
  }
  return readMarker();
}

void QVXBinaryInputStream::handleEndMarker() {
  if (!isMarkerWaiting_) {
    isEnded_ = true;
    isMarkerWaiting_ = true;
    waitingMarker_ = TC_STREAM_END;
  }
  detail::throwLoggedAt<IOException>(*logger_, reader_->getOffset(), 81015);
}

void QVXBinaryInputStream::finalise() {
  detail::logProgress(*logger_, "Resetting the stream state.");
  isMarkerWaiting_ = false;
  detail::logProgress(*logger_, "Deserialization complete.");
}

void QVXBinaryInputStream::logDeserializationStart(int options) {
  detail::logProgress(*logger_, "Starting deserialization.");
  detail::logProgressf(*logger_, "Bit options used for object deserialization: [%d]", options);
}

IBOOLEAN QVXBinaryInputStream::hasNextObject() {
  if (isEnded_) return IFALSE;
  return getNextObjectType() != STREAM_END ? ITRUE : IFALSE;
}

QVXBinaryInputStream::ObjectType QVXBinaryInputStream::getNextObjectType() {
  detail::logProgress(*logger_, "Getting the type for the next object on the stream.");
  if (!isInitialized_) initStream();
  if (!isMarkerWaiting_) {
    detail::logProgress(*logger_, "Reading the type for the next object.");
    waitingMarker_ = readMarker();
    isMarkerWaiting_ = true;
    detail::logProgressf(*logger_,
                         "Next object type marker: [%d]. Changing the stream state to indicate that the next object "
                         "type has beenr read",
                         static_cast<int>(waitingMarker_));
  }
  const int type = objectTypeOf(waitingMarker_);
  if (type < 0) {
    detail::throwLoggedAt<InvalidDataException>(*logger_, reader_->getOffset() - 1, 81004, kAllItemMarkers,
                                                static_cast<int>(waitingMarker_));
  }
  if (type == STREAM_END) isEnded_ = true;
  return static_cast<ObjectType>(type);
}

// ---- objects ----

IObject* QVXBinaryInputStream::readObject() { return readObject(0); }

IObject* QVXBinaryInputStream::readObject(int options) {
  logDeserializationStart(options);
  const char marker = getNextMarker();
  if (marker == TC_LIST_OF_OBJECTS) {
    // The list stays in front of the reader, for readObjects.
    isMarkerWaiting_ = true;
    waitingMarker_ = marker;
    detail::throwLoggedAt<IOException>(*logger_, reader_->getOffset(), 81013);
  }
  if (marker == TC_STREAM_END) handleEndMarker();
  IObject* object = readObjectItem(marker, options);
  finalise();
  return object;
}

IObject* QVXBinaryInputStream::readObjectItem(char marker, int options) {
  const std::int64_t at = reader_->getOffset() - 1;
  switch (marker) {
    case TC_OBJECT: {
      objectHandler_->beginItem();
      IObject* object = nullptr;
      try {
        object = objectHandler_->readModeledObject(options);
      } catch (...) {
        objectHandler_->abandonItem();
        throw;
      }
      std::vector<IObject*> detached = objectHandler_->endItem();
      detached.erase(std::remove(detached.begin(), detached.end(), object), detached.end());
      detached_.insert(detached_.end(), detached.begin(), detached.end());
      return object;
    }
    case TC_NULL: detail::logProgress(*logger_, "Read null object from the stream."); return nullptr;
    case TC_OBJ_REFERENCE: return objectHandler_->readModeledObjectReference();
    default:
      if (isBoxedMarker(marker) || marker == TC_BLOB) {
        if (logger_->isLoggable(utils::ILogger::PROGRESS_LEVEL)) {
          logger_->log(utils::ILogger::PROGRESS_LEVEL, icore::qvxGetMsg(81016));
        }
        objectHandler_->readAndIgnoreBoxedPrimitive(marker);
        return nullptr;
      }
      detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81004, kObjectItemMarkers, static_cast<int>(marker));
  }
}

IVector<IObject*>* QVXBinaryInputStream::readObjects() { return readObjects(0); }

IVector<IObject*>* QVXBinaryInputStream::readObjects(int options) {
  logDeserializationStart(options);
  const char marker = getNextMarker();
  if (marker == TC_STREAM_END) handleEndMarker();
  if (marker >= TC_BYTE_LIST && marker <= TC_DATE_LIST) {
    // A list of primitives stays in front of the reader, for its own read.
    isMarkerWaiting_ = true;
    waitingMarker_ = marker;
    detail::throwLoggedAt<IOException>(*logger_, reader_->getOffset(), 81014);
  }
  if (marker != TC_LIST_OF_OBJECTS) {
    detail::throwLoggedAt<InvalidDataException>(*logger_, reader_->getOffset() - 1, 81004, "TC_LIST_OF_OBJECTS",
                                                static_cast<int>(marker));
  }
  objectHandler_->beginItem();
  IVector<IObject*>* list = nullptr;
  try {
    list = readObjectList(options);
  } catch (...) {
    objectHandler_->abandonItem();
    throw;
  }
  const std::vector<IObject*> detached = objectHandler_->endItem();
  if ((options & INCLUDE_TOP_LEVEL_OBJECTS) != 0) {
    addTopLevelObjectsToReturnList(*list, detached);
  } else {
    keepDetached(detached, list);
  }
  finalise();
  return list;
}

IVector<IObject*>* QVXBinaryInputStream::readObjectList(int options) {
  const int count = reader_->readCount();
  detail::logProgressf(*logger_, "Reading a collection of objects from the stream. Collection size: [%d]", count);
  std::unique_ptr<IVector<IObject*>> list(new IVector<IObject*>());
  for (int index = 0; index < count; ++index) {
    const std::int64_t at = reader_->getOffset();
    const char marker = readMarker();
    switch (marker) {
      case TC_NULL:
        detail::logProgress(*logger_, "Reading null object from the stream.");
        list->append(nullptr);
        break;
      case TC_OBJ_REFERENCE: list->append(objectHandler_->readModeledObjectReference()); break;
      case TC_OBJECT: list->append(objectHandler_->readModeledObject(options)); break;
      default:
        detail::throwLoggedAt<InvalidDataException>(*logger_, at, 81004, "TC_NULL TC_OBJ_REFERENCE TC_OBJECT",
                                                    static_cast<int>(marker));
    }
  }
  return list.release();
}

void QVXBinaryInputStream::addTopLevelObjectsToReturnList(IVector<IObject*>& list,
                                                          std::vector<IObject*> const& detached) {
  for (IObject* object : detached) {
    if (!list.contains(object)) list.append(object);
  }
}

void QVXBinaryInputStream::keepDetached(std::vector<IObject*> const& detached, IVector<IObject*> const* returned) {
  for (IObject* object : detached) {
    if (returned == nullptr || !returned->contains(object)) detached_.push_back(object);
  }
}

IVector<IObject*>* QVXBinaryInputStream::releaseDetachedObjects() {
  auto* released = new IVector<IObject*>();
  for (IObject* object : detached_) released->append(object);
  detached_.clear();
  return released;
}

// ---- primitives ----

void QVXBinaryInputStream::expectPrimitiveItem(char marker, char found) {
  if (found == TC_STREAM_END) handleEndMarker();
  if (found != marker) detail::throwLoggedAt<IOException>(*logger_, reader_->getOffset() - 1, 81003);
}

template <typename T, typename ReadData>
T QVXBinaryInputStream::readPrimitive(char marker, ReadData readData) {
  expectPrimitiveItem(marker, getNextMarker());
  T value = readData(*reader_);
  finalise();
  return value;
}

char QVXBinaryInputStream::readByte() {
  return readPrimitive<char>(TC_BYTE, [](StreamReader& reader) { return reader.readByte(); });
}
IBOOLEAN QVXBinaryInputStream::readBoolean() {
  return readPrimitive<IBOOLEAN>(TC_BOOLEAN, [](StreamReader& reader) { return reader.readBoolean(); });
}
short QVXBinaryInputStream::readShort() {
  return readPrimitive<short>(TC_SHORT, [](StreamReader& reader) { return reader.readShort(); });
}
int QVXBinaryInputStream::readInt() {
  return readPrimitive<int>(TC_INTEGER, [](StreamReader& reader) { return reader.readInt(); });
}
std::int64_t QVXBinaryInputStream::readLong() {
  return readPrimitive<std::int64_t>(TC_LONG, [](StreamReader& reader) { return reader.readLong(); });
}
float QVXBinaryInputStream::readFloat() {
  return readPrimitive<float>(TC_FLOAT, [](StreamReader& reader) { return reader.readFloat(); });
}
double QVXBinaryInputStream::readDouble() {
  return readPrimitive<double>(TC_DOUBLE, [](StreamReader& reader) { return reader.readDouble(); });
}
unsigned short QVXBinaryInputStream::readUnichar() {
  return readPrimitive<unsigned short>(TC_CHAR, [](StreamReader& reader) { return reader.readUnichar(); });
}
IUString QVXBinaryInputStream::readString() {
  return readPrimitive<IUString>(TC_STRING, [](StreamReader& reader) { return reader.readString(); });
}
char* QVXBinaryInputStream::readBlob(unsigned int& count) {
  return readPrimitive<char*>(TC_BLOB, [&count](StreamReader& reader) { return reader.readBytes(count); });
}

WkDate* QVXBinaryInputStream::readDate() {
  const char marker = getNextMarker();
  if (marker == TC_NULL) {
    finalise();
    return nullptr;
  }
  expectPrimitiveItem(TC_DATE, marker);
  WkDate* date = reader_->readDate();
  finalise();
  return date;
}

template <typename T, typename ReadData>
IVector<T*>* QVXBinaryInputStream::readList(char listMarker, char elementMarker, const char* typeName,
                                            ReadData readData) {
  expectPrimitiveItem(listMarker, getNextMarker());
  const int count = reader_->readCount();
  detail::logProgressf(*logger_, "Reading a collection of %s from the stream. Collection size: [%d]", typeName, count);
  PendingList<T> list;
  for (int index = 0; index < count; ++index) {
    const std::int64_t at = reader_->getOffset();
    const char marker = readMarker();
    if (marker == TC_NULL) {
      list.get().append(nullptr);
      continue;
    }
    if (marker != elementMarker) detail::throwLoggedAt<IOException>(*logger_, at, 81003);
    std::unique_ptr<T> element(readData(*reader_));
    list.get().append(element.get());
    element.release();
  }
  finalise();
  return list.release();
}

IVector<char*>* QVXBinaryInputStream::readBytes() {
  return readList<char>(TC_BYTE_LIST, TC_BYTE, "byte", [](StreamReader& reader) { return new char(reader.readByte()); });
}
IVector<IBOOLEAN*>* QVXBinaryInputStream::readBooleans() {
  return readList<IBOOLEAN>(TC_BOOLEAN_LIST, TC_BOOLEAN, "boolean",
                            [](StreamReader& reader) { return new IBOOLEAN(reader.readBoolean()); });
}
IVector<short*>* QVXBinaryInputStream::readShorts() {
  return readList<short>(TC_SHORT_LIST, TC_SHORT, "short",
                         [](StreamReader& reader) { return new short(reader.readShort()); });
}
IVector<int*>* QVXBinaryInputStream::readInts() {
  return readList<int>(TC_INTEGER_LIST, TC_INTEGER, "integer",
                       [](StreamReader& reader) { return new int(reader.readInt()); });
}
IVector<std::int64_t*>* QVXBinaryInputStream::readLongs() {
  return readList<std::int64_t>(TC_LONG_LIST, TC_LONG, "long",
                                [](StreamReader& reader) { return new std::int64_t(reader.readLong()); });
}
IVector<float*>* QVXBinaryInputStream::readFloats() {
  return readList<float>(TC_FLOAT_LIST, TC_FLOAT, "float",
                         [](StreamReader& reader) { return new float(reader.readFloat()); });
}
IVector<double*>* QVXBinaryInputStream::readDoubles() {
  return readList<double>(TC_DOUBLE_LIST, TC_DOUBLE, "double",
                          [](StreamReader& reader) { return new double(reader.readDouble()); });
}
IVector<unsigned short*>* QVXBinaryInputStream::readUnichars() {
  return readList<unsigned short>(TC_CHAR_LIST, TC_CHAR, "unicode character",
                                  [](StreamReader& reader) { return new unsigned short(reader.readUnichar()); });
}
IVector<IUString*>* QVXBinaryInputStream::readStrings() {
  return readList<IUString>(TC_STRING_LIST, TC_STRING, "string",
                            [](StreamReader& reader) { return new IUString(reader.readString()); });
}
IVector<WkDate*>* QVXBinaryInputStream::readDates() {
  return readList<WkDate>(TC_DATE_LIST, TC_DATE, "date", [](StreamReader& reader) { return reader.readDate(); });
}

}  // namespace com::veltrana::qvx::io
