"""In what two scenes differ, and whether they serve the same."""

from __future__ import annotations

import os
from dataclasses import dataclass

from kvr import _core
from kvr._producer import Producer


@dataclass(frozen=True)
class Change:
    """One difference of two scenes, as "kvr diff" tells it; texts are empty where there is nothing to say."""

    kind: str
    path: str
    first_id: str
    second_id: str
    class_name: str
    occurrences: int
    what: str
    first: str
    second: str


def _opened(source: str | os.PathLike[str] | Producer) -> Producer:
    return source if isinstance(source, Producer) else Producer(source)


def diff(first: str | os.PathLike[str] | Producer, second: str | os.PathLike[str] | Producer) -> list[Change]:
    """In what two scenes differ, matched as "kvr diff" does; empty for scenes that serve the same."""
    return [Change(**change) for change in _core.compare(_opened(first), _opened(second))]


def hash(source: str | os.PathLike[str] | Producer) -> str:
    """The digest that "kvr hash" prints: equal for scenes that serve the same, however their files are written."""
    return _core.digest(_opened(source))
