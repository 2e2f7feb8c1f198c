#!/usr/bin/env bash
# The style checks of the test command: every C++ file of the tree is laid out as .clang-format says,
# and clang-tidy's checks of .clang-tidy (bugprone and performance) find nothing in the sources of a
# configured build (its compile_commands.json).
#   scripts/check-style.sh            both, over build/
#   scripts/check-style.sh --format   the layout only (quick)
#   scripts/check-style.sh --fix      lays the files out instead of checking them
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
mode=all
build=build
case "${1:-}" in
  "") ;;
  --format) mode=format ;;
  --fix) mode=fix ;;
  --build) build="$2" ;;
  *) echo "usage: scripts/check-style.sh [--format | --fix | --build DIR]" >&2; exit 2 ;;
esac

mapfile -t files < <(git ls-files '*.cpp' '*.h' '*.inl')
if [ "$mode" = fix ]; then
  clang-format -i "${files[@]}"
  exit 0
fi
echo "style: clang-format over ${#files[@]} files"
clang-format --dry-run --Werror "${files[@]}"
if [ "$mode" = format ]; then
  exit 0
fi

echo "style: clang-tidy over the sources of $build"
# run-clang-tidy ends with a failure when any file has a finding (every warning is an error here).
run-clang-tidy -p "$build" -quiet -j "$(nproc)" "$root/(tov|apps|tests|bench|examples)/" > "$build/clang-tidy.log" 2>&1 || {
  grep -E "(warning|error): " "$build/clang-tidy.log" | sort -u >&2
  echo "style: clang-tidy found the above (whole log in $build/clang-tidy.log)" >&2
  exit 1
}
echo "style: clean"
