"""What runs on the workers of the engine: looking at an input, and running kvr on it."""

import hashlib
import json
import os
import re
import subprocess
from dataclasses import dataclass, field
from typing import Any

from kvr_batch.child import Ended, Limits, run_child
from kvr_batch.commands import COMMANDS, PASSED, judge

BLOCK = 1 << 20
# How much of a log is kept.
LOG_CHARACTERS = 64 << 10


@dataclass(frozen=True)
class Job:
    """What is done with every input. The options are those that the user gives to kvr."""

    program: str
    command: str
    options: tuple[str, ...]
    limits: Limits
    target: str = ""
    extension: str = ""

    def text(self) -> str:
        """The command line without inputs, outputs and limits."""
        words = [self.command, *COMMANDS[self.command].options, *self.options]
        return " ".join(words + ([self.target + "/*" + self.extension] if self.target else []))


@dataclass(frozen=True)
class Looked:
    """A digest of an input with its side files, the memory that reading it takes by estimate, or 0, and the digests of
    the outputs that are there. An error is a sentence: the input cannot be read."""

    digest: str = ""
    memory: int = 0
    outputs: dict[str, str] = field(default_factory=dict)
    error: str = ""


@dataclass(frozen=True)
class Result:
    outcome: str
    message: str
    seconds: float = 0.0
    memory: int = 0
    findings: dict[str, Any] = field(default_factory=dict)
    outputs: dict[str, str] = field(default_factory=dict)
    log: str = ""


def digest_of(path: str) -> str:
    digest = hashlib.sha256()
    with open(path, "rb") as file:
        while block := file.read(BLOCK):
            digest.update(block)
    return digest.hexdigest()


def has_command(program: str, command: str) -> bool:
    done = subprocess.run([program, command, "--help"], capture_output=True, check=False, timeout=60)
    return done.returncode == 0 and f"Usage: kvr {command} ".encode() in done.stdout


def program_version(program: str) -> str:
    """What a program says of itself, and a digest of it and of those of its libraries that are built with it."""
    said = subprocess.run([program, "--version"], capture_output=True, check=True, timeout=60).stdout.decode().strip()
    linked = subprocess.run(["ldd", program], capture_output=True, check=False, timeout=60).stdout.decode()
    files = sorted({program, *re.findall(r"=> (\S*/libkvr_\S+)", linked)})
    whole = hashlib.sha256("".join(digest_of(file) for file in files).encode())
    return f"{said} ({whole.hexdigest()[:16]})"


def _names_in_gltf(path: str) -> list[str]:
    with open(path, "rb") as file:
        document = json.loads(file.read(256 << 20))
    uris = [item.get("uri", "") for kind in ("buffers", "images") for item in document.get(kind, [])]
    return [uri for uri in uris if uri and not uri.startswith("data:")]


def _names_in_lines(path: str, words: tuple[bytes, ...]) -> list[str]:
    names = []
    with open(path, "rb") as file:
        for line in file:
            parts = line.split()
            if len(parts) > 1 and parts[0].lower().startswith(words):
                names.append(os.fsdecode(parts[-1]))
    return names


def _side_files_of_model(path: str) -> list[str]:
    folder = os.path.dirname(path)
    ending = os.path.splitext(path)[1].lower()
    try:
        if ending == ".gltf":
            return [os.path.join(folder, name) for name in _names_in_gltf(path)]
        if ending == ".obj":
            libraries = [os.path.join(folder, name) for name in _names_in_lines(path, (b"mtllib",))]
            images = [os.path.join(folder, name) for library in libraries if os.path.isfile(library)
                      for name in _names_in_lines(library, (b"map_", b"bump", b"norm"))]
            return libraries + images
    except (ValueError, AttributeError, TypeError):
        pass  # What cannot be read is for kvr to tell.
    return []


def _side_files_of_scene(job: Job, path: str) -> tuple[list[str], int]:
    """Its side files, and the memory that reading it takes, by kvr's estimate."""
    ended = run_child([job.program, "info", "--json", path], job.limits)
    if ended.status != 0:
        return [], 0
    answer = json.loads(ended.out)
    folder = os.path.dirname(path)
    return [os.path.join(folder, side["Name"]) for side in answer["SideFiles"]], int(answer["Estimate"]["MemoryBytes"])


def digest_with(path: str, sides: list[str]) -> str:
    """That of the file, when it stands alone; else one of the digests of all. A file that is not there counts, too."""
    first = digest_of(path)
    if not sides:
        return first
    whole = hashlib.sha256(first.encode())
    for side in sorted(set(sides)):
        whole.update(os.fsencode(os.path.basename(side)) + b"\0")
        whole.update(digest_of(side).encode() if os.path.isfile(side) else b"-")
    return whole.hexdigest()


def digests_in(folder: str) -> dict[str, str]:
    """Of all files in a folder, by their paths from there."""
    paths = [os.path.join(top, name) for top, _, names in os.walk(folder) for name in names]
    return {os.path.relpath(path, folder): digest_of(path) for path in sorted(paths)}


def look(job: Job, path: str, target: str) -> Looked:
    try:
        is_scene = path.lower().endswith(".xml")
        sides, memory = _side_files_of_scene(job, path) if is_scene else (_side_files_of_model(path), 0)
        return Looked(digest_with(path, sides), memory, digests_in(target) if target else {})
    except OSError as error:
        if not os.path.isfile(path):
            return Looked(error=error.strerror or str(error))
        raise


def _log(words: list[str], ended: Ended, findings: dict[str, Any]) -> str:
    lines = ["$ " + " ".join(words), ended.error.rstrip()]
    lines += [f"{row['Name']}: {'; '.join(map(str, row['Differences']))}" for row in findings.get("Rows", [])]
    lines += [f"{rule}: {count}" for rule, count in findings.get("Rules", {}).items()]
    text = "\n".join(line for line in lines if line)
    text = text.encode("utf-8", "backslashreplace").decode()
    half = LOG_CHARACTERS // 2
    return text if len(text) <= LOG_CHARACTERS else text[:half] + "\n...\n" + text[-half:]


def run(job: Job, path: str, target: str) -> Result:
    """Runs kvr on an input. What goes wrong with the input is a result; what goes wrong with the machine is raised, and
    the engine tries again."""
    command = COMMANDS[job.command]
    words = [job.program, job.command, *command.options, *job.options, path]
    if target:
        os.makedirs(target, exist_ok=True)
        words.append(os.path.join(target, os.path.splitext(os.path.basename(path))[0] + job.extension))
    ended = run_child(words, job.limits)
    verdict = judge(command, path, ended, job.limits.seconds)
    outputs = digests_in(target) if target and verdict.outcome == PASSED else {}
    if target and not os.listdir(target):
        os.rmdir(target)
    return Result(verdict.outcome, verdict.message, ended.seconds, ended.memory, verdict.findings, outputs,
                  _log(words, ended, verdict.findings))
