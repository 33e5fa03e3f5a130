"""Names of operations as Python writes them."""

import re

_WORD = re.compile(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])")


def snake_case(name: str) -> str:
    """'PersistentIDsMap' is 'persistent_ids_map'."""
    return _WORD.sub("_", name.replace("IDs", "Ids")).lower()
