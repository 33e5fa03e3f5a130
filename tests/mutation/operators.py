"""Operators that each make one small mistake in the readers' tables.

An operator finds places in the code of a source; a place has what stands there, and what a mistake would have there
instead. All mistakes are built at once: each is an alternative that the environment chooses when a program runs.
"""

from __future__ import annotations

import re
from dataclasses import dataclass
from typing import Callable, Collection, Iterator, Sequence


@dataclass(frozen=True)
class Kinds:
    """The names of the format: those of elements and those of attributes."""

    elements: tuple[str, ...]
    attributes: tuple[str, ...]

    @staticmethod
    def of(header: str) -> "Kinds":
        def named(macro: str) -> tuple[str, ...]:
            return tuple(re.findall(rf"^KVR_{macro}\((\w+)\)", header, re.MULTILINE))

        return Kinds(named("ELEMENT"), named("ATTRIBUTE"))


@dataclass(frozen=True)
class Place:
    """A place in a source, with the mistakes to be made there."""

    operator: str
    start: int
    end: int
    mistakes: tuple[str, ...]
    # The code with "{0}" for whether the mistake is made. Without it the place is an expression, and so are mistakes.
    form: str = ""


# Forms of booleans that differ from one another, and other names of them.
BOOLEANS = ("kBoolean_OneElseFalse", "kBoolean_IntegerOneElseFalse", "kBoolean_TrueWordElseFalse",
            "kVisibility_OneElseHiddenAbsentShown")
ALIASES = {"kVisibility_OneElseHidden": "kBoolean_OneElseFalse"}
POLICIES = ("kOnFailure_Next", "kOnFailure_Stop", "kOnFailure_Abort")
DEFAULTS = (
    (r"(?<= = )true(?=;)", "false"), (r"(?<= = )false(?=;)", "true"),
    (r"(?<= = )0\.0(?=;)", "1.0"), (r"(?<= = )1\.0(?=;)", "0.0"), (r"(?<= = )0(?=;)", "1"), (r"(?<= = )1(?=;)", "0"),
    (r"(?<= = )kUnitType_Unknown(?=;)", "kUnitType_Meter"),
    (r"(?<= = )kPropertyType_String(?=;)", "kPropertyType_Int"),
    (r"(?<= = )ExtensionDataContent::kObjectPathType_Other(?=;)", "ExtensionDataContent::kObjectPathType_Occurrence"),
    (r"(?<=, )true(?=\})", "false"), (r"(?<=, )false(?=\})", "true"),
)


def blank(source: str) -> str:
    """The source with comments, and code for observers alone, as blanks: same length, same lines."""
    def spaces(match: re.Match[str]) -> str:
        return re.sub(r"[^\n]", " ", match.group(0))

    # Texts stand, and hide what looks like a comment in them.
    source = re.sub(r'"(?:\\.|[^"\\\n])*"|//[^\n]*|/\*.*?\*/',
                    lambda m: m.group(0) if m.group(0).startswith('"') else spaces(m), source, flags=re.DOTALL)
    source = re.sub(r"^#[^\n]*", spaces, source, flags=re.MULTILINE)
    # Functions that tell an observer, to the end at their own indentation.
    source = re.sub(r"^( *)(?:KVR_ASIDE |static )*(?:inline )?void Tell\w*\([^;{]*\)[^;{]*\{.*?^\1\}", spaces, source,
                    flags=re.DOTALL | re.MULTILINE)
    # Statements that do.
    source = re.sub(r"^ *if \(ReadObserver\* const observer = [^\n]*\n(?: *\{.*?^ *\}|[^;]*;)", spaces, source,
                    flags=re.DOTALL | re.MULTILINE)
    return re.sub(r"\b(?:TellObserver|TellText)\([^;]*;", spaces, source)


def policies(code: str, _: Kinds) -> Iterator[Place]:
    """What a failed child means to its owner."""
    for match in re.finditer(r"\bkOnFailure_\w+(?=\})", code):
        yield Place("policy", *match.span(), tuple(p for p in POLICIES if p != match.group(0)))


