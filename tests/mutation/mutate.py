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
import shlex
import shutil
import subprocess
import sys
import time
import zlib
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from fnmatch import fnmatch
from pathlib import Path

from operators import Kinds, Place, places_of, with_mistakes

FOLDERS = ("producer", "readers", "structure", "geometry", "geometry/curvedata", "mesh", "appearance", "organisation",
           "annotation", "framework/xml_util")
# Not readers' tables: what observers are told, files for writers, the platform.
LEFT_OUT = re.compile(r"framework/xml_util/(ReadObserver|SideFileNotes|FormatNames|Export|DomWalk\.h|XMLPlatform)")
PROGRAMS = ("producer", "geometry", "appearance", "organisation", "annotation", "xml_util")
# A test program that hangs, or that wants all memory, has noticed: so many seconds, and ten times what its tests take
# without a mistake; so many bytes.
SECONDS = 20
BYTES = 8 << 30
# Deep recursions take more of the stack than in a release.
STACK = 128 << 20
# Tests of time, memory and damage take long, and look at no table's rows.
LARGE = ("*Hostile*", "SteadyMemory*", "*Million*", "*NurbsOracle*", "PolygonSlab.*Polygon*", "*HundredThousand*",
         "*AThousandLevels*", "*AnyByteChanged*", "KernelOwnership.Producing*", "*ValueByValue*", "*StreamedAndNotHeld*",
         "Threads.*")
# What is compiled besides the copy.
ALONE = ("tests/mutation/Runtime.cpp", "tests/support/RunOnStack.cpp")
# What most sources include, compiled once for each library.
HEADERS = ("tests/mutation/mistakes.h", "framework/api/kvr_api.h", "framework/xml_util/XMLStrUtil.h",
           "framework/xml_util/XMLUtils.h", "framework/xml_util/ReadObserver.h")


@dataclass
class Mutant:
    number: int
    path: str
    line: int
    operator: str
    change: str
    state: str = ""
    by: str = ""


@dataclass
class Source:
    path: str
    text: str
    places: list[Place]
    first: int
    # Places whose mistakes do not compile.
    left_out: set[int] = field(default_factory=set)

    def numbers(self) -> list[tuple[int, Place, str]]:
        number = self.first
        numbered = []
        for place in self.places:
            for mistake in place.mistakes:
                numbered.append((number, place, mistake))
                number += 1
        return numbered


