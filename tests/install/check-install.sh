#!/usr/bin/env bash
# Installs the build tree into a scratch prefix, then configures, builds and runs a
# consumer project against it through find_package(qvx) and through pkg-config.
set -euo pipefail
build_dir=$1
source_dir=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build_dir" --prefix "$scratch/prefix" >/dev/null
cmake -S "$source_dir" -B "$scratch/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/prefix" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
LD_LIBRARY_PATH="$scratch/prefix/lib" "$scratch/consumer/consumer"

flags=$(PKG_CONFIG_PATH="$scratch/prefix/lib/pkgconfig" pkg-config --cflags --libs qvx)
c++ -std=c++17 "$source_dir/consumer.cpp" $flags -o "$scratch/consumer-pc"
LD_LIBRARY_PATH="$scratch/prefix/lib" "$scratch/consumer-pc"
