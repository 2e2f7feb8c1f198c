#!/usr/bin/env bash
# tov-inspect and tov-demo as a person uses them: a demo host on a free port, then a table of command
# lines, each with the exit status and a pattern that its output (stdout and stderr) must hold.
#   tests/apps/CommandLineTest.sh build/apps/inspect/tov-inspect build/apps/demo/tov-demo 0.4.0
set -uo pipefail
inspect=$1 demo=$2 version=$3
scratch=$(mktemp -d)
trap 'kill "$demoPid" 2>/dev/null; wait "$demoPid" 2>/dev/null; rm -rf "$scratch"' EXIT
failures=0

"$demo" --port 0 --seconds 100 --save "" --tick-ms 10 > "$scratch/demo.out" 2>&1 &
demoPid=$!
for _ in $(seq 100); do
  url=$(sed -n 's/^inspector listening on \(http:[^ ]*\)$/\1/p' "$scratch/demo.out")
  [ -n "$url" ] && break
  sleep 0.1
done
[ -n "$url" ] || { echo "the demo printed no URL:"; cat "$scratch/demo.out"; exit 1; }
port=${url##*:}

# expect STATUS PATTERN COMMAND...: runs the command (bounded in time) and checks status and output.
expect() {
  local status=$1 pattern=$2
  shift 2
  local output
  output=$(timeout 30 "$@" 2>&1)
  local got=$?
  if [ "$got" -ne "$status" ] || ! grep -qE -- "$pattern" <<< "$output"; then
    echo "FAILED: $* -> status $got (expected $status), pattern '$pattern' in:"
    sed 's/^/    /' <<< "$output"
    failures=$((failures + 1))
  fi
}
i=("$inspect" --url "$url")

# The command line itself.
expect 0 "^tov-inspect $version\$" "$inspect" --version
expect 0 "--no-wait.*" "$inspect" help step
expect 2 "Usage: tov-inspect stack \\[OPTIONS\\] ENTITY" "$inspect" stack
expect 2 "frobnicate" "$inspect" frobnicate
expect 2 "'x' is no port" "$inspect" --host 127.0.0.1:x status
expect 2 "is no location" "${i[@]}" break not-a-uri
expect 0 "_tov_inspect" "$inspect" --bash-completion

# Finding the host: --host with a port, a whole URL, the environment; a path pasted whole.
expect 0 '"tick"' "$inspect" --host "127.0.0.1:$port" get /api/world/tick
expect 0 '"tick"' "$inspect" --host "$url" get "$url/api/world/tick"
expect 0 '^\[\{"entity":0,"location":"[^"]*","state":"running"\}' env TOV_INSPECT_URL="$url" "$inspect" --json entities
expect 3 "cannot connect to 127.0.0.1:1" "$inspect" --port 1 status
expect 3 '^\{"error":"cannot connect' "$inspect" --port 1 --json status

# Replies and refusals.
expect 0 '^\[\]$' "${i[@]}" --json events
expect 0 '^\[\{"energy"' "${i[@]}" --json get 'world/agents?first=1&count=2'
expect 1 "first=x.*\(400\)" "${i[@]}" get 'world/agents?first=x'
expect 1 "no engine 'nothing'" "${i[@]}" enable nothing
expect 0 "^enabled events$" "${i[@]}" enable events
expect 0 "^ENGINE +ANSWERS" "${i[@]}" engines

# A stop, a step that waits for the next one, and events that stay until deleted.
expect 0 "suspension request" "${i[@]}" subscribe suspension
expect 0 "every entity stops" "${i[@]}" suspend
expect 0 "^suspended" "${i[@]}" wait-suspended --timeout 10
expect 0 "^ENTITY +STATE +LOCATION" "${i[@]}" status
expect 0 "^suspended, entity [0-9]+ at tov:agents/forager.behavior#" "${i[@]}" step in
expect 0 "^resumed" "${i[@]}" resume
expect 0 "suspension" "${i[@]}" events --follow --count 1
expect 0 '"type":"suspension"' "${i[@]}" --json events --delete
expect 0 '^\[\]$' "${i[@]}" --json events

# The demo's own refusals and help.
echo '{"agents":"oops"}' > "$scratch/oops.json"
expect 1 "cannot start from .*oops.json: 'agents' is a string, not an array" "$demo" --load "$scratch/oops.json"
expect 2 "File does not exist" "$demo" --load "$scratch/missing.json"
expect 0 "--agents UINT:UINT in \\[1 - 10000\\]=8" "$demo" --help
expect 0 "^tov-demo: 1 agent on 1 worker thread," "$demo" --agents 1 --workers 1 --port 0 --seconds 1 --save ""

[ "$failures" -eq 0 ] && echo "command lines: ok"
exit $((failures != 0))
