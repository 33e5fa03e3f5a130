#!/usr/bin/env python3
"""Measures the package kvr on a scene of many instances, each round in a process of its own; medians of the rounds.

    bench_python.py [--build BUILD] [--instances N] [--repeat ROUNDS]

Prints the processor seconds of reading (kvr.Producer), of the resolved scene beyond it, and of the table of all occurrences; then
the goals, and ends with 1 when one of them is missed.
"""

import argparse
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

ROUND = """
import json, sys, time
import kvr
def seconds(work):
    begin = time.process_time()
    result = work()
    return time.process_time() - begin, result
kvr.Scene(sys.argv[2]).close()
read, producer = seconds(lambda: kvr.Producer(sys.argv[1]))
build, scene = seconds(lambda: kvr.Scene(producer))
table, columns = seconds(scene.table)
count = 0
def walk():
    global count
    for occurrence in scene:
        count += 1
        if count == 100_000:
            break
walked, _ = seconds(walk)
print(json.dumps({"read": read, "build": build, "rows": len(columns), "table": table, "walk": count / walked}))
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, default=pathlib.Path("build/release"))
    parser.add_argument("--instances", type=int, default=1_000_000)
    parser.add_argument("--repeat", type=int, default=3)
    options = parser.parse_args()
    environment = dict(os.environ, PYTHONPATH=str((options.build / "python").resolve()))
    with tempfile.TemporaryDirectory() as name:
        scenes = [pathlib.Path(name, f"{count}.xml") for count in (options.instances, 1)]
        for count, scene in zip((options.instances, 1), scenes):
            subprocess.run([options.build / "bin/kvr_bench_write", str(count), scene], check=True)
        rounds = [json.loads(subprocess.run([sys.executable, "-c", ROUND, *scenes], env=environment, check=True,
                                            stdout=subprocess.PIPE).stdout) for _ in range(options.repeat)]
    figures = {figure: statistics.median(told[figure] for told in rounds) for figure in rounds[0]}
    ratio = figures["build"] / figures["read"]
    rate = figures["rows"] / figures["table"]
    print(f"{figures['rows']:.0f} occurrences: read {figures['read']:.2f} s, scene {figures['build']:.2f} s, "
          f"table {figures['table']:.2f} s")
    print(f"scene / read                     {ratio:10.3f}   at most 0.4")
    print(f"occurrences a second, table      {rate:10.0f}   at least 500000")
    print(f"occurrences a second, one by one {figures['walk']:10.0f}")
    return 0 if ratio <= 0.4 and rate >= 500_000 else 1


if __name__ == "__main__":
    sys.exit(main())
