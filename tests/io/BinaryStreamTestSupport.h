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

#include "examples/catalog/CatalogSeeds.h"
#include "io/QVXBinaryInputStream.h"
#include "io/QVXBinaryOutputStream.h"
#include "io/exception/IOException.h"
#include "io/exception/InvalidDataException.h"
#include "platform/IUString.h"
#include "platform/WkEncryption.h"
#include "tests/support/ThrownMessage.h"
#include "utils/ILogger.h"

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

// Starts with the catalog's seeds available and the encryption key its password needs.
inline void prepareCatalog() {
  unsigned char key[WkEncryption::kKeyLength];
  for (std::size_t i = 0; i < sizeof key; ++i) key[i] = static_cast<unsigned char>(i * 11 + 3);
  WkEncryption::setKey(key, sizeof key);
  com::example::catalog::CatalogSeeds::registerSeedLoader();
}

// Whether `text` contains `part`.
inline bool mentions(const IUString& message, const char* part) { return message.find(IUString(part)) != IUString::npos; }

// Keeps every line it is given, with its level.
class RecordingLogger : public com::veltrana::qvx::utils::ILogger {
 public:
  explicit RecordingLogger(std::int32_t level) : ILogger(level) {}
  void logMessage(const WkDate*, MsgLevel level, const IUString& message, int, const IUString&) override {
    lines.push_back({level, message.toUtf8()});
  }
  bool has(MsgLevel level, const std::string& message) const {
    for (const auto& line : lines) {
      if (line.level == level && line.text == message) return true;
    }
    return false;
  }
  struct Line {
    MsgLevel level;
    std::string text;
  };
  std::vector<Line> lines;
};

}  // namespace binary_test
