// libFuzzer target: reads arbitrary bytes as a binary object stream, item by item, the
// way a service reads a stream from another process. Every documented failure is an
// IOException (InvalidDataException derives from it); anything else, a crash, a leak or
// an assertion is a finding. Whatever a read returns is freed, with the objects the
// stream kept.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

#include "examples/catalog/CatalogSeeds.h"
#include "icore/IObject.h"
#include "io/QVXBinaryInputStream.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"
#include "platform/WkEncryption.h"

namespace {

using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::io::QVXBinaryInputStream;

template <typename T>
void freeList(IVector<T*>* list) {
  std::unique_ptr<IVector<T*>> owned(list);
  for (T* element : *owned) delete element;
}

// Reads the next item by its type; false when the stream has ended.
bool readItem(QVXBinaryInputStream& stream) {
  if (stream.hasNextObject() == IFALSE) return false;
  switch (stream.getNextObjectType()) {
    case QVXBinaryInputStream::LIST_OF_OBJECTS: freeList(stream.readObjects()); return true;
    case QVXBinaryInputStream::LIST_OF_INTEGERS: freeList(stream.readInts()); return true;
    case QVXBinaryInputStream::LIST_OF_SHORTS: freeList(stream.readShorts()); return true;
    case QVXBinaryInputStream::LIST_OF_LONGS: freeList(stream.readLongs()); return true;
    case QVXBinaryInputStream::LIST_OF_FLOATS: freeList(stream.readFloats()); return true;
    case QVXBinaryInputStream::LIST_OF_DOUBLES: freeList(stream.readDoubles()); return true;
    case QVXBinaryInputStream::LIST_OF_BOOLEANS: freeList(stream.readBooleans()); return true;
    case QVXBinaryInputStream::LIST_OF_CHARS: freeList(stream.readUnichars()); return true;
    case QVXBinaryInputStream::LIST_OF_BYTES: freeList(stream.readBytes()); return true;
    case QVXBinaryInputStream::LIST_OF_STRINGS: freeList(stream.readStrings()); return true;
    case QVXBinaryInputStream::LIST_OF_DATES: freeList(stream.readDates()); return true;
    case QVXBinaryInputStream::PRIMITIVE_BYTE: stream.readByte(); return true;
    case QVXBinaryInputStream::PRIMITIVE_BOOLEAN: stream.readBoolean(); return true;
    case QVXBinaryInputStream::PRIMITIVE_SHORT: stream.readShort(); return true;
    case QVXBinaryInputStream::PRIMITIVE_INTEGER: stream.readInt(); return true;
    case QVXBinaryInputStream::PRIMITIVE_LONG: stream.readLong(); return true;
    case QVXBinaryInputStream::PRIMITIVE_FLOAT: stream.readFloat(); return true;
    case QVXBinaryInputStream::PRIMITIVE_DOUBLE: stream.readDouble(); return true;
    case QVXBinaryInputStream::PRIMITIVE_CHAR: stream.readUnichar(); return true;
    case QVXBinaryInputStream::PRIMITIVE_STRING: stream.readString(); return true;
    case QVXBinaryInputStream::PRIMITIVE_BLOB: {
      unsigned int count = 0;
      delete[] stream.readBlob(count);
      return true;
    }
    case QVXBinaryInputStream::PRIMITIVE_DATE: delete stream.readDate(); return true;
    default: delete stream.readObject(); return true;
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  unsigned char key[WkEncryption::kKeyLength] = {7};
  WkEncryption::setKey(key, sizeof key);
  com::example::catalog::CatalogSeeds::registerSeedLoader();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  QVXBinaryInputStream stream(&in, nullptr, nullptr);
  try {
    while (readItem(stream)) {
    }
  } catch (com::veltrana::qvx::io::exception::IOException const&) {
    // A documented rejection of the input.
  }
  freeList(stream.releaseDetachedObjects());
  return 0;
}
