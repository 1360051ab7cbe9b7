// The text forms of primitive values that both serializers use
// (ICoreDatatypes::primitiveToString / primitiveFromString): an integer, a double, a
// date and a 1 KB blob (Base64 through Xerces), each converted both ways: through the
// allocating forms ("toString", "fromString") and through the forms that append to, or
// parse into, the caller's buffer ("appendUtf8", "parseInto"), which report their ratio
// to the allocating form.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "bench/BenchSupport.h"
#include "icore/ICoreDatatypes.h"
#include "icore/IDatatype.h"
#include "icore/IcoreIPackage.h"
#include "platform/WkDate.h"

namespace {

using com::veltrana::qvx::icore::ICoreDatatypes;
using com::veltrana::qvx::icore::IcoreIPackage;
using com::veltrana::qvx::icore::IDatatype;

constexpr unsigned int kBlobSize = 1024;

// The core package sets up the data type objects.
IDatatype const& datatype(IDatatype* const& slot) {
  IcoreIPackage::iGetInstance();
  return *slot;
}

// The allocating form: a new string per value ("before").
void newText(IDatatype const& type, void const* value, unsigned int length) {
  std::unique_ptr<IUString>(ICoreDatatypes::primitiveToString(type, value, length)).reset();
}

// Formats into a new string in every iteration, or, with `appending`, as UTF-8 into one
// reused buffer ("after"); that form also reports "x_allocating", its best time over the
// allocating form's, measured side by side.
void toText(benchmark::State& state, IDatatype const& type, void const* value, unsigned int length,
            bool appending = false) {
  if (!appending) {
    for (auto _ : state) newText(type, value, length);
    return;
  }
  std::string buffer;
  auto append = [&] {
    buffer.clear();
    ICoreDatatypes::appendPrimitiveText(buffer, type, value, length);
    benchmark::DoNotOptimize(buffer.data());
  };
  for (auto _ : state) append();
  state.counters["x_allocating"] = qvx_bench::bestTimeRatio(append, [&] { newText(type, value, length); });
}

// Parses `text` into a new value and frees it as its owner would ("before").
void newValue(IDatatype const& type, IUString const& text) {
  unsigned int length = 0;
  void* value = ICoreDatatypes::primitiveFromString(type, text, &length);
  benchmark::DoNotOptimize(value);
  if (type.getTypeId() == ICoreDatatypes::BLOB_TYPE_ID) {
    delete[] static_cast<char*>(value);
  } else {
    ICoreDatatypes::deletePrimitive(type, value);
  }
}

// Parses `text` in every iteration into a new value, or into one caller's value of type
// T with parsePrimitiveText ("after", with "x_allocating" as above).
template <typename T = void>
void fromText(benchmark::State& state, IDatatype const& type, IUString const& text) {
  if constexpr (std::is_void_v<T>) {
    for (auto _ : state) newValue(type, text);
  } else {
    T value{};
    auto parse = [&] {
      ICoreDatatypes::parsePrimitiveText(type, text.data(), text.length(), &value);
      benchmark::DoNotOptimize(&value);
    };
    for (auto _ : state) parse();
    state.counters["x_allocating"] = qvx_bench::bestTimeRatio(parse, [&] { newValue(type, text); });
  }
}

IUString textOf(IDatatype const& type, void const* value, unsigned int length) {
  std::unique_ptr<IUString> text(ICoreDatatypes::primitiveToString(type, value, length));
  return text != nullptr ? *text : IUString();
}

WkDate sampleDate() {
  WkDate date;
  date.setDate(2024, 1, 15);
  date.setTime(10, 30, 45, 123000000);
  return date;
}

std::vector<char> sampleBlob() {
  std::vector<char> bytes(kBlobSize);
  for (unsigned int i = 0; i < kBlobSize; ++i) bytes[i] = static_cast<char>((i * 131U + 7U) & 0xFFU);
  return bytes;
}

void integerToText(benchmark::State& state) {
  const std::int32_t value = -1234567;
  toText(state, datatype(ICoreDatatypes::I_INTEGER), &value, 0);
}
void integerFromText(benchmark::State& state) { fromText(state, datatype(ICoreDatatypes::I_INTEGER), IUString("-1234567")); }
void doubleToText(benchmark::State& state) {
  const double value = 3.141592653589793;
  toText(state, datatype(ICoreDatatypes::I_DOUBLE), &value, 0);
}
void doubleFromText(benchmark::State& state) {
  fromText(state, datatype(ICoreDatatypes::I_DOUBLE), IUString("3.14159265358979"));
}
void dateToText(benchmark::State& state) {
  const WkDate value = sampleDate();
  toText(state, datatype(ICoreDatatypes::I_DATE), &value, 0);
}
void dateFromText(benchmark::State& state) {
  const WkDate value = sampleDate();
  IDatatype const& type = datatype(ICoreDatatypes::I_DATE);
  fromText(state, type, textOf(type, &value, 0));
}
void blobToText(benchmark::State& state) {
  const std::vector<char> bytes = sampleBlob();
  toText(state, datatype(ICoreDatatypes::I_BLOB), bytes.data(), kBlobSize);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * kBlobSize);
}
void blobFromText(benchmark::State& state) {
  const std::vector<char> bytes = sampleBlob();
  IDatatype const& type = datatype(ICoreDatatypes::I_BLOB);
  const IUString text = textOf(type, bytes.data(), kBlobSize);
  unsigned int length = 0;
  std::unique_ptr<char[]> decoded(static_cast<char*>(ICoreDatatypes::primitiveFromString(type, text, &length)));
  if (decoded == nullptr || length != kBlobSize || std::memcmp(decoded.get(), bytes.data(), kBlobSize) != 0) {
    state.SkipWithError("the 1 KB blob does not survive its text form");
    return;
  }
  fromText(state, type, text);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * kBlobSize);
}

