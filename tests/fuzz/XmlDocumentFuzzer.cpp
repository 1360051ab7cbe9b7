// Feeds arbitrary bytes to the XML interchange document reader, with the catalog package
// registered. Every input must either read, with everything it made freed again, or be
// refused with IOException or SerializationException; anything else escaping, a crash,
// a leak or a hang is a finding. Validation is off, so no schema file is looked for.
// Malformed compact UUID ids go to the assertion handler (as the identity reader
// specifies); services install one that logs and returns, and so does this fuzzer.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "examples/catalog/CatalogIPackage.h"
#include "icore/IObject.h"
#include "io/SerializationUtils.h"
#include "io/XMLDeserializer.h"
#include "io/exception/IOException.h"
#include "io/exception/SerializationException.h"
#include "platform/QvxAssert.h"

namespace io = com::veltrana::qvx::io;

namespace {
void returningHandler(const char*, int, const char*) {}
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qvxSetAssertionHandler(returningHandler);
  com::example::catalog::CatalogIPackage::iGetInstance();
  io::SerializationUtils::setValidation(IFALSE);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream input(std::string(reinterpret_cast<const char*>(data), size));
  io::XMLDeserializer reader(&input, nullptr);
  try {
    IVector<com::veltrana::qvx::icore::IObject*>* objects = reader.deserialize();
    io::XMLDeserializer::destroyDeserializedObjects(objects);
    for (com::veltrana::qvx::icore::IObject* object : reader.takeUnreturnedObjects()) delete object;
  } catch (const io::exception::IOException&) {
  } catch (const io::exception::SerializationException&) {
  }
  return 0;
}