class Tree:
    """The copy of the sources with all mistakes in them, and what is built of it."""

    def __init__(self, root: Path, build: Path, work: Path, jobs: int) -> None:
        self.root, self.build, self.work, self.jobs = root, build, work, jobs
        kinds = Kinds.of((root / "framework/xml_util/FormatNames.h").read_text())
        known = work / "left_out.json"
        self.known: dict[str, list[int]] = json.loads(known.read_text()) if known.exists() else {}
        self.sources: dict[str, Source] = {}
        self.mutants: dict[int, Mutant] = {}
        number = 0
        for folder in FOLDERS:
            for file in sorted([*(root / folder).glob("*.cpp"), *(root / folder).glob("*.h")]):
                path = str(file.relative_to(root))
                if LEFT_OUT.match(path):
                    continue
                text = file.read_text()
                source = Source(path, text, places_of(text, kinds), number, self.known_left_out(path, text))
                self.sources[path] = source
                for number, place, mistake in source.numbers():
                    self.mutants[number] = Mutant(number, path, text.count("\n", 0, place.start) + 1, place.operator,
                                                  change_of(text, place, mistake))
                    number += 1
        commands = json.loads((build / "compile_commands.json").read_text())
        self.commands = {str(Path(c["file"]).relative_to(root)): c for c in commands
                         if Path(c["file"]).is_relative_to(root)}

    def known_left_out(self, path: str, text: str) -> set[int]:
        """What did not compile when the source was as it is now."""
        return set(self.known.get(f"{path} {zlib.crc32(text.encode())}", []))

    def keep_left_out(self) -> None:
        kept = {f"{s.path} {zlib.crc32(s.text.encode())}": sorted(s.left_out) for s in self.sources.values()}
        (self.work / "left_out.json").write_text(json.dumps(kept))

    def write(self, source: Source) -> None:
        text = with_mistakes(source.text, source.places, source.first, source.left_out)
        if source.path == "producer/DocumentScan.cpp":
            text = text.replace("    Scan const scan{sceneFilePath, producer};",
                                "    Scan const scan{sceneFilePath, producer}; mutantProducer = &producer;")
        file = self.work / "src" / source.path
        file.parent.mkdir(parents=True, exist_ok=True)
        if not file.exists() or file.read_text() != text:
            file.write_text(text)

    def object_of(self, path: str) -> Path:
        return self.work / "obj" / (path.replace("/", "__") + ".o")

    def words_for(self, path: str) -> list[str]:
        """The compiler's command for a source, without what it reads and writes."""
        command = self.commands[path if path in self.commands else "producer/DocumentScan.cpp"]
        words = shlex.split(command["command"])
        words = words[next(i for i, word in enumerate(words) if word.endswith("c++")):]
        output = words.index("-o")
        del words[output : output + 2]
        words = [w for w in words if not w.endswith(".cpp") and w not in ("-c", "-O3", "-Werror")]
        words[1:1] = ["-I", str(self.work / "src"), "-I", str(self.root)]
        return [*words, "-O0", "-w", "-fmax-errors=0", "-DKVR_LARGE_FRAMES"]

    def header_for(self, path: str) -> Path:
        """The header that all sources of a library begin with."""
        return self.work / "headers" / ("xml_util" if path.startswith("framework/") else "producer") / "mistakes.h"

    def compile_header(self, path: str) -> str:
        header = self.header_for(path)
        header.parent.mkdir(parents=True, exist_ok=True)
        header.write_text("".join(f'#include "{name}"\n' for name in HEADERS))
        words = [*self.words_for(path), "-x", "c++-header", str(header), "-o", f"{header}.gch"]
        done = subprocess.run(words, cwd=self.build, capture_output=True, text=True)
        return done.stderr if done.returncode else ""

    def compile(self, path: str) -> str:
        """Compiles a source of the copy; what the compiler says, or nothing."""
        copy = self.work / "src" / path
        made = self.object_of(path)
        made.parent.mkdir(parents=True, exist_ok=True)
        words = [*self.words_for(path), "-include", str(self.header_for(path)), "-o", str(made), "-c",
                 str(copy if copy.exists() else self.root / path)]
        done = subprocess.run(words, cwd=self.build, capture_output=True, text=True)
        return done.stderr if done.returncode else ""

    def leave_out(self, errors: str) -> bool:
        """Leaves out the places at which the compiler found errors; whether there were any."""
        found = False
        for path, line in set(re.findall(rf"{re.escape(str(self.work / 'src'))}/([^:\n]+):(\d+):", errors)):
            source = self.sources[path]
            for index, place in enumerate(source.places):
                begin = source.text.count("\n", 0, place.start) + 1
                end = source.text.count("\n", 0, place.end) + 1
                if begin <= int(line) <= end and index not in source.left_out:
                    source.left_out.add(index)
                    found = True
            self.write(source)
        return found

    def build_objects(self) -> None:
        for source in self.sources.values():
            self.write(source)
        pending = [path for path in self.sources if path.endswith(".cpp")] + [*ALONE]
        pending = [path for path in pending if self.is_stale(path)]
        for path in ("framework/xml_util/DomWalk.cpp", "producer/DocumentScan.cpp"):
            while errors := self.compile_header(path):
                if not self.leave_out(errors):
                    sys.exit(f"mutation: {errors[:4000]}")
        while pending:
            print(f"compiling {len(pending)} sources", flush=True)
            with ThreadPoolExecutor(self.jobs) as pool:
                answers = dict(zip(pending, pool.map(self.compile, pending)))
            failed = {path: errors for path, errors in answers.items() if errors}
            if failed and not self.leave_out("\n".join(failed.values())):
                sys.exit("mutation: " + "\n".join(failed.values())[:4000])
            pending = list(failed)
        self.keep_left_out()
        for source in self.sources.values():
            for number, place, _ in source.numbers():
                if source.places.index(place) in source.left_out:
                    self.mutants[number].state = "does not compile"

    def is_stale(self, path: str) -> bool:
        made = self.object_of(path)
        copy = self.work / "src" / path
        return not made.exists() or (copy.exists() and copy.stat().st_mtime > made.stat().st_mtime)

    def last_command(self, target: str) -> list[str]:
        lines = subprocess.run(["ninja", "-C", str(self.build), "-t", "commands", target], check=True,
                               capture_output=True, text=True).stdout.splitlines()
        command = [line for line in lines if " -o " in line and target in line][-1]
        return shlex.split(command.split("&&")[1])

    def objects(self, is_shared: bool) -> list[str]:
        return [str(self.object_of(path)) for path in self.sources
                if path.endswith(".cpp") and path.startswith("framework/xml_util/") == is_shared]

    def link(self) -> None:
        library = next((self.build / "lib").glob("libkvr_xml_util.so.*.*.*")).name
        words = self.last_command(f"lib/{library}")
        kept = [w for w in words if not w.endswith(".o") or not self.is_mutated(w)]
        at = kept.index("-o")
        made = self.work / "lib" / library.rsplit(".", 2)[0]
        kept[at + 1] = str(made)
        made.parent.mkdir(parents=True, exist_ok=True)
        # So that who builds meanwhile changes nothing here.
        for file in (self.build / "lib").glob("*.so.?"):
            if file.name != made.name:
                shutil.copy2(file, made.parent / file.name)
        self.make(made, kept[:at] + self.objects(is_shared=True) + kept[at:])
        with ThreadPoolExecutor(self.jobs) as pool:
            list(pool.map(self.link_program, PROGRAMS))

    def is_mutated(self, name: str) -> bool:
        return any(path.endswith(".cpp") and name.endswith("/" + Path(path).name + ".o")
                   for path in self.sources if path.startswith("framework/xml_util/"))

    def link_program(self, name: str) -> None:
        words = self.last_command(f"bin/kvr_tests_{name}")
        at = words.index("-o")
        words[at + 1] = str(self.program(name))
        self.program(name).parent.mkdir(parents=True, exist_ok=True)
        # In front, so that of what several objects have the linker takes the copy with mistakes.
        first = next(i for i, word in enumerate(words) if word.endswith(".o"))
        alone = [str(self.object_of(path)) for path in ALONE]
        words[first:first] = [*self.objects(is_shared=False), *alone, "-rdynamic"]
        self.make(self.program(name), words)

    def make(self, made: Path, words: list[str]) -> None:
        """Links, if something is newer."""
        read = [self.build / word for word in words if word.endswith((".o", ".a", ".so"))]
        if not made.exists() or any(file.stat().st_mtime > made.stat().st_mtime for file in read if file.exists()):
            subprocess.run(words, cwd=self.build, check=True)

    def program(self, name: str) -> Path:
        return self.work / "bin" / f"kvr_tests_{name}"

    def run(self, name: str, tests: list[str], seconds: float, **extra: str) -> tuple[bool, str]:
        """Whether the tests pass, and the first that does not."""
        # The tests write many small files.
        memory = {"TMPDIR": "/dev/shm"} if os.access("/dev/shm", os.W_OK) else {}
        environment = dict(os.environ, RC_PARAMS="seed=20240301", LD_LIBRARY_PATH=str(self.work / "lib"), **memory, **extra)
        words = [str(self.program(name)), "--gtest_fail_fast", "--gtest_brief=1"]
        words.append("--gtest_filter=" + (":".join(tests) if tests else "-" + ":".join(LARGE)))
        try:
            done = subprocess.run(words, env=environment, capture_output=True, text=True, errors="replace",
                                  cwd=self.build, timeout=seconds)
        except subprocess.TimeoutExpired:
            return False, "a limit of time"
        failed = re.search(r"\[  FAILED  \] ([\w./]+)", done.stdout)
        return done.returncode == 0, failed.group(1) if failed else f"exit status {done.returncode}"


