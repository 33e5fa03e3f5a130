#!/usr/bin/env python3
"""Uses the package in a process that looks for leaks at its end, and fails on one that began in the project's code.

    check_leaks.py ROOT

The interpreter and NumPy lose memory of their own, which the report has as well: those leaks have no frame in the
module or the libraries of the project. Needs a build with the address sanitizer, loaded by LD_PRELOAD.
"""

import os
import subprocess
import sys

PROGRAM = """
import gc, pathlib, sys, tempfile
import kvr
root = pathlib.Path(sys.argv[1])
folder = tempfile.TemporaryDirectory()
new = pathlib.Path(folder.name, "new.xml")
for path in ("as1-oc-214", "complete"):
    with kvr.Scene(root / "examples" / path / f"{path}.xml") as scene:
        meshes = [piece.mesh.positions.sum() for occurrence in scene for piece in occurrence.geometry if piece.mesh]
        assert meshes and scene.table()["transform"].any() and scene.notes is not None
        told = [getattr(found, name) for found in scene.producer for name in kvr.interfaces.operations(type(found))]
        bodies = [component.body for component in scene.components if component.body]
        measured = [(body.volume, body.centroid, body.faces) for body in bodies]
        assert told and scene.producer.dump()
with kvr.write(new) as writer, writer.part("p"):
    writer.mesh("m", [[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2]])
for wrong in (lambda: kvr.Scene("missing.xml"), lambda: kvr.convert(new, "out.xyz"), lambda: kvr.Scene(new, only=["nobody"]),
              lambda: kvr.convert(new, new.with_suffix(".glb"), progress=lambda *_: False)):
    try:
        wrong()
        sys.exit("no failure")
    except kvr.Error:
        pass
kvr.convert(new, new.with_suffix(".obj"))
assert not kvr.check(new)
del scene, meshes, told, bodies, measured, writer
gc.collect()
print("used")
"""
OWN = ("/kvr/_core", "libkvr_")


def main(root):
    environment = dict(os.environ, ASAN_OPTIONS="detect_leaks=1:exitcode=0")
    done = subprocess.run([sys.executable, "-c", PROGRAM, root], env=environment, capture_output=True, text=True,
                          check=False)
    if done.returncode != 0 or "used" not in done.stdout:
        sys.exit(f"the program ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    if "LeakSanitizer" not in done.stderr:
        sys.exit(f"nobody looked for leaks: the interpreter's own were not told\n{done.stderr}")
    # The children of a conversion end without a look; each report has a paragraph for each place of a leak.
    leaks = [leak for leak in done.stderr.split("\n\n") if " leak of " in leak and any(own in leak for own in OWN)]
    print(f"{done.stderr.count(' leak of ')} leaks told, {len(leaks)} of them the project's")
    if leaks:
        sys.exit("\n\n".join(leaks))


if __name__ == "__main__":
    main(sys.argv[1])
