// UUID identities: generated values, the canonical and compact text forms, and
// uniqueness across threads, forked children and concurrently started processes.
#include "icore/runtime/UUIDExternalizer.h"

#include <gtest/gtest.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "icore/IIdentity.h"
#include "icore/internal/IdentityManager.h"
#include "icore/runtime/StringIdentity.h"
#include "icore/runtime/UUIIdentity.h"
#include "platform/QvxAssert.h"
#include "tests/support/AssertionCatcher.h"

extern char** environ;

namespace {

using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::internal::IdentityManager;
using com::veltrana::qvx::icore::runtime::StringIdentity;
using com::veltrana::qvx::icore::runtime::UUIDExternalizer;
using com::veltrana::qvx::icore::runtime::UUIIdentity;

using Bytes = std::array<unsigned char, 16>;

// The DNS namespace UUID of RFC 4122, in its three spellings.
constexpr Bytes kKnownBytes = {0x6b, 0xa7, 0xb8, 0x10, 0x9d, 0xad, 0x11, 0xd1,
                               0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8};
const char* const kKnownCanonical = "6ba7b810-9dad-11d1-80b4-00c04fd430c8";
const char* const kKnownCompact = "a6e4EJ2tEdGAtADAT9QwyA";

std::unique_ptr<IIdentity> fromText(const IUString& text) {
  return std::unique_ptr<IIdentity>(UUIDExternalizer::getInstance()->fromString(text));
}

const UUIIdentity* asUuid(const std::unique_ptr<IIdentity>& identity) {
  return dynamic_cast<const UUIIdentity*>(identity.get());
}

Bytes bytesOf(const UUIIdentity& identity) {
  Bytes bytes{};
  identity.getBytes(bytes.data());
  return bytes;
}

// The canonical text of `bytes`, spelled out independently of the library.
std::string canonicalTextOf(const Bytes& b) {
  char text[37];
  std::snprintf(text, sizeof text, "%02x%02x%02x%02x-%02x%02x-%02x%02x-%02x%02x-%02x%02x%02x%02x%02x%02x", b[0], b[1],
                b[2], b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13], b[14], b[15]);
  return text;
}

void expectVersion1Rfc4122WithMulticastNode(const Bytes& bytes) {
  EXPECT_EQ(bytes[6] >> 4, 1) << canonicalTextOf(bytes);
  EXPECT_EQ(bytes[8] & 0xC0, 0x80) << canonicalTextOf(bytes);
  EXPECT_EQ(bytes[10] & 0x01, 0x01) << canonicalTextOf(bytes);
}

TEST(UUIDExternalizerTest, GeneratedIdIsVersion1OfTheRfc4122VariantWithARandomNode) {
  std::unique_ptr<UUIIdentity> first(UUIDExternalizer::getInstance()->generateNewId());
  std::unique_ptr<UUIIdentity> second(UUIDExternalizer::getInstance()->generateNewId());
  ASSERT_NE(first, nullptr);
  const Bytes bytes = bytesOf(*first);
  expectVersion1Rfc4122WithMulticastNode(bytes);
  EXPECT_EQ(first->getCanonicalText().toUtf8(), canonicalTextOf(bytes));
  EXPECT_EQ(first->getRawBytes(), nullptr);
  // One process, one node.
  EXPECT_TRUE(std::equal(bytes.begin() + 10, bytes.end(), bytesOf(*second).begin() + 10));
  EXPECT_FALSE(*first == *second);
}

TEST(UUIDExternalizerTest, CanonicalTextRoundTripsAndIsStable) {
  IdentityManager* manager = IdentityManager::getInstance();
  const std::unique_ptr<IIdentity> generated(manager->generateNewId());
  const IUString qualified = manager->identityToString(generated.get());
  EXPECT_EQ(manager->identityToString(generated.get()), qualified);  // no stale or changing text

  const auto back = std::unique_ptr<IIdentity>(manager->identityFromString(qualified));
  ASSERT_NE(asUuid(back), nullptr);
  EXPECT_TRUE(*back == *generated);
  EXPECT_TRUE(*generated == *back);
  EXPECT_EQ(manager->identityToString(back.get()), qualified);
  EXPECT_EQ(asUuid(back)->getRawBytes(), nullptr);
}

