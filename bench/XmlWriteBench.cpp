// Writing the bench-size catalog, catalog(10, 1000, 10, 2), as an XML interchange
// document in memory, beside Boost.Serialization's XML archive saving the same graph
// as plain structs (PlainCatalog.h), in the same run. Reports our median time, objects
// and megabytes per second, the document's size, the memory the serializer adds while
// it writes (its peak of live heap bytes above what was live before, the document's own
// buffer excluded), Boost's median time and the ratio of the two.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/archive/xml_oarchive.hpp>
#include <chrono>
#include <sstream>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "bench/PlainCatalog.h"
#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogWorkload.h"
#include "io/XMLSerializer.h"
#include "platform/IOutputStream.h"

namespace {

using com::example::catalog::kBenchCatalog;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::io::XMLSerializer;
using Clock = std::chrono::steady_clock;

// The document in memory: one growing string, as a caller writing to memory would use.
class MemoryOutputStream : public IOutputStream {
 public:
  using IOutputStream::write;
  void write(const char* bytes, std::size_t count) override { text.append(bytes, count); }
  void flush() override {}
  std::string text;
};

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void writeDocument(IObject* catalog, MemoryOutputStream& out) {
  IVector<IObject*> objects;
  objects.append(catalog);
  XMLSerializer serializer(&out, nullptr);
  serializer.serialize(objects);
}

struct WritingMemory {
  std::int64_t peakAddedBytes;
  std::uint64_t allocations;
};

// Peak heap bytes that writing adds and the allocations it makes, with the document's
// buffer reserved beforehand so that only the serializer's own memory counts.
WritingMemory memoryAddedByWriting(IObject* catalog, std::size_t documentBytes) {
  MemoryOutputStream out;
  // With room to spare: blob ids grow from run to run, and so may the document.
  out.text.reserve(documentBytes + documentBytes / 100);
  const auto before = qvx_bench::allocationSnapshot();
  qvx_bench::resetAllocationPeak();
  writeDocument(catalog, out);
  const auto after = qvx_bench::allocationSnapshot();
  return WritingMemory{after.peakLiveBytes - before.liveBytes, after.allocations - before.allocations};
}

void writeBenchCatalogAsXml(benchmark::State& state) {
  auto* catalog = const_cast<com::example::catalog::Catalog*>(&qvx_bench::sharedBenchCatalog(0));
  const auto plain = qvx_bench::buildPlainCatalog(kBenchCatalog.schemas, kBenchCatalog.tablesPerSchema,
                                                  kBenchCatalog.columnsPerTable, kBenchCatalog.foreignKeysPerTable);
  std::vector<double> ours;
  std::vector<double> boosts;
  std::size_t documentBytes = 0;
  std::size_t boostBytes = 0;
  for (auto _ : state) {
    MemoryOutputStream out;
    const Clock::time_point start = Clock::now();
    writeDocument(catalog, out);
    ours.push_back(secondsSince(start));
    state.SetIterationTime(ours.back());
    documentBytes = out.text.size();

    std::ostringstream boostOut;
    const Clock::time_point boostStart = Clock::now();
    {
      boost::archive::xml_oarchive archive(boostOut);
      archive << boost::serialization::make_nvp("catalog", *plain);
    }
    boostBytes = boostOut.str().size();
    boosts.push_back(secondsSince(boostStart));
  }
  const double objects = static_cast<double>(plain->objectCount());
  const double ourMedian = median(ours);
  const double boostMedian = median(boosts);
  state.counters["median_ms"] = ourMedian * 1e3;
  state.counters["objects/s"] = objects / ourMedian;
  state.counters["MB/s"] = static_cast<double>(documentBytes) / 1e6 / ourMedian;
  state.counters["doc_bytes"] = static_cast<double>(documentBytes);
  const WritingMemory memory = memoryAddedByWriting(catalog, documentBytes);
  state.counters["added_bytes"] = static_cast<double>(memory.peakAddedBytes);
  state.counters["added/doc"] = static_cast<double>(memory.peakAddedBytes) / static_cast<double>(documentBytes);
  state.counters["allocs/object"] = static_cast<double>(memory.allocations) / objects;
  state.counters["boost_median_ms"] = boostMedian * 1e3;
  state.counters["boost_bytes"] = static_cast<double>(boostBytes);
  state.counters["ours/boost"] = ourMedian / boostMedian;
}
BENCHMARK(writeBenchCatalogAsXml)
    ->Name("XmlWrite/bench_catalog_vs_boost_xml")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);

}  // namespace