def booleans(code: str, _: Kinds) -> Iterator[Place]:
    """Another form of a boolean attribute."""
    for match in re.finditer(r"\b(?:kBoolean|kVisibility|kActive|kMemberVisibility)_\w+(?=\)|\.test)", code):
        # Where the test alone is used, two forms that differ in what absence means are one.
        forms = BOOLEANS[:3] if code.startswith(".test", match.end()) else BOOLEANS
        own = ALIASES.get(match.group(0), match.group(0))
        yield Place("boolean", *match.span(), tuple(form for form in forms if form != own))


def names(code: str, kinds: Kinds) -> Iterator[Place]:
    """Another name of an element or attribute: the next in the list of its kind."""
    for match in re.finditer(r"\bNames::(\w+)", code):
        name = match.group(1)
        # Of those that elements and attributes share.
        other = "ID" if name == "Description" else "Description"
        for of_kind in (kinds.elements, kinds.attributes):
            if name in of_kind:
                other = of_kind[(of_kind.index(name) + 1) % len(of_kind)]
        yield Place("name", *match.span(), (f"Names::{other}",))


def letters(code: str, _: Kinds) -> Iterator[Place]:
    """A name that is matched in any case where it has to be exact, and the other way round."""
    for match in re.finditer(r"(?<!bool )\b(On|OnAnyCase|Equals|EqualsAnyCase)\((?!XMLCh|ElementName)", code):
        exact = match.group(1) in ("On", "Equals")
        helper = "MutantOn" if match.group(1).startswith("On") else "MutantEquals"
        place = "{0}" if exact else "!{0}"
        yield Place("case", match.start(), match.end(), ("in any case" if exact else "exactly",),
                    f"{helper}{{{{{place}}}}}(")


def mappings(code: str, _: Kinds) -> Iterator[Place]:
    """An id as written where a mapped one is due, and the other way round."""
    for match in re.finditer(r"(?<=\n) *([\w.>-]*\bApplyIdMapping\([^;]*\);)", code):
        yield Place("mapping", *match.span(1), ("as written",), f"if (!{{0}}) {match.group(1)}")
    for match in re.finditer(r"\bReadNodeById\((writtenId)\)", code):
        mapped = re.findall(r"ApplyIdMapping\(([\w.]+)\)", code[: match.start()])[-1]
        yield Place("mapping", *match.span(1), (mapped,))
    for match in re.finditer(r"([\w.]+->)?QueryMappedObject\((\w+), (\w+)\)", code):
        if match.group(1):
            receiver, written, mapped = match.groups()
            yield Place("mapping", *match.span(), (f"{receiver}objectCollector->HasObject({mapped} = {written})",))
    # Ids that are kept as written.
    for match in re.finditer(r"(?:\n *)((?:XMLUtils::)?GetNodeAttribute\([^;()]*, ([\w.]*[iI]d)\);)", code):
        if f"ApplyIdMapping({match.group(2)})" not in code[match.end() : match.end() + 200]:
            yield Place("mapping", *match.span(1), ("mapped",),
                        f"{match.group(1)} if ({{0}}) MutantMapId({match.group(2)});")
    for match in re.finditer(r"(?<=\n) *(\(style\.\*setter\)\((id)\);)", code):
        yield Place("mapping", *match.span(1), ("mapped",), f"(style.*setter)({{0}} ? MutantMapped(id) : id);")
    for match in re.finditer(r"\bParseOccurrencePath\((?!UTF8String const)(?:[^()]|\((?:[^()]|\([^()]*\))*\))*\)", code):
        yield Place("mapping", *match.span(), (f"MutantMapped({match.group(0)})",))


def defaults(code: str, _: Kinds) -> Iterator[Place]:
    """Another value where the document says nothing."""
    for pattern, text in DEFAULTS:
        for match in re.finditer(pattern, code):
            begin = code.rfind("\n", 0, match.start()) + 1
            # What a loop counts with is no default, and neither is a function's being pure.
            if not re.match(r" *(?:(?:for|while) \(|virtual\b)", code[begin : match.start()]):
                yield Place("default", *match.span(), (text,))


