#!/usr/bin/env bash
# Installs the build and test dependencies that are missing on this machine.
# Idempotent, needs no standard input; run as root (or with sudo available).
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config
  libxerces-c-dev   # XML parsing and Base64
  libace-dev        # UUID generation, byte reversal
  libssl-dev        # AES-256-GCM for the default encryption provider
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-dev          # libFuzzer targets of the stream and document readers
  libboost-serialization-dev     # the peer the serializer benchmarks compare against
  locales           # a decimal-comma locale for the number-parsing tests
)
# The tests check that numbers read the same under a locale with a decimal comma.
test_locale=de_DE.UTF-8

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all ${#packages[@]} packages already installed"
else
  echo "setup: installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
fi

if ! locale -a 2>/dev/null | grep -qix "${test_locale/UTF-8/utf8}"; then
  echo "setup: generating the locale $test_locale"
  $sudo sed -i "s/^# *\($test_locale UTF-8\)/\1/" /etc/locale.gen
  grep -q "^$test_locale UTF-8" /etc/locale.gen || echo "$test_locale UTF-8" | $sudo tee -a /etc/locale.gen >/dev/null
  $sudo locale-gen >/dev/null
fi
echo "setup: done"
