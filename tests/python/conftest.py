"""What the tests share: the bundled scenes, the program kvr, and one scene with bodies that is imported once."""

import os
import pathlib
import subprocess

import pytest

import kvr

# The sanitizers, if there are any, are loaded into this process by now; no program that it starts is to have them so.
os.environ.pop("LD_PRELOAD", None)

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = ROOT / "examples"
BUNDLED = [EXAMPLES / name / f"{name}.xml" for name in ("as1-oc-214", "lcr_follower_arm", "complete")]


@pytest.fixture(scope="session")
def as1():
    return BUNDLED[0]


@pytest.fixture(scope="session")
def complete():
    return BUNDLED[2]


@pytest.fixture(scope="session")
def with_bodies(tmp_path_factory):
    """An assembly of 18 solids, with a mesh of each."""
    scene = tmp_path_factory.mktemp("bodies") / "as1.xml"
    kvr.convert(EXAMPLES / "models" / "as1-oc-214.stp", scene)
    return scene


@pytest.fixture(scope="session")
def run_tool():
    """What the program prints."""

    def run(*arguments):
        return subprocess.run([os.environ["KVR_TOOL"], *map(str, arguments)], stdout=subprocess.PIPE, check=True).stdout

    return run
