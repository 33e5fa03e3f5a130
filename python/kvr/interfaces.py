"""The interfaces as classes, made of the tables by which the library describes itself: one property for each operation.

An answer that is not specified is None. Names of classes are those of the interfaces.
"""

import json
import types

from kvr import _core
from kvr._interface_docs import DOCS
from kvr._names import snake_case


class Interface:
    """Something that a scene answers: an object, or a value with members of its own."""

    __slots__ = ("_source", "_extension_type_ids")

    def __init__(self, source, extension_type_ids=()):
        self._source = source
        self._extension_type_ids = list(extension_type_ids)

    def _ask(self, operation):
        if isinstance(self._source, dict):
            return self._source[operation]
        return self._source.ask(operation, self._extension_type_ids, _record)

    def __eq__(self, other):
        return type(self) is type(other) and self._source == other._source

    def __hash__(self):
        return id(self) if isinstance(self._source, dict) else hash(self._source)

    def __repr__(self):
        if isinstance(self._source, dict):
            members = ", ".join(f"{snake_case(name)}={value!r}" for name, value in self._source.items())
            return f"{type(self).__name__}({members if len(members) < 200 else '...'})"
        told = [repr(getattr(self, name)) for name in ("id", "label") if hasattr(type(self), name)]
        return f"<{' '.join([type(self).__name__, *told])}>"


def operations(interface):
    """The operations of an interface by their names in Python, those of its bases first."""
    found = {}
    for base in reversed(interface.__mro__):
        found.update(base.__dict__.get("_operations", {}))
    return found


def _property(table, operation):
    return property(lambda self: self._ask(operation), doc=DOCS.get(f"{table}.{operation}"))


def _class(table):
    names = {snake_case(row["name"]): row["name"] for row in table["rows"]}
    members = {python: _property(table["name"], operation) for python, operation in names.items()}
    members |= {"__slots__": (), "__doc__": DOCS.get(table["name"]), "__module__": __name__, "_operations": names}
    bases = tuple(CLASSES[base] for base in table["bases"]) or (Interface,)
    return types.new_class(table["name"], bases, exec_body=lambda namespace: namespace.update(members))


CLASSES: dict[str, type] = {}
for _table in json.loads(_core.interface_tables()):
    CLASSES[_table["name"]] = _class(_table)
globals().update(CLASSES)
__all__ = ["Interface", "operations", "wrap", *CLASSES]


def _record(table, members):
    return CLASSES[table](members)


def wrap(handle, extension_type_ids=()):
    """The object behind a handle, as the class of its table; None for none."""
    return None if handle is None else CLASSES[handle.table](handle, extension_type_ids)
