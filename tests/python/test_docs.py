"""What documents say behind >>> is so."""

import doctest
import shutil

import pytest
from conftest import EXAMPLES, ROOT

import kvr
import kvr._compare
import kvr._producer
import kvr._scene
import kvr._write

FLAGS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


@pytest.fixture(autouse=True)
def folder(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    (tmp_path / "examples").symlink_to(EXAMPLES)
    shutil.copy(EXAMPLES / "models" / "as1-oc-214.stp", tmp_path)
    return tmp_path


@pytest.mark.parametrize("document, least", [("docs/python.md", 60), ("README.md", 4)])
def test_a_document(document, least):
    done = doctest.testfile(str(ROOT / document), module_relative=False, optionflags=FLAGS, encoding="utf-8")
    assert done.failed == 0 and done.attempted >= least


@pytest.mark.parametrize("module", [kvr._compare, kvr._producer, kvr._scene, kvr._write], ids=lambda module: module.__name__)
def test_examples_of_a_module(module, folder, as1):
    names = {"path": as1, "folder": folder, "Scene": kvr.Scene}
    done = doctest.testmod(module, extraglobs=names, optionflags=FLAGS)
    assert done.failed == 0 and done.attempted > 0