TEST(UUIDExternalizerTest, KnownCanonicalTextGivesItsBytesInRfcOrder) {
  const auto upper = fromText("6BA7B810-9DAD-11D1-80B4-00C04FD430C8");
  const auto lower = fromText(kKnownCanonical);
  ASSERT_NE(asUuid(lower), nullptr);
  ASSERT_NE(asUuid(upper), nullptr);
  EXPECT_EQ(bytesOf(*asUuid(lower)), kKnownBytes);
  EXPECT_EQ(asUuid(upper)->getCanonicalText(), IUString(kKnownCanonical));
  EXPECT_TRUE(*upper == *lower);

  const auto nil = fromText("00000000-0000-0000-0000-000000000000");
  ASSERT_NE(asUuid(nil), nullptr);
  EXPECT_EQ(bytesOf(*asUuid(nil)), Bytes{});
  EXPECT_FALSE(*nil == *lower);
}

TEST(UUIDExternalizerTest, CompactFormDecodesToTheEncodedBytes) {
  const auto compact = fromText(kKnownCompact);
  ASSERT_NE(asUuid(compact), nullptr);
  EXPECT_EQ(bytesOf(*asUuid(compact)), kKnownBytes);
  EXPECT_EQ(asUuid(compact)->getCanonicalText().toUtf8(), canonicalTextOf(kKnownBytes));
  ASSERT_NE(asUuid(compact)->getRawBytes(), nullptr);
  EXPECT_EQ(0, std::memcmp(asUuid(compact)->getRawBytes(), kKnownBytes.data(), 16));
  EXPECT_TRUE(*compact == *fromText(kKnownCanonical));

  // The two URL-safe characters, and the last character's two data bits.
  Bytes allOnes;
  allOnes.fill(0xFF);
  EXPECT_EQ(bytesOf(*asUuid(fromText("_____________________w"))), allOnes);
  Bytes dashes;
  for (std::size_t index = 0; index < dashes.size(); ++index) {
    dashes[index] = (index % 3 == 0) ? 0xFB : (index % 3 == 1) ? 0xEF : 0xBE;
  }
  EXPECT_EQ(bytesOf(*asUuid(fromText("---------------------w"))), dashes);
}

TEST(UUIDExternalizerTest, CompactAndCanonicalBodiesAreReadUnderBothPrefixes) {
  IdentityManager* manager = IdentityManager::getInstance();
  const auto known = fromText(kKnownCanonical);
  for (const char* prefix : {"uuidV1:", "U:"}) {
    for (const char* body : {kKnownCompact, kKnownCanonical}) {
      const std::unique_ptr<IIdentity> read(manager->identityFromString(IUString(prefix) + IUString(body)));
      ASSERT_NE(read, nullptr) << prefix << body;
      EXPECT_TRUE(*read == *known) << prefix << body;
      // Written back, always in the long form under the full prefix.
      EXPECT_EQ(manager->identityToString(read.get()), IUString("uuidV1:") + IUString(kKnownCanonical));
    }
  }
}

TEST(UUIDExternalizerTest, ShorterThanCompactGivesNoIdentity) {
  AssertionCatcher catcher;  // not an assertion failure: just no identity
  for (const char* text : {"", "a6e4EJ2tEdGAtADAT9Qwy", "A"}) {
    EXPECT_EQ(fromText(text), nullptr) << text;
  }
  EXPECT_EQ(std::unique_ptr<IIdentity>(IdentityManager::getInstance()->identityFromString("U:a6e4EJ2tEdGAtADAT9Qwy")),
            nullptr);
}

