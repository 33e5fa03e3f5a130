#!/usr/bin/env python3
"""Makes DocTexts.h: for each KVR_DOC(Class, Member) of python/*.cpp the comment of a header. Free is the class of functions
that belong to none.

    make_doc_texts.py ROOT OUTPUT
"""

import pathlib
import re
import sys

import header_comments

HEADERS = ("framework/api/*.h", "scene/*.h", "exchange/*.h", "exchange/source/*.h", "inspect/*.h", "inspect/query/Query.h", "authoring/*.h")
USE = re.compile(r"KVR_DOC\((\w+),\s*(\w+)\)")


def main(root, output):
    uses = sorted({use for path in (root / "python").glob("*.cpp")
                   for use in USE.findall(path.read_text(encoding="utf-8"))})
    comments = {(owner or "Free", member): text
                for (owner, member), text in header_comments.comments_of(root, HEADERS).items()}
    missing = [use for use in uses if use not in comments]
    for owner, member in missing:
        print(f"{owner}::{member} has no comment in a header", file=sys.stderr)
    lines = ["#pragma once", "", "namespace KVR::Python::DocTexts", "{"]
    lines += [f'inline constexpr char {owner}_{member}[] = R"doc({comments[owner, member]})doc";'
              for owner, member in uses if (owner, member) in comments]
    text = "\n".join(lines + ["}  // namespace KVR::Python::DocTexts", ""])
    if not output.exists() or output.read_text(encoding="utf-8") != text:
        output.write_text(text, encoding="utf-8")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])))
