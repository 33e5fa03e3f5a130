"""Runs kvr in a child process, by the launcher."""

import json
import pkgutil
import subprocess
from dataclasses import dataclass


@dataclass(frozen=True)
class Limits:
    """What a child process may take: seconds on the clock, and bytes of address space for each process, or None."""

    seconds: int
    memory: int | None

    def text(self) -> str:
        return f"{self.seconds} s, {'no limit' if self.memory is None else self.memory} bytes"


@dataclass(frozen=True)
class Ended:
    """What became of a child: its exit status, or minus the signal that ended it; the most memory that one of its
    processes had, in bytes; what it printed."""

    status: int
    timed_out: bool
    seconds: float
    memory: int
    out: str
    error: str


def launcher_source() -> str:
    # The package may have come to a worker as a zip file.
    source = pkgutil.get_data(__package__, "launcher.py")
    assert source is not None
    return source.decode("utf-8")


def run_child(command: list[str], limits: Limits) -> Ended:
    """Runs a command to its end. OSError when it cannot be watched, which is nobody's fault but the machine's."""
    order = json.dumps({"command": command, "seconds": limits.seconds, "memory": limits.memory})
    done = subprocess.run(
        ["setpriv", "--pdeathsig", "TERM", "/usr/bin/python3", "-I", "-S", "-c", launcher_source(), order],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if done.returncode != 0:
        raise OSError(f"a process could not be watched: {done.stderr.decode('utf-8', 'replace').strip()[-300:]}")
    return Ended(**json.loads(done.stdout))