def change_of(text: str, place: Place, mistake: str) -> str:
    """The line, and the mistake in it."""
    begin = text.rfind("\n", 0, place.start) + 1
    end = text.find("\n", place.end)
    own = " ".join(text[place.start : place.end].split())
    return f"{' '.join(text[begin:end].split())}  [{own} -> {' '.join(mistake.split())}]"


@dataclass
class Meeting:
    """The tests that come by a mistake, by program, with their milliseconds."""

    always: dict[str, set[int]]
    tests: dict[str, list[tuple[str, int, set[int]]]]


def record(tree: Tree) -> Meeting:
    meeting = Meeting({}, {})
    library = max(file.stat().st_mtime for file in (tree.work / "lib").iterdir())
    for name in PROGRAMS:
        file = tree.work / f"met_{name}"
        if not file.exists() or file.stat().st_mtime < max(library, tree.program(name).stat().st_mtime):
            good, by = tree.run(name, [], 600, KVR_MUTANTS_MET=f"{file}.new")
            if not good:
                sys.exit(f"mutation: without a mistake kvr_tests_{name} fails: {by}")
            os.replace(f"{file}.new", file)
        rows = [line.split() for line in file.read_text().splitlines()]
        meeting.always[name] = {int(n) for n in rows[0][2:]}
        meeting.tests[name] = [(row[0], int(row[1]), {int(n) for n in row[2:]}) for row in rows[1:]
                               if not any(fnmatch(row[0], large) for large in LARGE)]
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


