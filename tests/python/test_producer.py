"""The interface layer answers what the library answers, by the tables of the library itself."""

import base64
import gc
import json
import math

import numpy
import pytest
from conftest import BUNDLED

import kvr
from kvr import _core, interfaces

TABLES = {table["name"]: table for table in json.loads(_core.interface_tables())}
EXTENSIONS = ["kvr.test", "Type1"]


def rows_of(table):
    for base in TABLES[table]["bases"]:
        yield from rows_of(base)
    yield from TABLES[table]["rows"]


def as_json(value):
    """An answer as it stands in a dump."""
    if isinstance(value, interfaces.Interface):
        table = type(value).__name__
        named = {"Class": table} if TABLES[table]["isNamed"] else {}
        return named | {row["name"]: as_json(value._ask(row["name"])) for row in rows_of(table) if row["inDump"]}
    if isinstance(value, numpy.ndarray):
        return as_json(value.ravel().tolist())
    if isinstance(value, (list, tuple)):
        return [as_json(item) for item in value]
    if isinstance(value, dict):
        return {key: as_json(item) for key, item in value.items()}
    if isinstance(value, bytes):
        return base64.b64encode(value).decode()
    if isinstance(value, float) and not math.isfinite(value):
        return None
    return value


@pytest.mark.parametrize("scene", BUNDLED, ids=lambda path: path.stem)
def test_the_dump_is_that_of_the_program(scene, run_tool):
    with kvr.Producer(scene) as producer:
        assert producer.dump() == run_tool("dump", scene).decode()


@pytest.mark.parametrize("scene", BUNDLED, ids=lambda path: path.stem)
def test_the_answers_are_those_of_the_dump(scene):
    with kvr.Producer(scene, extension_type_ids=EXTENSIONS) as producer:
        dump = json.loads(producer.dump())
        told = {id: as_json(producer.load(id)) for id in producer.reached_ids()}
        assert as_json(producer.query) == dump["QueryFile"]
        assert as_json(producer.universe) == dump["Universe"]
        assert producer.root_object_id == dump["RootObjectId"]
    assert told == dump["Objects"]
    assert list(told) == list(dump["Objects"])


def test_each_operation_of_each_interface_is_a_property():
    assert len(TABLES) > 40
    for name in TABLES:
        interface = getattr(interfaces, name)
        operations = interfaces.operations(interface)
        assert sorted(operations.values()) == sorted({row["name"] for row in rows_of(name)})
        assert all(isinstance(getattr(interface, python), property) for python in operations)
        assert set(operations) <= set(dir(interface))


def test_each_operation_answers(complete):
    met = set()
    with kvr.Producer(complete) as producer:
        for found in producer:
            met.add(type(found).__name__)
            for operation in interfaces.operations(type(found)):
                getattr(found, operation)
    assert len(met) >= 26


def test_documents_are_the_headers_comments():
    documented = [operation for operation in interfaces.operations(interfaces.IInstance)
                  if getattr(interfaces.IInstance, operation).__doc__]
    assert len(documented) > 15
    assert interfaces.IInstance.target_id.__doc__.startswith("The id of the component or file that is placed")
    assert kvr.Producer.root_object_id.__doc__ == "The id of the root file; throws GeneralException when there is none."
    assert "resolved" not in (interfaces.IFile.__doc__ or "") and interfaces.IFile.__doc__.startswith("One design file")


def test_objects_are_of_the_class_of_their_interface(as1):
    with kvr.Producer(as1) as producer:
        instance = producer["inst1"]
        assert isinstance(instance, interfaces.IInstance) and isinstance(instance, interfaces.IObject)
        assert instance.target_id == "asm2"
        assert instance.transform.shape == (4, 4)
        assert instance.change_key is None
        assert instance == producer.load("inst1") and hash(instance) == hash(producer["inst1"])
        assert instance != producer["inst2"]
        assert repr(instance) == "<IInstance 'inst1' 'rod-assembly_1'>"
        assert producer["file1"].file_properties.creation_date == "2008-07-24T15:00:20"
        assert "no such id" not in producer and producer.load("no such id") is None
        with pytest.raises(KeyError):
            producer["no such id"]


def test_exceptions_have_the_text_of_the_library(tmp_path):
    (tmp_path / "rootless.xml").write_text('<Scene><IPart ID="p"/></Scene>')
    with pytest.raises(kvr.Error, match=r"^Could not find the root object id\.$"):
        kvr.Producer(tmp_path / "rootless.xml").root_object_id
    (tmp_path / "broken.xml").write_text("<Scene>")
    with pytest.raises(kvr.SceneError, match=r"broken\.xml"):
        kvr.Producer(tmp_path / "broken.xml")
    with pytest.raises(kvr.SceneError, match="No such file or directory"):
        kvr.Producer(tmp_path / "missing.xml")


def test_options_of_reading_reach_the_reader(as1):
    with kvr.Producer(as1, prefix="P") as producer:
        assert producer.root_object_id.startswith("P") and producer[producer.root_object_id].label == "as1-oc-214"
    with pytest.raises(kvr.SceneError):
        kvr.Producer(as1, max_memory=1000)


def test_an_object_keeps_the_scene_that_was_closed(as1):
    with kvr.Producer(as1) as producer:
        instance = producer["inst1"]
    gc.collect()
    assert instance.label == "rod-assembly_1"
    assert repr(producer) == "<kvr.Producer, closed>"
    with pytest.raises(ValueError, match="closed"):
        producer.load("inst1")
    with pytest.raises(ValueError, match="closed"):
        producer.root_object_id
