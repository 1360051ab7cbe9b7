// The UUID identity formats its canonical text itself; this checks that the text is
// the UUID library's own, byte for byte.
#include "icore/runtime/UUIIdentity.h"

#include <ace/UUID.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
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

}  // namespace
