#!/usr/bin/env python3
"""Makes small mistakes in the readers' tables, one at a time, and sees whether a test notices.

All mistakes are built into a copy of the sources, each to be chosen by the environment when a program runs. A run
without any tells which test comes by which mistake; each mistake is then tried with those tests. Needs a build of the
tests, whose objects it links with the copy: scripts/mutation.
"""

from __future__ import annotations

import argparse
import json
import os
import random
import re
import resource
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from fnmatch import fnmatch
from pathlib import Path

from mutants import BYTES, LARGE, PROGRAMS, SECONDS, STACK, Mutant, Tree


@dataclass
class Meeting:
    """The tests that come by a mistake, by program, with their milliseconds."""

    always: dict[str, set[int]]
    tests: dict[str, list[tuple[str, int, set[int]]]]


def record(tree: Tree, most: int) -> Meeting:
    meeting = Meeting({}, {})
    library = max(file.stat().st_mtime for file in (tree.work / "lib").iterdir())
    for name in PROGRAMS:
        file = tree.work / f"met_{name}"
        if not file.exists() or file.stat().st_mtime < max(library, tree.program(name).stat().st_mtime):
            good, by = tree.run(name, [], 600, KVR_MUTANTS_MET=f"{file}.new")
            if not good:
                sys.exit(f"mutation: without a mistake kvr_tests_{name} fails: {by}")
            os.replace(f"{file}.new", file)
            Path(f"{file}.new.marks").unlink()
        rows = [line.split() for line in file.read_text().splitlines()]
        meeting.always[name] = {int(n) for n in rows[0][2:]}
        meeting.tests[name] = [(row[0], int(row[1]), {int(n) for n in row[2:]}) for row in rows[1:]
                               if int(row[1]) <= most and not any(fnmatch(row[0], large) for large in LARGE)]
    return meeting


def batches(tests: list[tuple[str, int]]) -> list[tuple[list[str], float]]:
    """Quick tests first, with the seconds that are allowed; each batch takes ten times as long as the one before."""
    made: list[tuple[list[str], int]] = []
    names: list[str] = []
    budget, spent = 300, 0
    for name, milliseconds in sorted(tests, key=lambda test: test[1]):
        if names and spent + milliseconds > budget:
            made.append((names, spent))
            budget, names, spent = budget * 10, [], 0
        names.append(name)
        spent += milliseconds
    made.append((names, spent))
    return [(names, SECONDS + spent / 100) for names, spent in made if names]


def own_program(path: str) -> str:
    top = path.split("/")[0]
    return {"framework": "xml_util", "mesh": "geometry"}.get(top, top if top in PROGRAMS else "producer")


def try_mutant(tree: Tree, meeting: Meeting, mutant: Mutant) -> None:
    programs = sorted(PROGRAMS, key=lambda name: name != own_program(mutant.path))
    met = False
    for name in programs:
        in_tables = mutant.number in meeting.always[name]
        tests = [(test, ms) for test, ms, numbers in meeting.tests[name] if in_tables or mutant.number in numbers]
        met = met or bool(tests)
        for batch, seconds in batches(tests):
            good, by = tree.run(name, batch, seconds, KVR_MUTANT=str(mutant.number))
            if not good:
                mutant.state, mutant.by = "killed", by
                return
    mutant.state = "survived" if met else "not reached"


def equivalents(root: Path) -> set[tuple[str, str]]:
    """Mistakes that change nothing, by path and change; the file groups them by their reason."""
    groups = json.loads((root / "tests/mutation/equivalent.json").read_text())
    return {(path, change) for group in groups for path, changes in group["mistakes"].items() for change in changes}


