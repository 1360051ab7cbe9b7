// Writes model objects, lists of objects and primitive values to a standard byte stream
// in the framework's binary format (layout in StreamMarkers.h and StreamWriter.h):
//
//   header (once)       01 00 00 00 06 "14.0.0"
//   null object         10
//   object              an object record (io/output/ObjectHandler.h)
//   list of objects     1C count, then per element an object record or 10
//   single primitive    its marker (05..0F) and value; a null date is 10 alone
//   list of primitives  its marker (22..2B) count, then per element marker+value or 10
//   end                 34, written by markEnd
//
// Each class is described once per stream and each object written once; later
// occurrences, in the same or a later call, are handles. Everything a call writes is in
// the caller's stream when it returns; the caller's stream is never closed or flushed.
// After an exception the stream object is not usable. One thread at a time.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "io/QVXOutputStream.h"
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

class StreamWriter;
namespace output {
class ObjectHandler;
}

class QVX_API QVXBinaryOutputStream : public QVXOutputStream {
 public:
  // `stream` (IllegalArgumentException 80001 when null), `logger` and `locale` are not
  // owned; without a logger the stream makes a silent one named "QVXBinaryOutputStream",
  // without a locale a UTF-8 one ("_.UTF-8@").
  QVXBinaryOutputStream(std::ostream* stream, utils::ILogger* logger, WkLocale* locale);
  QVXBinaryOutputStream(const QVXBinaryOutputStream&) = delete;
  QVXBinaryOutputStream& operator=(const QVXBinaryOutputStream&) = delete;
  ~QVXBinaryOutputStream() override;

  void writeObject(icore::IObject const* object) override;
  void writeObject(icore::IObject const* object, int options) override;
  // IOException 80004 for an empty list; null elements are written as 10.
  void writeObjects(IVector<icore::IObject*> const* objects) override;
  void writeObjects(IVector<icore::IObject*> const* objects, int options) override;

  void writeByte(char value);
  void writeBoolean(IBOOLEAN value);
  void writeShort(short value);
  void writeInt(int value);
  void writeLong(std::int64_t value);
  void writeFloat(float value);
  void writeDouble(double value);
  void writeUnichar(unsigned short value);
  void writeString(IUString const& value);
  void writeBlob(char const* bytes, unsigned int count);
  // `value` may be null.
  void writeDate(WkDate const* value);

  // Lists: IOException 80007 for a null list, 80004 for an empty one.
  void writeBytes(IVector<char*> const* values);
  void writeBooleans(IVector<IBOOLEAN*> const* values);
  void writeShorts(IVector<short*> const* values);
  void writeInts(IVector<int*> const* values);
  void writeLongs(IVector<std::int64_t*> const* values);
  void writeFloats(IVector<float*> const* values);
  void writeDoubles(IVector<double*> const* values);
  void writeUnichars(IVector<unsigned short*> const* values);
  void writeStrings(IVector<IUString*> const* values);
  void writeDates(IVector<WkDate*> const* values);

  void markEnd() override;

 private:
  void initStream();
  void logSerializationStart();
  void writeMarker(char marker);
  template <typename T, typename WriteData>
  void writePrimitive(char marker, T const& value, WriteData writeData);
  template <typename T, typename WriteData>
  void writeList(IVector<T*> const* values, char listMarker, char elementMarker, const char* typeName,
                 WriteData writeData);

  void writeByteData(char value);
  void writeBooleanData(IBOOLEAN value);
  void writeShortData(short value);
  void writeIntData(int value);
  void writeLongData(std::int64_t value);
  void writeFloatData(float value);
  void writeDoubleData(double value);
  void writeUnicharData(unsigned short value);
  void writeStringData(IUString const& value);
  void writeDateData(WkDate const& value);

  std::ostream* stream_;
  bool isInitialized_ = false;
  std::unique_ptr<WkLocale> ownLocale_;
  WkLocale* locale_;
  std::unique_ptr<utils::ILoggerUtils> logger_;
  std::unique_ptr<StreamWriter> writer_;
  std::unique_ptr<output::ObjectHandler> objectHandler_;
};

}  // namespace com::veltrana::qvx::io
