#!/usr/bin/env python3
"""Runs all benchmarks and puts what they say of their goals into one table, or beside that of an earlier run.

    scripts/bench all [--rounds N] [--only NAME...] [--json FILE]
    scripts/bench compare OLD.json [--rounds N] [--only NAME...] [--json FILE]

A round runs each benchmark once, with its own number of repetitions. Of several rounds the median counts; a figure that
swings by more than 15 percent between them says so.
"""

import argparse
import json
import pathlib
import re
import statistics
import subprocess
import sys
import time

BENCHMARKS = ("attached", "check", "cloud", "commands", "estimate", "exchange", "kernel", "mesh", "organisation",
              "product", "properties", "scale", "scene", "structure", "start", "works")
BINARIES = pathlib.Path("build/release/bin")
# A line of the table that every benchmark ends with: what is measured, the most that it may be, what it was.
GOAL = re.compile(r"(?P<name>\S.*?) +(?P<limit>-?[\d.e+-]+)(?P<unit>(?: [A-Za-z/]+)?) +(?P<reached>-?[\d.]+)(?P=unit) +"
                  r"(?:met|missed)")
SWING = 0.15


def figures_of(text):
    """What a benchmark printed of its goals, by their names."""
    figures = {}
    for line in text.splitlines():
        if row := GOAL.fullmatch(line.strip()):
            figures[row["name"]] = {"limit": float(row["limit"]), "unit": row["unit"].strip(),
                                    "reached": float(row["reached"])}
    return figures


def seconds_of(command):
    begin = time.perf_counter()
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
    return time.perf_counter() - begin


def start_of_program():
    """What the program takes to start, beyond one that does nothing; medians of 30 turns."""
    turns = [(seconds_of(["/bin/true"]), seconds_of([BINARIES / "kvr", "--version"])) for _ in range(30)]
    nothing, program = (statistics.median(times) for times in zip(*turns))
    return {"kvr --version, beyond an empty program": {"limit": 10.0, "unit": "ms",
                                                       "reached": round((program - nothing) * 1e3, 1)}}


def run(name):
    """The figures of a benchmark. Ends the program when it fails."""
    if name == "start":
        return start_of_program()
    done = subprocess.run([BINARIES / f"kvr_bench_{name}"], stdout=subprocess.PIPE, text=True, check=False)
    figures = figures_of(done.stdout)
    if done.returncode != 0 or not figures:
        sys.exit(f"kvr_bench_{name} ended with {done.returncode} and {len(figures)} figures")
    return figures


def measure(names, rounds):
    """The goals of the benchmarks with what the rounds reached."""
    goals = {}
    for number in range(rounds):
        for name in names:
            print(f"round {number + 1} of {rounds}: {name}", file=sys.stderr, flush=True)
            for goal, figure in run(name).items():
                entry = goals.setdefault(f"{name}: {goal}",
                                         {"limit": figure["limit"], "unit": figure["unit"], "rounds": []})
                entry["rounds"].append(figure["reached"])
    for entry in goals.values():
        entry["measured"] = statistics.median(entry["rounds"])
        entry["met"] = entry["measured"] <= entry["limit"]
    return goals


def swing(entry):
    """By how much the rounds differ, as a share of their median."""
    middle = abs(entry["measured"])
    return (max(entry["rounds"]) - min(entry["rounds"])) / middle if middle else 0.0


def number(value, unit):
    return f"{value:g} {unit}".strip()


def remarks(entry, old):
    words = ["met" if entry["met"] else "missed"]
    if swing(entry) > SWING:
        words.append(f"swings by {swing(entry):.0%}")
    if old and old["measured"]:
        change = entry["measured"] / old["measured"] - 1
        noise = max(swing(entry), swing(old), 0.05)
        if abs(change) > noise:
            words.append(f"{change:+.0%} beyond noise")
    return ", ".join(words)


def table(goals, before):
    head = ["work", "goal"] + (["before"] if before else []) + ["measured", ""]
    rows = [head]
    for name, entry in goals.items():
        old = before.get(name)
        row = [name, number(entry["limit"], entry["unit"])]
        if before:
            row.append(number(old["measured"], old["unit"]) if old else "-")
        rows.append(row + [number(entry["measured"], entry["unit"]), remarks(entry, old)])
    widths = [max(len(row[column]) for row in rows) for column in range(len(head))]
    lines = []
    for row in rows:
        cells = [row[0].ljust(widths[0])] + [cell.rjust(width) for cell, width in zip(row[1:-1], widths[1:-1])]
        lines.append("  ".join(cells + [row[-1]]).rstrip())
    gone = [name for name in before if name not in goals]
    return "\n".join(lines + [f"{name}: measured before alone" for name in gone])


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("what", choices=("all", "compare"))
    parser.add_argument("old", nargs="?", type=pathlib.Path, help="figures of an earlier run, for compare")
    parser.add_argument("--rounds", type=int, default=1)
    parser.add_argument("--only", nargs="+", choices=BENCHMARKS, default=BENCHMARKS)
    parser.add_argument("--json", type=pathlib.Path, help="where the figures go")
    options = parser.parse_args()
    if (options.what == "compare") != (options.old is not None):
        parser.error("compare takes the figures of an earlier run, all takes none")
    before = json.loads(options.old.read_text(encoding="utf-8")) if options.old else {}
    goals = measure(options.only, options.rounds)
    before = {name: entry for name, entry in before.items() if name.split(":")[0] in options.only}
    print(table(goals, before))
    if options.json:
        options.json.write_text(json.dumps(goals, indent=2) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
