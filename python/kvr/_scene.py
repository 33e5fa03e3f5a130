"""The resolved scene: what stands where, and how it looks there."""

from __future__ import annotations

import base64
import html
import os
import pathlib
import shutil
import tempfile
from collections.abc import Iterable, Iterator
from typing import Any

from numpy import int64
from numpy.typing import NDArray

from kvr import _core
from kvr._exchange import picture
from kvr._producer import Producer

# What a notebook shows of a scene.
_SHOWN_LEVELS = 3
_SHOWN_ROWS = 40
_PICTURE_SIZE = (480, 360)


class Table:
    """All occurrences as columns: arrays of NumPy, a row for each, depth first, those above before those below.

    parent     row of the occurrence above; -1 for the root
    name       place of its name in names
    component  place among the scene's components
    placement  place among the placements of the component above; -1 for the root
    depth      0 for the root
    visible    whether it and all above it are shown
    transform  4 by 4, to the root's coordinates in the scene's unit
    """

    def __init__(self, columns: dict[str, Any], components: tuple[_core.Component, ...]) -> None:
        self.names: list[str] = columns.pop("names")
        self.columns: dict[str, NDArray[Any]] = columns
        self._components = components

    def __len__(self) -> int:
        return len(self.columns["parent"])

    def __getitem__(self, column: str) -> NDArray[Any]:
        return self.columns[column]

    def __repr__(self) -> str:
        return f"<kvr.Table of {len(self)} occurrences: {', '.join(self.columns)}>"

    def name_of(self, row: int) -> str:
        """What a person calls the occurrence of a row."""
        return self.names[int(self.columns["name"][row])]

    def component_of(self, row: int) -> _core.Component:
        """The component that occurs in a row."""
        return self._components[int(self.columns["component"][row])]

    def path(self, row: int) -> tuple[str, ...]:
        """The ids of the placements from the root to a row."""
        ids: list[str] = []
        while (above := self.columns["parent"][row]) >= 0:
            placement = self.component_of(above).placements[self.columns["placement"][row]]
            ids.append(placement.id or self.component_of(row).id)
            row = above
        return tuple(reversed(ids))


class Scene(_core.Scene):
    """A scene as it is meant: components, each once, and the occurrences of them.

    `source` is the path of a scene, which is read as Producer reads it, or a Producer. `only`, `hide` and `view` are
    ids, labels, patterns or expressions as those of "kvr export"; `deflection` and `angle` say how finely bodies are meshed.
    Everything that is taken out of a scene keeps it alive, its arrays too.

    >>> with Scene(path) as scene:
    ...     bolts = [occurrence for occurrence in scene if occurrence.component.label == "bolt"]
    ...     print(len(bolts), bolts[0].path, bolts[0].transform[:3, 3])
    6 ('asm1', 'inst2', 'inst8', 'inst12') [25. 75. 33.]
    """

    def __init__(self, source: str | os.PathLike[str] | Producer, *, only: Iterable[str] = (), hide: Iterable[str] = (),
                 view: str = "", deflection: float = 1e-3, angle: float = 0.5, **reading: Any) -> None:
        is_own = not isinstance(source, Producer)
        producer = source if isinstance(source, Producer) else Producer(source, **reading)
        super().__init__(producer, list(only), list(hide), view, deflection, angle, is_own)

    def __enter__(self) -> Scene:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __iter__(self) -> _core.Occurrences:
        return self.occurrences()

    def __repr__(self) -> str:
        if self.closed:
            return "<kvr.Scene, closed>"
        return f"<kvr.Scene {self.producer.path!r}: {len(self.components)} components>"

    def occurrences(self, *, visible_only: bool = False, levels: int | None = None) -> _core.Occurrences:
        """Goes through all occurrences: depth first, each before what is below it, in the scene's order.

        What is deeper than `levels` is left out; the root is at 0.
        """
        return _core.Occurrences(self._model, visible_only, levels)

    def table(self, *, visible_only: bool = False, transforms: bool = True, most: int = 20_000_000) -> Table:
        """The same as a Table; raises Error for a scene with more occurrences than `most`."""
        return Table(_core.occurrence_table(self._model, visible_only, transforms, most), self.components)

    def query(self, expression: str) -> NDArray[int64]:
        """The occurrences that an expression of "kvr query" asks for: their rows in a table of all, ascending.

        Raises QueryError for a text that is no expression.
        """
        return _core.query_rows(self._model, expression)

    def select(self, expression: str) -> Iterator[_core.Occurrence]:
        """The same as occurrences."""
        rows = iter(self.query(expression).tolist())
        wanted = next(rows, None)
        for row, occurrence in enumerate(self):
            if wanted is None:
                return
            if row == wanted:
                yield occurrence
                wanted = next(rows, None)

    def tree(self, *, levels: int = _SHOWN_LEVELS, rows: int = _SHOWN_ROWS) -> str:
        """The top of the tree of occurrences, a line for each."""
        lines: list[str] = []
        for occurrence in self.occurrences(levels=levels):
            if len(lines) == rows:
                return "\n".join([*lines, "..."])
            hidden = "" if occurrence.visible else " (hidden)"
            lines.append(f"{'  ' * occurrence.depth}{occurrence.name}{hidden}")
        return "\n".join(lines)

    def _repr_html_(self) -> str:
        if self.closed:
            return html.escape(repr(self))
        picture = _picture_of(self.producer.path)
        shown = f'<img src="data:image/png;base64,{picture}" alt="">' if picture else ""
        return (f"<div><b>{html.escape(os.path.basename(self.producer.path))}</b>: {len(self.components)} components"
                f'<div style="display:flex"><pre>{html.escape(self.tree())}</pre>{shown}</div></div>')


def _picture_of(path: str) -> str:
    """A picture in base 64; nothing without the program that draws it."""
    if not shutil.which("f3d"):
        return ""
    with tempfile.TemporaryDirectory() as folder:
        target = pathlib.Path(folder, "scene.png")
        try:
            picture(path, target, width=_PICTURE_SIZE[0], height=_PICTURE_SIZE[1])
        except _core.Error:
            return ""
        return base64.b64encode(target.read_bytes()).decode()


def query(source: str | os.PathLike[str] | Producer, expression: str, **reading: Any) -> list[_core.Occurrence]:
    """The occurrences of a scene that an expression of "kvr query" asks for.

    >>> [bolt.path[-1] for bolt in query(path, 'part[name~"bolt*"]')][:2]
    ['inst12', 'inst12']
    """
    return list(Scene(source, **reading).select(expression))
