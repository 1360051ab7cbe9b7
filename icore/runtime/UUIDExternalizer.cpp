// UUID generation on ACE's generator, and reading the canonical and compact text forms
// of UUIDs (our own strict readers; ACE's sscanf-based one accepts malformed texts).
#include "icore/runtime/UUIDExternalizer.h"

#include <ace/UUID.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/random.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <mutex>

#include "icore/runtime/UUIIdentity.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::runtime {

// Why the generator does more than call ACE:
//
// ACE makes version-1 UUIDs from a microsecond clock, a clock sequence that counts the
// UUIDs made within one clock tick, and the host's MAC address as node. That is unique
// within one process, but not across processes: every process starts its sequence at 0
// on the same node, so two processes generating in the same microsecond produce the
// same UUIDs (many thousands of them when several processes start together). ACE offers
// no way to set its node or sequence, so each UUID is taken from ACE and then adjusted
// as RFC 4122 allows:
//  - the node becomes 48 random bits drawn once per process, with the multicast bit set
//    so it can never be a real MAC address (RFC 4122, section 4.5);
//  - the clock sequence becomes ACE's sequence plus a random 14-bit base drawn with the
//    node, modulo 2^14, which keeps ACE's increments within a tick one-to-one.
// ACE's timestamp, the version 1 and the variant bits 10 are kept.
//
// Two more events would repeat values, and both draw a fresh node and base:
//  - a fork: the child would carry on with its parent's state, so a fork handler draws
//    new values in the child;
//  - the wall clock stepping back: ACE then bumps its sequence once but resets it at the
//    next tick, so it can revisit (timestamp, sequence) pairs it has already used.
//    Generation is serialised here so that timestamps are seen in ACE's order and a
//    step back is noticed.
struct UUIDExternalizer::Generator {
  ACE_Utils::UUID_Generator* ace = nullptr;
  // Held across ACE's generation and the adjustment; also held across fork(), so a child
  // never inherits it (or ACE's own lock) in a locked state.
  std::mutex mutex;
  std::uint64_t lastTimestamp = 0;
  unsigned char node[ACE_Utils::UUID_Node::NODE_ID_SIZE] = {};
  std::uint16_t clockSequenceBase = 0;
  // ACE writes each new UUID here, under `mutex`: an ACE UUID is costly to make and
  // destroy (it carries a string and a node of its own), so one serves every call.
  ACE_Utils::UUID scratch;

  void drawNodeAndClockSequence();
};

namespace {

constexpr unsigned kClockSequenceMask = 0x3FFF;
constexpr unsigned char kVariantRfc4122 = 0x80;
constexpr unsigned char kMulticastBit = 0x01;

// Fills `out` from the kernel's random source. Only system calls, because it also runs
// in a fork handler. The last resort, for a kernel without either source, mixes the
// time and the process id, which still separates processes.
void fillRandom(unsigned char* out, std::size_t count) {
  std::size_t filled = 0;
  while (filled < count) {
    const ssize_t got = getrandom(out + filled, count - filled, GRND_NONBLOCK);
    if (got > 0) {
      filled += static_cast<std::size_t>(got);
    } else if (got < 0 && errno != EINTR) {
      break;
    }
  }
  if (filled < count) {
    const int fd = open("/dev/urandom", O_RDONLY | O_CLOEXEC);
    while (fd >= 0 && filled < count) {
      const ssize_t got = read(fd, out + filled, count - filled);
      if (got > 0) {
        filled += static_cast<std::size_t>(got);
      } else if (got == 0 || errno != EINTR) {
        break;
      }
    }
    if (fd >= 0) {
      close(fd);
    }
  }
  if (filled < count) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    std::uint64_t state = (static_cast<std::uint64_t>(now.tv_sec) * 1000000000u + static_cast<std::uint64_t>(now.tv_nsec)) ^
                          (static_cast<std::uint64_t>(getpid()) << 40);
    for (; filled < count; ++filled) {  // splitmix64 steps
      state += 0x9E3779B97F4A7C15u;
      std::uint64_t mixed = (state ^ (state >> 30)) * 0xBF58476D1CE4E5B9u;
      mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
      out[filled] = static_cast<unsigned char>(mixed ^ (mixed >> 31));
    }
  }
}

void writeBigEndian(unsigned char* out, std::uint64_t value, int byteCount) {
  for (int index = byteCount - 1; index >= 0; --index) {
    out[index] = static_cast<unsigned char>(value);
    value >>= 8;
  }
}

IIdentity* parseCanonicalText(const char16_t* text, std::size_t length) {
  unsigned char bytes[UUIIdentity::kByteCount];
  if (!UUIIdentity::parseCanonicalText(text, length, bytes)) {
    return nullptr;
  }
  return new UUIIdentity(bytes);
}

int base64UrlValue(char16_t unit) {
  if (unit >= u'A' && unit <= u'Z') {
    return unit - u'A';
  }
  if (unit >= u'a' && unit <= u'z') {
    return unit - u'a' + 26;
  }
  if (unit >= u'0' && unit <= u'9') {
    return unit - u'0' + 52;
  }
  if (unit == u'-') {
    return 62;
  }
  if (unit == u'_') {
    return 63;
  }
  return -1;
}

