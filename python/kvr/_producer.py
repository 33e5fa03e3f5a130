"""The interface layer: what a scene serves, object by object."""

import os
import tempfile

from kvr import _core
from kvr._interfaces import CLASSES, operations, wrap


class Producer(_core.Producer):
    """A scene file, read when this is made; objects are asked for by their ids.

    A scene that cannot be read raises SceneError. Every object, and what it answers, keeps the scene alive.

    >>> with Producer(path) as producer:
    ...     root = producer[producer.root_object_id]
    ...     print(root.label, root.children)
    as1-oc-214 ['asm1']
    """

    def __init__(self, path, *, extension_type_ids=(), prefix=None, insecure=False, allow_dtd=False, strict=False,
                 max_memory=None):
        super().__init__(os.fsencode(path), prefix=prefix, insecure=insecure, allow_dtd=allow_dtd, strict=strict,
                         max_memory=max_memory)
        self._extension_type_ids = list(extension_type_ids)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __repr__(self):
        return "<kvr.Producer, closed>" if self.closed else f"<kvr.Producer {self.path!r}>"

    def load(self, id):
        """The object of that id; None for an unknown one."""
        return wrap(self._load(id), self._extension_type_ids)

    def __getitem__(self, id):
        found = self.load(id)
        if found is None:
            raise KeyError(id)
        return found

    def __contains__(self, id):
        return self._load(id) is not None

    def __iter__(self):
        """All objects that are reached from the root, each once, in the order of a dump."""
        return (found for found in map(self.load, self.reached_ids()) if found is not None)

    @property
    def universe(self):
        """What belongs to the scene as a whole; None when the scene states nothing."""
        return wrap(self._universe(), self._extension_type_ids)

    @property
    def query(self):
        """What the file is."""
        return wrap(self._query(), self._extension_type_ids)

    def dump(self, *, ids=(), summary=False, mass=False):
        """The text that "kvr dump" prints of the scene."""
        with tempfile.TemporaryFile() as file:
            self._dump(file.fileno(), list(ids), self._extension_type_ids, summary, mass)
            file.seek(0)
            return file.read().decode()


def _property(operation):
    declared = getattr(CLASSES["IProducer"], operation)
    return property(lambda self: getattr(wrap(self._self()), operation), doc=declared.__doc__)


for _operation in operations(CLASSES["IProducer"]):
    setattr(Producer, _operation, _property(_operation))