def report(tree: Tree, tried: list[Mutant], share: float) -> int:
    listed = equivalents(tree.root)
    untrue = listed - {(mutant.path, mutant.change) for mutant in tree.mutants.values()}
    for mutant in tried:
        if (mutant.path, mutant.change) in listed and mutant.state in ("survived", "not reached"):
            mutant.state = "equivalent"
        elif (mutant.path, mutant.change) in listed:
            untrue.add((mutant.path, mutant.change))
    states = ("killed", "survived", "not reached", "equivalent", "does not compile")
    print(f"{'':24}" + "".join(f"{state:>18}" for state in states))
    for operator in sorted({mutant.operator for mutant in tried}) + [""]:
        row = [m for m in tried if operator in ("", m.operator)]
        print(f"{operator or 'together':24}" + "".join(f"{sum(m.state == s for m in row):18}" for s in states))
    left = [mutant for mutant in tried if mutant.state in ("survived", "not reached")]
    for mutant in left:
        print(f"{mutant.state}: {mutant.path}:{mutant.line}: {mutant.operator} {mutant.number}: {mutant.change}")
    for path, change in sorted(untrue):
        print(f"listed as without effect, and noticed or gone: {path}: {change}")
    spent = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"{len(tried)} of {len(tree.mutants)} mistakes, a share of {share:g}, in "
          f"{spent.ru_utime + spent.ru_stime:.0f} s of the processor")
    (tree.work / "results.json").write_text(json.dumps([vars(mutant) for mutant in tried], indent=1))
    return 1 if left or untrue else 0


def try_all(tree: Tree, meeting: Meeting, to_try: list[Mutant], keeps: bool) -> None:
    """Tries the mistakes, and writes down each at once. If that is wanted, what was killed before is taken over, and what
    is listed as without effect is believed."""
    log = tree.work / "tried.jsonl"
    listed = equivalents(tree.root) if keeps else set()
    before: dict[tuple[str, str], str] = {}
    if keeps and log.exists():
        rows = [json.loads(line) for line in log.read_text().splitlines()]
        before = {(r["path"], r["change"]): r["by"] for r in rows if r["state"] == "killed"}
    start = time.monotonic()
    with log.open("a" if keeps else "w") as file:

        def try_one(mutant: Mutant) -> None:
            if (mutant.path, mutant.change) in listed:
                mutant.state = "survived"
                return
            by = before.get((mutant.path, mutant.change))
            if by:
                mutant.state, mutant.by = "killed", by
                return
            try_mutant(tree, meeting, mutant)
            file.write(json.dumps(vars(mutant)) + "\n")
            file.flush()

        with ThreadPoolExecutor(tree.jobs) as pool:
            for count, _ in enumerate(pool.map(try_one, to_try), 1):
                if count % 100 == 0:
                    print(f"{count} of {len(to_try)}, {time.monotonic() - start:.0f} s", flush=True)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", default="build/release", help="the build whose tests are used")
    parser.add_argument("--share", type=float, default=1.0, help="the share of all mistakes to try")
    parser.add_argument("--seed", type=int, default=1, help="which share")
    parser.add_argument("--only", default="", help="a pattern for paths, operators or numbers: \"path operator number\"")
    parser.add_argument("--most", type=int, default=sys.maxsize, help="leave out tests that take more milliseconds")
    parser.add_argument("--keep", action="store_true", help="take over what earlier runs of the same sources killed, and believe the list")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1)
    parser.add_argument("--list", action="store_true", help="list the mistakes, and try none")
    options = parser.parse_args()

    root = Path(__file__).resolve().parents[2]
    tree = Tree(root, (root / options.build).resolve(), root / "build/mutation", options.jobs)
    chosen = [m for m in tree.mutants.values() if re.search(options.only, f"{m.path} {m.operator} {m.number}")]
    if options.share < 1:
        chosen = random.Random(options.seed).sample(chosen, round(len(chosen) * options.share))
    if options.list:
        for mutant in chosen:
            print(f"{mutant.path}:{mutant.line}: {mutant.operator} {mutant.number}: {mutant.change}")
        return 0
    for limit, least in ((resource.RLIMIT_STACK, STACK), (resource.RLIMIT_AS, BYTES), (resource.RLIMIT_CORE, 0)):
        resource.setrlimit(limit, (least, resource.getrlimit(limit)[1]))
    tree.build_objects()
    tree.link()
    start = time.monotonic()
    meeting = record(tree, options.most)
    print(f"without a mistake: {time.monotonic() - start:.0f} s", flush=True)
    to_try = [mutant for mutant in chosen if not mutant.state]
    try_all(tree, meeting, to_try, options.keep)
    return report(tree, chosen, options.share)


if __name__ == "__main__":
    sys.exit(main())
