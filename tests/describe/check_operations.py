#!/usr/bin/env python3
"""Fails on an operation of an interface that has no row in the tables of describe, and on a kind of object that is
missing in the list of the interfaces that an object may have.

    check_operations.py ROOT

An operation is a virtual const member function of a class in framework/api. It has a row when a table's source names it
as &Class::Operation; several operations of one name are named as many times. The kinds of objects are those that
ObjectVisitor visits.
"""

import pathlib
import re
import sys

HEADERS = "framework/api"
TABLES = "describe/tables"
VISITOR = "framework/api/ObjectVisitor.h"
LIST = "describe/Tables.h"

# Classes whose operations are no answers of a scene.
NO_INTERFACES = {
    "EventManager": "the host's",
    "Exception": "what a producer throws",
    "ExceptionEvent": "what a producer posts",
    "IMatrix": "a value, told as its numbers",
}

COMMENT_OR_TEXT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
CLASS = re.compile(r"\bclass\s+(?:KVR_API\s+)?(\w+)(?:\s+final)?\s*(?::[^;{]*)?\{")
OPERATION = re.compile(r"\bvirtual\b[^;{}()]*?\b(\w+)\s*\([^;{}]*?\)\s*const\b[^;{}]*[;{]")
VISIT = re.compile(r"\bvoid\s+Visit\s*\(\s*(\w+)\s*\*")
OBJECTS = re.compile(r"\bObjectInterfaces\s*=\s*InterfaceList\s*<([^<>]*)>")
NAMED = re.compile(r"&\s*(\w+)::(\w+)\b")


def code_of(text):
    """The text without comments and literals."""
    return COMMENT_OR_TEXT.sub(" ", text)


def body_of(code, start):
    """What stands between the brace before `start` and the one that closes it."""
    depth = 1
    for at in range(start, len(code)):
        depth += {"{": 1, "}": -1}.get(code[at], 0)
        if depth == 0:
            return code[start:at]
    return code[start:]


def operations_of(header):
    """(class, operation) for each virtual const operation of a header's text, as often as it is declared."""
    code = code_of(header)
    for found in CLASS.finditer(code):
        for operation in OPERATION.finditer(body_of(code, found.end())):
            yield found.group(1), operation.group(1)


def counts(pairs):
    result = {}
    for pair in pairs:
        result[pair] = result.get(pair, 0) + 1
    return result


def problems(headers, tables):
    """What is wrong, line by line: `headers` and `tables` are texts by path."""
    named = counts(found.groups() for text in tables.values() for found in NAMED.finditer(code_of(text)))
    total = 0
    for path, text in sorted(headers.items()):
        for (owner, operation), declared in counts(operations_of(text)).items():
            if owner in NO_INTERFACES:
                continue
            total += 1
            rows = named.get((owner, operation), 0)
            if rows < declared:
                yield (f"{path}: {owner}::{operation} has {rows} rows in {TABLES} and is declared {declared} times"
                       if declared > 1 else f"{path}: {owner}::{operation} has no row in {TABLES}")
    if total == 0:
        yield f"{HEADERS}: no operation was found"


def missing_kinds(visitor, tables):
    """A line for each kind of object that the text of the visitor has and the list in the text of the tables lacks."""
    listed = {name for found in OBJECTS.finditer(code_of(tables)) for name in re.findall(r"\w+", found.group(1))}
    visited = [found.group(1) for found in VISIT.finditer(code_of(visitor))]
    if not visited:
        yield f"{VISITOR}: no visit was found"
    for name in visited:
        if name not in listed:
            yield f"{LIST}: {name} is not in ObjectInterfaces"


def texts_in(root, folder, pattern):
    return {str(path.relative_to(root)): path.read_text(encoding="utf-8") for path in (root / folder).glob(pattern)}


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    root = pathlib.Path(arguments[1])
    found = list(problems(texts_in(root, HEADERS, "*.h"), texts_in(root, TABLES, "*.cpp")))
    found += missing_kinds((root / VISITOR).read_text(encoding="utf-8"), (root / LIST).read_text(encoding="utf-8"))
    for problem in found:
        print(problem)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
