"""In what two scenes differ, whether they serve the same, and what they take."""

from __future__ import annotations

import json
import os
import tempfile
from dataclasses import dataclass
from typing import Any

from kvr import _core
from kvr._producer import Producer


@dataclass(frozen=True)
class Change:
    """One difference of two scenes, as "kvr diff" tells it; texts are empty where there is nothing to say.

    Of what moved within its component `distance` is how far its origin did, in metres, and `angle` by how much it
    turned, in radians; else they are None, and so is the angle of what was stretched or mirrored.
    """

    kind: str
    path: str
    first_id: str
    second_id: str
    class_name: str
    occurrences: int
    what: str
    first: str
    second: str
    distance: float | None
    angle: float | None


def _opened(source: str | os.PathLike[str] | Producer) -> Producer:
    return source if isinstance(source, Producer) else Producer(source)


def diff(first: str | os.PathLike[str] | Producer, second: str | os.PathLike[str] | Producer) -> list[Change]:
    """In what two scenes differ, matched as "kvr diff" does; empty for scenes that serve the same."""
    return [Change(**change) for change in _core.compare(_opened(first), _opened(second))]


def hash(source: str | os.PathLike[str] | Producer) -> str:
    """The digest that "kvr hash" prints: equal for scenes that serve the same, however their files are written."""
    return _core.digest(_opened(source))


def stats(path: str | os.PathLike[str], *, most: int = 20, **reading: Any) -> dict[str, Any]:
    """What the geometry of a scene takes, by component and by occurrence, and what of it is there more than once.

    It is what "kvr stats --json" prints; of occurrences the `most` largest are listed. The scene is read, as Producer
    reads it, with a clock.

    >>> taken = stats(path, most=3)
    >>> [part["Name"] for part in taken["Components"]], taken["All"]["Triangles"]
    (['plate', 'l-bracket', 'bolt', 'nut', 'rod'], 2052)
    >>> taken["LargestOccurrences"][2]["Path"]
    'as1-oc-214/as1/plate_1'
    """
    with tempfile.TemporaryFile() as file:
        _core.statistics(file.fileno(), os.fsencode(path), most, **reading)
        file.seek(0)
        found: dict[str, Any] = json.load(file)
        return found
