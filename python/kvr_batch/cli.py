"""The program kvr-batch."""

import argparse
import contextlib
import os
import shutil
import signal
import sqlite3
import sys
import tempfile
import time
import types
from typing import Any, NoReturn

import distributed

from kvr_batch import engine, inputs, report
from kvr_batch.child import Limits
from kvr_batch.commands import ANSWERS, COMMANDS, NOT_FINAL, PASSED
from kvr_batch.engine import BadOptions, EngineLost, Task
from kvr_batch.store import Entry, Store
from kvr_batch.work import Job, Looked, Result, has_command, program_version

GOOD, BAD_RESULT, BAD_ARGUMENTS, NO_ENGINE = 0, 1, 2, 3
UNITS = {"": 1, "kB": 10**3, "MB": 10**6, "GB": 10**9, "KiB": 1 << 10, "MiB": 1 << 20, "GiB": 1 << 30}

DESCRIPTION = """Runs a command of kvr over many files, each in a process of its own within limits of time and memory,
and keeps each result in a SQLite file. Started again it goes on where it stopped, and skips what has not changed."""
EPILOG = """exit status: 0 all passed; 1 some did not; 2 bad arguments, or no file; 3 the engine ended before the work,
which goes on when it is started again."""


def size(text: str) -> int | None:
    if text == "none":
        return None
    digits = text.rstrip("kKMGiB")
    if text[len(digits):] not in UNITS or not digits.isdecimal() or int(digits) == 0:
        raise argparse.ArgumentTypeError(f"{text!r} is no size such as 800MB or 4GiB, and not none")
    return int(digits) * UNITS[text[len(digits):]]


def count(text: str) -> int:
    if not text.isdecimal() or not 1 <= int(text) <= 1_000_000_000:
        raise argparse.ArgumentTypeError(f"{text!r} is no whole number from 1 to 1,000,000,000")
    return int(text)


def part(text: str) -> tuple[int, int]:
    first, _, second = text.partition("/")
    if not (first.isdecimal() and second.isdecimal() and 1 <= int(first) <= int(second)):
        raise argparse.ArgumentTypeError(f"{text!r} is no part such as 3/16")
    return int(first), int(second)


def parser() -> argparse.ArgumentParser:
    made = argparse.ArgumentParser(prog="kvr-batch", description=DESCRIPTION, epilog=EPILOG, allow_abbrev=False,
                                   usage="kvr-batch COMMAND [OPTIONS] INPUT... [-- OPTIONS OF KVR]")
    add = made.add_argument
    add("command", choices=COMMANDS, metavar="COMMAND", help="convert, check, certify or stats")
    add("inputs", nargs="*", metavar="INPUT",
        help="a folder, with all below it; a file; or a pattern such as 'a/**/*.stp'")
    add("--list", action="append", default=[], metavar="FILE",
        help="a file with a path in each line; - is standard input")
    add("--results", default="kvr-batch.sqlite", metavar="FILE",
        help="the file of results; kvr-batch.sqlite unless given")
    add("--report", metavar="FILE", help="writes a page of all results of the command; without inputs, nothing is run")
    add("--to", metavar="EXTENSION", help="of convert: the format, such as glb")
    add("--out", metavar="FOLDER", help="of convert: a folder; what comes of an input has a folder of its name in it")
    add("--timeout", type=count, default=600, metavar="SECONDS", help="the time that a file may take; 600 unless given")
    add("--max-memory", type=size, default=8 << 30, metavar="SIZE",
        help="the address space that each process may have, or none for no limit; 8GiB unless given")
    add("--scheduler", metavar="ADDRESS", help="a running scheduler, such as tcp://host:8786, instead of this machine")
    add("--workers", type=count, metavar="N", help="worker processes on this machine; one for each core unless given")
    add("--memory", type=size, metavar="SIZE",
        help="what all workers may take together by the estimates of kvr info; the memory of this machine unless given")
    add("--sample", type=count, metavar="N", help="takes so many of the files, drawn by --seed")
    add("--seed", type=count, default=1, metavar="N", help="which sample; 1 unless given")
    add("--part", type=part, metavar="I/N", help="takes the I-th of N parts of the files, by a digest of their paths")
    add("--again", action="store_true", help="runs what did not pass again")
    add("--kvr", metavar="PROGRAM", help="the program kvr; the one beside kvr-batch, or on the path, unless given")
    add("--quiet", action="store_true", help="says nothing but what fails to run")
    return made


def printable(text: str) -> str:
    return "".join(c if c.isprintable() else c.encode("unicode_escape", "surrogatepass").decode() for c in text)


def say(text: str, is_bad: bool = False) -> None:
    line = printable(text)
    print(f"\033[31m{line}\033[0m" if is_bad and sys.stdout.isatty() else line, flush=True)


def complain(text: str) -> None:
    print("kvr-batch: " + printable(text), file=sys.stderr)


def find_program(given: str | None, command: str) -> str:
    beside = os.path.join(os.path.dirname(os.path.realpath(sys.argv[0])), "kvr")
    found = shutil.which(given) if given else beside if os.access(beside, os.X_OK) else shutil.which("kvr")
    if found is None:
        raise inputs.NoInputs(f"{given or 'kvr'}: there is no such program")
    if not has_command(found, command):
        raise inputs.NoInputs(f"{found} has no command {command}")
    return os.path.abspath(found)


