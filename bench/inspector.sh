#!/usr/bin/env bash
# Measures the inspector's GET throughput and latency with wrk against a host that serves one small
# engine, side by side with a bare CivetWeb handler with the same options writing the same bytes, the
# ceiling of this server. Both listen on 127.0.0.1.
#   bench/inspector.sh                      10 seconds each, 8 connections
#   bench/inspector.sh --seconds 30 --connections 16
#   bench/inspector.sh --rows FILE          also append the comparison as a row for scripts/bench_report.py
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
seconds=10
connections=8
build=build
rows=
while [ $# -gt 0 ]; do
  case "$1" in
    --seconds) seconds="$2"; shift 2 ;;
    --connections) connections="$2"; shift 2 ;;
    --build) build="$2"; shift 2 ;;
    --rows) rows="$2"; shift 2 ;;
    *) echo "usage: bench/inspector.sh [--seconds N] [--connections N] [--build DIR] [--rows FILE]" >&2; exit 2 ;;
  esac
done
command -v wrk >/dev/null || { echo "bench/inspector.sh needs wrk (scripts/setup.sh installs it)" >&2; exit 1; }

cmake --preset default -B "$build" >/dev/null
cmake --build "$build" -j "$(nproc)" --target bench_inspector_host >/dev/null
host="$build/bench/bench_inspector_host"

free_port() {
  python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1]); s.close()'
}

# Runs one server mode under wrk; prints "requests/s median p99" (latencies in microseconds).
measure() {
  local mode=$1 port fifo pid
  port=$(free_port)
  fifo=$(mktemp -u)
  mkfifo "$fifo"
  "$host" "$mode" "$port" <"$fifo" >"$fifo.out" 2>&1 &
  pid=$!
  exec 9>"$fifo"   # the host runs until this end closes
  for _ in $(seq 50); do grep -q ready "$fifo.out" 2>/dev/null && break; sleep 0.1; done
  grep -q ready "$fifo.out" || { cat "$fifo.out" >&2; exit 1; }
  wrk -t 2 -c "$connections" -d "${seconds}s" --latency "http://127.0.0.1:$port/api/clock" >"$fifo.wrk"
  exec 9>&-
  wait "$pid"
  python3 - "$fifo.wrk" <<'PY'
import re, sys
text = open(sys.argv[1]).read()
def micros(value):
    number, unit = re.match(r"([\d.]+)(\w+)", value).groups()
    return float(number) * {"us": 1, "ms": 1e3, "s": 1e6}[unit]
rate = float(re.search(r"Requests/sec:\s+([\d.]+)", text).group(1))
median = micros(re.search(r"^\s+50%\s+(\S+)", text, re.M).group(1))
p99 = micros(re.search(r"^\s+99%\s+(\S+)", text, re.M).group(1))
errors = re.search(r"Non-2xx or 3xx responses: (\d+)|Socket errors: .*", text)
print(f"{rate:.0f} {median:.0f} {p99:.0f}" + (f" ({errors.group(0)})" if errors else ""))
PY
  rm -f "$fifo" "$fifo.out" "$fifo.wrk"
}

inspector=$(measure inspector)
bare=$(measure bare)
read -r inspectorRate inspectorMedian inspectorP99 _ <<<"$inspector"
read -r bareRate bareMedian bareP99 _ <<<"$bare"
printf "%-34s %12s %12s %12s\n" "GET /api/clock, $connections connections" "requests/s" "median us" "p99 us"
printf "%-34s %12s %12s %12s\n" "inspector" "$inspectorRate" "$inspectorMedian" "$inspectorP99"
printf "%-34s %12s %12s %12s\n" "bare CivetWeb handler" "$bareRate" "$bareMedian" "$bareP99"
python3 -c "print(f'inspector / bare requests per second: {$inspectorRate / $bareRate:.2f}')"
# As a cost per request, so that the ratio reads as everywhere else: the bare handler's cost over ours.
if [ -n "$rows" ]; then
  python3 -c "print('\t'.join(['inspector.sh', 'GET /api/clock, $connections connections', f'{1e9 / $inspectorRate:.0f} ns',
                                'bare CivetWeb', f'{1e9 / $bareRate:.0f} ns', '0.8']))" >>"$rows"
fi
echo "$inspector" | grep -q "(" && echo "inspector: $inspector"
echo "$bare" | grep -q "(" && echo "bare: $bare"
exit 0
