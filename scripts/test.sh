#!/usr/bin/env bash
# The whole set-up and test run: installs what is missing, builds, and runs every test twice, in a
# normal build (build/) and under AddressSanitizer and UndefinedBehaviorSanitizer (build-asan/), runs
# the suites that use threads and the programs under ThreadSanitizer (build-tsan/), checks the style
# (clang-format, clang-tidy), then runs every libFuzzer target for a short time (build-fuzz/).
#   scripts/test.sh                      everything, 10 seconds of fuzzing a target
#   scripts/test.sh --fuzz-seconds 300   a longer fuzzing run
#   scripts/test.sh --no-sanitizers      the normal build only: no fuzzing, no style checks
#   scripts/test.sh --soak-seconds 3600  a longer soak of the inspector (120 seconds by default)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
jobs=$(nproc)
sanitizers=1
fuzzSeconds=10
soakSeconds=120
while [ $# -gt 0 ]; do
  case "$1" in
    --no-sanitizers) sanitizers=0; shift ;;
    --fuzz-seconds) fuzzSeconds="$2"; shift 2 ;;
    --soak-seconds) soakSeconds="$2"; shift 2 ;;
    *) echo "usage: scripts/test.sh [--no-sanitizers] [--fuzz-seconds N] [--soak-seconds N]" >&2; exit 2 ;;
  esac
done

bash scripts/setup.sh

section() { printf '\n== %s ==\n' "$*"; }

# The builds are the presets of CMakePresets.json (default, asan, tsan, fuzz), with warnings as errors.
section "normal build"
cmake --preset default
cmake --build --preset default -j "$jobs"
section "tests"
ctest --preset default -j "$jobs"
section "soak"
# Left out of a plain ctest: it runs for minutes.
TOV_SOAK_SECONDS=$soakSeconds ctest --test-dir build -C soak -L soak --output-on-failure

if [ "$sanitizers" -eq 1 ]; then
  section "style"
  # The layout of every C++ file, and clang-tidy over the sources of the normal build.
  bash scripts/check-style.sh --build build
fi

if [ "$sanitizers" -eq 1 ]; then
  section "sanitizer build (address, undefined)"
  cmake --preset asan
  cmake --build --preset asan -j "$jobs"
  section "tests under sanitizers"
  # Any report ends the test process with a failure: ASan always, UBSan through -fno-sanitize-recover.
  # The programs' tests run the sanitized tov-demo, tov-inspect and tov-dap. The soak runs a shorter
  # while here: it looks for leaks and bad accesses, not for endurance.
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:strict_string_checks=1
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  ctest --preset asan -j "$jobs"
  TOV_SOAK_SECONDS=30 ctest --test-dir build-asan -C soak -L soak --output-on-failure
  unset ASAN_OPTIONS UBSAN_OPTIONS
fi

if [ "$sanitizers" -eq 1 ]; then
  section "thread sanitizer build"
  # The suites whose tests run threads: the debugger's simulated hosts, the HTTP server, the event
  # registry, and the foundation's threads, mutexes and per-thread memory counters; and the programs:
  # the demo's simulation threads under its tour, the command-line client, tov-dap and the browser
  # (about 25 seconds in all under ThreadSanitizer).
  threaded=(tov_debugger_tests tov_event_tests tov_inspection_tests tov_foundation_tests)
  cmake --preset tsan
  cmake --build --preset tsan -j "$jobs" --target "${threaded[@]}" tov-demo tov-inspect tov-dap
  section "threaded tests under ThreadSanitizer"
  export TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1
  for suite in "${threaded[@]}"; do
    # Two Mutex tests misuse a mutex on purpose (unlocking one not held, destroying one held) to see
    # the failure reported; that misuse is what the sanitizer exists to flag.
    "build-tsan/tests/$suite" --gtest_filter=-Mutex.LockFailuresAreLoggedOnlyWithALogger:Mutex.DestroyingALockedMutex*
  done
  ctest --test-dir build-tsan --output-on-failure \
        -R '^(tov_demo_tour|tov_programs_command_line|tov_dap_client|tov_viewer_browser)$'
  unset TSAN_OPTIONS
fi

if [ "$sanitizers" -eq 1 ]; then
  section "fuzzing, ${fuzzSeconds}s a target"
  bash scripts/fuzz.sh --seconds "$fuzzSeconds"
fi

# A clone of the committed tree, built from nothing in a fresh folder; skipped inside such a clone.
if [ "$sanitizers" -eq 1 ] && [ -z "${TOV_CLEAN_CLONE:-}" ]; then
  section "the README's commands in a clean clone"
  TOV_CLEAN_CLONE=1 bash scripts/clean-clone-check.sh
fi

section "all tests passed"
