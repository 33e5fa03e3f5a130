#!/usr/bin/env python3
"""Fails on an #include that goes up the layers, and on a call that opens a second door to Xerces.

    check_layers.py ROOT

Layers, low to high; a file includes its own layer and lower ones, and what a row below says otherwise.
"""

import pathlib
import re
import sys

# Which group a file belongs to: the first row that names its path from the root, or a folder above it, decides.
GROUPS = (
    ("framework/api/", "api"),
    ("framework/kernel/", "kernel"),
    ("framework/gmk_interface/", "gmk_interface"),
    ("framework/xml_util/DocumentPolicy.h", "document policy"),
    ("framework/xml_util/Export.h", "document policy"),
    ("framework/xml_util/", "xml_util"),
    ("producer/XMLProducerImpl.h", "context"),
    ("producer/ObjectNodeIndex.h", "context"),
    ("producer/ObjectStore.h", "context"),
    ("producer/SideFileIndex.h", "context"),
    ("producer/ElementReaders.h", "context"),
    ("producer/XMLProducerServices.cpp", "context"),
    ("producer/Export.h", "facade"),
    ("producer/XMLProducer.h", "facade"),
    ("producer/XMLProducerOptions.h", "facade"),
    ("producer/StoreNeeds.h", "facade"),
    ("producer/", "producer"),
    ("readers/", "readers"),
    ("geometry/curvedata/", "curvedata"),
    ("geometry/", "geometry"),
    ("appearance/", "appearance"),
    ("organisation/", "organisation"),
    ("mesh/", "mesh"),
    ("annotation/", "annotation"),
    ("structure/", "structure"),
    ("authoring/", "authoring"),
    ("output/", "output"),
    ("describe/", "describe"),
    ("scene/ExtensionTypes.h", "extension types"),
    ("scene/", "scene"),
    ("inspect/estimate/", "estimate"),
    ("inspect/query/", "query"),
    ("inspect/statistics/", "statistics"),
    ("inspect/Check.h", "inspect face"),
    ("inspect/Compare.h", "inspect face"),
    ("inspect/Digest.h", "inspect face"),
    ("inspect/Explain.h", "inspect face"),
    ("inspect/Finding.h", "inspect face"),
    ("inspect/Export.h", "inspect face"),
    ("inspect/", "inspect"),
    ("exchange/source/SceneOptions.h", "exchange"),
    ("exchange/run/", "run"),
    ("exchange/conventions/", "conventions"),
    ("exchange/source/", "source"),
    ("exchange/model/", "model"),
    ("exchange/meshes/", "meshes"),
    ("exchange/import/", "import"),
    ("exchange/export/", "export"),
    ("exchange/view/", "view"),
    ("exchange/convert/", "convert"),
    ("exchange/certify/", "certify"),
    ("exchange/", "exchange"),
    ("host/dump/", "dump"),
    ("host/stats/StatsOutput.h", "statistics output"),
    ("host/", "host"),
    ("python/", "python"),
)

FRAMEWORK = ("api", "kernel", "gmk_interface", "document policy", "xml_util")
READERS = FRAMEWORK + ("context", "facade", "readers")
SHAPES = READERS + ("curvedata", "geometry", "appearance", "organisation")
MESHES = SHAPES + ("mesh", "annotation")

# What a group may include beside itself. The facade's headers stand on the interfaces alone, which makes them low
# enough for everybody; what the facade does is in the files of the group "producer".
MAY_INCLUDE = {
    "api": (),
    "kernel": (),
    "gmk_interface": ("api", "kernel"),
    # What a program says of the documents that it reads, without a word of Xerces-C.
    "document policy": (),
    "xml_util": ("api", "kernel", "gmk_interface", "document policy"),
    "facade": ("api",),
    "context": FRAMEWORK + ("facade",),
    "readers": READERS,
    "curvedata": SHAPES,
    "geometry": SHAPES,
    "appearance": SHAPES,
    "organisation": SHAPES,
    "mesh": MESHES,
    "annotation": MESHES,
    "structure": MESHES,
    "producer": MESHES + ("structure",),
    "authoring": FRAMEWORK,
    "output": ("api",),
    "describe": ("api", "kernel", "gmk_interface", "output"),
    # Names alone: what is written into scenes and understood in them.
    "extension types": (),
    "scene": ("api", "kernel", "gmk_interface", "extension types"),
    # What reading a scene takes, before it is read.
    "estimate": ("api", "xml_util"),
    # Questions about the occurrences of a scene.
    "query": ("api", "kernel", "scene", "output"),
    # What the geometry of a scene takes; listens to the readers of side files.
    "statistics": ("api", "kernel", "xml_util", "scene", "estimate"),
    # What a program sees of checks stands by itself.
    "inspect face": (),
    "inspect": FRAMEWORK + ("facade", "output", "describe", "scene", "extension types", "estimate", "inspect face"),
    # The public headers of the exchange stand on the interfaces and the scene alone, which makes them low enough for
    # everybody in it and for any program; what they promise is done in import, export and certify, none of which knows
    # the other two.
    "exchange": ("api", "scene"),
    # What touches files and processes; what a scene of the exchange says in extension data; how a scene file is opened;
    # models of other programs as documents of Open CASCADE.
    "run": ("api", "kernel", "output", "exchange"),
    "conventions": ("api", "output"),
    "source": ("api", "xml_util", "document policy", "facade", "output", "estimate", "exchange"),
    "model": ("api", "kernel", "run"),
    "meshes": ("api", "output", "model"),
    "import": ("extension types", "api", "kernel", "authoring", "xml_util", "output", "exchange", "run", "conventions",
               "model", "meshes"),
    "export": ("extension types", "api", "kernel", "gmk_interface", "scene", "query", "output", "exchange", "run",
               "conventions", "source"),
    # A format of its own folder; of export it takes the task, and how notes are drawn.
    "view": ("extension types", "api", "kernel", "gmk_interface", "scene", "output", "exchange", "run", "export"),
    "convert": ("output", "exchange", "run"),
    "certify": ("extension types", "api", "kernel", "output", "exchange", "run", "source"),
    # The text of a dump, which the program and Python share.
    "dump": ("api", "output", "describe", "source"),
    # The JSON of statistics, as well; what it is written from is declared alone.
    "statistics output": (),
    "host": ("api", "kernel", "facade", "output", "describe", "scene", "estimate", "query", "statistics", "inspect face",
             "source", "exchange", "dump", "statistics output"),
    "python": ("api", "kernel", "facade", "authoring", "output", "describe", "scene", "query", "statistics",
               "inspect face", "source", "exchange", "dump", "statistics output"),
}

