"""The resolved scene: occurrences one by one and as columns, looks, geometry, and what a person sees of them."""

import sys
import threading

import numpy
import pytest
from conftest import BUNDLED

import kvr


@pytest.mark.parametrize("path", BUNDLED, ids=lambda path: path.stem)
def test_the_columns_are_the_occurrences(path):
    with kvr.Scene(path) as scene:
        table = scene.table()
        occurrences = list(scene.occurrences())
        components = scene.components
        assert len(table) == len(occurrences)
        for row, occurrence in enumerate(occurrences):
            assert table.name_of(row) == occurrence.name
            assert table.path(row) == occurrence.path
            assert table.component_of(row) == occurrence.component
            assert table["depth"][row] == occurrence.depth == len(occurrence.path)
            assert table["visible"][row] == occurrence.visible
            assert components[table["component"][row]] == occurrence.component
            assert numpy.array_equal(table["transform"][row], occurrence.transform)
            if row > 0:
                above = occurrences[table["parent"][row]]
                assert above.path == occurrence.path[:-1]
                assert numpy.allclose(above.transform @ occurrence.step, occurrence.transform)
        assert table["visible"].dtype == bool and table["transform"].shape == (len(table), 4, 4)


def test_the_walk_of_an_assembly(as1, run_tool):
    with kvr.Scene(as1) as scene:
        # Those of the program, and the root file.
        assert len(scene.table()) == 29 and b"28 occurrences (18 of parts)" in run_tool("tree", as1)
        nut = next(occurrence for occurrence in scene if occurrence.component.label == "nut")
        assert nut.path == ("asm1", "inst1", "inst5") and nut.name == "nut_1" and nut.visible
        assert nut.style.diffuse == [1.0, 0.0, 0.0]
        assert nut.body is None and len(nut.mesh.triangles) == 156
        assert [layer.number for layer in scene.layers] == [1] and scene.unit == "millimeter"
        assert [placement.id for placement in scene.components[1].placements][0] == "inst1"
        assert scene.components[1].placements[0].component == scene.components[2]


def test_hidden_ones_may_be_left_out(tmp_path):
    with kvr.write(tmp_path / "s.xml") as writer:
        with writer.part("p"):
            writer.mesh("m", [[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2]])
        with writer.assembly("a"):
            writer.instance("shown", "p")
            writer.instance("hidden", "p", visible=False)
    with kvr.Scene(tmp_path / "s.xml") as scene:
        assert [occurrence.path for occurrence in scene.occurrences(visible_only=True)][-1] == ("a", "shown")
        assert list(scene.table()["visible"]) == [True, True, True, False]
        assert len(scene.table(visible_only=True, transforms=False)) == 3


def test_more_occurrences_than_can_be_walked(tmp_path):
    levels = 60
    with kvr.write(tmp_path / "s.xml") as writer:
        with writer.part("0"):
            pass
        for level in range(1, levels):
            with writer.assembly(str(level)):
                for side in "ab":
                    writer.instance(f"{level}{side}", str(level - 1))
    with kvr.Scene(tmp_path / "s.xml") as scene:
        assert len(scene.tree().splitlines()) == 1 + 1 + 2 + 4
        assert len(list(scene.occurrences(levels=10))) == 1 + 2**10 - 1
        with pytest.raises(kvr.Error, match="the scene has 1152921504606846976 occurrences"):
            scene.table()


def test_questions_are_those_of_the_program(as1, run_tool):
    expression = 'part[name~"*nut*"]'
    with kvr.Scene(as1) as scene:
        table = scene.table()
        rows = scene.query(expression)
        assert {table.component_of(row).label for row in rows} == {"nut"}
        assert [occurrence.path for occurrence in scene.select(expression)] == [table.path(row) for row in rows]
        assert len(rows) == int(run_tool("query", "--count", as1, expression)) == 8
        with pytest.raises(kvr.QueryError, match="column"):
            scene.query("part[")


def test_notes_views_and_cuts(complete):
    with kvr.Scene(complete) as scene:
        assert scene.notes and scene.notes[0].text
        assert scene.views and scene.views[0].id
        assert all(len(cut) == 3 for cut in scene.cuts)


