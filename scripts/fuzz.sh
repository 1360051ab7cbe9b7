#!/usr/bin/env bash
# Runs one of the readers' libFuzzer targets for as long as asked:
#   bash scripts/fuzz.sh FUZZER [SECONDS] [extra libFuzzer flags...]
# FUZZER is a target of tests/fuzz (IdentityTextFuzzer, BinaryStreamFuzzer,
# XmlDocumentFuzzer). It builds the clang sanitizer build in build-fuzz when needed,
# starts from the fuzzer's seed corpus and keeps what it finds in
# build-fuzz/tests/fuzz/corpus-FUZZER; a crash leaves its input as
# build-fuzz/crash-* and a non-zero exit status.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -lt 1 ]; then
  echo "usage: bash scripts/fuzz.sh FUZZER [SECONDS] [libFuzzer flags...]" >&2
  exit 2
fi
fuzzer=$1
seconds=${2:-60}
shift $(( $# >= 2 ? 2 : 1 ))

bash scripts/setup.sh
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
  -DQVX_SANITIZE=ON -DQVX_FUZZ=ON -DQVX_BUILD_BENCH=OFF >/dev/null
cmake --build build-fuzz -j "$(nproc)" --target "$fuzzer"

seeds=$(sed -n "s/^qvx_add_fuzzer(${fuzzer} [^ ]* \([^ )]*\)).*/\1/p" tests/fuzz/CMakeLists.txt)
if [ -z "$seeds" ]; then
  echo "fuzz.sh: no fuzzer named $fuzzer in tests/fuzz/CMakeLists.txt" >&2
  exit 2
fi
scratch=build-fuzz/tests/fuzz/corpus-$fuzzer
mkdir -p "$scratch"
exec "build-fuzz/tests/fuzz/$fuzzer" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 -print_final_stats=1 \
  -artifact_prefix=build-fuzz/ \
  "$@" "$scratch" "tests/fuzz/corpus/$seeds"
