#!/usr/bin/env python3
"""Holds the list of the format's names, framework/xml_util/FormatNames.h, against the readers and the writers that take
names from it, the section "Names" of docs/formats.md, and examples/complete, which uses every name.

    check_names.py ROOT
"""

import pathlib
import re
import sys

LIST = "framework/xml_util/FormatNames.h"
READERS = ["producer", "structure", "mesh", "geometry", "appearance", "organisation", "annotation", "readers",
           "framework/xml_util"]
WRITERS = ["authoring"]
EXAMPLES = ["complete.xml", "complete.ids.xml", "complete.kvrproperty"]

ROW = re.compile(r"^KVR_(ELEMENT|ATTRIBUTE|ELEMENT_AND_ATTRIBUTE)\((\w+)\);", re.M)
USE = re.compile(r"\bNames::(\w+)")
COMMENT_OR_LITERAL = re.compile(
    r'//[^\n]*|/\*.*?\*/|#include[^\n]*|\bR"([^\s()\\]{0,16})\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'',
    re.S)
# A text in quotes that is made like a name, or that has a tag with its name in it.
QUOTED = re.compile(r'"([A-Z]\w*)"|"[^"]*</?([A-Za-z]\w*)')

# Texts in quotes that are made like names and are none.
VALUES = {
    "True": "switches and flags have it for a value",
    "False": "flags have it for a value",
    "BrepSolid": "the end of a value, which a record states",
    "Triangular": "the end of a value, which a record states",
    "KVRASSET": "the first letters of a file of material assets",
}

# Words for elements that the libraries around a scene share; a scene has "StyleRef" alone.
RESERVED = {"AddRef", "ChildRef", "DeleteRef", "ModifiedRef", "ObjectRef", "UpdatedRef"}

# Elements that readers know by their place, whatever their name; the documents name the ones to write.
UNREAD = {
    **dict.fromkeys(["Scene", "Ids", "Properties"], "the root of a file"),
    **dict.fromkeys(["ICamera", "IGroup"], "the children of a set"),
    "RefFile": "the children of \"RefFiles\"",
}

# Names that the authoring library writes nowhere.
UNWRITTEN = {
    **dict.fromkeys(["Author", "Authorisation", "Organization", "PartNumber", "Preprocessor", "Revision",
                     "SendingSystem", "Title"], "the record of file properties has the names of its texts"),
    "UnitAndTolerance": "\"Unit\" and \"Tolerance\" are written instead",
    "BumpMapId": "the element \"BumpMap\" is written instead",
    **dict.fromkeys(["AmbientFactor", "AmbientTexture", "ColorFactor", "CurveStyleFillArea", "Eccentricity",
                     "EmissionFactor", "EmissionTexture", "Rolloff", "ShaderType", "SpecularFactor",
                     "SpecularTexture", "TransparencyRGB"], "the record of styles has what exchange formats know"),
    **dict.fromkeys(["TextureType", "TextureCenter", "TextureSizeForScale", "ProjectType", "ProceduralName",
                     "ProcedureU", "ProcedureV"], "the record of textures has images alone"),
    **dict.fromkeys(["FontSize", "Gap", "Indentation", "IsOverlined", "IsUnderlined", "IsVertical", "ScriptType",
                     "TextAlignment", "TextBackgroundColor", "TextJustification"],
                    "the record of text has what notes of exchange formats have"),
}


def code_of(file, keep_literals):
    """The text without comments and includes, and without literals unless they are kept."""

    def blank(match):
        found = match.group()
        return found if keep_literals and found[0] in "\"'R" else " "

    return COMMENT_OR_LITERAL.sub(blank, file.read_text(encoding="utf-8"))


def list_of_names(root):
    """Elements and attributes of the list."""
    file = root / LIST
    elements, attributes = set(), set()
    for kind, name in ROW.findall(file.read_text(encoding="utf-8")) if file.exists() else ():
        if kind != "ATTRIBUTE":
            elements.add(name)
        if kind != "ELEMENT":
            attributes.add(name)
    return elements, attributes


def sources(root, folders):
    for folder in folders:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix in (".cpp", ".h"):
                yield file


def used_in_code(root, folders):
    names = set()
    for file in sources(root, folders):
        names.update(USE.findall(code_of(file, keep_literals=False)))
    return names


def quoted_in_code(root):
    """Texts in quotes that are made like names, each with the file where it stands."""
    for file in sources(root, READERS + WRITERS):
        for literal in COMMENT_OR_LITERAL.finditer(code_of(file, keep_literals=True)):
            for name, tag in QUOTED.findall(literal.group()):
                if (name or tag) not in VALUES:
                    yield name or tag, file.relative_to(root).as_posix()


def documented_names(root):
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


def names_of_examples(root):
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
    elements, attributes = list_of_names(root)
    rows = elements | attributes
    read, written = used_in_code(root, READERS), used_in_code(root, WRITERS)
    problems = [f"{name}: in quotes in {file}, not taken from {LIST}" for name, file in quoted_in_code(root)]

    def report(names, text):
        problems.extend(f"{name}: {text}" for name in sorted(names))

    report((read | written) - rows, f"not in {LIST}")
    report(rows - read - RESERVED - set(UNREAD), f"in {LIST}, but no reader takes it")
    report(rows - written - RESERVED - set(UNWRITTEN), f"in {LIST}, but authoring does not write it")
    report(RESERVED & (read | written), "reserved, but used")
    report(set(UNREAD) & read, "said to be read nowhere, but a reader takes it")
    report(set(UNWRITTEN) & written, "said to be written nowhere, but authoring writes it")
    report((RESERVED | set(UNREAD) | set(UNWRITTEN)) - rows, f"an exception that is not in {LIST}")

    for kind, listed, documented, used in zip(("element", "attribute"), (elements - RESERVED, attributes),
                                              documented_names(root), names_of_examples(root)):
        report(listed - documented, f"an {kind} that docs/formats.md does not list")
        report(documented - listed, f"an {kind} of docs/formats.md that is not in {LIST}")
        report(listed - used, f"an {kind} that examples/complete does not use")
        report(used - listed, f"an {kind} of examples/complete that is not in {LIST}")
    return problems


if __name__ == "__main__":
    found = check(sys.argv[1] if len(sys.argv) > 1 else ".")
    print("\n".join(found) or "The names are the same everywhere.")
    sys.exit(1 if found else 0)
