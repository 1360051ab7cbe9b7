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
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all ${#packages[@]} packages already installed"
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
echo "setup: done"
