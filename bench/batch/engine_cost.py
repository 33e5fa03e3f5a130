#!/usr/bin/python3
"""Measures what kvr-batch and its engine cost for each file, apart from kvr.

    engine_cost.py [--files N] KVR_BATCH

A scheduler and two workers run as processes of their own, over TCP on the loopback address. Times are of processors, by
process, so that they hold on a machine that does other things, too. First come tasks that do nothing, then a run of
kvr-batch over so many files with a program that answers at once in the place of kvr.
"""

import argparse
import contextlib
import os
import pathlib
import subprocess
import tempfile
import time

import distributed

ANSWER = '{"Scenes": [{"Errors": 0, "Warnings": 0, "Notes": 0, "Findings": []}]}'
INFO = '{"SideFiles": [], "Estimate": {"MemoryBytes": 1000, "Seconds": 1}}'
PROGRAM = f"""#!/bin/sh
case "$1$2" in
--version) echo kvr 1;;
*--help) echo "Usage: kvr $1 [OPTIONS]";;
info*) echo '{INFO}';;
*) echo '{ANSWER}';;
esac
"""
IDLE_SECONDS = 10
TICKS = os.sysconf("SC_CLK_TCK")


def seconds_of(process):
    """The processor time of a process, and of its children that have ended, in seconds."""
    with open(f"/proc/{process.pid}/stat", encoding="ascii") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICKS, (int(fields[13]) + int(fields[14])) / TICKS


def memory_of(process):
    with open(f"/proc/{process.pid}/status", encoding="ascii") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("VmRSS")) * 1024


def started(stack, words, **options):
    process = subprocess.Popen(words, **options)
    stack.callback(process.wait)
    stack.callback(process.terminate)
    return process


class Watch:
    """The processor time of a scheduler and its workers from its making on, without what they take when idle."""

    def __init__(self, processes, idle):
        self._processes = processes
        self._idle = idle
        self._start = time.monotonic()
        self._before = [seconds_of(process) for process in processes]

    def spent(self):
        """Seconds on the clock, then of the scheduler, of the workers, and of their children."""
        wall = time.monotonic() - self._start
        now = [seconds_of(process) for process in self._processes]
        own = [b[0] - a[0] - idle * wall for a, b, idle in zip(self._before, now, self._idle)]
        return wall, own[0], sum(own[1:]), sum(b[1] - a[1] for a, b in zip(self._before, now))

    def row(self, name, count, client, extra):
        wall, *spent = (seconds / count * 1e3 for seconds in self.spent())
        print(f"{name:<30}" + "".join(f"{one:9.2f} ms" for one in (*spent, client / count * 1e3, wall)) + "  " + extra,
              flush=True)


def idle_shares(processes):
    """How much of a processor each takes without any work."""
    watch = [seconds_of(process)[0] for process in processes]
    time.sleep(IDLE_SECONDS)
    shares = [(seconds_of(process)[0] - before) / IDLE_SECONDS for process, before in zip(processes, watch)]
    print(f"without work the scheduler takes {shares[0]:.1%} of a processor, each worker {shares[1]:.1%}")
    return shares


def nothing(number):
    return number


def measure_engine(address, count, processes, idle):
    with distributed.Client(address) as client:
        client.gather(client.map(nothing, range(-10, 0)))
        memory, mine, watch = memory_of(processes[0]), time.process_time(), Watch(processes, idle)
        futures = client.map(nothing, range(count), pure=False)
        distributed.wait(futures)
        grown = (memory_of(processes[0]) - memory) / count
        watch.row(f"{count:,} tasks of nothing", count, time.process_time() - mine, f"{grown:,.0f} bytes of scheduler")


def measure_batch(batch, address, count, processes, idle, folder):
    program = folder / "kvr"
    program.write_text(PROGRAM, encoding="utf-8")
    program.chmod(0o755)
    scenes = folder / "scenes"
    scenes.mkdir()
    for number in range(count):
        (scenes / f"{number}.xml").write_text("<Scene/>", encoding="utf-8")
    results = folder / "results.sqlite"
    for again in ("", ", again"):
        watch = Watch(processes, idle)
        process = subprocess.Popen([batch, "check", scenes, "--scheduler", address, "--kvr", program, "--results",
                                    results], stdout=subprocess.DEVNULL)
        _, process.returncode, usage = os.wait4(process.pid, 0)
        watch.row(f"kvr-batch, {count:,} files{again}", count, usage.ru_utime + usage.ru_stime,
                  f"{results.stat().st_size / count:,.0f} bytes of results")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--files", type=int, default=1000)
    parser.add_argument("batch", metavar="KVR_BATCH")
    arguments = parser.parse_args()
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory()))
        scheduler = started(stack, ["dask-scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard"],
                            stderr=subprocess.PIPE, text=True)
        address = next(line.split()[-1] for line in scheduler.stderr if "Scheduler at:" in line)
        workers = [started(stack, ["dask-worker", address, "--nthreads", "1", "--no-nanny", "--no-dashboard",
                                   "--memory-limit", "0", "--local-directory", str(folder)], stderr=subprocess.DEVNULL)
                   for _ in range(2)]
        with distributed.Client(address) as client:
            client.wait_for_workers(2)
        processes = [scheduler, *workers]
        idle = idle_shares(processes)
        print(f"{'for each task or file':<30}" + "".join(f"{name:>12}" for name in (
            "scheduler", "workers", "children", "client", "clock")))
        for count in (arguments.files, 10 * arguments.files):
            measure_engine(address, count, processes, idle)
        measure_batch(arguments.batch, address, arguments.files, processes, idle, folder)


if __name__ == "__main__":
    main()
