#!/usr/bin/env python3
"""Compares the names of elements and attributes that the readers know with the list in docs/formats.md, and both with
examples/complete, which uses every one of them."""

import pathlib
import re
import sys

FOLDERS = ["producer", "structure", "mesh", "geometry", "appearance", "organisation", "annotation", "readers",
           "framework/xml_util"]
EXAMPLES = ["complete.xml", "complete.ids.xml", "complete.kvrproperty"]
# Names of children of file properties are asked for as narrow text.
LITERAL = re.compile(r'(?:\bu|\b\w*TextOf\()"([A-Z]\w*)"|\bUnitOf\("([A-Z]\w*)"')
CONSTANT = re.compile(r'\b(k\w+)\[\] = u"([A-Z]\w*)"')
# A value of switches and flags.
NO_NAMES = {"True"}
# A name that stands here counts when another file uses its constant.
CONSTANTS = "framework/xml_util/TextConstants.h"
# Elements whose name is free; the documents name the ones to write.
FREE = {"Scene", "ICamera", "IGroup", "IView", "RefFile", "Ids", "Properties"}


def code_names(root):
    names, words = set(), set()
    for folder in FOLDERS:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix not in (".cpp", ".h") or file == root / CONSTANTS:
                continue
            text = file.read_text(encoding="utf-8")
            words.update(re.findall(r"\bk[A-Z]\w*", text))
            for match in LITERAL.finditer(text):
                names.add(match.group(1) or match.group(2))
    constants = root / CONSTANTS
    for constant, name in CONSTANT.findall(constants.read_text(encoding="utf-8")) if constants.exists() else ():
        if constant in words:
            names.add(name)
    return names - NO_NAMES


def listed_names(root):
    """Elements and attributes of the section "Names"."""
    text = (root / "docs/formats.md").read_text(encoding="utf-8")
    section = re.search(r"^## [\d. ]*Names\n(.*?)(?=^## |\Z)", text, re.M | re.S)
    if not section:
        return set(), set()
    found = []
    for kind in ("Elements", "Attributes"):
        paragraph = re.search(rf"^{kind}:(.*?)(?:\n\n|\Z)", section.group(1), re.M | re.S)
        found.append(set(re.findall(r"`(\w+)`", paragraph.group(1))) if paragraph else set())
    return found[0], found[1]


def used_names(root):
    elements, attributes = set(), set()
    for name in EXAMPLES:
        text = (root / "examples/complete" / name).read_text(encoding="utf-8")
        text = re.sub(r"<!--.*?-->|<\?.*?\?>", "", text, flags=re.S)
        for element, rest in re.findall(r"<(\w+)([^<>]*)>", text):
            elements.add(element)
            attributes.update(re.findall(r'(\w+)="', rest))
    return elements, attributes


def check(root):
    root = pathlib.Path(root)
    code, (elements, attributes), (used_elements, used_attributes) = code_names(root), listed_names(root), used_names(root)
    problems = []

    def report(names, text):
        problems.extend(f"{name}: {text}" for name in sorted(names))

    report(code - elements - attributes, "read, but not listed in docs/formats.md")
    report((elements | attributes) - code - FREE, "listed in docs/formats.md, but not read")
    report(elements - used_elements, "an element that examples/complete does not use")
    report(attributes - used_attributes, "an attribute that examples/complete does not use")
    report(used_elements - elements, "an element of examples/complete that docs/formats.md does not list")
    report(used_attributes - attributes, "an attribute of examples/complete that docs/formats.md does not list")
    return problems


if __name__ == "__main__":
    found = check(sys.argv[1] if len(sys.argv) > 1 else ".")
    print("\n".join(found) or "The names are the same everywhere.")
    sys.exit(1 if found else 0)
