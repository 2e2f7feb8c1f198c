#!/usr/bin/env python3
"""Runs every benchmark program given and prints one row per comparison.

Benchmarks are named "<comparison>|<side>" (an argument suffix "/N" may follow, which makes a comparison
of its own: "<comparison>/N"). The side "tov" is this library; every other side is a peer, and each
peer makes a row. The ratio is the peer's cost divided by
ours, so above 1 means this library is cheaper. The cost is the real time per iteration, or the counter
"cost" when a benchmark sets one (bytes held, say). On our side, the counter "target:<peer>" (or
"target" for every peer) is the lowest ratio the comparison must reach; the counter "budget" is instead
the most our cost may be, in its own unit.
"""
import argparse
import datetime
import json
import os
import platform
import subprocess
import sys


def run(program, min_time):
    command = [program, "--benchmark_format=json", f"--benchmark_min_time={min_time}"]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return json.loads(output)["benchmarks"]


def cost_of(entry):
    if "cost" in entry:
        return float(entry["cost"]), "counter"
    return float(entry["real_time"]), entry.get("time_unit", "ns")


def comparisons(benchmarks, program):
    table = {}
    for entry in benchmarks:
        if entry.get("run_type") == "aggregate" or "|" not in entry["name"]:
            continue
        comparison, side = entry["name"].split("|", 1)
        side, _, arguments = side.partition("/")
        # Arguments name a comparison of their own; settings such as "iterations:1" do not.
        arguments = "/".join(part for part in arguments.split("/") if part and ":" not in part)
        if arguments:
            comparison += "/" + arguments
        table.setdefault(comparison, {})[side] = entry
    rows = []
    for comparison, sides in table.items():
        ours = sides.get("tov")
        peers = [side for side in sides if side != "tov"]
        if ours is None or not peers:
            rows.append((program, comparison, "?", "?", "?", "?", "?", "incomplete"))
            continue
        our_cost, unit = cost_of(ours)
        for peer in peers:
            peer_cost, _ = cost_of(sides[peer])
            ratio = peer_cost / our_cost if our_cost > 0 else float("inf")
            target = ours.get(f"target:{peer}", ours.get("target"))
            budget = ours.get("budget")
            if budget is not None:
                wanted = f"tov <= {float(budget):.4g} {unit}"
                verdict = "met" if our_cost <= float(budget) else "MISSED"
            else:
                wanted = "" if target is None else f">= {float(target):.2f}"
                verdict = "" if target is None else ("met" if ratio >= float(target) else "MISSED")
            rows.append((program, comparison, f"{our_cost:.4g} {unit}", peer, f"{peer_cost:.4g} {unit}",
                         f"{ratio:.2f}", wanted, verdict))
    return rows


def measured_rows(path):
    rows = []
    for line in open(path):
        program, comparison, ours, peer, theirs, target = line.rstrip("\n").split("\t")
        ratio = float(theirs.split()[0]) / float(ours.split()[0])
        verdict = "" if not target else ("met" if ratio >= float(target) else "MISSED")
        rows.append((program, comparison, ours, peer, theirs, f"{ratio:.2f}",
                     "" if not target else f">= {float(target):.2f}", verdict))
    return rows


def markdown(rows):
    header = ("program", "comparison", "tov", "peer", "peer cost", "ratio (peer/tov)", "target", "")
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", nargs="+")
    parser.add_argument("--min-time", default="0.2")
    parser.add_argument("--report", help="also write the table to this Markdown file")
    parser.add_argument("--rows", help="comparisons measured elsewhere, one a line: program, comparison, "
                        "our cost, peer, peer cost, target (tab-separated, costs as '<number> <unit>')")
    arguments = parser.parse_args()

    rows = []
    for program in arguments.programs:
        name = os.path.basename(program)
        print(f"running {name} ...", file=sys.stderr, flush=True)
        rows += comparisons(run(program, arguments.min_time), name)
    if arguments.rows and os.path.exists(arguments.rows):
        rows += measured_rows(arguments.rows)
    table = markdown(rows)
    print(table)
    if arguments.report:
        machine = f"{platform.machine()}, {os.cpu_count()} cores, {platform.platform()}"
        with open(arguments.report, "w") as report:
            report.write("# Benchmark report\n\n")
            report.write(f"Run on {datetime.date.today().isoformat()}, {machine}.\n")
            report.write("Ratio: the peer's cost divided by this library's (above 1: this library is cheaper).\n\n")
            report.write(table + "\n")
    return 1 if any(row[-1] == "MISSED" for row in rows) else 0


if __name__ == "__main__":
    sys.exit(main())
