// Helpers of the XML reader tests: a document around some elements with the usual root
// declarations for the test package "com.example.test.shapes", reading a document from
// text, and freeing what a read returned.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "io/XMLDeserializer.h"
#include "io/exception/IOException.h"
#include "io/exception/SerializationException.h"
#include "tests/support/TestPackageAccess.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/ThrownMessage.h"
#include "utils/ILogger.h"

// Messages print as text in failed comparisons.
inline void PrintTo(const IUString& text, std::ostream* out) { *out << '"' << text.toUtf8() << '"'; }

namespace xml_test {

namespace icore = com::veltrana::qvx::icore;
namespace io = com::veltrana::qvx::io;
using io::XMLDeserializer;
using io::exception::IOException;
using io::exception::SerializationException;

constexpr const char* kHeader = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- Veltrana proprietary -->\n";

// The root's attributes with a given format version and shapes package version; either
// may be null to leave the attribute out.
inline std::string rootOpen(const char* specVersion = "14.0", const char* shapesVersion = "1.0.0") {
  std::string root =
      "<ozl:OZL xmlns:ozl=\"http://www.veltrana.com/qvx/OZL\" "
      "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:shp=\"http://com.example.test.shapes/1\"";
  if (specVersion != nullptr) root += std::string(" serializationSpecVersion=\"") + specVersion + "\"";
  if (shapesVersion != nullptr) root += std::string(" versionshp=\"") + shapesVersion + "\"";
  return root + ">\n";
}

inline std::string document(const std::string& body, const std::string& root = rootOpen()) {
  return kHeader + root + body + "</ozl:OZL>\n";
}

using qvx_test::RecordingLogger;

// The catalog package, loaded through a library resolver (qvx_tests does not link it).
inline void loadCatalogPackage() {
  icore::QVXRuntime* runtime = icore::QVXRuntime::getInstance();
  if (runtime->isPackageRegistered("com.example.catalog") != IFALSE) return;
  const icore::QVXRuntime::PackageLibraryResolver previous = icore::QVXRuntime::getPackageLibraryResolver();
  icore::QVXRuntime::registerPackageLibraryResolver([](IUString const& name, IUString& error) {
    if (name == IUString("com.example.catalog")) return IUString(QVX_TEST_CATALOG_LIBRARY_STEM);
    error = IUString("unknown package ") + name;
    return IUString();
  });
  IUString error;
  EXPECT_EQ(icore::QVXRuntime::loadPackageLibrary("com.example.catalog", error), ISTATUS_SUCCESS) << error.toUtf8();
  icore::QVXRuntime::registerPackageLibraryResolver(previous);
}

inline std::string catalogDocument(const std::string& body) {
  return document(body,
                  "<ozl:OZL xmlns:ozl=\"http://www.veltrana.com/qvx/OZL\" "
                  "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" serializationSpecVersion=\"14.0\" "
                  "xmlns:cat=\"http://com.example.catalog/1\" versioncat=\"1.2.0\">\n");
}

// One read of `text`; the result and the objects left outside it.
struct Read {
  IVector<icore::IObject*>* objects = nullptr;
  std::vector<icore::IObject*> unreturned;

  Read() = default;
  Read(const Read&) = delete;
  Read& operator=(const Read&) = delete;
  ~Read() {
    XMLDeserializer::destroyDeserializedObjects(objects);
    for (icore::IObject* object : unreturned) delete object;
  }
  icore::IObject* operator[](std::size_t index) const { return (*objects)[index]; }
};

inline void read(Read& into, const std::string& text, int options = 0,
                 com::veltrana::qvx::utils::ILogger* logger = nullptr) {
  shapes_test::loadShapesPackage();
  std::istringstream input(text);
  XMLDeserializer reader(&input, logger);
  into.objects = reader.deserialize(options);
  into.unreturned = reader.takeUnreturnedObjects();
}

// The message of the exception of type E that reading `text` throws.
template <typename E>
IUString failureOf(const std::string& text, int options = 0) {
  return qvx_test::messageOf<E>([&] {
    Read result;
    read(result, text, options);
  });
}

}  // namespace xml_test
