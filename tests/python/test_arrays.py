"""Arrays are views of the scene's numbers, and keep the scene alive."""

import gc
import weakref

import numpy
import pytest

import kvr


def mesh_of(scene):
    return next(occurrence.mesh for occurrence in scene if occurrence.mesh)


@pytest.mark.parametrize("name", ["positions", "normals", "triangles", "face_ids"])
def test_an_array_keeps_the_producer(as1, name):
    scene = kvr.Scene(as1)
    array = getattr(mesh_of(scene), name)
    copy = array.copy()
    producer = weakref.ref(scene.producer)
    mesh = weakref.ref(array.base)
    scene.close()
    del scene
    gc.collect()
    assert producer() is not None and mesh() is array.base
    view = array[1:]
    del array
    gc.collect()
    assert producer() is not None
    assert numpy.array_equal(view, copy[1:])
    del view
    gc.collect()
    assert producer() is None and mesh() is None


def test_whatever_is_taken_out_of_a_scene_keeps_it(as1):
    for take in (lambda scene: next(iter(scene)), lambda scene: scene.components[0], lambda scene: scene.layers[0],
                 lambda scene: scene.styles[0], lambda scene: scene.occurrences(),
                 lambda scene: scene.components[4].geometry[0], mesh_of):
        scene = kvr.Scene(as1)
        producer = weakref.ref(scene.producer)
        taken = take(scene)
        scene.close()
        del scene
        gc.collect()
        assert producer() is not None, taken
        assert repr(taken)
        del taken
        gc.collect()
        assert producer() is None


def test_a_closed_scene_is_freed(as1):
    with kvr.Scene(as1) as scene:
        producer = weakref.ref(scene.producer)
    gc.collect()
    assert producer() is None


def test_occurrences_share_the_numbers(as1):
    with kvr.Scene(as1) as scene:
        nuts = [occurrence.mesh for occurrence in scene if occurrence.component.label == "nut"]
        assert len(nuts) == 8
        assert numpy.shares_memory(nuts[0].positions, nuts[1].positions)
        assert numpy.shares_memory(nuts[0].positions, nuts[0].positions)


def test_the_numbers_cannot_be_changed(as1):
    with kvr.Scene(as1) as scene:
        mesh = mesh_of(scene)
        for array in (mesh.positions, mesh.normals, mesh.triangles, mesh.face_ids):
            assert not array.flags.owndata
            with pytest.raises(ValueError):
                array[0] = 0


def test_the_numbers_are_those_of_the_mesh(as1):
    with kvr.Scene(as1) as scene:
        for component in scene.components:
            for piece in component.geometry:
                mesh = piece.mesh
                assert mesh.positions.dtype == numpy.float64 and mesh.positions.shape[1] == 3
                assert mesh.triangles.max() == len(mesh.positions) - 1
                assert numpy.allclose(numpy.linalg.norm(mesh.normals, axis=1), 1, atol=1e-6)
                assert len(mesh.face_ids) == len(mesh.triangles)
                assert sum(count for _, _, count in mesh.styles) == len(mesh.triangles)


def test_columns_outlive_the_scene(as1):
    with kvr.Scene(as1) as scene:
        producer = weakref.ref(scene.producer)
        transform = scene.table()["transform"]
    gc.collect()
    assert producer() is None
    assert numpy.array_equal(transform[0], numpy.eye(4))
