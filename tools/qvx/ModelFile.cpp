#include "tools/qvx/ModelFile.h"

#include <algorithm>
#include <fstream>
#include <memory>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/QVXRuntime.h"
#include "io/QVXBinaryInputStream.h"
#include "io/QVXBinaryOutputStream.h"
#include "io/StreamMarkers.h"
#include "io/XMLDeserializer.h"
#include "io/XMLSerializer.h"
#include "platform/StdOutputStream.h"
#include "tools/qvx/ErrorText.h"
#include "tools/qvx/Progress.h"
#include "tools/qvx/ToolError.h"

namespace qvx_tool {

namespace icore = com::veltrana::qvx::icore;
namespace io = com::veltrana::qvx::io;

LoadedModel::~LoadedModel() {
  for (icore::IObject* object : owned_) delete object;
}

void LoadedModel::addRoot(icore::IObject* object) {
  roots_.append(object);
  adopt(object);
}

void LoadedModel::adopt(icore::IObject* object) {
  if (object == nullptr) return;
  icore::IObjectInfo const* info = icore::QVXRuntime::getInstance()->getIObjectInfo(object);
  if (info == nullptr || info->getContainer() != nullptr) return;
  if (info->getIClass() != nullptr && info->getIClass()->isSeeded()) return;
  if (std::find(owned_.begin(), owned_.end(), object) != owned_.end()) return;
  owned_.push_back(object);
}

namespace {

bool endsWith(std::string const& text, std::string const& suffix) {
  return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

[[noreturn]] void failOn(std::string const& path, std::string const& what) {
  throw ToolError(kExitUsage, path + ": " + what);
}

void readBinary(std::istream& input, LoadedModel& into) {
  io::QVXBinaryInputStream stream(&input, nullptr, nullptr);
  // Objects a failed read leaves with the stream are freed by its destructor; those
  // handed over before are freed by `into`.
  // A stream may end with the end marker or simply where the file ends.
  while (input.peek() != std::char_traits<char>::eof() && stream.hasNextObject()) {
    if (stream.getNextObjectType() == io::QVXBinaryInputStream::LIST_OF_OBJECTS) {
      std::unique_ptr<IVector<icore::IObject*>> list(stream.readObjects());
      for (std::size_t i = 0; i < list->size(); ++i) into.addRoot((*list)[i]);
    } else if (stream.getNextObjectType() == io::QVXBinaryInputStream::OBJECT) {
      into.addRoot(stream.readObject());
    } else {
      throw ToolError(kExitUsage, "holds a primitive value at top level, which is not a model");
    }
  }
  std::unique_ptr<IVector<icore::IObject*>> detached(stream.releaseDetachedObjects());
  for (std::size_t i = 0; i < detached->size(); ++i) into.adopt((*detached)[i]);
}

void readXml(std::istream& input, LoadedModel& into) {
  io::XMLDeserializer reader(&input, nullptr);
  // The parser's exceptions need the XML environment, which lives as long as the reader.
  try {
    std::unique_ptr<IVector<icore::IObject*>> result(reader.deserialize());
    for (std::size_t i = 0; i < result->size(); ++i) into.addRoot((*result)[i]);
    for (icore::IObject* object : reader.takeUnreturnedObjects()) into.adopt(object);
  } catch (...) {
    throw ToolError(kExitUsage, currentExceptionText());
  }
}

}  // namespace

FileFormat ModelFile::formatOfName(std::string const& path) {
  if (endsWith(path, ".qvx")) return FileFormat::kBinary;
  if (endsWith(path, ".xml")) return FileFormat::kXml;
  throw ToolError(kExitUsage, path + ": cannot tell the form from the name (use .qvx or .xml, or --to)");
}

FileFormat ModelFile::formatOfWord(std::string const& word) {
  if (word == "binary") return FileFormat::kBinary;
  if (word == "xml") return FileFormat::kXml;
  throw ToolError(kExitUsage, "--to takes binary or xml, not \"" + word + "\"");
}

FileFormat ModelFile::formatOfContent(std::string const& path) {
  std::ifstream input(path, std::ios::binary);
  if (!input) failOn(path, "cannot open the file");
  int first = input.get();
  if (first == std::char_traits<char>::eof()) failOn(path, "the file is empty (byte offset 0)");
  if (first == io::TC_SERIALIZATION_START) return FileFormat::kBinary;
  if (first == '<' || first == 0xEF) return FileFormat::kXml;  // 0xEF: a UTF-8 byte order mark
  failOn(path, "neither a binary stream nor an XML document (first byte at offset 0)");
}

void ModelFile::load(std::string const& path, LoadedModel& into) {
  FileFormat format = formatOfContent(path);
  std::ifstream input(path, std::ios::binary);
  Progress progress("reading " + path);
  try {
    if (format == FileFormat::kBinary) {
      readBinary(input, into);
    } else {
      readXml(input, into);
    }
  } catch (ToolError const& error) {
    failOn(path, error.what());
  } catch (...) {
    failOn(path, currentExceptionText());
  }
}

void ModelFile::save(IVector<icore::IObject*> const& roots, std::string const& path, FileFormat format) {
  std::ofstream output(path, std::ios::binary | std::ios::trunc);
  if (!output) failOn(path, "cannot create the file");
  Progress progress("writing " + path);
  try {
    if (format == FileFormat::kBinary) {
      io::QVXBinaryOutputStream stream(&output, nullptr, nullptr);
      for (std::size_t i = 0; i < roots.size(); ++i) stream.writeObject(roots[i]);
      stream.markEnd();
    } else {
      StdOutputStream out(output);
      io::XMLSerializer serializer(&out, nullptr);
      serializer.serialize(roots);
      out.flush();
    }
  } catch (...) {
    failOn(path, currentExceptionText());
  }
  output.flush();
  if (!output) failOn(path, "writing failed");
}

}  // namespace qvx_tool
