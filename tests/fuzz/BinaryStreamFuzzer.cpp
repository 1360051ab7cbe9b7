// libFuzzer target: reads arbitrary bytes as a binary object stream, item by item, the
// way a service reads a stream from another process. Every documented failure is an
// IOException (InvalidDataException derives from it); anything else, a crash, a leak or
// an assertion is a finding. At the end the caller's objects are freed as the stream's
// contract says: the uncontained objects that reads returned or the stream handed over,
// seeds excepted (the registry owns them), each once.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <unordered_set>
#include <vector>

#include "examples/catalog/CatalogSeeds.h"
#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/internal/IObjectInternal.h"
#include "io/QVXBinaryInputStream.h"
#include "io/exception/IOException.h"
#include "platform/WkDate.h"
#include "platform/WkEncryption.h"

namespace {

using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::internal::IObjectInternal;
using com::veltrana::qvx::io::QVXBinaryInputStream;

// Objects that reads handed out, each once.
class ReadObjects {
 public:
  void add(IObject* object) {
    if (object != nullptr && seen_.insert(object).second) order_.push_back(object);
  }
  void addAll(IVector<IObject*>* list) {
    std::unique_ptr<IVector<IObject*>> owned(list);
    for (IObject* object : *owned) add(object);
  }
  // Frees the roots among them; contained objects go with their containers.
  void freeRoots() {
    std::vector<IObject*> roots;
    for (IObject* object : order_) {
      auto* internal = static_cast<IObjectInternal*>(object);
      if (internal->iGetContainer() == nullptr && !internal->iGetIClass()->isSeeded()) roots.push_back(object);
    }
    for (IObject* root : roots) delete root;
  }

 private:
  std::unordered_set<IObject*> seen_;
  std::vector<IObject*> order_;
};

template <typename T>
void freeList(IVector<T*>* list) {
  std::unique_ptr<IVector<T*>> owned(list);
  for (T* element : *owned) delete element;
}

// Reads the next item by its type; false when the stream has ended.
bool readItem(QVXBinaryInputStream& stream, ReadObjects& objects) {
  if (stream.hasNextObject() == IFALSE) return false;
  switch (stream.getNextObjectType()) {
    case QVXBinaryInputStream::LIST_OF_OBJECTS: objects.addAll(stream.readObjects()); return true;
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
    default: objects.add(stream.readObject()); return true;
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
  ReadObjects objects;
  {
    QVXBinaryInputStream stream(&in, nullptr, nullptr);
    try {
      while (readItem(stream, objects)) {
      }
    } catch (com::veltrana::qvx::io::exception::IOException const&) {
      // A documented rejection of the input.
    }
    objects.addAll(stream.releaseDetachedObjects());
  }
  objects.freeRoots();
  return 0;
}
