#!/usr/bin/env bash
# Installs what is missing, then builds and runs every test twice: in a normal
# build and in a clang build with AddressSanitizer and UndefinedBehaviorSanitizer,
# which also builds the readers' libFuzzer targets and runs each one briefly.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh

jobs=$(nproc)
run_suite() {
  local dir=$1; shift
  echo "== configuring $dir ($*)"
  cmake -S . -B "$dir" -G Ninja -DQVX_WERROR=ON "$@"
  echo "== building $dir"
  cmake --build "$dir" -j "$jobs"
  echo "== testing $dir"
  ctest --test-dir "$dir" --output-on-failure -j "$jobs"
}

# The benchmarks are compiled (not run) in the normal build so that they keep building.
run_suite build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQVX_BUILD_BENCH=ON
ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1 \
  run_suite build-asan -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
    -DQVX_SANITIZE=ON -DQVX_FUZZ=ON -DQVX_BUILD_BENCH=OFF
echo "== all tests passed"
