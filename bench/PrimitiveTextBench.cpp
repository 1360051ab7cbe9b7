// The text forms of primitive values that both serializers use
// (ICoreDatatypes::primitiveToString / primitiveFromString): an integer, a double, a
// date and a 1 KB blob (Base64 through Xerces), each converted both ways.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

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

void toText(benchmark::State& state, IDatatype const& type, void const* value, unsigned int length) {
  for (auto _ : state) std::unique_ptr<IUString>(ICoreDatatypes::primitiveToString(type, value, length)).reset();
}

// Parses `text` in every iteration and frees the value as its owner would.
void fromText(benchmark::State& state, IDatatype const& type, IUString const& text) {
  const bool isBlob = type.getTypeId() == ICoreDatatypes::BLOB_TYPE_ID;
  for (auto _ : state) {
    unsigned int length = 0;
    void* value = ICoreDatatypes::primitiveFromString(type, text, &length);
    benchmark::DoNotOptimize(value);
    if (isBlob) {
      delete[] static_cast<char*>(value);
    } else {
      ICoreDatatypes::deletePrimitive(type, value);
    }
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

BENCHMARK(integerToText)->Name("PrimitiveText/toString/int");
BENCHMARK(integerFromText)->Name("PrimitiveText/fromString/int");
BENCHMARK(doubleToText)->Name("PrimitiveText/toString/double");
BENCHMARK(doubleFromText)->Name("PrimitiveText/fromString/double");
BENCHMARK(dateToText)->Name("PrimitiveText/toString/date");
BENCHMARK(dateFromText)->Name("PrimitiveText/fromString/date");
BENCHMARK(blobToText)->Name("PrimitiveText/toString/blob_1KB");
BENCHMARK(blobFromText)->Name("PrimitiveText/fromString/blob_1KB");

}  // namespace