TEST(UUIDExternalizerTest, CompactFormOutsideTheAlphabetIsAnAssertionFailure) {
  {
    AssertionCatcher catcher;
    for (const char* text : {"a6e4EJ2tEdGAtADAT9Qwy+", "a6e4EJ2tEdGAtADAT9Qw/A", "a6e4EJ2tEdGAtADAT9Qwy=",
                             "a6e4EJ2tEdGAtADAT9Qwy ", "a6e4EJ2tEdGAtADAT9QwyB"}) {  // last one: a set pad bit
      EXPECT_THROW(fromText(text), AssertionFailure) << text;
    }
    EXPECT_THROW(fromText(u"a6e4EJ2tEdGAtADAT9Qwy\u00e9"), AssertionFailure);
  }
  // When the assertion handler returns, the result is no identity.
  static int failures = 0;
  const QvxAssertionHandler previous = qvxSetAssertionHandler([](const char*, int, const char*) { ++failures; });
  const auto result = fromText("a6e4EJ2tEdGAtADAT9Qwy+");
  qvxSetAssertionHandler(previous);
  EXPECT_EQ(result, nullptr);
  EXPECT_EQ(failures, 1);
}

TEST(UUIDExternalizerTest, MalformedCanonicalTextGivesNoIdentity) {
  AssertionCatcher catcher;
  // Each is 23 characters or longer, so it is read as a canonical text. ACE's own parser
  // would accept the first four.
  for (const char16_t* text : {u" 6ba7b81-9dad-11d1-80b4-00c04fd430c8", u"+6ba7b81-9dad-11d1-80b4-00c04fd430c8",
                               u"0x6ba7b8-9dad-11d1-80b4-00c04fd430c8", u"6ba7b810-9dad-11d1-80b4-00c04fd430c",
                               u"{6ba7b810-9dad-11d1-80b4-00c04fd430c8}", u"6ba7b8109-dad-11d1-80b4-00c04fd430c8",
                               u"6ba7b810-9dad-11d1-80b400c04fd430c8-", u"6ba7b810-9dad-11d1-80b4-00c04fd430c8a",
                               u"6ba7b810-9dad-11d1-80b4-00c04fd430c8\n", u"6ba7b810-9dad-11d1-80b4-00c04fd430g8",
                               u"6ba7b8109dad11d180b400c04fd430c8", u"6ba7b810-9dad-11d1-80b4-00c04fd430\uff18\uff18",
                               u"6ba7b810-9dad-11d1-80b4", u"6ba7b810_9dad_11d1_80b4_00c04fd430c8"}) {
    EXPECT_EQ(fromText(text), nullptr) << IUString(text).toUtf8();
  }
}

TEST(UUIDExternalizerTest, UuidIdentityDiffersFromStringIdentityWithTheSameText) {
  const auto uuid = fromText(kKnownCanonical);
  const StringIdentity string(kKnownCanonical);
  EXPECT_FALSE(*uuid == string);
  EXPECT_FALSE(string == *uuid);
}

