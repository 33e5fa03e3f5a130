"""The commands of kvr that run over many files: what they take, how they are called, and what their answers mean."""

import collections
import json
import os
import signal
from collections.abc import Callable
from dataclasses import dataclass
from typing import Any

from kvr_batch.child import Ended

MODELS = (".stp", ".step", ".p21", ".stpz", ".igs", ".iges", ".brep", ".brp", ".rle", ".glb", ".gltf", ".stl", ".obj",
          ".ply")
SCENES = (".xml",)

# How a run ended. The first is good, the next two are answers, and those behind are failures.
PASSED = "passed"
DIFFERENT = "different"
FOUND = "found"
FAILED = "failed"
CRASHED = "crashed"
TIMED_OUT = "timed out"
REFUSED = "refused"
LOST = "lost"
# kvr does not take the options that it was given. No other input would fare better: a run ends with it.
BAD_OPTIONS = "bad options"
ANSWERS = (PASSED, DIFFERENT, FOUND)
# What says more of the machines than of the file: it is tried again.
NOT_FINAL = (REFUSED, LOST)

BAD_ARGUMENTS_STATUS = 2


@dataclass(frozen=True)
class Verdict:
    """What a run says: an outcome, one sentence unless it passed, and what was found, as it goes to JSON."""

    outcome: str
    message: str
    findings: dict[str, Any]


# Of an answer, what to keep and what it is called when it is not good.
Reader = Callable[[Any], tuple[dict[str, Any], str]]


def _read_certificate(answer: Any) -> tuple[dict[str, Any], str]:
    bad = [row for row in answer["Rows"] if row["Verdict"] != "equal"]
    rows = [{key: value for key, value in row.items() if key != "Verdict"} for row in bad]
    findings = {"Rows": rows, "Absences": answer["Absences"], "Remarks": answer["Remarks"]}
    return findings, ", ".join(row["Name"] for row in bad)


def _read_check(answer: Any) -> tuple[dict[str, Any], str]:
    scene = answer["Scenes"][0]
    rules = collections.Counter(str(finding["Rule"]) for finding in scene["Findings"])
    counts = {key: scene[key] for key in ("Errors", "Warnings", "Notes")}
    return counts | {"Rules": dict(rules)}, ", ".join(sorted(rules))


def _read_stats(answer: Any) -> tuple[dict[str, Any], str]:
    """The totals, and of lists how long they are."""
    return {key: len(value) if isinstance(value, list) else value for key, value in answer.items()}, ""


@dataclass(frozen=True)
class Command:
    """A command, the options that make it answer as it is read here, and the endings of names that it takes in a
    folder. What reads its answer gets its JSON; without one, the exit status says all. What an exit status of 1 with an
    answer is called."""

    name: str
    options: tuple[str, ...]
    takes: tuple[str, ...]
    read: Reader | None
    bad: str = FAILED


COMMANDS = {command.name: command for command in (
    Command("convert", (), SCENES + MODELS, None),
    Command("check", ("--json",), SCENES, _read_check, FOUND),
    Command("certify", ("--json",), MODELS, _read_certificate, DIFFERENT),
    Command("stats", ("--json",), SCENES, _read_stats),
)}


def _complaint(error: str, path: str) -> str:
    """The last line of what a program complained of, without its name and the file's, so that others are alike."""
    lines = [line for line in error.splitlines() if line.strip()]
    if not lines:
        return ""
    text = lines[-1].removeprefix("kvr: ").removeprefix(path).removeprefix(": ")
    return text.replace(path, os.path.basename(path))


def _signal_name(number: int) -> str:
    try:
        return signal.Signals(number).name
    except ValueError:
        return str(number)


def judge(command: Command, path: str, ended: Ended, seconds: int) -> Verdict:
    """What a child's end means."""
    if ended.timed_out or ended.status == -signal.SIGXCPU:
        return Verdict(TIMED_OUT, f"it took longer than {seconds} s", {})
    if ended.status < 0:
        return Verdict(CRASHED, f"kvr was ended by the signal {_signal_name(-ended.status)}", {})
    if ended.status in (0, 1) and command.read is not None and ended.out:
        try:
            findings, names = command.read(json.loads(ended.out))
        except (ValueError, KeyError, TypeError, IndexError, AttributeError) as error:
            return Verdict(FAILED, f"the answer of kvr cannot be read: {type(error).__name__}", {})
        if ended.status == 0:
            return Verdict(PASSED, "", findings)
        if command.bad != FAILED:
            return Verdict(command.bad, f"{command.bad}: {names}", findings)
    if ended.status == 0:
        remarks = [line.removeprefix("kvr: ") for line in ended.error.splitlines()]
        return Verdict(PASSED, "", {"Remarks": remarks})
    complaint = _complaint(ended.error, path) or f"kvr ended with the status {ended.status} and no word"
    return Verdict(BAD_OPTIONS if ended.status == BAD_ARGUMENTS_STATUS else FAILED, complaint, {})