void integerAppend(benchmark::State& state) {
  const std::int32_t value = -1234567;
  toText(state, datatype(ICoreDatatypes::I_INTEGER), &value, 0, true);
}
void integerParse(benchmark::State& state) {
  fromText<std::int32_t>(state, datatype(ICoreDatatypes::I_INTEGER), IUString("-1234567"));
}
void doubleAppend(benchmark::State& state) {
  const double value = 3.141592653589793;
  toText(state, datatype(ICoreDatatypes::I_DOUBLE), &value, 0, true);
}
void doubleParse(benchmark::State& state) {
  fromText<double>(state, datatype(ICoreDatatypes::I_DOUBLE), IUString("3.14159265358979"));
}
void dateAppend(benchmark::State& state) {
  const WkDate value = sampleDate();
  toText(state, datatype(ICoreDatatypes::I_DATE), &value, 0, true);
}
void dateParse(benchmark::State& state) {
  const WkDate value = sampleDate();
  IDatatype const& type = datatype(ICoreDatatypes::I_DATE);
  fromText<WkDate>(state, type, textOf(type, &value, 0));
}
void blobAppend(benchmark::State& state) {
  const std::vector<char> bytes = sampleBlob();
  toText(state, datatype(ICoreDatatypes::I_BLOB), bytes.data(), kBlobSize, true);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * kBlobSize);
}

BENCHMARK(integerToText)->Name("PrimitiveText/toString/int");
BENCHMARK(integerAppend)->Name("PrimitiveText/appendUtf8/int");
BENCHMARK(integerParse)->Name("PrimitiveText/parseInto/int");
BENCHMARK(doubleAppend)->Name("PrimitiveText/appendUtf8/double");
BENCHMARK(doubleParse)->Name("PrimitiveText/parseInto/double");
BENCHMARK(dateAppend)->Name("PrimitiveText/appendUtf8/date");
BENCHMARK(dateParse)->Name("PrimitiveText/parseInto/date");
BENCHMARK(blobAppend)->Name("PrimitiveText/appendUtf8/blob_1KB");
BENCHMARK(integerFromText)->Name("PrimitiveText/fromString/int");
BENCHMARK(doubleToText)->Name("PrimitiveText/toString/double");
BENCHMARK(doubleFromText)->Name("PrimitiveText/fromString/double");
BENCHMARK(dateToText)->Name("PrimitiveText/toString/date");
BENCHMARK(dateFromText)->Name("PrimitiveText/fromString/date");
BENCHMARK(blobToText)->Name("PrimitiveText/toString/blob_1KB");
BENCHMARK(blobFromText)->Name("PrimitiveText/fromString/blob_1KB");

}  // namespace