TEST(UUIDExternalizerTest, ThreadsShareOneManagerAndNeverRepeatAnId) {
  constexpr int kThreads = 8;
  constexpr int kIdsPerThread = 20000;
  std::atomic<int> ready{0};
  std::vector<IdentityManager*> managers(kThreads);
  std::vector<std::vector<Bytes>> generated(kThreads);
  std::vector<int> readBackMismatches(kThreads, 0);
  std::vector<std::thread> threads;
  for (int index = 0; index < kThreads; ++index) {
    threads.emplace_back([index, &ready, &managers, &generated, &readBackMismatches] {
      ready.fetch_add(1);
      while (ready.load() < kThreads) {
        std::this_thread::yield();
      }
      IdentityManager* manager = IdentityManager::getInstance();
      managers[index] = manager;
      const std::unique_ptr<IIdentity> known(manager->identityFromString(IUString("uuidV1:") + IUString(kKnownCanonical)));
      generated[index].reserve(kIdsPerThread);
      for (int count = 0; count < kIdsPerThread; ++count) {
        const std::unique_ptr<IIdentity> identity(manager->generateNewId());
        generated[index].push_back(bytesOf(dynamic_cast<const UUIIdentity&>(*identity)));
        if (count % 64 == 0) {  // reading back too, concurrently with the others
          const std::unique_ptr<IIdentity> back(manager->identityFromString(manager->identityToString(identity.get())));
          const std::unique_ptr<IIdentity> compact(manager->identityFromString(IUString("U:") + IUString(kKnownCompact)));
          if (!(*back == *identity) || !(*compact == *known)) {
            ++readBackMismatches[index];
          }
        }
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  std::vector<Bytes> all;
  for (int index = 0; index < kThreads; ++index) {
    EXPECT_EQ(managers[index], managers[0]);
    EXPECT_EQ(readBackMismatches[index], 0);
    all.insert(all.end(), generated[index].begin(), generated[index].end());
  }
  std::sort(all.begin(), all.end());
  EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end()) << "duplicate id generated";
  expectVersion1Rfc4122WithMulticastNode(all.front());
}

// Reads the 16 bytes of a canonical text line; false when the line is not one.
bool parseCanonicalLine(const std::string& line, Bytes& bytes) {
  if (line.size() != 36) {
    return false;
  }
  std::size_t out = 0;
  for (std::size_t index = 0; index < line.size();) {
    if (index == 8 || index == 13 || index == 18 || index == 23) {
      if (line[index++] != '-') {
        return false;
      }
      continue;
    }
    const std::string pair = line.substr(index, 2);
    if (pair.find_first_not_of("0123456789abcdef") != std::string::npos) {
      return false;
    }
    bytes[out++] = static_cast<unsigned char>(std::stoul(pair, nullptr, 16));
    index += 2;
  }
  return out == 16;
}

TEST(UUIDExternalizerTest, ForkedChildDrawsItsOwnNode) {
  std::unique_ptr<UUIIdentity> parentId(UUIDExternalizer::getInstance()->generateNewId());
  int channel[2];
  ASSERT_EQ(pipe(channel), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    close(channel[0]);
    std::unique_ptr<UUIIdentity> childId(UUIDExternalizer::getInstance()->generateNewId());
    const Bytes bytes = bytesOf(*childId);
    const bool written = write(channel[1], bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    _exit(written ? 0 : 1);
  }
  close(channel[1]);
  Bytes childBytes{};
  const ssize_t got = read(channel[0], childBytes.data(), childBytes.size());
  close(channel[0]);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  ASSERT_EQ(got, 16);
  expectVersion1Rfc4122WithMulticastNode(childBytes);
  const Bytes parentBytes = bytesOf(*parentId);
  EXPECT_FALSE(std::equal(parentBytes.begin() + 10, parentBytes.end(), childBytes.begin() + 10))
      << "parent " << canonicalTextOf(parentBytes) << " child " << canonicalTextOf(childBytes);
  // And the parent keeps its own.
  std::unique_ptr<UUIIdentity> parentAgain(UUIDExternalizer::getInstance()->generateNewId());
  const Bytes againBytes = bytesOf(*parentAgain);
  EXPECT_TRUE(std::equal(parentBytes.begin() + 10, parentBytes.end(), againBytes.begin() + 10));
}

std::uint64_t timestampOf(const Bytes& b) {
  return (std::uint64_t{b[6] & 0x0Fu} << 56) | (std::uint64_t{b[7]} << 48) | (std::uint64_t{b[4]} << 40) |
         (std::uint64_t{b[5]} << 32) | (std::uint64_t{b[0]} << 24) | (std::uint64_t{b[1]} << 16) |
         (std::uint64_t{b[2]} << 8) | b[3];
}

std::uint64_t nodeOf(const Bytes& b) {
  std::uint64_t node = 0;
  for (std::size_t index = 10; index < 16; ++index) {
    node = (node << 8) | b[index];
  }
  return node;
}

// Runs `processes` instances of the dump tool at once, each printing `count` ids, and
// returns each one's ids in the order printed. Adds a test failure for a process that
// fails or a line that is not a canonical version-1 UUID text.
std::vector<std::vector<Bytes>> runDumpTools(int processes, int count, long long stepBack) {
  const std::string tool = QVX_UUID_DUMP_PATH;
  // All processes wait for the same moment before generating, so that they really do
  // generate within the same microseconds.
  const auto startAt = std::chrono::duration_cast<std::chrono::microseconds>(
                           std::chrono::system_clock::now().time_since_epoch() + std::chrono::milliseconds(300))
                           .count();
  const std::string countArgument = std::to_string(count);
  const std::string startArgument = std::to_string(startAt);
  const std::string stepBackArgument = std::to_string(stepBack);
  const std::string outputBase = ::testing::TempDir() + "qvx_uuid_dump." + std::to_string(getpid()) + ".";

  std::vector<pid_t> children;
  std::vector<std::string> outputs;
  for (int index = 0; index < processes; ++index) {
    outputs.push_back(outputBase + std::to_string(index));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputs.back().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    char* const argv[] = {const_cast<char*>(tool.c_str()), const_cast<char*>(countArgument.c_str()),
                          const_cast<char*>(startArgument.c_str()), const_cast<char*>(stepBackArgument.c_str()),
                          nullptr};
    pid_t child = 0;
    const int error = posix_spawn(&child, tool.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
      ADD_FAILURE() << "cannot start " << tool << ": " << std::strerror(error);
      continue;
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
  }

  std::vector<std::vector<Bytes>> results;
  for (const std::string& output : outputs) {
    std::ifstream in(output);
    std::string line;
    Bytes bytes{};
    results.emplace_back();
    results.back().reserve(static_cast<std::size_t>(count));
    while (std::getline(in, line)) {
      if (!parseCanonicalLine(line, bytes)) {
        ADD_FAILURE() << output << ": " << line;
        break;
      }
      results.back().push_back(bytes);
    }
    in.close();
    std::remove(output.c_str());
    EXPECT_EQ(results.back().size(), static_cast<std::size_t>(count)) << output;
    if (!results.back().empty()) {
      expectVersion1Rfc4122WithMulticastNode(results.back().front());
      expectVersion1Rfc4122WithMulticastNode(results.back().back());
    }
  }
  return results;
}

void expectNoDuplicate(const std::vector<std::vector<Bytes>>& results) {
  std::vector<Bytes> all;
  for (const auto& ids : results) {
    all.insert(all.end(), ids.begin(), ids.end());
  }
  std::sort(all.begin(), all.end());
  const auto duplicate = std::adjacent_find(all.begin(), all.end());
  EXPECT_EQ(duplicate, all.end()) << "duplicate " << canonicalTextOf(*duplicate) << " among " << all.size();
}

TEST(UUIDExternalizerTest, ConcurrentlyStartedProcessesNeverRepeatAnId) {
  // About 2 s in a release build; an unoptimised sanitizer build took over 20 s for the
  // full count on two busy cores, so it checks fewer.
#if defined(__SANITIZE_ADDRESS__)
  constexpr int kIdsPerProcess = 25000;
#else
  constexpr int kIdsPerProcess = 100000;
#endif
  constexpr int kProcesses = 8;
  const auto results = runDumpTools(kProcesses, kIdsPerProcess, 0);
  ASSERT_EQ(results.size(), static_cast<std::size_t>(kProcesses));
  expectNoDuplicate(results);
}

TEST(UUIDExternalizerTest, WallClockSteppingBackDoesNotRepeatIds) {
  // Half of the ids are made after the clock went back 20 ms, so they revisit the
  // microseconds of the first half.
  constexpr int kIds = 100000;
  const auto results = runDumpTools(1, kIds, 20000);
  ASSERT_EQ(results.size(), 1u);
  const std::vector<Bytes>& ids = results.front();
  ASSERT_EQ(ids.size(), static_cast<std::size_t>(kIds));
  std::uint64_t firstHalfLatest = 0;
  for (int index = 0; index < kIds / 2; ++index) {
    firstHalfLatest = std::max(firstHalfLatest, timestampOf(ids[index]));
  }
  ASSERT_LT(timestampOf(ids[kIds / 2]), firstHalfLatest) << "the clock did not go back";
  EXPECT_NE(nodeOf(ids[kIds / 2]), nodeOf(ids[kIds / 2 - 1]));
  EXPECT_EQ(nodeOf(ids[kIds / 2]), nodeOf(ids.back()));
  expectNoDuplicate(results);
}

}  // namespace
