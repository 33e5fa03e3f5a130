"""The copy of the sources with all mistakes in them, and what is built of it."""

from __future__ import annotations

import json
import os
import re
import shlex
import shutil
import subprocess
import sys
import zlib
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

from operators import Kinds, Place, places_of, with_mistakes

FOLDERS = ("producer", "readers", "structure", "geometry", "geometry/curvedata", "mesh", "appearance", "organisation",
           "annotation", "framework/xml_util")
# Not readers' tables: what observers are told, files for writers, the platform.
LEFT_OUT = re.compile(r"framework/xml_util/(ReadObserver|SideFileNotes|FormatNames|Export|DomWalk\.h|XMLPlatform)")
PROGRAMS = ("producer", "geometry", "appearance", "organisation", "annotation", "xml_util")
# A test program that hangs, or that wants all memory, has noticed: so many seconds of the processor, and ten times what
# its tests take without a mistake; so many bytes.
SECONDS = 20
BYTES = 8 << 30
# Deep recursions take more of the stack than in a release.
STACK = 128 << 20
# Tests of time, memory and damage take long, and look at no table's rows.
LARGE = ("*Hostile*", "SteadyMemory*", "*Million*", "*NurbsOracle*", "PolygonSlab.*Polygon*", "*HundredThousand*",
         "*AnyByteChanged*", "KernelOwnership.Producing*", "*ValueByValue*", "Threads.*",
         "*StreamedAndNotHeld*")
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

    def form(self) -> str:
        """Tells what would be built of it from what was built before."""
        return f"{self.path} {zlib.crc32(with_mistakes(self.text, self.places, 0).encode())}"

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
                source = Source(path, text, places_of(text, kinds), number)
                source.left_out = set(self.known.get(source.form(), []))
                self.sources[path] = source
                changes: Counter[str] = Counter()
                for number, place, mistake in source.numbers():
                    change = change_of(text, place, mistake)
                    changes[change] += 1
                    # What a source has more than once is told apart by its order.
                    change += f" #{changes[change]}" if changes[change] > 1 else ""
                    self.mutants[number] = Mutant(number, path, text.count("\n", 0, place.start) + 1, place.operator,
                                                  change)
                    number += 1
        commands = json.loads((build / "compile_commands.json").read_text())
        self.commands = {str(Path(c["file"]).relative_to(root)): c for c in commands
                         if Path(c["file"]).is_relative_to(root)}

    def keep_left_out(self) -> None:
        kept = {source.form(): sorted(source.left_out) for source in self.sources.values()}
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
        """Whether the source or any header of the copy is newer than what was made of the source."""
        made = self.object_of(path)
        copy = self.work / "src" / path
        read = [copy if copy.exists() else self.root / path, self.root / "tests/mutation/mistakes.h",
                *(self.work / "src" / header for header in self.sources if header.endswith(".h"))]
        return not made.exists() or any(file.stat().st_mtime > made.stat().st_mtime for file in read)

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
        environment = dict(os.environ, RC_PARAMS="seed=20240301", LD_LIBRARY_PATH=str(self.work / "lib"), **memory,
                           **extra)
        words = ["prlimit", f"--cpu={round(seconds)}", str(self.program(name)), "--gtest_fail_fast", "--gtest_brief=1"]
        words.append("--gtest_filter=" + (":".join(tests) if tests else "-" + ":".join(LARGE)))
        try:
            done = subprocess.run(words, env=environment, capture_output=True, text=True, errors="replace",
                                  cwd=self.build, timeout=100 * seconds)
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
