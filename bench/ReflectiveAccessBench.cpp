// Reflective get and set through IObjectInfo against the typed accessors of the same
// catalog properties, one pair per kind of value (int, string, double, enumeration,
// single reference, collection size), each reflective figure with its ratio to the
// typed one, plus the class look-ups that every reflective
// call or serializer pass makes: IClass::hasProperty, getAllProperties on a warm cache,
// and getProperty by name. Each iteration is one operation, so the time is ns per op.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "bench/BenchSupport.h"
#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogIPackage.h"
#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/CatalogWorkload.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "icore/IClass.h"
#include "icore/IObjectInfo.h"
#include "icore/QVXRuntime.h"

namespace {

using com::example::catalog::buildCatalog;
using com::example::catalog::Catalog;
using com::example::catalog::CatalogIPackage;
using com::example::catalog::CatalogSeeds;
using com::example::catalog::Column;
using com::example::catalog::DataType;
using com::example::catalog::DataTypeDef;
using com::example::catalog::kSmallCatalog;
using com::example::catalog::Table;
using com::veltrana::qvx::icore::IEnumerationLiteral;
using com::veltrana::qvx::icore::IObjectInfo;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;

// A small catalog of its own (the benchmarks change values), one of its tables and a
// column of that table, with their facades and the properties used.
struct Subjects {
  std::unique_ptr<Catalog> catalog;
  CatalogIPackage* package = nullptr;
  Table* table = nullptr;
  Column* column = nullptr;
  IObjectInfo* tableInfo = nullptr;
  IObjectInfo* columnInfo = nullptr;
  IProperty const* length = nullptr;
  IProperty const* name = nullptr;
  IProperty const* selectivity = nullptr;
  IProperty const* dataType = nullptr;
  IProperty const* type = nullptr;
  IProperty const* columns = nullptr;
  IEnumerationLiteral* literals[2] = {};
  DataTypeDef* seeds[2] = {};
};

// Made on first use and kept, never deleted, for the rest of the run.
Subjects& subjects() {
  static Subjects* built = [] {
    auto* s = new Subjects();
    s->catalog.reset(buildCatalog(kSmallCatalog));
    s->package = CatalogIPackage::iGetInstance();
    s->table = s->catalog->getSchemas()[1]->getTables()[2];
    s->column = s->table->getColumns()[3];
    s->tableInfo = QVXRuntime::getInstance()->getIObjectInfo(s->table);
    s->columnInfo = QVXRuntime::getInstance()->getIObjectInfo(s->column);
    s->length = s->package->getColumn_LengthIProperty();
    s->name = s->package->getNamedElement_NameIProperty();
    s->selectivity = s->package->getColumn_SelectivityIProperty();
    s->dataType = s->package->getColumn_DataTypeIProperty();
    s->type = s->package->getColumn_TypeIProperty();
    s->columns = s->package->getTable_ColumnsIProperty();
    s->literals[0] = s->package->getLiteral(DataType::INTEGER);
    s->literals[1] = s->package->getLiteral(DataType::BIGINT);
    s->seeds[0] = CatalogSeeds::getDataTypeSeed(DataType::INTEGER);
    s->seeds[1] = CatalogSeeds::getDataTypeSeed(DataType::BIGINT);
    return s;
  }();
  return *built;
}

template <typename T>
T const& valueAt(void const* reflective) {
  return *static_cast<T const*>(reflective);
}

// Each reflective benchmark also reports "x_typed": its best time over the typed
// accessor's best time, measured side by side (bestTimeRatio). The goal is at most 1.5.
template <typename Reflective, typename Typed>
void runPair(benchmark::State& state, Reflective reflective, Typed typed, bool isReflective) {
  if (isReflective) {
    for (auto _ : state) reflective();
    state.counters["x_typed"] = qvx_bench::bestTimeRatio(reflective, typed);
  } else {
    for (auto _ : state) typed();
  }
}

// Registers "ReflectiveAccess/<operation>/IObjectInfo" and ".../typed" for one pair.
template <typename MakePair>
void registerPair(const char* operation, MakePair makePair) {
  for (const bool isReflective : {true, false}) {
    const std::string name = std::string("ReflectiveAccess/") + operation + (isReflective ? "/IObjectInfo" : "/typed");
    benchmark::RegisterBenchmark(name.c_str(), [makePair, isReflective](benchmark::State& state) {
      auto [reflective, typed] = makePair(subjects());
      runPair(state, reflective, typed, isReflective);
    });
  }
}

// Values alternate between two in the set pairs, so that no call stores what is there
// already. The string names are short enough for the string's inline buffer.
const int registered = [] {
  registerPair("get/int", [](Subjects& s) {
    return std::pair([&s] { benchmark::DoNotOptimize(valueAt<std::int32_t>(s.columnInfo->get(*s.length, IFALSE))); },
                     [&s] { benchmark::DoNotOptimize(s.column->getLength()); });
  });
  registerPair("get/string", [](Subjects& s) {
    return std::pair([&s] { benchmark::DoNotOptimize(valueAt<IUString>(s.columnInfo->get(*s.name, IFALSE)).length()); },
                     [&s] { benchmark::DoNotOptimize(s.column->getName().length()); });
  });
  registerPair("get/double", [](Subjects& s) {
    return std::pair([&s] { benchmark::DoNotOptimize(valueAt<double>(s.columnInfo->get(*s.selectivity, IFALSE))); },
                     [&s] { benchmark::DoNotOptimize(s.column->getSelectivity()); });
  });
  registerPair("get/enum", [](Subjects& s) {
    return std::pair([&s] { benchmark::DoNotOptimize(s.columnInfo->get(*s.dataType, IFALSE)); },
                     [&s] { benchmark::DoNotOptimize(s.column->getDataType()); });
  });
  registerPair("get/reference", [](Subjects& s) {
    return std::pair([&s] { benchmark::DoNotOptimize(s.columnInfo->get(*s.type, IFALSE)); },
                     [&s] { benchmark::DoNotOptimize(s.column->getType()); });
  });
  registerPair("get/collection_size", [](Subjects& s) {
    return std::pair([&s] { benchmark::DoNotOptimize(s.tableInfo->getCardinality(*s.columns)); },
                     [&s] { benchmark::DoNotOptimize(s.table->getColumns().size()); });
  });
  registerPair("set/int", [](Subjects& s) {
    return std::pair([&s, value = std::int32_t{0}]() mutable { s.columnInfo->set(*s.length, &++value, IFALSE); },
                     [&s, value = std::int32_t{0}]() mutable { s.column->setLength(++value); });
  });
  registerPair("set/string", [](Subjects& s) {
    auto names = std::make_shared<std::array<IUString, 2>>(std::array<IUString, 2>{IUString("col_a"), IUString("col_b")});
    return std::pair([&s, names, which = 0U]() mutable { s.columnInfo->set(*s.name, &(*names)[++which & 1U], IFALSE); },
                     [&s, names, which = 0U]() mutable { s.column->setName((*names)[++which & 1U]); });
  });
  registerPair("set/double", [](Subjects& s) {
    return std::pair([&s, value = 0.0]() mutable { s.columnInfo->set(*s.selectivity, &(value += 0.25), IFALSE); },
                     [&s, value = 0.0]() mutable { s.column->setSelectivity(value += 0.25); });
  });
  registerPair("set/enum", [](Subjects& s) {
    return std::pair([&s, which = 0U]() mutable { s.columnInfo->set(*s.dataType, s.literals[++which & 1U], IFALSE); },
                     [&s, which = 0U]() mutable { s.column->setDataType(s.literals[++which & 1U]); });
  });
  registerPair("set/reference", [](Subjects& s) {
    return std::pair([&s, which = 0U]() mutable { s.columnInfo->set(*s.type, s.seeds[++which & 1U], IFALSE); },
                     [&s, which = 0U]() mutable { s.column->setType(s.seeds[++which & 1U]); });
  });
  return 0;
}();

// ---- class look-ups ----

void hasPropertyOwn(benchmark::State& state) {
  Subjects& s = subjects();
  auto const& columnClass = *s.package->getColumnIClass();
  for (auto _ : state) benchmark::DoNotOptimize(columnClass.hasProperty(*s.length));
}
// A property of another class: the table misses and the all-properties list is searched.
void hasPropertyForeign(benchmark::State& state) {
  Subjects& s = subjects();
  auto const& columnClass = *s.package->getColumnIClass();
  for (auto _ : state) benchmark::DoNotOptimize(columnClass.hasProperty(*s.columns));
}
void allPropertiesWarm(benchmark::State& state) {
  Subjects& s = subjects();
  auto const& columnClass = *s.package->getColumnIClass();
  benchmark::DoNotOptimize(columnClass.getAllProperties(ITRUE).size());
  for (auto _ : state) benchmark::DoNotOptimize(columnClass.getAllProperties(ITRUE).size());
}
void propertyByName(benchmark::State& state) {
  Subjects& s = subjects();
  auto const& columnClass = *s.package->getColumnIClass();
  const IUString name("sampleValues");
  for (auto _ : state) benchmark::DoNotOptimize(columnClass.getProperty(name));
}

BENCHMARK(hasPropertyOwn)->Name("ReflectiveAccess/IClass/hasProperty/own");
BENCHMARK(hasPropertyForeign)->Name("ReflectiveAccess/IClass/hasProperty/foreign");
BENCHMARK(allPropertiesWarm)->Name("ReflectiveAccess/IClass/getAllProperties_warm");
BENCHMARK(propertyByName)->Name("ReflectiveAccess/IClass/getProperty_by_name");

}  // namespace
