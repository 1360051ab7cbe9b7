#!/usr/bin/env bash
# Installs what is missing, then builds and runs every test twice: in a normal
# build and in a clang build with AddressSanitizer and UndefinedBehaviorSanitizer,
# which also builds the readers' libFuzzer targets and runs each one briefly. Last, the
# tests of concurrent use run once more under ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh

jobs=$(nproc)
configure() {
  local dir=$1; shift
  echo "== configuring $dir ($*)"
  cmake -S . -B "$dir" -G Ninja -DQVX_WERROR=ON "$@"
}
run_suite() {
  local dir=$1; shift
  configure "$dir" "$@"
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
# ThreadSanitizer: only the three test programs that start threads, and only their tests
# of the singletons, caches, package loading, identity generation and the seed registry.
tsan_tests='Concurren|Thread|PackageLibraryLoad|PackageRegistration|RuntimeEnvironment'
configure build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQVX_TSAN=ON -DQVX_BUILD_BENCH=OFF
echo "== building build-tsan"
cmake --build build-tsan -j "$jobs" --target qvx_foundation_tests qvx_tests qvx_runtime_env_tests
echo "== testing build-tsan"
TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1 \
  ctest --test-dir build-tsan --output-on-failure -j "$jobs" -R "$tsan_tests" --no-tests=error
echo "== all tests passed"
