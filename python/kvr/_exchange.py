"""Conversion, pictures, checks and certificates."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterable
from dataclasses import dataclass
from typing import Any, TypeVar

from kvr import _core

StrPath = str | os.PathLike[str]
# The stage, how much of it is done if that is known, and how much of all: False ends the work.
Progress = Callable[[str, float | None, float], bool | None]
Function = TypeVar("Function", bound=Callable[..., Any])


@dataclass(frozen=True)
class Conversion:
    """What there is to know of a conversion that went well."""

    # Sentences: what the target has no place for, and what else is to be known.
    remarks: tuple[str, ...]
    # What the model holds and the scene does not, by kind.
    losses: dict[str, int]
    # Assemblies, parts, instances, bodies and triangles of a scene that was made.
    counts: dict[str, int]


@dataclass(frozen=True)
class Finding:
    """Something that a check found. Lines and columns count from 1, and are 0 where there is none."""

    rule: str
    name: str
    sentence: str
    # "note", "warning" or "error".
    severity: str
    file: str
    line: int
    column: int
    object_id: str
    path: str
    found: str
    read_as: str
    meant: str
    reasons: tuple[str, ...]
    # Changes of the file: the first byte, the one behind the last, and what comes in their place.
    fix: tuple[tuple[int, int, str], ...]

    def __str__(self) -> str:
        return f"{self.severity} {self.rule} {self.name}: {self.file}:{self.line}:{self.column}: {self.found}"


@dataclass(frozen=True)
class CertificateRow:
    """Something that is asked of a model and of what was made of it: a value for each stage."""

    name: str
    values: tuple[str, ...]
    difference: float
    is_good: bool
    differences: tuple[str, ...]


@dataclass(frozen=True)
class Certificate:
    """What came of a comparison."""

    is_equal: bool
    stages: tuple[str, ...]
    rows: tuple[CertificateRow, ...]
    absences: tuple[str, ...]
    remarks: tuple[str, ...]

    def __bool__(self) -> bool:
        return self.is_equal


def _documented(by: Callable[..., Any]) -> Callable[[Function], Function]:
    """Gives a function the document of the operation that it stands for, behind its own."""

    def give(function: Function) -> Function:
        of_operation = (by.__doc__ or "").partition("\n\n")[2].strip()
        function.__doc__ = f"{function.__doc__ or ''}\n\n{of_operation}"
        return function

    return give


@_documented(_core.convert)
def convert(model: StrPath, target: StrPath, *, progress: Progress | None = None, **options: Any) -> Conversion:
    """Makes a scene of a model, when the target ends in ".xml", and otherwise a file for another program.

    Raises Error with a sentence when it fails, and Cancelled when `progress` answers False. Options, all by name:
    only, hide (lists of names), view, scene (where the scene stays), deflection, deflection_is_length, angle,
    relative, meshes, bodies, as_text, annotations, unit, up, crease_angle, lenient, report, hidden_nodes, compress,
    mesh_faces, source_name, target_unit, force, timeout, prefix, insecure, allow_dtd, strict, max_memory.
    """
    goal = os.fspath(target)
    operation = _core.import_model if goal.lower().endswith(".xml") else _core.convert
    return Conversion(**operation(os.fspath(model), goal, _plain(options), progress))


@_documented(_core.picture)
def picture(source: StrPath, target: StrPath, *, width: int = 1280, height: int = 960, view: str = "",
            progress: Progress | None = None, **options: Any) -> Conversion:
    """Draws a scene or model as a PNG file; `view` is the id or label of a saved one. Options are as of convert."""
    given = _plain(options) | {"width": width, "height": height, "view": view}
    return Conversion(**_core.picture(os.fspath(source), os.fspath(target), given, progress))


@_documented(_core.check)
def check(scene: StrPath, *, rules: Iterable[str] = (), without: Iterable[str] = (), allow_dtd: bool = False,
          insecure: bool = False) -> list[Finding]:
    """What of a scene is lost, odd or probably not meant; empty for a scene that is as it should be."""
    found = _core.check(os.fspath(scene), list(rules), list(without), allow_dtd, insecure)
    return [Finding(**finding) for finding in found]


@_documented(_core.certify)
def certify(model: StrPath, other: StrPath | None = None, *, timeout: int | None = None,
            progress: Progress | None = None) -> Certificate:
    """Whether a model, its scene and what is exported of it hold the same; with `other`, whether those two files do."""
    against = None if other is None else os.fspath(other)
    told = _core.certify(os.fspath(model), against, timeout, progress)
    rows = tuple(CertificateRow(**row) for row in told.pop("rows"))
    return Certificate(rows=rows, **told)


def _plain(options: dict[str, Any]) -> dict[str, Any]:
    """Paths as texts."""
    return {name: os.fspath(value) if isinstance(value, os.PathLike) else value for name, value in options.items()}
