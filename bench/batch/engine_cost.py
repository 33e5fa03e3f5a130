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


def row(name, count, scheduler, workers, before, extra=""):
    now = [seconds_of(process) for process in (scheduler, *workers)]
    spent = [[(b - a) / count * 1e3 for a, b in zip(*pair)] for pair in zip(before, now)]
    print(f"{name:<34} {spent[0][0]:8.3f} ms {sum(one[0] for one in spent[1:]):8.3f} ms"
          f" {sum(one[1] for one in spent[1:]):8.3f} ms  {extra}")


def nothing(number):
    return number


def measure_idle(scheduler, workers):
    """What they take without any work, for each second."""
    before = [seconds_of(process) for process in (scheduler, *workers)]
    time.sleep(IDLE_SECONDS)
    row("a second without work", IDLE_SECONDS, scheduler, workers, before)


def measure_engine(address, count, scheduler, workers):
    with distributed.Client(address) as client:
        client.gather(client.map(nothing, range(-10, 0)))
        before = [seconds_of(process) for process in (scheduler, *workers)]
        memory = memory_of(scheduler)
        start, mine = time.monotonic(), time.process_time()
        futures = client.map(nothing, range(count), pure=False)
        distributed.wait(futures)
        wall, own = time.monotonic() - start, time.process_time() - mine
        grown = (memory_of(scheduler) - memory) / count
        row(f"{count:,} tasks of nothing", count, scheduler, workers, before,
            f"client {own / count * 1e3:.3f} ms, clock {wall / count * 1e3:.3f} ms, {grown:,.0f} bytes each")


def measure_batch(batch, address, count, scheduler, workers, folder):
    program = folder / "kvr"
    program.write_text(PROGRAM, encoding="utf-8")
    program.chmod(0o755)
    scenes = folder / "scenes"
    scenes.mkdir()
    for number in range(count):
        (scenes / f"{number}.xml").write_text("<Scene/>", encoding="utf-8")
    for again in ("", ", again"):
        before = [seconds_of(process) for process in (scheduler, *workers)]
        start = time.monotonic()
        process = subprocess.Popen([batch, "check", scenes, "--scheduler", address, "--kvr", program, "--results",
                                    folder / "results.sqlite"], stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = status
        wall = time.monotonic() - start
        row(f"kvr-batch over {count:,} files{again}", count, scheduler, workers, before,
            f"client {(usage.ru_utime + usage.ru_stime) / count * 1e3:.3f} ms, clock {wall / count * 1e3:.3f} ms,"
            f" {(folder / 'results.sqlite').stat().st_size / count:,.0f} bytes of results each")


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
        print(f"{'for each task or file':<34} {'scheduler':>11} {'workers':>11} {'children':>11}")
        measure_idle(scheduler, workers)
        for count in (arguments.files, 10 * arguments.files):
            measure_engine(address, count, scheduler, workers)
        measure_batch(arguments.batch, address, arguments.files, scheduler, workers, folder)


if __name__ == "__main__":
    main()
