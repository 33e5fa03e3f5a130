#!/usr/bin/python3 -IS
"""A program with kvr's command lines that does what its input says: one word, and what goes with it.

Each run of a check tells the pipe that KVR_FAKE_PIPE names, if it does, which worker it runs for, its own number and
its word.
"""

import json
import os
import signal
import sys


def parent_of(process):
    with open(f"/proc/{process}/stat", encoding="ascii", errors="replace") as file:
        return int(file.read().rpartition(")")[2].split()[1])


def answer(errors):
    findings = [{"Rule": "K-0105"}] * errors
    print(json.dumps({"Scenes": [{"Errors": errors, "Warnings": 0, "Notes": 0, "Findings": findings}]}))
    return 1 if errors else 0


def check(path):
    with open(path, encoding="utf-8") as file:
        word = file.read().split()[1]
    told = word
    # Before it is told: whoever hears of it may end it at once.
    if word == "hang-once" and not os.path.exists(path + ".begun"):
        with open(path + ".begun", "w", encoding="ascii"):
            word = "hang"
    pipe = os.environ.get("KVR_FAKE_PIPE")
    if pipe:
        with open(pipe, "a", encoding="ascii") as file:
            file.write(f"{parent_of(os.getppid())} {os.getpid()} {told}\n")
    if word == "crash":
        os.kill(os.getpid(), signal.SIGSEGV)
    if word == "hang":
        signal.pause()
    if word == "eat":
        held = bytearray(300 << 20)
        held[::4096] = b"x" * len(held[::4096])
    if word == "fail":
        print(f"kvr: {path}: it is <b>broken</b>", file=sys.stderr)
        return 1
    return answer(2 if word == "find" else 0)


def main():
    if sys.argv[1] == "--version":
        print("kvr " + os.environ.get("KVR_FAKE_VERSION", "1"))
        return 0
    if sys.argv[2] == "--help":
        print(f"Usage: kvr {sys.argv[1]} [OPTIONS] SCENE...")
        return 0 if sys.argv[1] in ("check", "info") else 2
    if "--wrong" in sys.argv:
        print("kvr: check has no option --wrong; see kvr --help", file=sys.stderr)
        return 2
    if sys.argv[1] == "info":
        side = {"Kind": "blob", "Name": os.path.basename(sys.argv[-1]) + ".side", "Bytes": None, "Records": None}
        with open(sys.argv[-1], encoding="utf-8") as file:
            memory = 5_000_000_000 if "large" in file.read() else 1000
        print(json.dumps({"SideFiles": [side], "Estimate": {"MemoryBytes": memory, "Seconds": 1}}))
        return 0
    return check(sys.argv[-1])


sys.exit(main())
