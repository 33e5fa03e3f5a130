"""Runs a job over inputs on Dask distributed, and hands on each result as it comes.

Which task runs where and when, what becomes of the tasks of a worker that dies, how often a task is tried and how much
memory the tasks of a worker take together: all that is the engine's.
"""

import logging
import os
import tempfile
import uuid
import zipfile
from collections.abc import Callable
from dataclasses import dataclass
from typing import Any

import dask
import distributed

from kvr_batch import work
from kvr_batch.commands import BAD_OPTIONS, FAILED, LOST, REFUSED
from kvr_batch.work import Job, Looked, Result

# The name under which workers state how many bytes their tasks may take.
MEMORY = "memory"
# How often a task is tried again that fails for the machine's sake.
RETRIES = 2


class BadOptions(Exception):
    """What kvr says of the options that it was given."""


class EngineLost(Exception):
    """One sentence: the engine ended before the work."""


@dataclass(frozen=True)
class Task:
    """An input, and the folder for what is made of it, or an empty text."""

    path: str
    target: str


# What is known of an input before it runs: whether there is a result that stands.
Stands = Callable[[Task, Looked], bool]
# A task, what was seen of it, and its result.
Take = Callable[[list[tuple[Task, Looked, Result]]], None]


def memory_of_machine() -> int:
    return os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES")


def local_cluster(workers: int, memory: int, folder: str) -> Any:
    """Worker processes of one thread on this machine, which share so much memory, and a folder for their own files."""
    return distributed.LocalCluster(n_workers=workers, threads_per_worker=1, processes=True, memory_limit=0,
                                    local_directory=folder, dashboard_address="127.0.0.1:0", silence_logs=logging.ERROR,
                                    resources={MEMORY: memory // workers})


def send_package(client: Any) -> None:
    """Gives the workers this package, those that come later, too."""
    source = os.path.dirname(os.path.abspath(__file__))
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "kvr_batch.zip")
        with zipfile.ZipFile(path, "w") as file:
            for name in sorted(os.listdir(source)):
                if name.endswith(".py"):
                    file.write(os.path.join(source, name), "kvr_batch/" + name)
        client.upload_file(path)


def _memory_of_workers(client: Any) -> int | None:
    """The most that a worker states; None when none states anything, and memory does not count."""
    workers = client.scheduler_info()["workers"].values()
    stated = [worker["resources"][MEMORY] for worker in workers if MEMORY in worker.get("resources", {})]
    return int(max(stated)) if stated else None


class Run:
    """One run of a job over tasks."""

    def __init__(self, client: Any, job: Job, tasks: list[Task], stands: Stands, take: Take) -> None:
        self._client = client
        self._job = job
        self._tasks = tasks
        self._stands = stands
        self._take = take
        self._looked: dict[int, Looked] = {}
        self._name = uuid.uuid4().hex
        self._most = _memory_of_workers(client)
        self._skipped = 0

    def go(self) -> int:
        """Returns how many inputs have a result that stands. BadOptions, EngineLost."""
        keys = [f"look-{self._name}-{number}" for number in range(len(self._tasks))]
        looks = self._client.map(work.look, [self._job] * len(keys), [task.path for task in self._tasks],
                                 [task.target for task in self._tasks], key=keys, retries=RETRIES)
        self._waiting = distributed.as_completed(looks, with_results=True, raise_errors=False)
        # A future that nobody holds is forgotten by the scheduler, together with its result.
        del looks
        for batch in self._waiting.batches():
            self._take([entry for future, answer in batch if (entry := self._next(future, answer)) is not None])
        return self._skipped

    def _next(self, future: Any, answer: Any) -> tuple[Task, Looked, Result] | None:
        """The result of a task, or None when there is to be another or none."""
        kind, _, number = future.key.split("-")
        task = self._tasks[int(number)]
        looked = self._looked.pop(int(number), Looked())
        if future.status == "error":
            return task, looked, self._failure(answer[1])
        if future.status != "finished":
            raise EngineLost("the scheduler is gone")
        if kind == "run":
            if answer.outcome == BAD_OPTIONS:
                raise BadOptions(answer.message)
            return task, looked, answer
        if answer.error:
            return task, answer, Result(FAILED, answer.error)
        if self._stands(task, answer):
            self._skipped += 1
            return None
        if self._most is not None and answer.memory > self._most:
            return task, answer, Result(REFUSED, f"reading it takes about {answer.memory / 1e6:,.0f} MB, and a worker "
                                                 f"has {self._most / 1e6:,.0f} MB; fewer workers have more each")
        self._looked[int(number)] = answer
        self._submit(int(number), task, answer)
        return None

    def _submit(self, number: int, task: Task, looked: Looked) -> None:
        claim = {MEMORY: looked.memory} if self._most is not None and looked.memory else None
        # In front of looks, so that results come while other inputs are still looked at.
        self._waiting.add(self._client.submit(
            work.run, self._job, task.path, task.target, key=f"run-{self._name}-{number}", retries=RETRIES,
            resources=claim, priority=1))

    @staticmethod
    def _failure(error: BaseException) -> Result:
        if isinstance(error, distributed.KilledWorker):
            times = int(dask.config.get("distributed.scheduler.allowed-failures")) + 1
            return Result(LOST, f"{times} workers ended while they ran it")
        return Result(LOST, f"{type(error).__name__}: {error}")
