#!/usr/bin/env python3
"""Takes the C++ examples out of a document and makes programs of them.

    extract_examples.py DOCUMENT FOLDER

An example is a block fenced as "cpp", or an indented block that has a "main". One that has a "main" is a program as it
stands. Any other is a piece of one: it becomes the body of a main, behind the headers of the interface and those of the
standard library that the document's pieces use. The sources are named for the document and numbered in its order; one
that has not changed is not written again. Prints the names.
"""

import dataclasses
import pathlib
import re
import sys
import textwrap

HEADERS = ("kvr/framework/api/kvr_api.h", "kvr/producer/XMLProducer.h", "kvr/producer/XMLProducerOptions.h",
           "iostream", "memory", "string", "vector")


@dataclasses.dataclass
class Example:
    line: int
    code: str
    # What the program prints; None when the document does not say.
    output: str | None = None

    def is_program(self):
        return re.search(r"\bint main\(", self.code) is not None

    def source(self):
        if self.is_program():
            return self.code
        return ("".join(f"#include <{header}>\n" for header in HEADERS) +
                "\nint main()\n{\n" + textwrap.indent(self.code, "    ") + "}\n")


def blocks(text):
    """The language, first line and content of each block: "" for an indented one."""
    lines = text.splitlines()
    at = 0
    while at < len(lines):
        if lines[at].startswith("```"):
            language = lines[at][3:].strip()
            end = lines.index("```", at + 1)
            yield language, at + 2, "\n".join(lines[at + 1:end]) + "\n"
            at = end + 1
        elif lines[at].startswith("    ") and (at == 0 or not lines[at - 1].strip()):
            end = at
            while end < len(lines) and (lines[end].startswith("    ") or not lines[end].strip()):
                end += 1
            yield "", at + 1, textwrap.dedent("\n".join(lines[at:end])).strip() + "\n"
            at = end
        else:
            at += 1


def examples(text):
    """The C++ examples of a document, each with what it prints when an "output" block stands behind it."""
    found = []
    former_is_example = False
    for language, line, content in blocks(text):
        is_example = language == "cpp" or (language == "" and re.search(r"\bint main\(", content))
        if is_example:
            found.append(Example(line, content))
        elif language == "output":
            if not former_is_example:
                raise ValueError(f"line {line}: an output without an example in front of it")
            found[-1].output = content
        former_is_example = bool(is_example)
    return found


def program_names(document, found):
    return [f"{document.stem.lower()}_example_{number}" for number, _ in enumerate(found, 1)]


def main(arguments):
    if len(arguments) != 3:
        print(__doc__)
        return 2
    document, folder = map(pathlib.Path, arguments[1:])
    folder.mkdir(parents=True, exist_ok=True)
    found = examples(document.read_text(encoding="utf-8"))
    for name, example in zip(program_names(document, found), found):
        path = folder / f"{name}.cpp"
        source = f"// {document.name}, line {example.line}\n{example.source()}"
        if not path.exists() or path.read_text(encoding="utf-8") != source:
            path.write_text(source, encoding="utf-8")
        print(name)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
