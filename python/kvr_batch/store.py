"""The results, in a SQLite file: one row for each input and command line."""

import json
import sqlite3
from collections.abc import Iterator
from dataclasses import dataclass
from typing import Any

from kvr_batch.work import Result

FORM = 1
SCHEMA = """
CREATE TABLE IF NOT EXISTS results (
    input TEXT NOT NULL,      -- an absolute path; a BLOB when it is no UTF-8
    kind TEXT NOT NULL,       -- convert, check, certify or stats
    command TEXT NOT NULL,    -- the command line without inputs, and without limits
    digest TEXT NOT NULL,     -- of the input with its side files
    version TEXT NOT NULL,    -- of kvr
    limits TEXT NOT NULL,
    outcome TEXT NOT NULL,
    message TEXT NOT NULL,    -- a sentence, empty when it passed
    seconds REAL NOT NULL,
    memory INTEGER NOT NULL,  -- bytes: the most that one of its processes had
    findings TEXT NOT NULL,   -- JSON
    outputs TEXT NOT NULL,    -- JSON: digests by path from the output's folder
    log TEXT NOT NULL,
    ended TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%SZ', 'now')),
    PRIMARY KEY (input, command)
) WITHOUT ROWID;
"""


@dataclass(frozen=True)
class Entry:
    """A result, and what it is the result of."""

    path: str
    kind: str
    command: str
    digest: str
    version: str
    limits: str
    result: Result


@dataclass(frozen=True)
class Known:
    """What tells whether a result still stands."""

    digest: str
    version: str
    limits: str
    outcome: str
    outputs: dict[str, str]


def stored(path: str) -> str | bytes:
    """A path as SQLite keeps it: names that are no UTF-8 as bytes."""
    try:
        path.encode("utf-8")
        return path
    except UnicodeEncodeError:
        return path.encode("utf-8", "surrogateescape")


def restored(value: str | bytes) -> str:
    return value if isinstance(value, str) else value.decode("utf-8", "surrogateescape")


class Store:
    """Opens a file of results, or makes it. sqlite3.Error when it is none."""

    def __init__(self, path: str) -> None:
        self._base = sqlite3.connect(path)
        form = self._base.execute("PRAGMA user_version").fetchone()[0]
        tables = self._base.execute("SELECT count(*) FROM sqlite_master").fetchone()[0]
        if form != FORM and (form != 0 or tables != 0):
            raise sqlite3.DatabaseError("it holds something else")
        # A row is kept that was there when the program or the machine ended, all but the last ones.
        self._base.executescript(f"PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; {SCHEMA}"
                                 f"PRAGMA user_version = {FORM};")

    def close(self) -> None:
        self._base.close()

    def add(self, entries: list[Entry]) -> None:
        """The row that there was of the same input and command line goes."""
        with self._base:
            self._base.executemany(
                "INSERT OR REPLACE INTO results (input, kind, command, digest, version, limits, outcome, message,"
                " seconds, memory, findings, outputs, log) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                [(stored(entry.path), entry.kind, entry.command, entry.digest, entry.version, entry.limits,
                  entry.result.outcome, entry.result.message, entry.result.seconds, entry.result.memory,
                  json.dumps(entry.result.findings), json.dumps(entry.result.outputs), entry.result.log)
                 for entry in entries])

    def known(self, command: str) -> dict[str, Known]:
        """By input, what there is of a command line."""
        rows = self.query("SELECT input, digest, version, limits, outcome, outputs FROM results WHERE command = ?",
                          command)
        return {restored(path): Known(digest, version, limits, outcome, json.loads(outputs))
                for path, digest, version, limits, outcome, outputs in rows}

    def outcomes(self, command: str) -> dict[str, str]:
        rows = self.query("SELECT input, outcome FROM results WHERE command = ?", command)
        return {restored(path): outcome for path, outcome in rows}

    def query(self, text: str, *values: Any) -> Iterator[tuple[Any, ...]]:
        return self._base.execute(text, values)