def test_filters_are_those_of_an_export(as1):
    with kvr.Scene(as1, only=["bolt"]) as scene:
        assert {occurrence.component.label for occurrence in scene if occurrence.mesh} == {"bolt"}
    with pytest.raises(kvr.SceneError, match="bolD"):
        kvr.Scene(as1, only=["bolD"])


def test_bodies_are_measured(with_bodies):
    with kvr.Scene(with_bodies) as scene:
        volume = sum(occurrence.body.volume for occurrence in scene if occurrence.body)
        assert volume == pytest.approx(764519.806, abs=1e-3)
        bolt = next(component for component in scene.components if component.label == "bolt")
        assert sum(face.area for face in bolt.body.faces) == pytest.approx(bolt.body.area)
        low, high = bolt.body.box[:3], bolt.body.box[3:]
        assert all(low[i] < bolt.body.centroid[i] < high[i] for i in range(3))
        assert bolt.body.centroid[2] == pytest.approx(16.9356, abs=1e-3)
        assert bolt.body.metres_per_unit == 1e-3
        assert [piece.kind for piece in bolt.geometry] == ["body", "mesh"]
        assert len(bolt.mesh.faces) == len(bolt.body.faces) == 7
        assert bolt.mesh.face_ids.max() == 6
        kinds = {face.kind for component in scene.components if component.body for face in component.body.faces}
        assert "plane" in kinds


def test_geometry_of_all_kinds(complete):
    with kvr.Scene(complete) as scene:
        pieces = [piece for component in scene.components for piece in component.geometry]
        assert {piece.kind for piece in pieces} == {"body", "mesh", "curve", "point", "cloud", "other"}
        for piece in pieces:
            assert (piece.points is not None) == (piece.kind in ("point", "cloud"))
            assert not piece.lines() or piece.kind == "curve"
            assert piece.transform.shape == (4, 4) and piece.metres_per_unit > 0
        assert any(piece.lines() for piece in pieces)


def test_a_person_can_read_it(as1):
    scene = kvr.Scene(as1)
    assert repr(scene) == f"<kvr.Scene {str(as1)!r}: 10 components>"
    assert repr(scene.components[1]) == "<kvr.Component 'asm1' 'as1', assembly>"
    assert repr(next(iter(scene))) == "<kvr.Occurrence 'as1-oc-214' at the root>"
    assert scene.tree(levels=1) == "as1-oc-214\n  as1"
    assert scene.tree(rows=2).endswith("\n...")
    scene.close()
    assert repr(scene) == "<kvr.Scene, closed>"
    with pytest.raises(ValueError, match="closed"):
        scene.components


def test_a_notebook_shows_tree_and_picture(tmp_path, monkeypatch):
    with kvr.write(tmp_path / "s.xml", label="<a & b>") as writer:
        with writer.part("p", "Part"):
            writer.mesh("m", [[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2]])
    scene = kvr.Scene(tmp_path / "s.xml")
    shown = scene._repr_html_()
    assert "&lt;a &amp; b&gt;\n  Part" in shown and "data:image/png;base64,iVBOR" in shown
    monkeypatch.setenv("PATH", "/nowhere")
    shown = scene._repr_html_()
    assert "Part" in shown and "<img" not in shown


def test_other_threads_go_on_while_a_scene_is_read(with_bodies):
    # A thread changes over by itself after a thousand seconds: until then only to one that lets it.
    interval = sys.getswitchinterval()
    steps, ended, started = [0], threading.Event(), threading.Event()

    def step():
        started.set()
        while not ended.wait(1e-4):
            steps[0] += 1

    thread = threading.Thread(target=step)
    thread.start()
    started.wait()
    sys.setswitchinterval(1000)
    try:
        for _ in range(100):
            before = steps[0]
            kvr.Producer(with_bodies)
            if steps[0] > before:
                break
        assert steps[0] > before
    finally:
        sys.setswitchinterval(interval)
        ended.set()
        thread.join()
