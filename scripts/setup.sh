#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests, the benchmarks and the fuzzers need, only those
# that are missing. Run as root on Debian 12; without root it only lists what is missing.
set -euo pipefail

packages=(
  cmake make g++ pkg-config python3
  libgtest-dev libgmock-dev libbenchmark-dev
  libprotobuf-dev protobuf-compiler
  libyajl-dev
  libcivetweb-dev wrk
  clang libclang-rt-14-dev
  nlohmann-json3-dev rapidjson-dev
  libcurl4-openssl-dev libcli11-dev help2man bash-completion
  nodejs
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: every package is installed"
  exit 0
fi

echo "setup: missing packages: ${missing[*]}"
if [ "$(id -u)" -ne 0 ]; then
  echo "setup: run as root to install them (apt-get install ${missing[*]})" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -q
apt-get install -y -q --no-install-recommends "${missing[@]}"
