"""Conversions, checks and certificates are those of the program, with exceptions in place of exit codes."""

import json

import numpy
import pytest
from conftest import EXAMPLES

import kvr

MISTAKE = """<Scene>
  <IFile ID="file" IsRoot="1"><ChildSet><Child ID="gate"/></ChildSet></IFile>
  <IAssembly ID="gate" Label="Gate"><ChildSet>
    <IInstance ID="door1" visibility="1" NetVisibility="1"><Child ID="door"/></IInstance>
  </ChildSet></IAssembly>
  <IPart ID="door" Label="Door"/>
</Scene>
"""


def test_a_scene_is_exported(as1, tmp_path):
    told = []
    done = kvr.convert(as1, tmp_path / "as1.glb", only=["bolt"], progress=lambda *report: told.append(report))
    assert (tmp_path / "as1.glb").read_bytes()[:4] == b"glTF"
    assert done.counts == {} and [stage for stage, _, _ in told][0] == "reading"
    assert [whole for _, _, whole in told] == sorted(whole for _, _, whole in told)


def test_a_model_is_imported(with_bodies):
    assert with_bodies.exists()
    done = kvr.convert(EXAMPLES / "models" / "as1-oc-214.stp", with_bodies.with_name("bodies.xml"), meshes=False)
    assert done.counts == {"assemblies": 4, "parts": 5, "instances": 13, "bodies": 5, "triangles": 0}


def test_a_callback_may_end_the_work(as1, tmp_path):
    target = tmp_path / "as1.glb"
    with pytest.raises(kvr.Cancelled):
        kvr.convert(as1, target, progress=lambda *_: False)

    def fail(*_):
        raise LookupError("no more")

    with pytest.raises(LookupError, match="no more"):
        kvr.convert(as1, target, progress=fail)
    assert not list(tmp_path.iterdir())


def test_a_callback_may_read_scenes(as1, tmp_path):
    labels = []
    kvr.convert(as1, tmp_path / "as1.obj", progress=lambda *_: labels.append(kvr.Scene(as1).root.label))
    assert set(labels) == {"as1-oc-214"}


def test_failures_are_exceptions(as1, tmp_path):
    with pytest.raises(kvr.Error, match="it has none of the extensions"):
        kvr.convert(as1, tmp_path / "as1.xyz")
    with pytest.raises(kvr.Error, match="missing.stp"):
        kvr.convert(tmp_path / "missing.stp", tmp_path / "as1.xml")
    with pytest.raises(TypeError, match="nonsense"):
        kvr.convert(as1, tmp_path / "as1.glb", nonsense=1)
    with pytest.raises(ValueError, match="there is no unit 'ell'"):
        kvr.convert(as1, tmp_path / "as1.stl", target_unit="ell")
    with pytest.raises(ValueError, match="there is no axis 'w'"):
        kvr.convert(EXAMPLES / "models" / "as1-oc-214.stp", tmp_path / "as1.xml", up="w")


def test_a_mistake_is_found(tmp_path):
    scene = tmp_path / "gate.xml"
    scene.write_text(MISTAKE)
    found, = kvr.check(scene)
    assert (found.rule, found.severity, found.line, found.column) == ("K-0105", "error", 4, 27)
    assert (found.object_id, found.meant) == ("door1", "Visibility")
    (begin, end, text), *_ = found.fix
    assert MISTAKE[begin:end] + text == "visibilityVisibility"
    assert str(found).startswith("error K-0105 attribute-misspelt: ")
    assert kvr.check(scene, without=["K-0105"]) == []


def test_scenes_are_compared(as1, tmp_path, run_tool):
    text = as1.read_text()
    for file in as1.parent.iterdir():
        (tmp_path / file.name).write_bytes(file.read_bytes())
    same, other = tmp_path / "same.xml", tmp_path / "other.xml"
    same.write_text(text.replace("\n", "\n "))
    other.write_text(text.replace('Label="nut"', 'Label="Mutter"'))
    assert kvr.diff(as1, same) == [] and kvr.hash(as1) == kvr.hash(same) != kvr.hash(other)
    assert kvr.hash(as1) in run_tool("hash", as1).decode()
    changes = kvr.diff(as1, other)
    assert {change.class_name for change in changes} == {"IPart", "IPolygonMesh"}
    assert {(change.kind, change.first, change.second) for change in changes} == {("renamed", "nut", "Mutter")}
    assert changes[0].distance is None and changes[0].angle is None


def test_a_comparison_measures_motion(tmp_path):
    for name, x in ("a", 0), ("b", 3):
        place = numpy.eye(4)
        place[0, 3] = x
        with kvr.write(tmp_path / f"{name}.xml") as writer:
            with writer.part("p"):
                writer.points("q", [[0, 0, 0]])
            with writer.assembly("top"):
                writer.instance("i", "p", transform=place)
    change, = kvr.diff(tmp_path / "a.xml", tmp_path / "b.xml")
    assert change.kind == "moved" and change.angle == 0
    assert change.distance == pytest.approx(0.003)


def test_statistics_are_those_of_the_program(as1, tmp_path, run_tool):
    def counts(found):
        return {key: value for key, value in found.items() if "Seconds" not in key}

    shown = json.loads(run_tool("stats", "--json", "--most", 7, as1))
    found = kvr.stats(as1, most=7)
    assert found.keys() == shown.keys() and found["Seconds"] > 0
    for one, other in zip(found["LargestOccurrences"], shown["LargestOccurrences"], strict=True):
        assert counts(one) == counts(other)
    with pytest.raises(kvr.SceneError, match="none.xml"):
        kvr.stats(tmp_path / "none.xml")


def test_a_model_is_certified(with_bodies, tmp_path):
    certificate = kvr.certify(EXAMPLES / "models" / "as1-oc-214.stp", with_bodies)
    assert certificate and certificate.stages == ("source", "other")
    assert all(row.is_good for row in certificate.rows)
    kvr.convert(with_bodies, tmp_path / "bolt.glb", only=["bolt"])
    certificate = kvr.certify(with_bodies, tmp_path / "bolt.glb")
    assert not certificate and any("is missing" in text for row in certificate.rows for text in row.differences)