def equivalents(root: Path) -> dict[tuple[str, str], str]:
    """Mistakes that change nothing, by path and change, with the reason."""
    file = root / "tests/mutation/equivalent.json"
    return {(row["path"], row["change"]): row["reason"] for row in json.loads(file.read_text())}


def report(tree: Tree, tried: list[Mutant], share: float) -> int:
    reasons = equivalents(tree.root)
    for mutant in tried:
        if mutant.state in ("survived", "not reached") and (mutant.path, mutant.change) in reasons:
            mutant.state = "equivalent"
    states = ("killed", "survived", "not reached", "equivalent", "does not compile")
    print(f"{'':24}" + "".join(f"{state:>18}" for state in states))
    for operator in sorted({mutant.operator for mutant in tried}) + [""]:
        row = [m for m in tried if operator in ("", m.operator)]
        print(f"{operator or 'together':24}" + "".join(f"{sum(m.state == s for m in row):18}" for s in states))
    left = [mutant for mutant in tried if mutant.state in ("survived", "not reached")]
    for mutant in left:
        print(f"{mutant.state}: {mutant.path}:{mutant.line}: {mutant.operator} {mutant.number}: {mutant.change}")
    print(f"{len(tried)} of {len(tree.mutants)} mistakes, a share of {share:g}")
    (tree.work / "results.json").write_text(json.dumps([vars(mutant) for mutant in tried], indent=1))
    return 1 if left else 0


def try_all(tree: Tree, meeting: Meeting, to_try: list[Mutant], keeps: bool) -> None:
    """Tries the mistakes, and writes down each at once; takes over what was killed before if that is wanted."""
    log = tree.work / "tried.jsonl"
    before: dict[tuple[str, int, str], str] = {}
    if keeps and log.exists():
        rows = [json.loads(line) for line in log.read_text().splitlines()]
        before = {(r["path"], r["line"], r["change"]): r["by"] for r in rows if r["state"] == "killed"}
    start = time.monotonic()
    with log.open("a" if keeps else "w") as file:

        def try_one(mutant: Mutant) -> None:
            by = before.get((mutant.path, mutant.line, mutant.change))
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
    parser.add_argument("--keep", action="store_true", help="take over what earlier runs of the same sources killed")
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
    meeting = record(tree)
    print(f"without a mistake: {time.monotonic() - start:.0f} s", flush=True)
    to_try = [mutant for mutant in chosen if not mutant.state]
    try_all(tree, meeting, to_try, options.keep)
    return report(tree, chosen, options.share)


if __name__ == "__main__":
    sys.exit(main())
