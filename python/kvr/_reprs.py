"""How what stands in a scene shows itself to a person."""

from kvr import _core


def _named(self):
    kind = getattr(self, "kind", "")
    return f"<kvr.{type(self).__name__} {self.id!r} {self.label!r}{', ' + kind if kind else ''}>"


def _occurrence(self):
    return f"<kvr.Occurrence {self.name!r} at {'/'.join(self.path) or 'the root'}{'' if self.visible else ', hidden'}>"


def _mesh(self):
    return f"<kvr.Mesh of {len(self.positions)} vertices, {len(self.triangles)} triangles>"


def _body(self):
    return f"<kvr.Body of {len(self.faces)} faces, volume {self.volume}>"


def _face(self):
    radius = "" if self.radius is None else f", radius {self.radius:g}"
    return f"<kvr.Face {self.data_id!r}, {self.kind}{radius}, area {self.area:g}>"


for _type in (_core.Component, _core.Geometry, _core.Layer, _core.Note, _core.Placement, _core.Style, _core.View):
    _type.__repr__ = _named
_core.Occurrence.__repr__ = _occurrence
_core.Mesh.__repr__ = _mesh
_core.Body.__repr__ = _body
_core.Face.__repr__ = _face