# Headers that everybody below the producer's top sees, and that therefore name other classes by declaration only.
FRAMEWORK_ONLY = ("producer/XMLProducerImpl.h", "producer/ObjectNodeIndex.h")

# Only framework/xml_util turns document text into other text.
XERCES_TEXT = re.compile(r"\btranscode\s*\(|\bTranscode(?:To|From)Str\b|\bXMLString\s*::\s*release\b")
XERCES_TEXT_GROUP = "xml_util"

SUFFIXES = (".h", ".cpp")
INCLUDE = re.compile(r"\s*#\s*include\b\s*(.*)")
INCLUDED = re.compile(r'(?:"([^"]+)"|<([^>]+)>)')
# A comment, or a literal: literals are matched so that a "//" in a text does not start a comment.
COMMENT_OR_LITERAL = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"([^\s()\\]{0,16})\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', re.DOTALL)

TOP_FOLDERS = tuple(dict.fromkeys(place.split("/")[0] for place, _ in GROUPS))


def group_of(path):
    """The group of a path from the root, or None for a file that is not the project's."""
    for place, group in GROUPS:
        if path == place or (place.endswith("/") and path.startswith(place)):
            return group
    return None


def without_comments(text):
    """The text with every comment blanked, line ends kept."""

    def blank(match):
        found = match.group()
        return re.sub(r"[^\n]", " ", found) if found.startswith("/") else found

    return COMMENT_OR_LITERAL.sub(blank, text)


def edge_problem(root, path, group, quoted, angled):
    """Why the file may not include what it includes, or None."""
    target = quoted or angled
    if quoted is None and target.split("/")[0] not in TOP_FOLDERS:
        return None  # a system header or another library's
    target_group = group_of(target)
    if target_group is None or not (root / target).is_file():
        return f'"{target}" is no file of the project: includes are written from the root'
    if path in FRAMEWORK_ONLY and target_group not in FRAMEWORK:
        return f"{path} -> {target}: it includes framework headers and declares the rest"
    if target_group != group and target_group not in MAY_INCLUDE[group]:
        return f"{path} ({group}) -> {target} ({target_group}): {group} may not include {target_group}"
    return None


def problems_of(root, path, group):
    """Every problem of one file, as "file:line: text"."""
    code = without_comments((root / path).read_text(encoding="utf-8"))
    for number, line in enumerate(code.split("\n"), start=1):
        include = INCLUDE.match(line)
        if include:
            included = INCLUDED.match(include.group(1))
            problem = (edge_problem(root, path, group, *included.groups()) if included
                       else "an include that is no literal name cannot be checked")
            if problem:
                yield f"{path}:{number}: {problem}"
        elif group != XERCES_TEXT_GROUP and XERCES_TEXT.search(line):
            yield f"{path}:{number}: only framework/xml_util converts document text: {line.strip()}"


def check(root):
    """The number of files read, and every problem found."""
    count = 0
    problems = []
    for folder in TOP_FOLDERS:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix not in SUFFIXES or not file.is_file():
                continue
            path = file.relative_to(root).as_posix()
            group = group_of(path)
            count += 1
            if group is None:
                problems.append(f"{path}:1: the file belongs to no layer")
            else:
                problems.extend(problems_of(root, path, group))
    return count, problems


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    count, problems = check(pathlib.Path(arguments[1]))
    for problem in problems:
        print(problem)
    if count == 0:
        print(f"no sources under {arguments[1]}")
        return 1
    print(f"{count} files, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
