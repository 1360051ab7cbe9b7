// Helpers of the binary stream tests: byte strings written the way the format lays them
// out by hand, writing and reading through the streams in memory, and a logger that
// keeps what it is told.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "io/QVXBinaryInputStream.h"
#include "io/QVXBinaryOutputStream.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "platform/IUString.h"
#include "tests/catalog/CatalogTestSupport.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/ThrownMessage.h"

namespace binary_test {

using com::veltrana::qvx::io::QVXBinaryInputStream;
using com::veltrana::qvx::io::QVXBinaryOutputStream;
using com::veltrana::qvx::io::exception::InvalidDataException;
using com::veltrana::qvx::io::exception::IOException;
using qvx_test::messageOf;

// Bytes given as numbers.
inline std::string bytes(std::initializer_list<int> values) {
  std::string out;
  for (int value : values) out += static_cast<char>(value);
  return out;
}

inline std::string int32(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return bytes({static_cast<int>(bits >> 24), static_cast<int>((bits >> 16) & 0xFF), static_cast<int>((bits >> 8) & 0xFF),
                static_cast<int>(bits & 0xFF)});
}

// A string in the stream: its byte count and its UTF-8 bytes.
inline std::string text(const std::string& utf8) { return int32(static_cast<std::int32_t>(utf8.size())) + utf8; }

// 01 00 00 00 06 "14.0.0"
inline std::string header() { return bytes({0x01}) + text("14.0.0"); }

// The class descriptor of the catalog's Position from its marker 04: handle, name,
// package version and the int properties x and y.
inline std::string positionDescriptor(int handle = 0, const std::string& version = "1.2.0") {
  return bytes({0x04}) + int32(handle) + text("com.example.catalog.Position") + text(version) +
         bytes({0, 2, 0x12, 0x08}) + text("x") + bytes({0x08}) + text("y");
}

// The handle, identity and annotations parts of a Position (none of each), and its x and y.
inline std::string positionBody(int x, int y) {
  return bytes({0x12, 0x12, 0x12, 0x12, 0x08}) + int32(x) + bytes({0x08}) + int32(y);
}

// Starts with the catalog's seeds available and the encryption key its password needs.
inline void prepareCatalog() {
  catalog_test::useTestEncryptionKey();
  com::example::catalog::CatalogSeeds::registerSeedLoader();
}

// Whether `text` contains `part`.
inline bool mentions(const IUString& message, const char* part) { return message.find(IUString(part)) != IUString::npos; }

using qvx_test::RecordingLogger;

}  // namespace binary_test
