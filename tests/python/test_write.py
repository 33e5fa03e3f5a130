"""What is written reads back as it was."""

import numpy
import pytest

import kvr

POSITIONS = numpy.array([[0.0, 0.0, 0.0], [4.0, 0.0, 0.0], [4.0, 2.0, 0.0], [0.0, 2.0, 0.5]])
TRIANGLES = numpy.array([[0, 1, 2], [0, 2, 3]], dtype=numpy.uint32)


def test_what_is_written_reads_back(tmp_path):
    path = tmp_path / "new.xml"
    place = numpy.diag([1.0, 1.0, 1.0, 1.0])
    place[:3, 3] = (1.5, 2.5, 3.5)
    normals = numpy.tile(numpy.float32([0, 0, 1]), (4, 1))
    with kvr.write(path, label="Top", unit="inch") as writer:
        red = writer.style("red", (1.0, 0.25, 0.0), label="Red", transparency=0.5)
        writer.layer("layer", ["plate"], label="Plates", number=7)
        with writer.part("plate", "Plate", styles=[red], properties={"Material": "steel", "Mass": 1.5, "Holes": 2}):
            writer.mesh("mesh", POSITIONS, TRIANGLES, normals=normals, label="Skin")
            writer.points("cloud", POSITIONS)
        with writer.assembly("all", "All"):
            writer.instance("one", "plate", label="First", transform=place)
            writer.instance("two", "plate", visible=False)
    with kvr.Scene(path) as scene:
        assert scene.tree() == "Top\n  All\n    First\n    Plate (hidden)"
        assert scene.unit == "inch" and scene.metres_per_unit == pytest.approx(0.0254)
        plate = next(component for component in scene.components if component.id == "plate")
        assert plate.properties == {"Material": "steel", "Mass": 1.5, "Holes": 2}
        assert plate.style.diffuse == [1.0, 0.25, 0.0] and plate.style.opacity == 0.5
        mesh = plate.mesh
        assert numpy.array_equal(mesh.positions[mesh.triangles], POSITIONS[TRIANGLES])
        assert numpy.array_equal(mesh.normals, normals)
        assert numpy.array_equal(plate.geometry[1].points, POSITIONS)
        assert numpy.array_equal(list(scene)[2].transform, place)
        assert scene.layers[0].items == ("plate",)
    assert kvr.check(path) == []


def test_bodies_are_copied_from_scene_to_scene(with_bodies, tmp_path):
    with kvr.Scene(with_bodies) as scene, kvr.write(tmp_path / "bolt.xml") as writer:
        bolt = next(component for component in scene.components if component.label == "bolt")
        volume = bolt.body.volume
        with writer.part("bolt"):
            writer.body("body", bolt.body)
    with kvr.Scene(tmp_path / "bolt.xml") as scene:
        assert scene.components[1].body.volume == pytest.approx(volume)


def test_after_an_exception_nothing_is_there(tmp_path):
    with pytest.raises(LookupError):
        with kvr.write(tmp_path / "new.xml") as writer:
            with writer.part("p"):
                writer.mesh("m", POSITIONS, TRIANGLES)
                raise LookupError
    assert not list(tmp_path.iterdir())
    with pytest.raises(ValueError, match="the scene is written"):
        writer.instance("i", "p")


@pytest.mark.parametrize("positions, triangles, normals, error", [
    (POSITIONS, [[0, 1, 4]], None, IndexError),
    (POSITIONS, [[0, 1, -1]], None, IndexError),
    (POSITIONS, [0, 1, 2], None, ValueError),
    (POSITIONS[:, :2], TRIANGLES, None, ValueError),
    (POSITIONS, TRIANGLES, POSITIONS[:2], ValueError),
    (POSITIONS * numpy.nan, TRIANGLES, None, ValueError),
])
def test_numbers_that_make_no_mesh_are_refused(tmp_path, positions, triangles, normals, error):
    with pytest.raises(error):
        with kvr.write(tmp_path / "new.xml") as writer, writer.part("p"):
            writer.mesh("m", positions, triangles, normals=normals)
    assert not list(tmp_path.iterdir())


def test_ids_are_checked(tmp_path):
    with pytest.raises(kvr.Error, match="two objects have the id p"):
        with kvr.write(tmp_path / "new.xml") as writer:
            with writer.part("p"):
                pass
            with writer.part("p"):
                pass
    with pytest.raises(kvr.FileError, match="nowhere"):
        kvr.write(tmp_path / "nowhere" / "new.xml")
    with pytest.raises(ValueError, match="4 by 4"):
        with kvr.write(tmp_path / "new.xml") as writer, writer.assembly("a"):
            writer.instance("i", "a", transform=numpy.eye(3))
    with pytest.raises(ValueError, match="there is no unit 'ell'"):
        with kvr.write(tmp_path / "new.xml", unit="ell") as writer, writer.part("p"):
            pass
