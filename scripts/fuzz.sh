#!/usr/bin/env bash
# Builds every libFuzzer target of fuzz/ with clang under AddressSanitizer and UndefinedBehaviorSanitizer
# (build-fuzz/) and runs each for a bounded time over its seed corpus plus what it finds. A crash, a
# leak, a sanitizer report or an assertion fails the run; the input is left in build-fuzz/findings/.
#   scripts/fuzz.sh                 10 seconds a target
#   scripts/fuzz.sh --seconds 600   a longer run
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
seconds=10
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds="$2"; shift 2 ;;
    *) echo "usage: scripts/fuzz.sh [--seconds N]" >&2; exit 2 ;;
  esac
done

cmake --preset fuzz >/dev/null
targets=$(sed -n 's/^tov_add_fuzzer(\([A-Za-z0-9_]*\).*/\1/p' fuzz/*.cmake)
cmake --build --preset fuzz -j "$(nproc)" --target $targets

mkdir -p build-fuzz/findings
status=0
for target in $targets; do
  # New inputs go to a scratch corpus, so the seeds in the repository stay as they are.
  work=build-fuzz/corpus/$target
  mkdir -p "$work"
  seeds=fuzz/corpus/$target
  [ -d "$seeds" ] || seeds=""
  echo "== fuzzing $target for ${seconds}s"
  if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
      "build-fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
      -artifact_prefix="build-fuzz/findings/$target-" "$work" $seeds >"build-fuzz/$target.log" 2>&1; then
    echo "!! $target found a failing input:"
    tail -n 40 "build-fuzz/$target.log"
    status=1
  else
    grep -E '^stat::number_of_executed_units' "build-fuzz/$target.log" | sed "s/^/   /" || true
  fi
done
exit $status
