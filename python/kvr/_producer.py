"""The interface layer: what a scene serves, object by object."""

from __future__ import annotations

import os
import tempfile
from collections.abc import Iterable, Iterator
from typing import TYPE_CHECKING, Any

from kvr import _core
from kvr.interfaces import CLASSES, FileQueryResult, Interface, IUniverse, operations, wrap

if TYPE_CHECKING:
    from kvr.interfaces import IProducer as _Operations
else:

    class _Operations:
        """The operations of the interface, which are given below."""


class Producer(_core.Producer, _Operations):
    """A scene file, read when this is made; objects are asked for by their ids.

    A scene that cannot be read raises SceneError. Every object, and what it answers, keeps the scene alive.

    >>> with Producer(path) as producer:
    ...     root = producer[producer.root_object_id]
    ...     print(root.label, root.children)
    as1-oc-214 ['asm1']
    """

    def __init__(self, path: str | os.PathLike[str], *, extension_type_ids: Iterable[str] = (),
                 prefix: str | None = None, insecure: bool = False, allow_dtd: bool = False, strict: bool = False,
                 max_memory: int | None = None) -> None:
        _core.Producer.__init__(self, os.fsencode(path), prefix=prefix, insecure=insecure, allow_dtd=allow_dtd,
                                strict=strict, max_memory=max_memory)
        self._extension_type_ids = list(extension_type_ids)

    def __enter__(self) -> Producer:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return "<kvr.Producer, closed>" if self.closed else f"<kvr.Producer {self.path!r}>"

    def load(self, id: str) -> Any:
        """The object of that id; None for an unknown one."""
        return wrap(self._load(id), self._extension_type_ids)

    def __getitem__(self, id: str) -> Any:
        found = self.load(id)
        if found is None:
            raise KeyError(id)
        return found

    def __contains__(self, id: str) -> bool:
        return self._load(id) is not None

    def __iter__(self) -> Iterator[Interface]:
        """All objects that are reached from the root, each once, in the order of a dump."""
        return (found for found in map(self.load, self.reached_ids()) if found is not None)

    @property
    def universe(self) -> IUniverse | None:
        """What belongs to the scene as a whole; None when the scene states nothing."""
        found: IUniverse | None = wrap(self._universe(), self._extension_type_ids)
        return found

    @property
    def query(self) -> FileQueryResult | None:
        """What the file is."""
        found: FileQueryResult | None = wrap(self._query(), self._extension_type_ids)
        return found

    def dump(self, *, ids: Iterable[str] = (), summary: bool = False, mass: bool = False) -> str:
        """The text that "kvr dump" prints of the scene."""
        with tempfile.TemporaryFile() as file:
            self._dump(file.fileno(), list(ids), self._extension_type_ids, summary, mass)
            file.seek(0)
            return file.read().decode()


def _property(operation: str) -> property:
    declared = getattr(CLASSES["IProducer"], operation)
    return property(lambda self: getattr(wrap(self._self()), operation), doc=declared.__doc__)


for _operation in operations(CLASSES["IProducer"]):
    setattr(Producer, _operation, _property(_operation))
