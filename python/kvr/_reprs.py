"""How what stands in a scene shows itself to a person."""

from __future__ import annotations

from kvr import _core

Named = _core.Component | _core.Geometry | _core.Layer | _core.Note | _core.Placement | _core.Style | _core.View


def _named(self: Named) -> str:
    kind = getattr(self, "kind", "")
    return f"<kvr.{type(self).__name__} {self.id!r} {self.label!r}{', ' + kind if kind else ''}>"


def _occurrence(self: _core.Occurrence) -> str:
    return f"<kvr.Occurrence {self.name!r} at {'/'.join(self.path) or 'the root'}{'' if self.visible else ', hidden'}>"


def _mesh(self: _core.Mesh) -> str:
    return f"<kvr.Mesh of {len(self.positions)} vertices, {len(self.triangles)} triangles>"


def _body(self: _core.Body) -> str:
    return f"<kvr.Body of {len(self.faces)} faces, volume {self.volume}>"


def _face(self: _core.Face) -> str:
    radius = "" if self.radius is None else f", radius {self.radius:g}"
    return f"<kvr.Face {self.data_id!r}, {self.kind}{radius}, area {self.area:g}>"


def give() -> None:
    """Gives the classes of the module of C++ their representations."""
    for named in (_core.Component, _core.Geometry, _core.Layer, _core.Note, _core.Placement, _core.Style, _core.View):
        setattr(named, "__repr__", _named)
    setattr(_core.Occurrence, "__repr__", _occurrence)
    setattr(_core.Mesh, "__repr__", _mesh)
    setattr(_core.Body, "__repr__", _body)
    setattr(_core.Face, "__repr__", _face)
