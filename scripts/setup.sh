#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests, the benchmarks and the fuzzers need, only those
# that are missing, then the npm packages of the browser test of the web viewer (tests/viewer/, at the
# versions of its package-lock.json, into tests/viewer/node_modules, which git ignores). Run as root on
# Debian 12; without root it only lists what is missing.
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

# The browser driver of tests/viewer/, exactly as locked; it drives the chromium above and downloads no
# browser of its own. Reinstalled only when the lock file changed since the last install.
viewerTests=$(cd "$(dirname "$0")/.." && pwd)/tests/viewer
if [ -f "$viewerTests/package-lock.json" ] && \
   ! cmp -s "$viewerTests/package-lock.json" "$viewerTests/node_modules/.installed-lock.json"; then
  echo "setup: npm ci in tests/viewer"
  (cd "$viewerTests" && npm ci --no-audit --no-fund --ignore-scripts &&
   cp package-lock.json node_modules/.installed-lock.json)
fi
