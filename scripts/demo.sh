#!/usr/bin/env bash
# The first command: installs what is missing (scripts/setup.sh), builds the library and the demo in
# build/, then runs build/apps/demo/tov-demo with the arguments given (--port, --seconds, --tour ...).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset default
cmake --build --preset default -j "$(nproc)" --target tov-demo tov-inspect

# The demo prints the URL it really listens on (--port 0 takes a free one), with requests to try.
echo "tov-demo starts below; the inspector's client is build/apps/inspect/tov-inspect (--help for more)."
exec build/apps/demo/tov-demo "$@"
