#!/usr/bin/env python3
"""Prints the coverage of each folder, and every "return false" and "throw" that nothing reached.

by_folder.py REPORT DOCUMENT LINES BRANCHES: gcovr's report as JSON, the document that lists what is not reached with its
reason, and the least shares in percent. Fails below them, for a statement that is not reached and not listed, and for
one that is listed and reached.
"""

from __future__ import annotations

import json
import re
import sys
from collections import defaultdict
from dataclasses import dataclass
from pathlib import Path
from typing import Any

# A row of the document: | `file` | `statement` | reason |
LISTED = re.compile(r"^\| `([^`]+)` \| `([^`]+)` \| .+ \|$", re.MULTILINE)
REFUSAL = re.compile(r"\breturn false;|\bthrow\b(?! *\()")


@dataclass
class Counts:
    lines: int = 0
    reached_lines: int = 0
    branches: int = 0
    reached_branches: int = 0

    def add(self, other: "Counts") -> None:
        self.lines += other.lines
        self.reached_lines += other.reached_lines
        self.branches += other.branches
        self.reached_branches += other.reached_branches


def share(reached: int, of: int) -> float:
    return 100 * reached / of if of else 100.0


def folder_of(path: str) -> str:
    parts = path.split("/")
    return "/".join(parts[:2]) if parts[0] == "framework" else parts[0]


def counts_of(file: dict[str, Any]) -> Counts:
    counts = Counts()
    for line in file["lines"]:
        if line.get("gcovr/noncode"):
            continue
        counts.add(Counts(1, line["count"] > 0, len(line["branches"]), sum(b["count"] > 0 for b in line["branches"])))
    return counts


def unreached_refusals(path: str, file: dict[str, Any], source: list[str]) -> list[tuple[int, str]]:
    counted = {line["line_number"]: line["count"] for line in file["lines"] if not line.get("gcovr/noncode")}
    return [(number, source[number - 1].strip()) for number, count in sorted(counted.items())
            if not count and REFUSAL.search(source[number - 1])]


def table(by_folder: dict[str, Counts]) -> str:
    rows = [f"{'folder':26}{'lines':>8}{'reached':>9}{'branches':>10}{'reached':>9}"]
    together = Counts()
    for counts in by_folder.values():
        together.add(counts)
    for folder, c in [*sorted(by_folder.items()), ("together", together)]:
        rows.append(f"{folder:26}{c.lines:8}{share(c.reached_lines, c.lines):8.1f}%{c.branches:10}"
                    f"{share(c.reached_branches, c.branches):8.1f}%")
    return "\n".join(rows)


def complaints(by_folder: dict[str, Counts], refusals: set[tuple[str, str]], listed: set[tuple[str, str]],
               least_lines: float, least_branches: float) -> list[str]:
    together = Counts()
    for counts in by_folder.values():
        together.add(counts)
    found = []
    if share(together.reached_lines, together.lines) < least_lines:
        found.append(f"fewer than {least_lines:g}% of the lines are reached")
    if share(together.reached_branches, together.branches) < least_branches:
        found.append(f"fewer than {least_branches:g}% of the branches are reached")
    found += [f"not reached, and not listed: {path}: {text}" for path, text in sorted(refusals - listed)]
    found += [f"listed, and reached: {path}: {text}" for path, text in sorted(listed - refusals)]
    return found


def main(report: str, document: str, least_lines: str, least_branches: str) -> int:
    by_folder: dict[str, Counts] = defaultdict(Counts)
    refusals: set[tuple[str, str]] = set()
    for file in json.loads(Path(report).read_text())["files"]:
        by_folder[folder_of(file["file"])].add(counts_of(file))
        source = Path(file["file"]).read_text().splitlines()
        for number, text in unreached_refusals(file["file"], file, source):
            print(f"not reached: {file['file']}:{number}: {text}")
            refusals.add((file["file"], text))
    print(table(by_folder))
    listed = set(LISTED.findall(Path(document).read_text()))
    found = complaints(by_folder, refusals, listed, float(least_lines), float(least_branches))
    for complaint in found:
        print(f"coverage: {complaint}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
