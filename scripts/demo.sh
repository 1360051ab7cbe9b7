#!/usr/bin/env bash
# A newcomer's first run: installs what is missing, makes a Release build of the
# library and its tool in build-release, and runs "qvx demo", which writes the sample
# catalog in both file forms, reads them back and compares them with the original.
# Arguments are passed to the demo (e.g. --size bench, --out DIR).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh

launcher=()
if command -v ccache > /dev/null; then launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DQVX_BUILD_TESTS=OFF \
  -DQVX_BUILD_BENCH=OFF "${launcher[@]}"
cmake --build build-release -j "$(nproc)" --target qvx_tool
echo
build-release/tools/qvx demo "$@"
