"""The types that the package tells are strict, and those of its modules of C++ and of the interfaces are true."""

import os
import pathlib
import subprocess
import sys

import pytest

PACKAGE = pathlib.Path(os.environ["PYTHONPATH"])
PROGRAM = """
import numpy as np
from numpy.typing import NDArray

import kvr
from kvr.interfaces import IInstance

def heaviest(path: str) -> str:
    with kvr.Scene(path) as scene:
        volumes: dict[str, float] = {}
        for occurrence in scene.occurrences():
            if occurrence.body is not None and occurrence.body.volume is not None:
                volumes[occurrence.name] = occurrence.body.volume
        return max(volumes, key=lambda name: volumes[name])

def place(producer: kvr.Producer, id: str) -> NDArray[np.float64] | None:
    found = producer[id]
    assert isinstance(found, IInstance)
    target: str = found.target_id
    return found.transform if target in producer else None

def wrong(instance: IInstance) -> int:
    return instance.target_id
"""


def mypy(*arguments, folder):
    return subprocess.run([sys.executable, "-m", *arguments], cwd=folder, capture_output=True, text=True, check=False,
                          env=os.environ | {"MYPYPATH": str(PACKAGE), "MYPY_CACHE_DIR": str(folder / "cache")})


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    return tmp_path_factory.mktemp("types")


def test_the_package_and_a_program_are_strict(folder):
    (folder / "program.py").write_text(PROGRAM)
    done = mypy("mypy", "--strict", "-p", "kvr", "-m", "program", folder=folder)
    wrong = PROGRAM.splitlines().index("    return instance.target_id") + 1
    told = done.stdout.splitlines()
    assert len(told) == 2 and told[0].startswith(f"program.py:{wrong}: error: "), done.stdout + done.stderr
    assert 'got "str", expected "int"' in told[0]


def test_the_stubs_are_true(folder):
    done = mypy("mypy.stubtest", "kvr._core", "kvr.interfaces", folder=folder)
    told = [line for line in done.stdout.splitlines() if line.startswith("error: ")]
    # Classes of C++ have a metaclass, and take any arguments to say that they take none; _Piece is a base of stubs.
    problems = [line for line in told if "metaclass differs" not in line and '*args argument "args"' not in line
                and not line.startswith("error: kvr._core._Piece ")]
    assert told and not problems, "\n".join(problems)
