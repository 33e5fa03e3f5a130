"""Finds the files that a run is about."""

import glob
import hashlib
import os
import random
import re
import sys

from kvr_batch.commands import Command

# Where a scene's first child elements stand, unless its document begins with very long comments.
HEAD = 64 << 10
GZIPPED = ".gz"


class NoInputs(Exception):
    """One sentence: what was named leads to no file."""


def _is_scene(path: str) -> bool:
    """Whether an XML file is a scene by its root. Side files of scenes may be XML files, too."""
    try:
        with open(path, "rb") as file:
            head = file.read(HEAD)
    except OSError:
        return True  # It is for kvr to tell.
    text = head.decode("utf-16" if head[:2] in (b"\xff\xfe", b"\xfe\xff") else "latin-1", "replace")
    text = re.sub(r"<!--.*?-->|<\?.*?\?>", "", text, flags=re.DOTALL)
    return re.search(r"<(I(File|Universe|Assembly|Part)|MeshInfo|GeometryInfo|SatInfo|Scene)\b", text) is not None


def _takes(command: Command, name: str) -> bool:
    name = name.lower()
    return name.endswith(command.takes) or name.removesuffix(GZIPPED).endswith(
        tuple(ending for ending in command.takes if ending != ".xml"))


def _in_folder(command: Command, folder: str) -> list[str]:
    """All files below a folder that a command takes, links to folders not followed."""
    paths = [os.path.join(top, name) for top, _, names in os.walk(folder) for name in names if _takes(command, name)]
    return [path for path in paths if os.path.isfile(path) and (not path.lower().endswith(".xml") or _is_scene(path))]


def _in_list(path: str) -> list[str]:
    """The lines of a list, as paths from its folder, or from the current one when it is standard input."""
    try:
        with open(sys.stdin.fileno() if path == "-" else path, "rb", closefd=path != "-") as file:
            names = [os.fsdecode(line) for line in file.read().splitlines() if line.strip()]
    except OSError as error:
        raise NoInputs(f"{path}: {error.strerror}") from error
    folder = "" if path == "-" else os.path.dirname(path)
    return [os.path.join(folder, name) for name in names]


def find_inputs(command: Command, named: list[str], lists: list[str]) -> list[str]:
    """Absolute paths in order, each once. What is named is a folder, a file or a pattern; a list names files."""
    found: list[str] = []
    for name in named:
        if os.path.isdir(name):
            paths = _in_folder(command, name)
        elif os.path.exists(name):
            paths = [name]
        else:
            paths = [path for path in glob.glob(name, recursive=True) if os.path.isfile(path)]
        if not paths:
            raise NoInputs(f"{name}: there is no file that kvr {command.name} takes")
        found += paths
    for path in lists:
        names = _in_list(path)
        if not names:
            raise NoInputs(f"{path}: the list is empty")
        found += names
    return sorted({os.path.abspath(path) for path in found})


def sample(paths: list[str], count: int, seed: int) -> list[str]:
    """So many of the paths, the same ones for the same paths and seed."""
    return sorted(random.Random(seed).sample(paths, min(count, len(paths))))


def partition(paths: list[str], base: str, part: int, parts: int) -> list[str]:
    """Those of one of several parts, by a digest of their paths from a folder: whoever takes another part of the same
    files takes others, and all parts together take all."""
    def number(path: str) -> int:
        return int.from_bytes(hashlib.sha256(os.fsencode(os.path.relpath(path, base))).digest()[:8], "big")
    return [path for path in paths if number(path) % parts == part - 1]