// 22 characters carry 132 bits: the 16 bytes and 4 bits that must be zero, as a strict
// Base64 decoder requires of the character before the padding.
IIdentity* decodeCompactText(const char16_t* text, std::size_t length) {
  unsigned char bytes[UUIIdentity::kByteCount];
  std::size_t byteCount = 0;
  std::uint32_t pending = 0;
  int pendingBits = 0;
  for (std::size_t index = 0; index < length; ++index) {
    const int value = base64UrlValue(text[index]);
    if (value < 0) {
      QVX_ASSERT_FAIL("compact UUID text has a character outside the URL-safe Base64 alphabet");
      return nullptr;
    }
    pending = (pending << 6) | static_cast<std::uint32_t>(value);
    pendingBits += 6;
    if (pendingBits >= 8) {
      pendingBits -= 8;
      bytes[byteCount++] = static_cast<unsigned char>(pending >> pendingBits);
      pending &= (1u << pendingBits) - 1;
    }
  }
  if (byteCount != UUIIdentity::kByteCount || pending != 0) {
    QVX_ASSERT_FAIL("compact UUID text has non-zero bits after the 16th byte");
    return nullptr;
  }
  return new UUIIdentity(bytes, UUIIdentity::RawBytes::kKeep);
}

}  // namespace

void UUIDExternalizer::Generator::drawNodeAndClockSequence() {
  unsigned char random[ACE_Utils::UUID_Node::NODE_ID_SIZE + 2];
  fillRandom(random, sizeof random);
  std::memcpy(node, random, sizeof node);
  node[0] |= kMulticastBit;
  clockSequenceBase = static_cast<std::uint16_t>(((random[6] << 8) | random[7]) & kClockSequenceMask);
}

UUIDExternalizer* UUIDExternalizer::getInstance() {
  static auto* const instance = create();  // never destroyed: usable until exit
  return instance;
}

UUIDExternalizer* UUIDExternalizer::create() {
  auto* made = new UUIDExternalizer();
  // The prepare handler's getInstance() waits, if need be, until this function has
  // returned, so the fork happens, and the child's handler runs, with the instance made.
  pthread_atfork([] { getInstance()->generator_->mutex.lock(); },
                 [] { getInstance()->generator_->mutex.unlock(); },
                 &UUIDExternalizer::drawNewNodeInForkedChild);
  return made;
}

void UUIDExternalizer::drawNewNodeInForkedChild() {
  Generator& generator = *getInstance()->generator_;
  generator.drawNodeAndClockSequence();
  generator.mutex.unlock();
}

UUIDExternalizer::UUIDExternalizer() : externalizerId_("uuidV1"), generator_(std::make_unique<Generator>()) {
  // ACE's generator sets itself up (node, first timestamp) when its singleton is made.
  generator_->ace = ACE_Utils::UUID_GENERATOR::instance();
  QVX_ASSERT(generator_->ace != nullptr);
  generator_->drawNodeAndClockSequence();
}

UUIDExternalizer::~UUIDExternalizer() = default;

IUString UUIDExternalizer::toString(IIdentity const* identity) {
  const auto* uuid = dynamic_cast<const UUIIdentity*>(identity);
  return uuid != nullptr ? uuid->getCanonicalText() : IUString();
}

void UUIDExternalizer::appendText(IIdentity const* identity, std::string& utf8Out) {
  if (const auto* uuid = dynamic_cast<const UUIIdentity*>(identity)) {
    uuid->appendCanonicalText(utf8Out);
  }
}

IIdentity* UUIDExternalizer::fromString(IUString const& text) { return fromText(text.data(), text.length()); }

IIdentity* UUIDExternalizer::fromText(const char16_t* text, std::size_t length) {
  constexpr std::size_t kCompactLength = 22;
  if (length < kCompactLength) {
    return nullptr;
  }
  if (length == kCompactLength) {
    return decodeCompactText(text, length);
  }
  return parseCanonicalText(text, length);
}

IUString const& UUIDExternalizer::getExternalizerId() const { return externalizerId_; }

UUIIdentity* UUIDExternalizer::generateNewId() {
  unsigned char bytes[UUIIdentity::kByteCount];
  return generateNewBytes(bytes) ? new UUIIdentity(bytes) : nullptr;
}

bool UUIDExternalizer::generateNewBytes(unsigned char* bytes) {
  Generator& generator = *generator_;
  std::lock_guard<std::mutex> lock(generator.mutex);
  if (generator.ace == nullptr) {
    return false;
  }
  ACE_Utils::UUID& uuid = generator.scratch;
  generator.ace->generate_UUID(uuid, 1, kVariantRfc4122);
  const std::uint64_t timestamp = (std::uint64_t{uuid.time_hi_and_version() & 0x0FFFu} << 48) |
                                  (std::uint64_t{uuid.time_mid()} << 32) | uuid.time_low();
  if (timestamp < generator.lastTimestamp) {
    generator.drawNodeAndClockSequence();
  }
  generator.lastTimestamp = timestamp;
  const unsigned aceSequence = ((uuid.clock_seq_hi_and_reserved() & 0x3Fu) << 8) | uuid.clock_seq_low();
  const unsigned sequence = (aceSequence + generator.clockSequenceBase) & kClockSequenceMask;
  bytes[8] = static_cast<unsigned char>(kVariantRfc4122 | (sequence >> 8));
  bytes[9] = static_cast<unsigned char>(sequence);
  std::memcpy(bytes + 10, generator.node, sizeof generator.node);
  writeBigEndian(bytes, uuid.time_low(), 4);
  writeBigEndian(bytes + 4, uuid.time_mid(), 2);
  writeBigEndian(bytes + 6, uuid.time_hi_and_version(), 2);
  return true;
}

}  // namespace com::veltrana::qvx::icore::runtime
