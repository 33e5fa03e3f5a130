"""CAD scenes from Python: read, walk, measure, write, convert, check and certify them.

`Scene` is the resolved scene, with its occurrences; `Producer` serves every object as the classes of `interfaces`. `write` makes scenes, `convert` makes scenes, and files for other programs.
"""

from kvr import _reprs, interfaces
from kvr._compare import Change, diff, hash, stats
from kvr._core import (Body, Cancelled, Component, Error, Face, FileError, Geometry, Layer, Mesh, MeshFace, Note,
                       Occurrence, Placement, QueryError, SceneError, Style, View)
from kvr._exchange import Certificate, CertificateRow, Conversion, Finding, certify, check, convert, picture
from kvr._producer import Producer
from kvr._scene import Scene, Table, query
from kvr._write import Writer, write

__all__ = [
    "Body", "Cancelled", "Certificate", "CertificateRow", "Change", "Component", "Conversion", "Error", "Face",
    "FileError", "Finding", "Geometry", "Layer", "Mesh", "MeshFace", "Note", "Occurrence", "Placement", "Producer",
    "QueryError", "Scene", "SceneError", "Style", "Table", "View", "Writer", "certify", "check", "convert", "diff",
    "hash", "interfaces", "picture", "query", "stats", "write"
]
_reprs.give()
