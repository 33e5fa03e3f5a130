"""Runs one command within limits of time and memory, and prints as JSON what became of it.

    python3 -I -S launcher.py '{"command": [...], "seconds": 600, "memory": null}'

A process of its own: it is small, so that the memory that the system notes for the command is the command's, and it is
told when whoever started it dies, so that nothing goes on without being waited for. It imports nothing that is large
to import. The command has a folder of its own for temporary files, which goes with it.
"""

import json
import os
import resource
import signal
import sys
import time
import types
from typing import Any, NoReturn

# How much of what a command prints is kept.
MOST_BYTES = 64 << 20
# What a command that is out of time has to clean up, in seconds.
GRACE = 5


class Stopped(BaseException):
    """Whoever started this does not wait for it any more."""


def stop(_number: int, _frame: types.FrameType | None) -> NoReturn:
    raise Stopped


def limit(kind: int, most: int) -> None:
    """Never above the limit that there is."""
    hard = resource.getrlimit(kind)[1]
    most = most if hard == resource.RLIM_INFINITY else min(most, hard)
    resource.setrlimit(kind, (most, most))


def become(order: dict[str, Any], folder: str) -> NoReturn:
    """Makes this process the command."""
    try:
        os.setsid()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGALRM):
            signal.signal(number, signal.SIG_DFL)
        limit(resource.RLIMIT_CORE, 0)
        # All time of processors that a command could take is bounded even where nobody is left to end it.
        limit(resource.RLIMIT_CPU, (order["seconds"] + GRACE) * (os.cpu_count() or 1))
        if order["memory"] is not None:
            limit(resource.RLIMIT_AS, order["memory"])
        for stream, name in ((1, "out"), (2, "error")):
            os.dup2(os.open(os.path.join(folder, name), os.O_WRONLY | os.O_CREAT, 0o600), stream)
        os.dup2(os.open("/dev/null", os.O_RDONLY), 0)
        os.environ["TMPDIR"] = folder
        command = ["setpriv", "--pdeathsig", "KILL", *order["command"]]
        os.execvp(command[0], command)
    except OSError as error:
        os.write(2, f"kvr-batch: {error.strerror}\n".encode())
    finally:
        os._exit(127)


def end_group(leader: int, number: int) -> None:
    try:
        os.killpg(leader, number)
    except ProcessLookupError:
        pass


def start_read(path: str) -> str:
    try:
        with open(path, "rb") as file:
            return file.read(MOST_BYTES).decode("utf-8", "replace")
    except OSError:
        return ""


def watch(order: dict[str, Any], folder: str) -> dict[str, Any]:
    signals = 0

    def out_of_time(_number: int, _frame: types.FrameType | None) -> None:
        nonlocal signals
        signals += 1
        signal.setitimer(signal.ITIMER_REAL, GRACE)
        end_group(child, signal.SIGTERM if signals == 1 else signal.SIGKILL)

    start = time.monotonic()
    child = os.fork()
    if child == 0:
        become(order, folder)
    signal.signal(signal.SIGALRM, out_of_time)
    signal.setitimer(signal.ITIMER_REAL, order["seconds"])
    try:
        # Not reaped yet: the number of the group is the command's until all of the group have ended.
        os.waitid(os.P_PID, child, os.WEXITED | os.WNOWAIT)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        end_group(child, signal.SIGKILL)
        _, status, usage = os.wait4(child, 0)
    return {
        "status": os.waitstatus_to_exitcode(status),
        "timed_out": signals > 0,
        "seconds": time.monotonic() - start,
        "memory": usage.ru_maxrss * 1024,
        "out": start_read(os.path.join(folder, "out")),
        "error": start_read(os.path.join(folder, "error")),
    }


def remove(folder: str) -> None:
    for path, folders, files in os.walk(folder, topdown=False):
        for name in files:
            os.unlink(os.path.join(path, name))
        for name in folders:
            inner = os.path.join(path, name)
            os.unlink(inner) if os.path.islink(inner) else os.rmdir(inner)
    os.rmdir(folder)


def main() -> None:
    signal.signal(signal.SIGTERM, stop)
    # Of a terminal, whoever started this gets it, too, and ends it.
    signal.signal(signal.SIGINT, signal.SIG_IGN)
    base = os.environ.get("TMPDIR") or "/tmp"
    folder = os.path.join(base, f"kvr-batch-{os.getpid()}-{time.time_ns()}")
    os.mkdir(folder, 0o700)
    try:
        ended = watch(json.loads(sys.argv[1]), folder)
    except Stopped:
        sys.exit(128 + signal.SIGTERM)
    finally:
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
        remove(folder)
    print(json.dumps(ended))


if __name__ == "__main__":
    main()
