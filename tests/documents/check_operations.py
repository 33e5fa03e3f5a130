#!/usr/bin/env python3
"""Fails on an operation or class of an installed header that has no comment of its own.

    check_operations.py ROOT

Which headers are installed is read from cmake/KvrInstall.cmake. An operation is a free function or a public member
function. It is documented by a "///" comment directly above it or a "///<" comment behind it. Not counted are
constructors, destructors, assignments, comparisons, what is deleted, and calls of macros in place of a declaration. An
override takes its comment from the virtual operation of that name, and a setter that is not virtual, SetX, that of the
X which its class answers. Overloads that are not virtual and stand directly below one another share one comment.
"""

import dataclasses
import pathlib
import re
import sys

TOKEN = re.compile(
    r"""(?P<directive>^[ \t]*\#(?:[^\n\\]|\\\n|\\.)*)
      | (?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<text>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|(?:u8|u|U|L)?"(?:[^"\\\n]|\\.)*"|(?:u|U|L)?'(?:[^'\\\n]|\\.)+')
      | (?P<word>\w+)
      | (?P<mark_>::|->|<=>|\[\[|\]\]|&&|\|\||[<>=!]=|\+\+|--|[^\w\s])
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL)

ASSIGNMENTS_AND_COMPARISONS = {"=", "==", "!=", "<", ">", "<=", ">=", "<=>"}


@dataclasses.dataclass
class Token:
    text: str
    first: int
    last: int


@dataclasses.dataclass
class Operation:
    name: str
    line: int
    is_virtual: bool
    is_override: bool
    is_documented: bool


class Header:
    """The operations and classes of one header, in its order."""

    def __init__(self, text):
        self.tokens = []
        self.comment_ends = set()
        self.trailing = set()
        for match in TOKEN.finditer(text):
            first = text.count("\n", 0, match.start()) + 1
            last = first + match.group().count("\n")
            if match.lastgroup == "comment":
                if match.group().startswith("///<"):
                    self.trailing.add(first)
                elif match.group().startswith("///"):
                    self.comment_ends.add(first)
            elif match.lastgroup != "directive":
                self.tokens.append(Token(match.group(), first, last))
        self.at = 0
        self.operations = []
        self.classes = []
        self.scope("", "", True)

    def peek(self, ahead=0):
        at = self.at + ahead
        return self.tokens[at].text if at < len(self.tokens) else ""

    def skip_braces(self):
        depth = 0
        while self.at < len(self.tokens):
            text = self.peek()
            self.at += 1
            depth += (text == "{") - (text == "}")
            if depth == 0:
                return

    def scope(self, qualified, name, is_public):
        """The declarations up to the closing brace of a namespace or class."""
        former = None
        while self.at < len(self.tokens) and self.peek() != "}":
            if self.peek() in ("public", "protected", "private") and self.peek(1) == ":":
                is_public = self.peek() == "public"
                self.at += 2
            elif self.peek() == ";":
                self.at += 1
            else:
                former = self.declaration(qualified, name, is_public, former)
        self.at += 1

    def declaration(self, qualified, owner, is_public, former):
        begin = self.at
        head = self.read_head()
        words = strip_template(head)
        texts = [token.text for token in words]
        if "namespace" in texts[:2]:
            name = "::".join(text for text in texts if re.match(r"\w+$", text) and text not in ("namespace", "inline"))
            self.at += 1
            self.scope(join(qualified, name), "", True)
            return None
        if texts and texts[0] in ("class", "struct", "union"):
            return self.class_declaration(qualified, texts, begin, is_public)
        if texts and texts[0] in ("friend", "using", "typedef", "static_assert", "enum", "extern"):
            self.end_of_declaration()
            return None
        operation = self.operation(qualified, owner, words, begin, former) if is_public else None
        self.end_of_declaration()
        if not operation:
            return None
        last = self.tokens[self.at - 1].last
        operation.is_documented = operation.is_documented or last in self.trailing
        self.operations.append(operation)
        return operation, last

    def class_declaration(self, qualified, texts, begin, is_public):
        if self.peek() != "{":
            self.end_of_declaration()
            return None
        before_bases = texts[1:texts.index(":")] if ":" in texts else texts[1:]
        before_bases = cut_template_arguments(before_bases)
        name = [text for text in before_bases if re.match(r"\w+$", text) and text != "final"][-1]
        if is_public:
            self.classes.append((join(qualified, name), self.tokens[begin].first, self.is_documented(begin)))
        self.at += 1
        self.scope(join(qualified, name), name, is_public and texts[0] != "class")
        self.end_of_declaration()
        return None

    def read_head(self):
        """What stands before the body or the end of a declaration, both of which are left."""
        begin = self.at
        parentheses = 0
        has_initialisers = False
        while self.at < len(self.tokens):
            text = self.peek()
            parentheses += (text in ("(", "[")) - (text in (")", "]"))
            if parentheses == 0 and text == ":" and self.tokens[self.at - 1].text in (")", "noexcept"):
                has_initialisers = True
            if parentheses == 0 and text in (";", "}"):
                break
            if text == "{":
                former = self.tokens[self.at - 1].text
                is_value = parentheses > 0 or (has_initialisers and (re.match(r"\w+$", former) or former == ">"))
                if not is_value:
                    break
                self.skip_braces()
                continue
            self.at += 1
        return self.tokens[begin:self.at]

    def end_of_declaration(self):
        """Goes behind the body or the semicolon, with what a value in braces has behind it."""
        is_function_body = self.at > 0 and self.peek() == "{"
        if is_function_body:
            self.skip_braces()
            if self.peek() in (";", ",", "="):
                while self.at < len(self.tokens) and self.peek() != ";":
                    self.at += 1
                self.at += 1
            return
        while self.at < len(self.tokens) and self.peek() not in (";", "}"):
            self.at += 1
        if self.peek() == ";":
            self.at += 1

    def operation(self, qualified, owner, words, begin, former):
        texts = [token.text for token in words]
        place = parameters_at(texts)
        if place is None or is_macro_call(texts, place):
            return None
        name = operation_name(texts, place)
        if name is None or name == owner or name.startswith("~") or texts[-2:] == ["=", "delete"]:
            return None
        if name.startswith("operator") and name.removeprefix("operator") in ASSIGNMENTS_AND_COMPARISONS:
            return None
        is_virtual = "virtual" in texts[:place]
        is_documented = self.is_documented(begin)
        if former and not is_virtual:
            operation, last = former
            follows = self.tokens[begin].first == last + 1 and operation.name == join(qualified, name)
            is_documented = is_documented or (follows and operation.is_documented)
        return Operation(join(qualified, name), self.tokens[begin].first, is_virtual, "override" in texts[place:],
                         is_documented)

    def is_documented(self, begin):
        return self.tokens[begin].first - 1 in self.comment_ends


def join(qualified, name):
    return f"{qualified}::{name}" if qualified and name else qualified or name


def strip_template(tokens):
    """The declaration without its "template <...>" and attributes."""
    at = 0
    while at < len(tokens) and tokens[at].text in ("template", "[["):
        is_template = tokens[at].text == "template"
        depth = 0
        while at < len(tokens):
            text = tokens[at].text
            at += 1
            if not is_template and text == "]]":
                break
            depth += (text == "<") - (text == ">")
            if is_template and text == ">" and depth == 0:
                break
    return tokens[at:]


def cut_template_arguments(texts):
    return texts[:texts.index("<")] if "<" in texts else texts


def parameters_at(texts):
    """Where the parameters of a function begin; none for what is no function."""
    if "operator" in texts:
        at = texts.index("operator") + 1
        if texts[at:at + 2] == ["(", ")"]:
            return at + 2
        return texts.index("(", at) if "(" in texts[at:] else None
    depth = 0
    for at, text in enumerate(texts):
        depth += (text == "<") - (text == ">")
        if text == "=" and depth == 0:
            return None
        if text == "(" and depth == 0 and at > 0 and re.match(r"\w+$", texts[at - 1]):
            return at
    return None


def is_macro_call(texts, place):
    """Whether there is a name with arguments alone: no type in front of it and nothing behind."""
    depth = 0
    for at in range(place, len(texts)):
        depth += (texts[at] == "(") - (texts[at] == ")")
        if depth == 0:
            return place == 1 and at == len(texts) - 1
    return False


def operation_name(texts, place):
    if "operator" in texts[:place]:
        return "operator" + "".join(texts[texts.index("operator") + 1:place])
    if place == 0 or not re.match(r"[A-Za-z_]\w*$", texts[place - 1]):
        return None
    if place > 1 and texts[place - 2] == "~":
        return "~" + texts[place - 1]
    # A macro with arguments in front of a name, such as alignas(8), is none.
    return texts[place - 1]


def installed_headers(root):
    """The paths that cmake/KvrInstall.cmake installs, from the root."""
    rules = re.sub(r"#[^\n]*", "", (root / "cmake/KvrInstall.cmake").read_text(encoding="utf-8"))
    headers = set()
    for folders in re.findall(r"foreach\(folder ([^)]*)\)\s*file\(GLOB headers", rules):
        for folder in folders.split():
            headers.update((root / folder).glob("*.h"))
    for files in re.findall(r"install\(FILES ([^)]*)\)", rules):
        headers.update(root / name for name in files.split() if name.endswith(".h") and "$" not in name)
    return sorted(header.relative_to(root).as_posix() for header in headers)


def check(root):
    """The number of operations and of classes, and what has no comment."""
    read = [(path, Header((root / path).read_text(encoding="utf-8"))) for path in installed_headers(root)]
    documented = {operation.name.rpartition("::")[2] for _, header in read for operation in header.operations
                  if operation.is_virtual and operation.is_documented and not operation.is_override}
    operations = virtual = classes = 0
    problems = []
    for path, header in read:
        answered = {operation.name for operation in header.operations}
        for operation in header.operations:
            operations += 1
            virtual += operation.is_virtual and not operation.is_override
            owner, _, name = operation.name.rpartition("::")
            takes_over = (operation.is_override and name in documented
                          or not operation.is_virtual and name.startswith("Set")
                          and f"{owner}::{name.removeprefix('Set')}" in answered)
            if not operation.is_documented and not takes_over:
                problems.append(f"{path}:{operation.line}: {operation.name} has no comment")
        for name, line, is_documented in header.classes:
            classes += 1
            if not is_documented:
                problems.append(f"{path}:{line}: class {name} has no comment")
    return operations, virtual, classes, problems


def main(arguments):
    if len(arguments) != 2:
        print(__doc__)
        return 2
    operations, virtual, classes, problems = check(pathlib.Path(arguments[1]))
    for problem in problems:
        print(problem)
    without = sum("class " not in problem for problem in problems)
    print(f"{operations} operations ({virtual} of them declared virtual), {operations - without} documented; "
          f"{classes} classes, {classes - len(problems) + without} documented")
    if operations == 0:
        print("no installed header was found")
    return 1 if problems or operations == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
