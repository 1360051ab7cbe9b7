#include "io/QVXBinaryOutputStream.h"

#include <ostream>

#include "icore/exception/IllegalArgumentException.h"
#include "io/StreamLog.h"
#include "io/StreamMarkers.h"
#include "io/StreamWriter.h"
#include "io/exception/IOException.h"
#include "io/output/ObjectHandler.h"
#include "platform/WkDate.h"
#include "platform/WkLocale.h"
#include "utils/ILoggerUtils.h"

namespace com::veltrana::qvx::io {

using exception::IOException;

QVXBinaryOutputStream::QVXBinaryOutputStream(std::ostream* stream, utils::ILogger* logger, WkLocale* locale)
    : stream_(stream),
      ownLocale_(locale == nullptr ? std::make_unique<WkLocale>(IUString(WkLocale::kUtf8LocaleName)) : nullptr),
      locale_(locale != nullptr ? locale : ownLocale_.get()),
      logger_(detail::makeStreamLogger(logger, "QVXBinaryOutputStream")) {
  if (stream_ == nullptr) {
    const IUString text = icore::qvxGetMsg(80001);
    detail::logError(*logger_, text);
    throw icore::exception::IllegalArgumentException(text);
  }
  writer_ = std::make_unique<StreamWriter>(stream_, locale_);
  objectHandler_ = std::make_unique<output::ObjectHandler>(writer_.get(), logger_.get());
}

QVXBinaryOutputStream::~QVXBinaryOutputStream() = default;

void QVXBinaryOutputStream::initStream() {
  detail::logProgress(*logger_,
                      "Initializing stream. Writing the serialization start marker and the stream format version.");
  writeMarker(TC_SERIALIZATION_START);
  writer_->writeString(IUString(kStreamFormatVersion));
  isInitialized_ = true;
  detail::logProgress(*logger_, "Successfully initialized the stream.");
}

void QVXBinaryOutputStream::logSerializationStart() { detail::logProgress(*logger_, "Starting serialization."); }

void QVXBinaryOutputStream::writeMarker(char marker) { writer_->writeByte(marker); }

void QVXBinaryOutputStream::writeObject(icore::IObject const* object) { writeObject(object, 0); }

void QVXBinaryOutputStream::writeObject(icore::IObject const* object, int options) {
  logSerializationStart();
  if (!isInitialized_) initStream();
  if (object == nullptr) {
    detail::logProgress(*logger_, "Writing null object to the stream");
    writeMarker(TC_NULL);
  } else {
    detail::logProgressf(*logger_, "Bit options used for object serialization: [%d]", options);
    objectHandler_->writeModeledObject(object, options);
  }
  writer_->flush();
}

void QVXBinaryOutputStream::writeObjects(IVector<icore::IObject*> const* objects) { writeObjects(objects, 0); }

void QVXBinaryOutputStream::writeObjects(IVector<icore::IObject*> const* objects, int options) {
  logSerializationStart();
  if (objects == nullptr) detail::throwLogged<IOException>(*logger_, 80007);
  if (objects->isEmpty()) detail::throwLogged<IOException>(*logger_, 80004);
  detail::logProgress(*logger_, "Beginning to serialize.");
  if (!isInitialized_) initStream();
  writeMarker(TC_LIST_OF_OBJECTS);
  detail::logProgressf(*logger_, "Writing size of the list: [%d].", static_cast<int>(objects->size()));
  writer_->writeInt(static_cast<int>(objects->size()));
  for (std::size_t index = 0; index < objects->size(); ++index) {
    detail::logProgressf(*logger_, "Writing object at index: [%d]", static_cast<int>(index));
    icore::IObject const* object = (*objects)[index];
    if (object == nullptr) {
      detail::logProgress(*logger_, "Writing null object to the stream");
      writeMarker(TC_NULL);
      continue;
    }
    objectHandler_->writeModeledObject(object, options);
  }
  writer_->flush();
}

template <typename T, typename WriteData>
void QVXBinaryOutputStream::writePrimitive(char marker, T const& value, WriteData writeData) {
  if (!isInitialized_) initStream();
  writeMarker(marker);
  (this->*writeData)(value);
  writer_->flush();
}

void QVXBinaryOutputStream::writeByte(char value) { writePrimitive(TC_BYTE, value, &QVXBinaryOutputStream::writeByteData); }
void QVXBinaryOutputStream::writeBoolean(IBOOLEAN value) {
  writePrimitive(TC_BOOLEAN, value, &QVXBinaryOutputStream::writeBooleanData);
}
void QVXBinaryOutputStream::writeShort(short value) {
  writePrimitive(TC_SHORT, value, &QVXBinaryOutputStream::writeShortData);
}
void QVXBinaryOutputStream::writeInt(int value) { writePrimitive(TC_INTEGER, value, &QVXBinaryOutputStream::writeIntData); }
void QVXBinaryOutputStream::writeLong(std::int64_t value) {
  writePrimitive(TC_LONG, value, &QVXBinaryOutputStream::writeLongData);
}
void QVXBinaryOutputStream::writeFloat(float value) {
  writePrimitive(TC_FLOAT, value, &QVXBinaryOutputStream::writeFloatData);
}
void QVXBinaryOutputStream::writeDouble(double value) {
  writePrimitive(TC_DOUBLE, value, &QVXBinaryOutputStream::writeDoubleData);
}
void QVXBinaryOutputStream::writeUnichar(unsigned short value) {
  writePrimitive(TC_CHAR, value, &QVXBinaryOutputStream::writeUnicharData);
}
void QVXBinaryOutputStream::writeString(IUString const& value) {
  writePrimitive(TC_STRING, value, &QVXBinaryOutputStream::writeStringData);
}

void QVXBinaryOutputStream::writeBlob(char const* bytes, unsigned int count) {
  if (!isInitialized_) initStream();
  writeMarker(TC_BLOB);
  writer_->writeBytes(bytes, count);
  writer_->flush();
}

void QVXBinaryOutputStream::writeDate(WkDate const* value) {
  if (value == nullptr) {
    if (!isInitialized_) initStream();
    writeMarker(TC_NULL);
    writer_->flush();
    return;
  }
  writePrimitive(TC_DATE, *value, &QVXBinaryOutputStream::writeDateData);
}

template <typename T, typename WriteData>
void QVXBinaryOutputStream::writeList(IVector<T*> const* values, char listMarker, char elementMarker,
                                      const char* typeName, WriteData writeData) {
  if (values == nullptr) detail::throwLogged<IOException>(*logger_, 80007);
  if (values->isEmpty()) detail::throwLogged<IOException>(*logger_, 80004);
  if (!isInitialized_) initStream();
  detail::logProgressf(*logger_, "Writing a collection of %s values to the stream. Collection size: [%d].", typeName,
                       static_cast<int>(values->size()));
  writeMarker(listMarker);
  writer_->writeInt(static_cast<int>(values->size()));
  for (T const* value : *values) {
    if (value == nullptr) {
      writeMarker(TC_NULL);
      continue;
    }
    writeMarker(elementMarker);
    (this->*writeData)(*value);
  }
  writer_->flush();
}

void QVXBinaryOutputStream::writeBytes(IVector<char*> const* values) {
  writeList(values, TC_BYTE_LIST, TC_BYTE, "byte", &QVXBinaryOutputStream::writeByteData);
}
void QVXBinaryOutputStream::writeBooleans(IVector<IBOOLEAN*> const* values) {
  writeList(values, TC_BOOLEAN_LIST, TC_BOOLEAN, "boolean", &QVXBinaryOutputStream::writeBooleanData);
}
void QVXBinaryOutputStream::writeShorts(IVector<short*> const* values) {
  writeList(values, TC_SHORT_LIST, TC_SHORT, "short", &QVXBinaryOutputStream::writeShortData);
}
void QVXBinaryOutputStream::writeInts(IVector<int*> const* values) {
  writeList(values, TC_INTEGER_LIST, TC_INTEGER, "integer", &QVXBinaryOutputStream::writeIntData);
}
void QVXBinaryOutputStream::writeLongs(IVector<std::int64_t*> const* values) {
  writeList(values, TC_LONG_LIST, TC_LONG, "long", &QVXBinaryOutputStream::writeLongData);
}
void QVXBinaryOutputStream::writeFloats(IVector<float*> const* values) {
  writeList(values, TC_FLOAT_LIST, TC_FLOAT, "float", &QVXBinaryOutputStream::writeFloatData);
}
void QVXBinaryOutputStream::writeDoubles(IVector<double*> const* values) {
  writeList(values, TC_DOUBLE_LIST, TC_DOUBLE, "double", &QVXBinaryOutputStream::writeDoubleData);
}
void QVXBinaryOutputStream::writeUnichars(IVector<unsigned short*> const* values) {
  writeList(values, TC_CHAR_LIST, TC_CHAR, "unicode character", &QVXBinaryOutputStream::writeUnicharData);
}
void QVXBinaryOutputStream::writeStrings(IVector<IUString*> const* values) {
  writeList(values, TC_STRING_LIST, TC_STRING, "string", &QVXBinaryOutputStream::writeStringData);
}
void QVXBinaryOutputStream::writeDates(IVector<WkDate*> const* values) {
  writeList(values, TC_DATE_LIST, TC_DATE, "date", &QVXBinaryOutputStream::writeDateData);
}

void QVXBinaryOutputStream::markEnd() {
  writeMarker(TC_STREAM_END);
  writer_->flush();
}

void QVXBinaryOutputStream::writeByteData(char value) { writer_->writeByte(value); }
void QVXBinaryOutputStream::writeBooleanData(IBOOLEAN value) { writer_->writeBoolean(value); }
void QVXBinaryOutputStream::writeShortData(short value) { writer_->writeShort(value); }
void QVXBinaryOutputStream::writeIntData(int value) { writer_->writeInt(value); }
void QVXBinaryOutputStream::writeLongData(std::int64_t value) { writer_->writeLong(value); }
void QVXBinaryOutputStream::writeFloatData(float value) { writer_->writeFloat(value); }
void QVXBinaryOutputStream::writeDoubleData(double value) { writer_->writeDouble(value); }
void QVXBinaryOutputStream::writeUnicharData(unsigned short value) { writer_->writeUnichar(value); }
void QVXBinaryOutputStream::writeStringData(IUString const& value) { writer_->writeString(value); }
void QVXBinaryOutputStream::writeDateData(WkDate const& value) { writer_->writeDate(value); }

}  // namespace com::veltrana::qvx::io
