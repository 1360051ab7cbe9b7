// Reflective get and set through IObjectInfo against the typed accessors of the same
// catalog properties, one pair per kind of value (int, string, double, enumeration,
// single reference, collection size), plus the class look-ups that every reflective
// call or serializer pass makes: IClass::hasProperty, getAllProperties on a warm cache,
// and getProperty by name. Each iteration is one operation, so the time is ns per op.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>

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

// ---- get ----

void getIntReflective(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(valueAt<std::int32_t>(s.columnInfo->get(*s.length, IFALSE)));
}
void getIntTyped(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.column->getLength());
}
void getStringReflective(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(valueAt<IUString>(s.columnInfo->get(*s.name, IFALSE)).length());
}
void getStringTyped(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.column->getName().length());
}
void getDoubleReflective(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(valueAt<double>(s.columnInfo->get(*s.selectivity, IFALSE)));
}
void getDoubleTyped(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.column->getSelectivity());
}
void getEnumReflective(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.columnInfo->get(*s.dataType, IFALSE));
}
void getEnumTyped(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.column->getDataType());
}
void getReferenceReflective(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.columnInfo->get(*s.type, IFALSE));
}
void getReferenceTyped(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.column->getType());
}
void getCollectionSizeReflective(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.tableInfo->getCardinality(*s.columns));
}
void getCollectionSizeTyped(benchmark::State& state) {
  Subjects& s = subjects();
  for (auto _ : state) benchmark::DoNotOptimize(s.table->getColumns().size());
}

BENCHMARK(getIntReflective)->Name("ReflectiveAccess/get/int/IObjectInfo");
BENCHMARK(getIntTyped)->Name("ReflectiveAccess/get/int/typed");
BENCHMARK(getStringReflective)->Name("ReflectiveAccess/get/string/IObjectInfo");
BENCHMARK(getStringTyped)->Name("ReflectiveAccess/get/string/typed");
BENCHMARK(getDoubleReflective)->Name("ReflectiveAccess/get/double/IObjectInfo");
BENCHMARK(getDoubleTyped)->Name("ReflectiveAccess/get/double/typed");
BENCHMARK(getEnumReflective)->Name("ReflectiveAccess/get/enum/IObjectInfo");
BENCHMARK(getEnumTyped)->Name("ReflectiveAccess/get/enum/typed");
BENCHMARK(getReferenceReflective)->Name("ReflectiveAccess/get/reference/IObjectInfo");
BENCHMARK(getReferenceTyped)->Name("ReflectiveAccess/get/reference/typed");
BENCHMARK(getCollectionSizeReflective)->Name("ReflectiveAccess/get/collection_size/IObjectInfo");
BENCHMARK(getCollectionSizeTyped)->Name("ReflectiveAccess/get/collection_size/typed");

// ---- set ----
// Values alternate between two, so that no call stores what is there already.

void setIntReflective(benchmark::State& state) {
  Subjects& s = subjects();
  std::int32_t value = 0;
  for (auto _ : state) {
    ++value;
    s.columnInfo->set(*s.length, &value, IFALSE);
  }
}
void setIntTyped(benchmark::State& state) {
  Subjects& s = subjects();
  std::int32_t value = 0;
  for (auto _ : state) s.column->setLength(++value);
}
// Names of the workload's length, short enough for the string's inline buffer.
void setStringReflective(benchmark::State& state) {
  Subjects& s = subjects();
  IUString names[2] = {IUString("col_a"), IUString("col_b")};
  unsigned int which = 0;
  for (auto _ : state) s.columnInfo->set(*s.name, &names[++which & 1U], IFALSE);
}
void setStringTyped(benchmark::State& state) {
  Subjects& s = subjects();
  IUString names[2] = {IUString("col_a"), IUString("col_b")};
  unsigned int which = 0;
  for (auto _ : state) s.column->setName(names[++which & 1U]);
}
void setDoubleReflective(benchmark::State& state) {
  Subjects& s = subjects();
  double value = 0.0;
  for (auto _ : state) {
    value += 0.25;
    s.columnInfo->set(*s.selectivity, &value, IFALSE);
  }
}
void setDoubleTyped(benchmark::State& state) {
  Subjects& s = subjects();
  double value = 0.0;
  for (auto _ : state) s.column->setSelectivity(value += 0.25);
}
void setEnumReflective(benchmark::State& state) {
  Subjects& s = subjects();
  unsigned int which = 0;
  for (auto _ : state) s.columnInfo->set(*s.dataType, s.literals[++which & 1U], IFALSE);
}
void setEnumTyped(benchmark::State& state) {
  Subjects& s = subjects();
  unsigned int which = 0;
  for (auto _ : state) s.column->setDataType(s.literals[++which & 1U]);
}
void setReferenceReflective(benchmark::State& state) {
  Subjects& s = subjects();
  unsigned int which = 0;
  for (auto _ : state) s.columnInfo->set(*s.type, s.seeds[++which & 1U], IFALSE);
}
void setReferenceTyped(benchmark::State& state) {
  Subjects& s = subjects();
  unsigned int which = 0;
  for (auto _ : state) s.column->setType(s.seeds[++which & 1U]);
}

BENCHMARK(setIntReflective)->Name("ReflectiveAccess/set/int/IObjectInfo");
BENCHMARK(setIntTyped)->Name("ReflectiveAccess/set/int/typed");
BENCHMARK(setStringReflective)->Name("ReflectiveAccess/set/string/IObjectInfo");
BENCHMARK(setStringTyped)->Name("ReflectiveAccess/set/string/typed");
BENCHMARK(setDoubleReflective)->Name("ReflectiveAccess/set/double/IObjectInfo");
BENCHMARK(setDoubleTyped)->Name("ReflectiveAccess/set/double/typed");
BENCHMARK(setEnumReflective)->Name("ReflectiveAccess/set/enum/IObjectInfo");
BENCHMARK(setEnumTyped)->Name("ReflectiveAccess/set/enum/typed");
BENCHMARK(setReferenceReflective)->Name("ReflectiveAccess/set/reference/IObjectInfo");
BENCHMARK(setReferenceTyped)->Name("ReflectiveAccess/set/reference/typed");

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
