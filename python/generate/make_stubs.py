#!/usr/bin/env python3
"""Makes what Python has of the tables of the interfaces: the types of the classes that kvr/interfaces.py makes when it
is imported, and their documents, which are the comments of the headers.

    make_stubs.py ROOT TABLES.json STUB DOCUMENTS

A row's document is that of the last operation that its table names in it.
"""

import json
import pathlib
import re
import sys

import header_comments

ROWS = re.compile(r"constexpr\s+Row\s+(\w+)\[\]\s*=\s*\{(.*?)\n\};", re.DOTALL)
TABLE = re.compile(r'(?:kTable\s*=\s*|Interface\s+\w+)\{"(\w+)",\s*(\w+)')
OPERATION = re.compile(r"&(\w+)::(\w+)")
NAMED_TEXT = re.compile(r'"(\w+)"')
SCALARS = {"bool": "bool", "integer": "int", "unsigned": "int", "number": "float", "text": "str", "unit": "str",
           "time": "str", "bytes": "bytes", "propertyValue": "str | int | float | bool",
           "variant": "str | list[str] | Blob"}


def annotation(of):
    kind = of["kind"]
    if kind == "list" and of["item"]["kind"] == "number" and "length" in of:
        text = "NDArray[float64]" if of["length"] == 16 else f"tuple[{', '.join(['float'] * of['length'])}]"
    elif kind == "list":
        text = f"list[{annotation(of['item'])}]"
    elif kind == "map":
        text = f"dict[str, {annotation(of['item'])}]"
    elif kind == "object":
        text = of["interface"]
    elif kind == "anyOf":
        text = " | ".join(of["alternatives"])
    else:
        text = SCALARS[kind]
    return f"{text} | None" if of["canBeNull"] or kind in ("propertyValue", "variant") else text


def row_documents(sources, comments):
    """The comment of each row, by its table and name."""
    found = {}
    for text in sources:
        tables = {rows: table for table, rows in TABLE.findall(text)}
        for rows, body in ROWS.findall(text):
            start = 0
            for name in NAMED_TEXT.finditer(body):
                operations = OPERATION.findall(body[start:name.start()])
                start = name.end()
                documented = [comments[operation] for operation in operations if operation in comments]
                if documented and rows in tables:
                    found.setdefault(f"{tables[rows]}.{name.group(1)}", documented[-1])
    return found


def stub(tables, names):
    lines = ["from collections.abc import Iterable", "from typing import Any", "", "from numpy import float64", "from numpy.typing import NDArray", "", "from kvr import _core", "",
             "class Interface:", "    def __init__(self, source: _core.Object | dict[str, object], extension_type_ids: Iterable[str] = ...) -> None: ...",
             "    def __eq__(self, other: object) -> bool: ...", "    def __hash__(self) -> int: ...",
             "", "def operations(interface: type[Interface]) -> dict[str, str]: ...",
             "def wrap(handle: _core.Object | None, extension_type_ids: Iterable[str] = ...) -> Any: ...",
             "CLASSES: dict[str, type[Interface]]", ""]
    listed = ", ".join(f'"{name}"' for name in ("Interface", "operations", "wrap", *(table["name"] for table in tables)))
    lines[7:7] = [f"__all__ = [{listed}]", ""]
    for table in tables:
        lines.append(f"class {table['name']}({', '.join(table['bases']) or 'Interface'}):")
        for row in table["rows"]:
            lines += ["    @property", f"    def {names.snake_case(row['name'])}(self) -> {annotation(row['type'])}: ..."]
        if not table["rows"]:
            lines.append("    ...")
        lines.append("")
    return "\n".join(lines)


def main(root, tables_path, stub_path, documents_path):
    sys.path.insert(0, str(root / "python" / "kvr"))
    import _names

    tables = json.loads(tables_path.read_text(encoding="utf-8"))
    comments = header_comments.comments_of(root, ("framework/api/*.h", "framework/kernel/*.h", "describe/BodyFacts.h"))
    sources = [path.read_text(encoding="utf-8") for path in sorted((root / "describe" / "tables").glob("*.cpp"))]
    documents = row_documents(sources, comments)
    documents.update({table["name"]: comments[table["name"], table["name"]] for table in tables
                      if (table["name"], table["name"]) in comments})
    stub_path.write_text(stub(tables, _names), encoding="utf-8")
    lines = [f"    {name!r}: {text!r}," for name, text in sorted(documents.items())]
    documents_path.write_text("\n".join(["DOCS: dict[str, str] = {", *lines, "}", ""]), encoding="utf-8")


if __name__ == "__main__":
    main(*map(pathlib.Path, sys.argv[1:]))
