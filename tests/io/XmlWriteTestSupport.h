// Helpers of the XML writing tests: an output stream into a string, serializing into
// text, identities from fixed text, and finding attributes and start tags in a document.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "icore/IIdentity.h"
#include "io/XMLSerializer.h"
#include "platform/IOutputStream.h"
#include "tests/catalog/CatalogTestSupport.h"
#include "tests/support/RecordingLogger.h"
#include "utils/ILogger.h"

namespace xml_write_test {

namespace icore = com::veltrana::qvx::icore;
namespace io = com::veltrana::qvx::io;
namespace utils = com::veltrana::qvx::utils;
namespace catalog = com::example::catalog;

// Collects everything written; counts the write calls so that tests can see chunking.
class StringOutputStream : public IOutputStream {
 public:
  using IOutputStream::write;
  void write(const char* bytes, std::size_t count) override {
    text.append(bytes, count);
    ++writes;
  }
  void flush() override { ++flushes; }

  std::string text;
  int writes = 0;
  int flushes = 0;
};

// Throws on every write, as a full disk would.
class FailingOutputStream : public IOutputStream {
 public:
  using IOutputStream::write;
  void write(const char*, std::size_t) override { throw std::runtime_error("disk full"); }
  void flush() override {}
};

using qvx_test::RecordingLogger;

inline std::string msg(int number) { return icore::qvxGetMsg(number).toUtf8(); }
template <typename... Args>
std::string msg(int number, const Args&... args) {
  return icore::qvxFormatMsg(number, args...).toUtf8();
}

inline IVector<icore::IObject*> listOf(std::initializer_list<icore::IObject*> objects) {
  IVector<icore::IObject*> list;
  for (icore::IObject* object : objects) list.append(object);
  return list;
}

// The document that a fresh serializer writes for `objects`; without options through
// the serialize that takes none.
inline std::string serializeToText(std::initializer_list<icore::IObject*> objects, int options = 0,
                                   utils::ILogger* logger = nullptr) {
  StringOutputStream out;
  io::XMLSerializer serializer(&out, logger);
  if (options == 0) {
    serializer.serialize(listOf(objects));
  } else {
    serializer.serialize(listOf(objects), options);
  }
  return out.text;
}

// Gives `object` the identity that `qualified` names ("uuidV1:...", "stringIdentity:...").
inline void identify(icore::IObject* object, const char* qualified) {
  icore::IIdentity const* identity = icore::QVXRuntime::getInstance()->identityFromString(qualified);
  catalog_test::infoOf(object).setIdentity(identity);
}

// "uuidV1:00000000-0000-1000-8000-0000000000NN" for a small number.
inline std::string fixedUuid(int number) {
  char text[64];
  std::snprintf(text, sizeof text, "uuidV1:00000000-0000-1000-8000-%012d", number);
  return text;
}

inline std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

// The value of the first attribute `name`="..." of the element tree after position
// `from`, or "<none>".
inline std::string attributeAfter(const std::string& text, const std::string& name, std::size_t from = 0) {
  const std::string opening = " " + name + "=\"";
  const std::size_t tree = text.find("<ozl:OZL");
  const std::size_t start = text.find(opening, tree != std::string::npos && tree > from ? tree : from);
  if (start == std::string::npos) return "<none>";
  const std::size_t valueStart = start + opening.size();
  return text.substr(valueStart, text.find('"', valueStart) - valueStart);
}

// The start tag (up to ">") of the first element whose tag begins with `tagStart`.
inline std::string startTag(const std::string& text, const std::string& tagStart) {
  const std::size_t start = text.find(tagStart);
  if (start == std::string::npos) return "<none>";
  return text.substr(start, text.find('>', start) - start + 1);
}

}  // namespace xml_write_test
