// Writes the bench-size catalog, catalog(10, 1000, 10, 2), to memory with
// QVXBinaryOutputStream and reads it back with QVXBinaryInputStream, repeatedly, and
// does the same with the same graph as plain structs through Boost.Serialization's
// binary archive. For each direction it prints the median time, objects/s, MB/s, the
// stream bytes and the peak resident memory of the phase, and our time over Boost's.
//
//   qvx_binary_stream_bench [repetitions]      (default 7)
//
// Peak resident memory is the process's high-water mark, reset before each phase
// (/proc/self/clear_refs); it includes the graph that already exists, which the
// "growth" column leaves out.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "bench/BenchSupport.h"
#include "bench/PlainCatalog.h"
#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/CatalogWorkload.h"
#include "icore/IObject.h"
#include "io/QVXBinaryInputStream.h"
#include "io/QVXBinaryOutputStream.h"

namespace {

namespace catalog = com::example::catalog;
using com::veltrana::qvx::io::QVXBinaryInputStream;
using com::veltrana::qvx::io::QVXBinaryOutputStream;

// Resident memory high-water mark in KiB (VmHWM), or -1 when it cannot be read.
long peakResidentKiB() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
  }
  return -1;
}

long residentKiB() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmRSS:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
  }
  return -1;
}

void resetPeakResident() { std::ofstream("/proc/self/clear_refs") << "5"; }

struct Phase {
  double medianSeconds = 0;
  long peakKiB = 0;
  long growthKiB = 0;
};

// Runs `setUp` (untimed), then times `run`, `repetitions` times; `tearDown` (untimed)
// follows each run.
Phase measure(int repetitions, const std::function<void()>& setUp, const std::function<void()>& run,
              const std::function<void()>& tearDown) {
  std::vector<double> seconds;
  Phase phase;
  for (int i = 0; i < repetitions; ++i) {
    setUp();
    resetPeakResident();
    const long before = residentKiB();
    const auto start = std::chrono::steady_clock::now();
    run();
    seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    phase.peakKiB = std::max(phase.peakKiB, peakResidentKiB());
    phase.growthKiB = std::max(phase.growthKiB, peakResidentKiB() - before);
    tearDown();
  }
  std::sort(seconds.begin(), seconds.end());
  phase.medianSeconds = seconds[seconds.size() / 2];
  return phase;
}

void print(const char* name, const Phase& phase, std::size_t objects, std::size_t bytes) {
  std::printf("%-22s %9.1f ms %12.0f obj/s %9.1f MB/s %11zu bytes  peak RSS %7ld KiB (growth %7ld KiB)\n", name,
              phase.medianSeconds * 1e3, static_cast<double>(objects) / phase.medianSeconds,
              static_cast<double>(bytes) / 1e6 / phase.medianSeconds, bytes, phase.peakKiB, phase.growthKiB);
}

}  // namespace

int main(int argc, char** argv) {
  const int repetitions = argc > 1 ? std::max(1, std::atoi(argv[1])) : 7;
  xercesc::XMLPlatformUtils::Initialize();
  qvx_bench::useBenchEncryptionKey();
  catalog::CatalogSeeds::registerSeedLoader();

  std::unique_ptr<catalog::Catalog> graph(catalog::buildCatalog(catalog::kBenchCatalog));
  const std::size_t objects = qvx_bench::countContainedObjects(graph.get());
  std::unique_ptr<qvx_bench::PlainCatalog> plain = qvx_bench::buildPlainCatalog(10, 1000, 10, 2);
  std::printf("catalog(10, 1000, 10, 2): %zu objects (plain structs: %zu), %d repetitions, medians\n", objects,
              plain->objectCount(), repetitions);

  std::string ours;
  const Phase write = measure(
      repetitions, [] {},
      [&] {
        std::ostringstream out;
        QVXBinaryOutputStream stream(&out, nullptr, nullptr);
        stream.writeObject(graph.get());
        ours = out.str();
      },
      [] {});
  std::unique_ptr<com::veltrana::qvx::icore::IObject> read;
  const Phase load = measure(
      repetitions, [] {},
      [&] {
        std::istringstream in(ours);
        QVXBinaryInputStream stream(&in, nullptr, nullptr);
        read.reset(stream.readObject());
      },
      [&] { read.reset(); });

  std::string theirs;
  const Phase boostSave = measure(
      repetitions, [] {},
      [&] {
        std::ostringstream out;
        boost::archive::binary_oarchive archive(out);
        archive << *plain;
        theirs = out.str();
      },
      [] {});
  std::unique_ptr<qvx_bench::PlainCatalog> loaded;
  const Phase boostLoad = measure(
      repetitions, [] {},
      [&] {
        std::istringstream in(theirs);
        boost::archive::binary_iarchive archive(in);
        loaded = std::make_unique<qvx_bench::PlainCatalog>();
        archive >> *loaded;
      },
      [&] { loaded.reset(); });

  print("binary stream write", write, objects, ours.size());
  print("Boost binary save", boostSave, objects, theirs.size());
  print("binary stream read", load, objects, ours.size());
  print("Boost binary load", boostLoad, objects, theirs.size());
  std::printf("write / Boost save: %.2f (target at most 0.33)\n", write.medianSeconds / boostSave.medianSeconds);
  std::printf("read / Boost load:  %.2f (target at most 1.50)\n", load.medianSeconds / boostLoad.medianSeconds);

  graph.reset();
  qvx_bench::releaseSharedBenchCatalogs();
  xercesc::XMLPlatformUtils::Terminate();
  return 0;
}
