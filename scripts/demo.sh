#!/usr/bin/env bash
# The first command: installs what is missing (scripts/setup.sh), builds the library and the demo in
# build/, then runs build/apps/demo/tov-demo with the arguments given (--port, --seconds, --tour ...).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake -S . -B build -DTOV_BUILD_BENCH=OFF
cmake --build build -j "$(nproc)" --target tov-demo tov-inspect

cat <<'TEXT'
tov-demo starts below. While it runs, from another terminal:
  curl http://127.0.0.1:8000/api/world/agents/3          the state of agent 3
  curl http://127.0.0.1:8000/api/debug/entities/3/contexts   its stack of frames
  build/apps/inspect/tov-inspect entities                  the inspector's client (--help for more)
Ctrl-C stops the demo; it saves its world to tov-demo-world.json and tov-demo-world.txt.
TEXT
exec build/apps/demo/tov-demo "$@"
