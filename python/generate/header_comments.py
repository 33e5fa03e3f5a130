"""The comments of headers, by class and member: every document of Python takes its sentences from here."""

import re

COMMENT = re.compile(r"^\s*///(?!<) ?(.*)$")
CLASS = re.compile(r"^\s*(?:template\s*<[^>]*>\s*)?(?:class|struct|enum(?:\s+class)?)\s+(?:\w+_API\s+)?(\w+)")
LITERAL_OR_COMMENT = re.compile(r'"(?:\\.|[^"\\])*"|//.*')


def name_of(declaration):
    """What a declaration declares: the name in front of its first bracket, or of what ends it."""
    found = re.search(r"(\w+)$", re.split(r"[(={\[]", declaration)[0].rstrip(" ;,"))
    return found.group(1) if found else None


def comments(text):
    """(class, member, comment) for each comment of a header's text; a class is the member of itself."""
    scopes, depth, pending, declaration = [], 0, [], ""
    for line in text.splitlines():
        found = COMMENT.match(line)
        if found:
            pending.append(found.group(1))
            continue
        code = LITERAL_OR_COMMENT.sub("", line)
        entered = CLASS.match(code) if not declaration else None
        if entered and not code.rstrip().endswith(";"):
            if pending:
                yield entered.group(1), entered.group(1), " ".join(pending)
            scopes.append((entered.group(1), depth))
            pending = []
        elif pending and code.strip():
            declaration += " " + code.strip()
            if re.search(r"[(;=,{]|\w$", code) and name_of(declaration):
                yield (scopes[-1][0] if scopes else ""), name_of(declaration), " ".join(pending)
                pending, declaration = [], ""
        depth += code.count("{") - code.count("}")
        while scopes and "}" in code and depth <= scopes[-1][1]:
            scopes.pop()


def comments_of(root, patterns):
    """Comments by (class, member), of all headers that the patterns mean; the first of several stays."""
    found = {}
    for pattern in patterns:
        for path in sorted(root.glob(pattern)):
            for owner, member, comment in comments(path.read_text(encoding="utf-8")):
                found.setdefault((owner, member), comment.strip())
    return found
