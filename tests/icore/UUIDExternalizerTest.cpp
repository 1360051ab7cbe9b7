// Generated UUID identities: the version, variant and node bits, the bytes, and
// uniqueness across threads, forked children and concurrently started processes. The
// text forms are tested in IdentityTest.cpp.
#include "icore/runtime/UUIDExternalizer.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "icore/IIdentity.h"
#include "icore/internal/IdentityManager.h"
#include "icore/runtime/UUIIdentity.h"

namespace {

using namespace com::veltrana::qvx::icore;  // NOLINT: test file
using internal::IdentityManager;
using runtime::UUIDExternalizer;
using runtime::UUIIdentity;

std::string generatedText() {
  const std::unique_ptr<UUIIdentity> identity(UUIDExternalizer::getInstance()->generateNewId());
  return identity->getCanonicalText().toUtf8();
}

// Whether `text` is the canonical text of a version-1 UUID of the RFC 4122 variant whose
// node has the multicast bit set, the mark of a random node rather than a MAC address.
bool isVersion1WithRandomNode(const std::string& text) {
  return text.size() == 36 && text[14] == '1' && std::strchr("89ab", text[19]) && std::strchr("13579bdf", text[25]);
}

std::string nodeOf(const std::string& text) { return text.substr(24); }

void expectNoDuplicate(std::vector<std::string> texts) {
  std::sort(texts.begin(), texts.end());
  const auto duplicate = std::adjacent_find(texts.begin(), texts.end());
  EXPECT_EQ(duplicate, texts.end()) << "duplicate " << *duplicate << " among " << texts.size();
}

TEST(UUIDExternalizerTest, BytesAreInRfcOrderAndKeptOnlyFromTheCompactForm) {
  const unsigned char known[16] = {0x6b, 0xa7, 0xb8, 0x10, 0x9d, 0xad, 0x11, 0xd1,
                                   0x80, 0xb4, 0x00, 0xc0, 0x4f, 0xd4, 0x30, 0xc8};
  const std::unique_ptr<IIdentity> canonical(UUIDExternalizer::getInstance()->fromString(
      "6ba7b810-9dad-11d1-80b4-00c04fd430c8"));
  const std::unique_ptr<IIdentity> compact(UUIDExternalizer::getInstance()->fromString("a6e4EJ2tEdGAtADAT9QwyA"));
  unsigned char bytes[16];
  dynamic_cast<const UUIIdentity&>(*canonical).getBytes(bytes);
  EXPECT_EQ(std::memcmp(bytes, known, 16), 0);
  EXPECT_EQ(dynamic_cast<const UUIIdentity&>(*canonical).getRawBytes(), nullptr);
  const unsigned char* raw = dynamic_cast<const UUIIdentity&>(*compact).getRawBytes();
  EXPECT_TRUE(raw != nullptr && std::memcmp(raw, known, 16) == 0);
}

TEST(UUIDExternalizerTest, ThreadsShareOneManagerAndOneNodeAndNeverRepeatAnId) {
  constexpr int kThreads = 8;
  constexpr int kIdsPerThread = 20000;
  std::atomic<int> waiting{kThreads};
  std::vector<IdentityManager*> managers(kThreads);
  std::vector<std::vector<std::string>> texts(kThreads);
  std::vector<std::thread> threads;
  for (int index = 0; index < kThreads; ++index) {
    threads.emplace_back([index, &waiting, &managers, &texts] {
      --waiting;
      while (waiting.load() > 0) std::this_thread::yield();  // all start together
      managers[index] = IdentityManager::getInstance();
      for (int count = 0; count < kIdsPerThread; ++count) {
        const std::unique_ptr<IIdentity> identity(managers[index]->generateNewId());
        texts[index].push_back(managers[index]->identityToString(identity.get()).toUtf8().substr(7));  // "uuidV1:"
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<std::string> all;
  for (int index = 0; index < kThreads; ++index) {
    EXPECT_EQ(managers[index], managers[0]);
    all.insert(all.end(), texts[index].begin(), texts[index].end());
  }
  expectNoDuplicate(all);
  // Version 1 of the RFC 4122 variant, with one random node for the whole process.
  EXPECT_TRUE(std::all_of(all.begin(), all.end(), [&all](const std::string& text) {
    return isVersion1WithRandomNode(text) && nodeOf(text) == nodeOf(all.front());
  }));
}

TEST(UUIDExternalizerTest, ForkedChildDrawsItsOwnNode) {
  const std::string parent = generatedText();
  int channel[2];
  ASSERT_EQ(pipe(channel), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const std::string text = generatedText();
    _exit(write(channel[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 1);
  }
  close(channel[1]);
  char buffer[36];
  const ssize_t got = read(channel[0], buffer, sizeof buffer);
  close(channel[0]);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0 && got == 36);
  const std::string inChild(buffer, sizeof buffer);
  EXPECT_TRUE(isVersion1WithRandomNode(inChild)) << inChild;
  EXPECT_NE(nodeOf(inChild), nodeOf(parent));
  EXPECT_EQ(nodeOf(generatedText()), nodeOf(parent));  // and the parent keeps its own
}

TEST(UUIDExternalizerTest, ConcurrentlyStartedProcessesNeverRepeatAnId) {
  // About 2 s in a release build; an unoptimised sanitizer build needs over 20 s for the
  // full count on two busy cores, so it checks fewer.
#if defined(__SANITIZE_ADDRESS__)
  constexpr int kIdsPerProcess = 25000;
#else
  constexpr int kIdsPerProcess = 100000;
#endif
  constexpr int kProcesses = 8;
  // All wait for the same moment, so that they really do generate in the same microseconds.
  const auto startAt = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::system_clock::now().time_since_epoch() + std::chrono::milliseconds(300));
  const std::string output = ::testing::TempDir() + "qvx_uuid_dump." + std::to_string(getpid()) + ".";
  std::string command;
  for (int index = 0; index < kProcesses; ++index) {
    command += std::string(QVX_UUID_DUMP_PATH) + " " + std::to_string(kIdsPerProcess) + " " +
               std::to_string(startAt.count()) + " > " + output + std::to_string(index) + " & ";
  }
  ASSERT_EQ(std::system((command + "wait").c_str()), 0);
  std::vector<std::string> all;
  for (int index = 0; index < kProcesses; ++index) {
    std::ifstream in(output + std::to_string(index));
    for (std::string line; std::getline(in, line);) all.push_back(line);
    std::remove((output + std::to_string(index)).c_str());
  }
  EXPECT_EQ(all.size(), static_cast<std::size_t>(kProcesses * kIdsPerProcess));
  EXPECT_TRUE(std::all_of(all.begin(), all.end(), isVersion1WithRandomNode));
  expectNoDuplicate(all);
}

}  // namespace