def results(code: str, _: Kinds) -> Iterator[Place]:
    """The other answer of a reader."""
    for match in re.finditer(r"(?<=\breturn )(true|false)(?=;)", code):
        yield Place("result", *match.span(), ("false" if match.group(1) == "true" else "true",))


def targets(code: str, _: Kinds) -> Iterator[Place]:
    """A row of a table stands for what a row beside it stands for."""
    target = r"((?:<[^<>]*>|[^{},<])+)"
    row = rf"\{{(?:[\w:]+|\"[^\"\n]*\"), {target}(?:, [^{{}}]+)?\}}"
    for table in re.finditer(r"\b\w+\[\] = \{\n(.*?)\n *\};", code, re.DOTALL):
        rows = list(re.finditer(row, table.group(1)))
        for number, one in enumerate(rows):
            others = [rows[i].group(1) for i in (number + 1, number - 1)
                      if 0 <= i < len(rows) and rows[i].group(1) != one.group(1)]
            if others:
                yield Place("target", table.start(1) + one.start(1), table.start(1) + one.end(1), tuple(others[:1]),
                            f"MutantEither({{0}}, {others[0]}, {one.group(1)})")


def firsts(code: str, _: Kinds) -> Iterator[Place]:
    """The last of several counts where the first did, or one counts twice; and the other way round."""
    for match in re.finditer(r"(?<=;\n) +(break;)(?=\n *\})", code):
        yield Place("order", *match.span(1), ("go on",), "if (!{0}) break;")
    for match in re.finditer(r"(?<=\n) *([\w.>-]+)(try_emplace|AddWithUniquenessCheck|AddWithoutUniquenessCheck)"
                             r"(\([^;]*\);)(?=\n)", code):
        other = {"try_emplace": "insert_or_assign", "AddWithUniquenessCheck": "AddWithoutUniquenessCheck",
                 "AddWithoutUniquenessCheck": "AddWithUniquenessCheck"}[match.group(2)]
        receiver, _own, rest = match.groups()
        yield Place("order", match.start(1), match.end(3), (other,),
                    f"if ({{0}}) {receiver}{other}{rest} else {match.group(0).strip()}")


OPERATORS: Sequence[Callable[[str, Kinds], Iterator[Place]]] = (
    policies, booleans, names, letters, mappings, defaults, results, targets, firsts)


def places_of(source: str, kinds: Kinds) -> list[Place]:
    """The places in order; of two that overlap the first."""
    code = blank(source)
    found = sorted((place for operator in OPERATORS for place in operator(code, kinds) if place.mistakes),
                   key=lambda place: (place.start, place.end))
    places: list[Place] = []
    for place in found:
        if not places or place.start >= places[-1].end:
            places.append(place)
    return places


def with_mistakes(source: str, places: Sequence[Place], first: int, left_out: Collection[int] = ()) -> str:
    """The source with all mistakes of the places, numbered from the first, to be chosen when the program runs. Places
    that are left out, by their indices, keep their numbers."""
    pieces: list[str] = []
    at = 0
    number = first
    for index, place in enumerate(places):
        text = source[place.start : place.end]
        for mistake in place.mistakes:
            chosen = f"::kvr_mutant({number})"
            if index not in left_out:
                text = place.form.format(chosen) if place.form else f"({chosen} ? {mistake} : {text})"
            number += 1
        pieces += [source[at : place.start], text]
        at = place.end
    pieces.append(source[at:])
    # What is chosen at run time is no constant, and neither is what is made of it.
    code = re.sub(r"\bconstexpr (?=[^;(){}]*(?:\{|= )[^;]*::kvr_mutant)", "const ", "".join(pieces))
    return re.sub(r"\bconstexpr (?=BooleanForm\b)", "const ", code)
