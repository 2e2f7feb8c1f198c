#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests, the benchmarks and the fuzzers need, only those
# that are missing, then the npm packages of the Node tests (tests/viewer/ and tests/dap/, at the
# versions of their package-lock.json, into their node_modules, which git ignores). Run as root on
# Debian 12; without root it only lists what is missing.
set -euo pipefail

packages=(
  cmake make g++ pkg-config python3
  libgtest-dev libgmock-dev libbenchmark-dev
  libprotobuf-dev protobuf-compiler
  libyajl-dev
  libcivetweb-dev wrk
  clang libclang-rt-14-dev clang-format clang-tidy
  nlohmann-json3-dev rapidjson-dev
  libcurl4-openssl-dev libcli11-dev help2man bash-completion
  nodejs chromium
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done
# Debian's nodejs comes without npm, which is a package of its own; other builds of nodejs bring it.
if ! command -v npm >/dev/null 2>&1; then
  missing+=(npm)
fi

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: every package is installed"
else
  echo "setup: missing packages: ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    echo "setup: run as root to install them (apt-get install ${missing[*]})" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -q
  apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

# The npm packages of the Node tests, exactly as locked, each folder's into its own node_modules:
# tests/viewer/ (the browser driver, which drives the chromium above and downloads no browser of its
# own) and tests/dap/ (a Debug Adapter Protocol client). Reinstalled only when a lock file changed since
# its last install.
root=$(cd "$(dirname "$0")/.." && pwd)
for nodeTests in "$root/tests/viewer" "$root/tests/dap"; do
  if [ -f "$nodeTests/package-lock.json" ] && \
     ! cmp -s "$nodeTests/package-lock.json" "$nodeTests/node_modules/.installed-lock.json"; then
    echo "setup: npm ci in ${nodeTests#"$root"/}"
    (cd "$nodeTests" && npm ci --no-audit --no-fund --ignore-scripts &&
     cp package-lock.json node_modules/.installed-lock.json)
  fi
done
