#!/usr/bin/env bash
# Builds and runs every benchmark of bench/ (the Google Benchmark programs, bench/inspector.sh and
# bench/viewer.sh) and prints each comparison as a ratio.
#   scripts/bench.sh                  print the table
#   scripts/bench.sh --report         also write bench/REPORT.md
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
report=()
[ "${1:-}" = "--report" ] && report=(--report bench/REPORT.md)
cmake --preset default >/dev/null
programs=$(sed -n 's/^tov_add_benchmark(\([A-Za-z0-9_]*\).*/\1/p' bench/*.cmake)
cmake --build --preset default -j "$(nproc)" --target $programs
paths=()
for program in $programs; do paths+=("build/bench/$program"); done
rows=$(mktemp)
trap 'rm -f "$rows"' EXIT
bash bench/inspector.sh --seconds 5 --rows "$rows" >&2
bash bench/viewer.sh --seconds 10 --rows "$rows" >&2
python3 scripts/bench_report.py "${paths[@]}" --rows "$rows" "${report[@]}"
