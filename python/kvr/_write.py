"""New scenes."""

from __future__ import annotations

import os
from collections.abc import Iterable, Iterator, Mapping
from contextlib import contextmanager
from types import TracebackType

from numpy.typing import ArrayLike

from kvr import _core

Property = str | int | float | bool


class Writer:
    """Writes a scene, which appears whole at the end of the with statement, with its side files; after an exception
    nothing does.

    Parts and assemblies do not nest: an instance places one in another. Those that no instance places stand under the
    root. Operations raise Error for an id that is taken, and for what does not fit together.
    """

    def __init__(self, path: str | os.PathLike[str], *, id: str = "file", label: str = "",
                 unit: str = "millimeter") -> None:
        self._writer: _core.SceneWriter | None = _core.SceneWriter(os.fsencode(path))
        self._file = (id, label, unit)
        self._components: dict[str, bool] = {}
        self._placed: set[str] = set()
        self._styles: list[_core.StyleRecord] = []
        self._layers: list[_core.LayerRecord] = []

    def __enter__(self) -> Writer:
        return self

    def __exit__(self, kind: type[BaseException] | None, value: BaseException | None,
                 traceback: TracebackType | None) -> None:
        writer, self._writer = self._open, None
        if kind is None:
            children = [child for child in self._components.items() if child[0] not in self._placed]
            writer.file(*self._file, children, self._styles, self._layers)
            writer.finish()

    @property
    def _open(self) -> _core.SceneWriter:
        if self._writer is None:
            raise ValueError("the scene is written")
        return self._writer

    def style(self, id: str, diffuse: tuple[float, float, float], *, label: str = "",
              transparency: float = 0.0) -> str:
        """Declares a style, a colour as fractions of sRGB, and answers its id."""
        self._styles.append(_core.StyleRecord(id, label, diffuse, transparency))
        return id

    def layer(self, id: str, items: Iterable[str], *, label: str = "", number: int = 0, visible: bool = True) -> str:
        """Declares a layer of objects by their ids, and answers its id."""
        self._layers.append(_core.LayerRecord(id, label, number, visible, list(items)))
        return id

    @contextmanager
    def part(self, id: str, label: str = "", *, unit: str | None = None, styles: Iterable[str] = (),
             properties: Mapping[str, Property] = {}) -> Iterator[str]:
        """A part, which holds the geometry that is written within."""
        self._components[id] = False
        self._open.begin_part(id, label, unit or self._file[2], list(styles), list(properties.items()))
        yield id
        self._open.end_part()

    @contextmanager
    def assembly(self, id: str, label: str = "", *, unit: str | None = None, styles: Iterable[str] = (),
                 properties: Mapping[str, Property] = {}) -> Iterator[str]:
        """An assembly, which holds the instances, and the geometry, that are written within."""
        self._components[id] = True
        self._open.begin_assembly(id, label, unit or self._file[2], list(styles), list(properties.items()))
        yield id
        self._open.end_assembly()

    def instance(self, id: str, target: str, *, label: str = "", transform: ArrayLike | None = None,
                 visible: bool = True, styles: Iterable[str] = ()) -> None:
        """Places a part or assembly in the assembly that is open; the transform is 4 by 4, for points as columns."""
        self._open.instance(_core.Shown(id, label, visible, list(styles), transform, None), target)
        self._placed.add(target)

    def mesh(self, id: str, positions: ArrayLike, triangles: ArrayLike, *, normals: ArrayLike | None = None,
             label: str = "", visible: bool = True, styles: Iterable[str] = (), transform: ArrayLike | None = None,
             unit: str | None = None) -> None:
        """A mesh: n by 3 positions, and as many normals if there are any; m by 3 places among them."""
        self._open.mesh(_core.Shown(id, label, visible, list(styles), transform, unit), positions, triangles, normals)

    def body(self, id: str, body: _core.Body, *, label: str = "", visible: bool = True, styles: Iterable[str] = (),
             transform: ArrayLike | None = None) -> None:
        """A copy of a body of another scene, in the unit of the component."""
        self._open.body(_core.Shown(id, label, visible, list(styles), transform, None), body)

    def points(self, id: str, points: ArrayLike, *, label: str = "", visible: bool = True,
               transform: ArrayLike | None = None) -> None:
        """A cloud of n by 3 points."""
        self._open.points(_core.Shown(id, label, visible, [], transform, None), points)


def write(path: str | os.PathLike[str], *, id: str = "file", label: str = "", unit: str = "millimeter") -> Writer:
    """A Writer of the scene of that path.

    >>> with write(folder / "new.xml", label="Two plates") as writer:
    ...     red = writer.style("red", (1.0, 0.0, 0.0))
    ...     with writer.part("plate", "Plate", styles=[red]):
    ...         writer.mesh("mesh", [[0, 0, 0], [40, 0, 0], [40, 20, 0], [0, 20, 0]], [[0, 1, 2], [0, 2, 3]])
    ...     with writer.assembly("top", "Plates"):
    ...         writer.instance("lower", "plate")
    ...         writer.instance("upper", "plate", transform=[[1, 0, 0, 0], [0, 1, 0, 0], [0, 0, 1, 10], [0, 0, 0, 1]])
    >>> print(Scene(folder / "new.xml").tree())
    Two plates
      Plates
        Plate
        Plate
    """
    return Writer(path, id=id, label=label, unit=unit)
