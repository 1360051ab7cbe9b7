// Reading the bench-size catalog, catalog(10, 1000, 10, 2), from an XML interchange
// document held in memory, with validation off. In the same run, on the same document
// text: a bare Xerces-C SAX2 parse with an empty handler and the reader's parser
// settings (namespace processing off), the floor that no reader can beat; and
// Boost.Serialization's XML archive loading the same graph as plain structs
// (PlainCatalog.h), the peer. Each iteration times all three; the counters give the
// medians, the ratios to floor and peer, objects/s, MB/s, the document size and the
// peak of live heap bytes during our read. The document comes from the benchmark's own
// generator (CatalogDocument.h); the graph of the first read must give the same text.
#include <benchmark/benchmark.h>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <algorithm>
#include <boost/archive/xml_iarchive.hpp>
#include <boost/archive/xml_oarchive.hpp>
#include <chrono>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench/BenchSupport.h"
#include "bench/CatalogDocument.h"
#include "bench/PlainCatalog.h"
#include "examples/catalog/Catalog.h"
#include "io/SerializationUtils.h"
#include "io/XMLDeserializer.h"

namespace {

namespace icore = com::veltrana::qvx::icore;
namespace io = com::veltrana::qvx::io;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

IVector<icore::IObject*>* readDocument(const std::string& text) {
  std::istringstream input(text);
  io::XMLDeserializer reader(&input, nullptr);
  return reader.deserialize();
}

void parseBare(const std::string& text) {
  std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
  xercesc::DefaultHandler handler;
  reader->setContentHandler(&handler);
  reader->setErrorHandler(&handler);
  reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false);
  reader->setFeature(xercesc::XMLUni::fgXercesLoadSchema, false);
  xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), u"bench");
  reader->parse(source);
}

std::string boostDocument() {
  std::unique_ptr<qvx_bench::PlainCatalog> catalog = qvx_bench::buildPlainCatalog(10, 1000, 10, 2);
  std::ostringstream output;
  {
    boost::archive::xml_oarchive archive(output);
    archive << boost::serialization::make_nvp("catalog", *catalog);
  }
  return output.str();
}

void loadBoost(const std::string& text) {
  std::istringstream input(text);
  boost::archive::xml_iarchive archive(input);
  qvx_bench::PlainCatalog catalog;
  archive >> boost::serialization::make_nvp("catalog", catalog);
  benchmark::DoNotOptimize(catalog.schemas.data());
}

// What is read must be what was written: the graph read from the document gives the
// same document again. (Comparing graphs would trip over the doubles, which the format
// writes with 15 significant digits.)
bool readsBackAsWritten(const std::string& text) {
  IVector<icore::IObject*>* objects = readDocument(text);
  const bool same = objects->size() == 1 && qvx_bench::catalogDocumentText((*objects)[0]) == text;
  io::XMLDeserializer::destroyDeserializedObjects(objects);
  return same;
}

void readBenchCatalogDocument(benchmark::State& state) {
  io::SerializationUtils::setValidation(IFALSE);
  icore::IObject const* original = &qvx_bench::sharedBenchCatalog(0);
  const std::string text = qvx_bench::catalogDocumentText(original);
  const std::string plainText = boostDocument();
  if (!readsBackAsWritten(text)) {
    state.SkipWithError("the graph read from the document does not give the same document");
    return;
  }
  const double objects = static_cast<double>(qvx_bench::countContainedObjects(original));
  std::vector<double> ours;
  std::vector<double> floor;
  std::vector<double> peer;
  std::int64_t peakBytes = 0;
  for (auto _ : state) {
    const auto before = qvx_bench::allocationSnapshot();
    qvx_bench::resetAllocationPeak();
    const auto start = Clock::now();
    IVector<icore::IObject*>* result = readDocument(text);
    ours.push_back(secondsSince(start));
    peakBytes = qvx_bench::allocationSnapshot().peakLiveBytes - before.liveBytes;
    state.SetIterationTime(ours.back());
    io::XMLDeserializer::destroyDeserializedObjects(result);
    const auto floorStart = Clock::now();
    parseBare(text);
    floor.push_back(secondsSince(floorStart));
    const auto peerStart = Clock::now();
    loadBoost(plainText);
    peer.push_back(secondsSince(peerStart));
  }
  const double oursMedian = median(ours);
  state.counters["median_ms"] = oursMedian * 1000;
  state.counters["floor_sax_ms"] = median(floor) * 1000;
  state.counters["boost_xml_ms"] = median(peer) * 1000;
  state.counters["x_floor"] = oursMedian / median(floor);
  state.counters["x_boost"] = oursMedian / median(peer);
  state.counters["objects/s"] = objects / oursMedian;
  state.counters["MB/s"] = static_cast<double>(text.size()) / 1e6 / oursMedian;
  state.counters["doc_bytes"] = static_cast<double>(text.size());
  state.counters["boost_doc_bytes"] = static_cast<double>(plainText.size());
  state.counters["peak_MB"] = static_cast<double>(peakBytes) / 1e6;
}
BENCHMARK(readBenchCatalogDocument)
    ->Name("XmlRead/bench_catalog")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

}  // namespace