class Session:
    """One run, as the arguments want it."""

    def __init__(self, arguments: argparse.Namespace, options: list[str], store: Store) -> None:
        self._arguments = arguments
        self._store = store
        paths = inputs.find_inputs(COMMANDS[arguments.command], arguments.inputs, arguments.list)
        base = os.path.commonpath([os.path.dirname(path) for path in paths])
        if arguments.sample:
            paths = inputs.sample(paths, arguments.sample, arguments.seed)
        if arguments.part:
            paths = inputs.partition(paths, base, *arguments.part)
        target = os.path.abspath(arguments.out) if arguments.out else ""
        extension = "." + arguments.to.lstrip(".") if arguments.to else ""
        self._job = Job(find_program(arguments.kvr, arguments.command), arguments.command, tuple(options),
                        Limits(arguments.timeout, arguments.max_memory), target, extension)
        self._tasks = [Task(path, target and os.path.join(target, os.path.relpath(path, base))) for path in paths]
        self._version = program_version(self._job.program)
        self._known = store.known(self._job.text())
        self._counts: dict[str, int] = {}

    def go(self) -> int:
        start = time.monotonic()
        with contextlib.ExitStack() as stack:
            client = self._client(stack)
            skipped = engine.Run(client, self._job, self._tasks, self._stands, self._take).go()
        if not self._arguments.quiet:
            parts = [f"{number:,} {outcome}" for outcome, number in sorted(self._counts.items())]
            parts += [f"{skipped:,} unchanged"] if skipped else []
            noun = "file" if len(self._tasks) == 1 else "files"
            say(f"{len(self._tasks):,} {noun}: {', '.join(parts)}; {time.monotonic() - start:.1f} s")
        now = self._store.outcomes(self._job.text())
        return GOOD if all(now[task.path] == PASSED for task in self._tasks) else BAD_RESULT

    def _client(self, stack: contextlib.ExitStack) -> Any:
        if self._arguments.scheduler:
            client: Any = stack.enter_context(distributed.Client(self._arguments.scheduler, timeout=10))
            engine.send_package(client)
            return client
        workers = self._arguments.workers or len(os.sched_getaffinity(0))
        memory = self._arguments.memory or engine.memory_of_machine()
        folder = stack.enter_context(tempfile.TemporaryDirectory(prefix="kvr-batch-"))
        return stack.enter_context(distributed.Client(stack.enter_context(
            engine.local_cluster(workers, memory, folder))))

    def _stands(self, task: Task, looked: Looked) -> bool:
        known = self._known.get(task.path)
        if known is None or (known.digest, known.version) != (looked.digest, self._version):
            return False
        if known.outcome == PASSED:
            return known.outputs == looked.outputs
        if self._arguments.again or known.outcome in NOT_FINAL:
            return False
        return known.outcome in ANSWERS or known.limits == self._job.limits.text()

    def _take(self, results: list[tuple[Task, Looked, Result]]) -> None:
        job, limits = self._job, self._job.limits.text()
        self._store.add([Entry(task.path, job.command, job.text(), looked.digest, self._version, limits, result)
                         for task, looked, result in results])
        for task, _, result in results:
            self._counts[result.outcome] = self._counts.get(result.outcome, 0) + 1
            if result.outcome != PASSED and not self._arguments.quiet:
                say(f"{result.outcome}: {task.path}: {result.message}", is_bad=True)


def stop(_number: int, _frame: types.FrameType | None) -> NoReturn:
    raise SystemExit(128 + signal.SIGTERM)


def write_report(path: str, store: Store, kind: str) -> None:
    """The page appears whole, or what was there stays."""
    partial = path + ".part"
    with open(partial, "w", encoding="utf-8") as file:
        file.write(report.page(store, kind))
    os.replace(partial, path)


def parsed(words: list[str]) -> tuple[argparse.Namespace, list[str]]:
    """The arguments, and the options for kvr."""
    split = words.index("--") if "--" in words else len(words)
    made = parser()
    arguments = made.parse_intermixed_args(words[:split])
    arguments.runs = bool(arguments.inputs or arguments.list)
    if not arguments.runs and not arguments.report:
        made.error("there are no inputs")
    if [bool(arguments.to), bool(arguments.out)] != 2 * [arguments.runs and arguments.command == "convert"]:
        made.error("a run of convert, and nothing else, needs --to EXTENSION and --out FOLDER")
    if arguments.scheduler and (arguments.workers or arguments.memory):
        made.error("--workers and --memory are of this machine, not of a scheduler")
    return arguments, words[split + 1:]


def run(arguments: argparse.Namespace, options: list[str], store: Store) -> int:
    status = Session(arguments, options, store).go() if arguments.runs else GOOD
    if arguments.report:
        write_report(arguments.report, store, arguments.command)
    return status


def main(words: list[str]) -> int:
    arguments, options = parsed(words)
    signal.signal(signal.SIGTERM, stop)
    try:
        store = Store(arguments.results)
    except sqlite3.Error as error:
        complain(f"{arguments.results} is no file of results: {error}")
        return BAD_ARGUMENTS
    try:
        return run(arguments, options, store)
    except (inputs.NoInputs, BadOptions) as error:
        complain(str(error))
        return BAD_ARGUMENTS
    except (EngineLost, OSError, sqlite3.Error) as error:
        complain(f"{error}; started again, it goes on from here")
        return NO_ENGINE
    except KeyboardInterrupt:
        complain("interrupted; started again, it goes on from here")
        return 128 + signal.SIGINT
    finally:
        store.close()
