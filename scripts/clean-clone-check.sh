#!/usr/bin/env bash
# Proves that the README's two commands do the whole set-up from nothing: clones the committed tree into
# a fresh folder and runs them there, the test command without its sanitizer and fuzzing runs (the
# caller has just run those) and the demo command for a few seconds.
#   scripts/clean-clone-check.sh
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

git clone --quiet "$root" "$scratch/tov_utils"
# The public data sets lie beside a clone; the clone gets them the same way, where they exist.
if [ -d "$root/../shared" ]; then
  ln -s "$root/../shared" "$scratch/shared"
fi
cd "$scratch/tov_utils"
echo "== clean clone at $(git rev-parse --short HEAD) in $scratch"
bash scripts/test.sh --no-sanitizers --soak-seconds 10
if [ -f scripts/demo.sh ]; then
  # On a free port: a machine may have another server on the demo's default one.
  bash scripts/demo.sh --seconds 5 --port 0
fi
