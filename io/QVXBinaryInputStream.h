// Reads what QVXBinaryOutputStream writes: checks the header (01, "14.0.0"), says what
// kind of item comes next, and rebuilds objects, lists of objects and primitive values.
// Handles and class descriptors persist for the life of the stream, so an object
// reference may name an object read by an earlier call.
//
// Input is not trusted. Malformed data throws InvalidDataException (81002, 81004,
// 81006, 81007), unresolvable content and short data IOException (80002, 81003,
// 81005, 81008 to 81019, 82002, 82003), each message ending with the byte offset. No
// input makes the reader recurse, and no count read from the input is allocated ahead.
// When a read fails, the objects that it created are freed (objects that an object of an
// earlier read now contains stay with that object); objects read before stay valid.
//
// Ownership of what is read: the caller owns each list and primitive value a read
// returns, and each object a read created and returned. A read that returns an object it
// did not create (a seed, which the seed registry owns, or an object of an earlier read
// named by an object reference) hands nothing over. Objects that a read created but that
// no container holds and that it did not return (an object reached only through a
// reference) are kept by the stream: readObjects with INCLUDE_TOP_LEVEL_OBJECTS appends
// them to its result, releaseDetachedObjects hands them over at any time, and the
// stream's destructor frees those never handed over. Objects that later reads may name
// by reference must outlive the stream.
// One thread at a time.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <vector>

#include "io/QVXInputStream.h"
#include "platform/IStatus.h"
#include "platform/IUString.h"
#include "platform/QvxExport.h"

class WkDate;
class WkLocale;

namespace com::veltrana::qvx::utils {
class ILogger;
class ILoggerUtils;
}  // namespace com::veltrana::qvx::utils

namespace com::veltrana::qvx::io {

class StreamReader;
namespace input {
class ObjectHandler;
}

class QVX_API QVXBinaryInputStream : public QVXInputStream {
 public:
  // With readObjects: the detached objects of the read (see above) are added to the list.
  static constexpr int INCLUDE_TOP_LEVEL_OBJECTS = 2;

  // The kind of the next item, by its marker.
  enum ObjectType {
    OBJECT = 0,  // an object, a null object or an object reference
    LIST_OF_OBJECTS = 1,
    LIST_OF_INTEGERS = 2,
    LIST_OF_SHORTS = 3,
    LIST_OF_LONGS = 4,
    LIST_OF_FLOATS = 5,
    LIST_OF_DOUBLES = 6,
    LIST_OF_BOOLEANS = 7,
    LIST_OF_CHARS = 8,
    LIST_OF_BYTES = 9,
    LIST_OF_STRINGS = 10,
    LIST_OF_DATES = 11,
    BOXED_BYTE = 12,
    BOXED_SHORT = 13,
    BOXED_INTEGER = 14,
    BOXED_LONG = 15,
    BOXED_FLOAT = 16,
    BOXED_DOUBLE = 17,
    BOXED_BOOLEAN = 18,
    BOXED_CHAR = 19,
    PRIMITIVE_BYTE = 20,
    PRIMITIVE_BOOLEAN = 21,
    PRIMITIVE_SHORT = 22,
    PRIMITIVE_INTEGER = 23,
    PRIMITIVE_LONG = 24,
    PRIMITIVE_FLOAT = 25,
    PRIMITIVE_DOUBLE = 26,
    PRIMITIVE_CHAR = 27,
    PRIMITIVE_STRING = 28,
    PRIMITIVE_BLOB = 29,
    PRIMITIVE_DATE = 30,
    STREAM_END = 31,  // also: no marker waiting
  };

  // `stream` (IllegalArgumentException 81001 when null), `logger` and `locale` are not
  // owned; without a logger the stream makes a silent one named "QVXBinaryInputStream",
  // without a locale a UTF-8 one ("_.UTF-8@").
  QVXBinaryInputStream(std::istream* stream, utils::ILogger* logger, WkLocale* locale);
  QVXBinaryInputStream(const QVXBinaryInputStream&) = delete;
  QVXBinaryInputStream& operator=(const QVXBinaryInputStream&) = delete;
  ~QVXBinaryInputStream() override;

  icore::IObject* readObject() override;
  icore::IObject* readObject(int options) override;
  IVector<icore::IObject*>* readObjects() override;
  IVector<icore::IObject*>* readObjects(int options) override;
  IBOOLEAN hasNextObject() override;
  ObjectType getNextObjectType();

  char readByte();
  IBOOLEAN readBoolean();
  short readShort();
  int readInt();
  std::int64_t readLong();
  float readFloat();
  double readDouble();
  unsigned short readUnichar();
  IUString readString();
  // The caller frees the result with delete[].
  char* readBlob(unsigned int& count);
  // Null for a null date; the caller owns the result.
  WkDate* readDate();

  // New lists of new elements (null for a null element); the caller owns both.
  IVector<char*>* readBytes();
  IVector<IBOOLEAN*>* readBooleans();
  IVector<short*>* readShorts();
  IVector<int*>* readInts();
  IVector<std::int64_t*>* readLongs();
  IVector<float*>* readFloats();
  IVector<double*>* readDoubles();
  IVector<unsigned short*>* readUnichars();
  IVector<IUString*>* readStrings();
  IVector<WkDate*>* readDates();

  // The detached objects kept so far (see above); the caller owns the list and them.
  IVector<icore::IObject*>* releaseDetachedObjects();

 private:
  void initStream();
  char readMarker();
  char getNextMarker();
  [[noreturn]] void handleEndMarker();
  void finalise();
  void logDeserializationStart(int options);
  void addTopLevelObjectsToReturnList(IVector<icore::IObject*>& list, std::vector<icore::IObject*> const& detached);
  void keepDetached(std::vector<icore::IObject*> const& detached, IVector<icore::IObject*> const* returned);
  icore::IObject* readObjectItem(char marker, int options);
  IVector<icore::IObject*>* readObjectList(int options);
  // The marker of a single primitive item of type `marker` (IOException 81003 otherwise).
  void expectPrimitiveItem(char marker, char found);
  template <typename T, typename ReadData>
  T readPrimitive(char marker, ReadData readData);
  template <typename T, typename ReadData>
  IVector<T*>* readList(char listMarker, char elementMarker, const char* typeName, ReadData readData);

  std::istream* stream_;
  bool isInitialized_ = false;
  std::unique_ptr<WkLocale> ownLocale_;
  WkLocale* locale_;
  std::unique_ptr<utils::ILoggerUtils> logger_;
  std::unique_ptr<StreamReader> reader_;
  std::unique_ptr<input::ObjectHandler> objectHandler_;
  bool isMarkerWaiting_ = false;
  char waitingMarker_ = 0;
  bool isEnded_ = false;
  std::vector<icore::IObject*> detached_;
};

}  // namespace com::veltrana::qvx::io
