"""CAD scenes from Python: read, walk, measure, write, convert, check and certify them.

`Scene` is the resolved scene, with its occurrences; `Producer` serves every object through the interfaces of the
library. `write` makes scenes, `convert` makes scenes and files for other programs.
"""

from kvr import _core, _interfaces, _reprs
from kvr._core import (Body, Component, Error, Face, FileError, Geometry, Layer, Mesh, MeshFace, Note, Occurrence,
                       Placement, SceneError, Style, View)
from kvr._interfaces import *
from kvr._producer import Producer
from kvr._scene import Scene, Table
