#!/usr/bin/env bash
# Measures what the web viewer costs the simulation: tov-demo's tick rate with the page open in headless
# Chromium, side by side with it closed, in alternating rounds of one run (bench/viewer.mjs). The page
# may cost at most 5% of the ticks.
#   bench/viewer.sh                      20 seconds a side, 2 rounds
#   bench/viewer.sh --seconds 10 --rounds 3
#   bench/viewer.sh --rows FILE          also append the comparison as a row for scripts/bench_report.py
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
seconds=20
rounds=2
build=build
rows=
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds="$2"; shift 2 ;;
    --rounds) rounds="$2"; shift 2 ;;
    --build) build="$2"; shift 2 ;;
    --rows) rows="$2"; shift 2 ;;
    *) echo "usage: bench/viewer.sh [--seconds N] [--rounds N] [--build DIR] [--rows FILE]" >&2; exit 2 ;;
  esac
done
if ! command -v node >/dev/null || ! command -v chromium >/dev/null ||
   [ ! -f tests/viewer/node_modules/playwright-core/package.json ]; then
  echo "bench/viewer.sh: skipped, it needs node, chromium and the npm packages of tests/viewer (scripts/setup.sh)" >&2
  exit 0
fi

cmake --preset default -B "$build" >/dev/null
cmake --build "$build" -j "$(nproc)" --target tov-demo >/dev/null
output=$(CHROMIUM=$(command -v chromium) node bench/viewer.mjs "$build/apps/demo/tov-demo" "$seconds" "$rounds")
echo "$output" | grep '^page '
closed=$(echo "$output" | awk '$1 == "closed" { sum += $2; n++ } END { printf "%.3f", sum / n }')
open=$(echo "$output" | awk '$1 == "open" { sum += $2; n++ } END { printf "%.3f", sum / n }')
requests=$(echo "$output" | awk '$1 == "requests" { sum += $2; n++ } END { printf "%.1f", sum / n }')
printf "%-40s %12s\n" "tov-demo, $rounds rounds of $seconds s a side" "ticks/s"
printf "%-40s %12s\n" "page closed" "$closed"
printf "%-40s %12s\n" "page open ($requests requests/s)" "$open"
python3 -c "print(f'open / closed tick rate: {$open / $closed:.3f} (the page may cost at most 5%)')"
# As a cost per tick, so that the ratio reads as everywhere else: the closed side's cost over the open one's.
if [ -n "$rows" ]; then
  python3 -c "print('\t'.join(['viewer.sh', 'tov-demo tick with the page open, $requests requests/s',
                                f'{1e3 / $open:.2f} ms', 'page closed', f'{1e3 / $closed:.2f} ms', '0.95']))" >>"$rows"
fi
