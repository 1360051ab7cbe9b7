// Identities: generating a new version-1 UUID identity, its qualified text
// ("uuidV1:" + the canonical 36 characters), and reading it back from the canonical
// and from the 22-character compact form (URL-safe Base64 of the 16 bytes); the UTF-8
// form into a reused buffer, and our canonical reader against ACE's, the earlier one.
#include <ace/UUID.h>
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "bench/BenchSupport.h"
#include "icore/IIdentity.h"
#include "icore/QVXRuntime.h"
#include "icore/internal/IdentityManager.h"
#include "icore/runtime/UUIIdentity.h"

namespace {

using com::veltrana::qvx::icore::IIdentity;
using com::veltrana::qvx::icore::QVXRuntime;
using com::veltrana::qvx::icore::internal::IdentityManager;
using com::veltrana::qvx::icore::runtime::UUIIdentity;

// The compact text of `identity`: its bytes in the URL-safe Base64 alphabet, no padding.
IUString compactText(UUIIdentity const& identity) {
  static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
  unsigned char bytes[UUIIdentity::kByteCount];
  identity.getBytes(bytes);
  std::string text;
  unsigned int bits = 0;
  int pending = 0;
  for (unsigned char byte : bytes) {
    bits = (bits << 8) | byte;
    pending += 8;
    while (pending >= 6) {
      pending -= 6;
      text += kAlphabet[(bits >> pending) & 0x3FU];
    }
  }
  if (pending > 0) text += kAlphabet[(bits << (6 - pending)) & 0x3FU];
  return IUString(text.c_str());
}

// Also reports what one identity holds on the heap: every identifiable object pays it.
void generateNewId(benchmark::State& state) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  for (auto _ : state) std::unique_ptr<IIdentity>(runtime->generateNewId()).reset();
  const auto before = qvx_bench::allocationSnapshot();
  std::unique_ptr<IIdentity> kept(runtime->generateNewId());
  const auto after = qvx_bench::allocationSnapshot();
  state.counters["bytes/identity"] = static_cast<double>(after.liveBytes - before.liveBytes);
  state.counters["allocs/identity"] = static_cast<double>(after.allocations - before.allocations);
}
BENCHMARK(generateNewId)->Name("Identity/generateNewId");

void identityToString(benchmark::State& state) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::unique_ptr<IIdentity> identity(runtime->generateNewId());
  for (auto _ : state) benchmark::DoNotOptimize(runtime->identityToString(identity.get()));
}
BENCHMARK(identityToString)->Name("Identity/identityToString");

// The UTF-8 form into one reused buffer, as a writer keeps it; "x_IUString" is its best
// time over identityToString's, measured side by side.
void appendIdentityString(benchmark::State& state) {
  IdentityManager* manager = IdentityManager::getInstance();
  std::unique_ptr<IIdentity> identity(manager->generateNewId());
  std::string buffer;
  auto append = [&] {
    buffer.clear();
    manager->appendIdentityString(buffer, identity.get());
    benchmark::DoNotOptimize(buffer.data());
  };
  for (auto _ : state) append();
  state.counters["x_IUString"] = qvx_bench::bestTimeRatio(
      append, [&] { benchmark::DoNotOptimize(manager->identityToString(identity.get())); });
}
BENCHMARK(appendIdentityString)->Name("Identity/appendIdentityString_utf8");

// Our strict canonical reader against ACE's sscanf-based one ("x_ACE").
void parseCanonical(benchmark::State& state) {
  std::unique_ptr<IIdentity> identity(QVXRuntime::getInstance()->generateNewId());
  const IUString text = static_cast<UUIIdentity const&>(*identity).getCanonicalText();
  const std::string narrow = text.toUtf8();
  unsigned char bytes[UUIIdentity::kByteCount];
  auto ours = [&] { benchmark::DoNotOptimize(UUIIdentity::parseCanonicalText(text.data(), text.length(), bytes)); };
  for (auto _ : state) ours();
  state.counters["x_ACE"] = qvx_bench::bestTimeRatio(ours, [&] {
    const ACE_Utils::UUID parsed{ACE_CString(narrow.c_str())};
    benchmark::DoNotOptimize(parsed.time_low());
  });
}
BENCHMARK(parseCanonical)->Name("Identity/parseCanonicalText");

// Reads `text` in every iteration after checking once that it gives `expected`.
void readBack(benchmark::State& state, IUString const& text, IIdentity const& expected) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::unique_ptr<IIdentity> first(runtime->identityFromString(text));
  if (first == nullptr || !(*first == expected)) {
    state.SkipWithError(("not read back: " + text.toUtf8()).c_str());
    return;
  }
  for (auto _ : state) std::unique_ptr<IIdentity>(runtime->identityFromString(text)).reset();
}

void identityFromCanonical(benchmark::State& state) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::unique_ptr<IIdentity> identity(runtime->generateNewId());
  readBack(state, runtime->identityToString(identity.get()), *identity);
}
BENCHMARK(identityFromCanonical)->Name("Identity/identityFromString/canonical");

void identityFromCompact(benchmark::State& state) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::unique_ptr<IIdentity> identity(runtime->generateNewId());
  const IUString text = IUString("uuidV1:") + compactText(static_cast<UUIIdentity const&>(*identity));
  readBack(state, text, *identity);
}
BENCHMARK(identityFromCompact)->Name("Identity/identityFromString/compact");

}  // namespace
