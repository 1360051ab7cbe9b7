// The UUID identity formats and reads its canonical text itself; this checks that the
// text is the UUID library's own, byte for byte, that the two readers agree on every
// well-formed text, and that ours refuses what is malformed.
#include "icore/runtime/UUIIdentity.h"

#include <ace/UUID.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "icore/runtime/UUIDExternalizer.h"

namespace {

using com::veltrana::qvx::icore::runtime::UUIDExternalizer;
using com::veltrana::qvx::icore::runtime::UUIIdentity;

std::string aceText(const unsigned char* bytes) {
  ACE_Utils::UUID value;
  value.time_low((std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
                 bytes[3]);
  value.time_mid(static_cast<std::uint16_t>((bytes[4] << 8) | bytes[5]));
  value.time_hi_and_version(static_cast<std::uint16_t>((bytes[6] << 8) | bytes[7]));
  value.clock_seq_hi_and_reserved(bytes[8]);
  value.clock_seq_low(bytes[9]);
  std::memcpy(value.node().node_ID(), bytes + 10, ACE_Utils::UUID_Node::NODE_ID_SIZE);
  return value.to_string()->c_str();
}

TEST(UUIIdentityTest, CanonicalTextIsTheUuidLibrarysText) {
  // Generated ids vary in every field; the fixed ones add every digit in every position.
  std::vector<std::unique_ptr<UUIIdentity>> ids;
  for (int index = 0; index < 4000; ++index) ids.emplace_back(UUIDExternalizer::getInstance()->generateNewId());
  const unsigned char fixed[][UUIIdentity::kByteCount] = {
      {0},
      {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff},
      {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef, 0xfe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10},
      {0x0a, 0x1b, 0x2c, 0x3d, 0x4e, 0x5f, 0x60, 0x71, 0x82, 0x93, 0xa4, 0xb5, 0xc6, 0xd7, 0xe8, 0xf9},
  };
  for (const auto& bytes : fixed) ids.emplace_back(std::make_unique<UUIIdentity>(bytes));
  for (const auto& id : ids) {
    unsigned char bytes[UUIIdentity::kByteCount];
    id->getBytes(bytes);
    const std::string expected = aceText(bytes);
    ASSERT_EQ(id->getCanonicalText().toUtf8(), expected);
    ASSERT_EQ(UUIDExternalizer::getInstance()->toString(id.get()).toUtf8(), expected);
  }
}

// The fields ACE reads from `text`, as the 16 bytes in RFC 4122 order.
std::vector<unsigned char> aceBytes(const std::string& text) {
  const ACE_Utils::UUID value{ACE_CString(text.c_str())};
  std::vector<unsigned char> bytes(UUIIdentity::kByteCount);
  const std::uint32_t timeLow = value.time_low();
  for (int index = 0; index < 4; ++index) bytes[static_cast<std::size_t>(index)] = static_cast<unsigned char>(timeLow >> (24 - 8 * index));
  bytes[4] = static_cast<unsigned char>(value.time_mid() >> 8);
  bytes[5] = static_cast<unsigned char>(value.time_mid());
  bytes[6] = static_cast<unsigned char>(value.time_hi_and_version() >> 8);
  bytes[7] = static_cast<unsigned char>(value.time_hi_and_version());
  bytes[8] = value.clock_seq_hi_and_reserved();
  bytes[9] = value.clock_seq_low();
  std::memcpy(&bytes[10], value.node().node_ID(), ACE_Utils::UUID_Node::NODE_ID_SIZE);
  return bytes;
}

std::vector<unsigned char> ourBytes(const std::string& text) {
  std::vector<unsigned char> bytes(UUIIdentity::kByteCount);
  if (!UUIIdentity::parseCanonicalText(text.data(), text.size(), bytes.data())) bytes.clear();
  return bytes;
}

std::vector<unsigned char> ourBytes(const std::u16string& text) {
  std::vector<unsigned char> bytes(UUIIdentity::kByteCount);
  if (!UUIIdentity::parseCanonicalText(text.data(), text.size(), bytes.data())) bytes.clear();
  return bytes;
}

std::string upperCase(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

TEST(UUIIdentityTest, OurFormatterAndReaderAgreeWithTheUuidLibraryOnRandomIdentities) {
  std::mt19937 random(20241123);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 20000; ++round) {
    unsigned char bytes[UUIIdentity::kByteCount];
    for (unsigned char& b : bytes) b = static_cast<unsigned char>(byte(random));
    const UUIIdentity identity(bytes);
    const std::string expected = aceText(bytes);
    std::string appended = "prefix:";
    identity.appendCanonicalText(appended);
    ASSERT_EQ(appended, "prefix:" + expected);
    const std::vector<unsigned char> original(bytes, bytes + UUIIdentity::kByteCount);
    ASSERT_EQ(aceBytes(expected), original) << expected;
    ASSERT_EQ(ourBytes(expected), original) << expected;
    ASSERT_EQ(ourBytes(upperCase(expected)), original) << expected;
    const IUString wide = identity.getCanonicalText();
    ASSERT_EQ(ourBytes(std::u16string(wide.data(), wide.length())), original) << expected;
  }
}

TEST(UUIIdentityTest, ReaderRefusesEveryMalformedText) {
  const std::string valid = "6ba7b810-9dad-11d1-80b4-00c04fd430c8";
  ASSERT_FALSE(ourBytes(valid).empty());
  // Every length but 36, cut from or padded onto a valid text.
  for (std::size_t length = 0; length <= 40; ++length) {
    if (length == UUIIdentity::kTextLength) continue;
    const std::string text = length < valid.size() ? valid.substr(0, length) : valid + std::string(length - valid.size(), 'a');
    EXPECT_TRUE(ourBytes(text).empty()) << text;
  }
  // Every position replaced by what does not belong there: a hyphen where a digit goes,
  // a digit where a hyphen goes, and characters that are never part of the text.
  const std::string strangers[] = {" ", "+", "x", "g", "G", ":", "{", std::string(1, '\0'), "\xc3"};
  for (std::size_t offset = 0; offset < valid.size(); ++offset) {
    const bool hyphen = valid[offset] == '-';
    std::string misplaced = valid;
    misplaced[offset] = hyphen ? '0' : '-';
    EXPECT_TRUE(ourBytes(misplaced).empty()) << misplaced;
    for (const std::string& stranger : strangers) {
      std::string text = valid;
      text[offset] = stranger[0];
      EXPECT_TRUE(ourBytes(text).empty()) << offset;
    }
  }
  // What a scanf-based reader takes: a leading blank, sign or "0x" within the field,
  // short fields padded elsewhere, and code units beyond ASCII that narrow to digits.
  for (const char* text : {" ba7b810-9dad-11d1-80b4-00c04fd430c8", "+ba7b810-9dad-11d1-80b4-00c04fd430c8",
                                 "0xa7b810-9dad-11d1-80b4-00c04fd430c8", "6ba7b810-+dad-11d1-80b4-00c04fd430c8",
                                 "6ba7b810-9dad-11d1-80b4- 0c04fd430c8", "6ba7b810-9dad-11d1-0x04-00c04fd430c8",
                                 "6ba7b81-09dad-11d1-80b4-00c04fd430c8"}) {
    EXPECT_TRUE(ourBytes(text).empty()) << text;
  }
  std::u16string wide(valid.begin(), valid.end());
  wide[0] = static_cast<char16_t>(0x0136);  // its low byte is the digit '6'
  EXPECT_TRUE(ourBytes(wide).empty());
  EXPECT_FALSE(UUIIdentity::parseCanonicalText(static_cast<const char*>(nullptr), 36, nullptr));
}

}  // namespace
